// hierarchy_bench.cpp - micro-benchmarks of the hierarchy: the walk over a
// few thousand random spheres, cylinders and triangles, of rays one at a
// time and of the primary rays of a picture row by row, one at a time and
// together on each vector path; the tree's build
// over scattered boxes and over boxes on a grid (many equal centres); and
// the whole build of a scene's geometry, shapes laid out included.
#include <benchmark/benchmark.h>

#include <random>
#include <vector>

#include "geometry/geometry_builder.h"
#include "shading/material.h"

namespace sciray {
namespace {

// A third each of spheres, cylinders and triangles, scattered in a cube of
// side 20 about the origin. Numbers are drawn in the order the first
// version of this benchmark drew them, so that its figures stay comparable.
void add_shapes(geometry_builder& builder, int count, const material* m) {
  std::mt19937 gen(12345);
  std::uniform_real_distribution<double> coord(-10, 10), size(0.05, 0.4);
  for (int i = 0; i < count; ++i) {
    const double z = coord(gen), y = coord(gen), x = coord(gen);
    const position c(x, y, z);
    if (i % 3 == 0) {
      builder.add(sphere{c, size(gen)}, m);
    } else if (i % 3 == 1) {
      const double radius = size(gen) / 4, dy = size(gen), dx = size(gen);
      builder.add(cylinder{c, c + vector(dx, dy, 0), radius}, m);
    } else {
      const double dz = size(gen), dy = size(gen), dx = size(gen);
      builder.add(triangle{{c, c + vector(dx, 0, 0), c + vector(0, dy, dz)}}, m);
    }
  }
}

// The shapes built into a hierarchy; the rays start in front of them and fan out.
struct bench_scene {
  explicit bench_scene(int count) {
    geometry_builder builder;
    add_shapes(builder, count, &plain);
    builder.build(geometry);
    std::mt19937 gen(54321);
    std::uniform_real_distribution<double> spread(-0.6, 0.6);
    for (int i = 0; i < 4096; ++i) {
      const double dy = spread(gen), dx = spread(gen);
      rays.emplace_back(position(0, 0, -30), normalise(vector(dx, dy, 1)));
    }
  }

  material plain;
  scene_geometry geometry;
  std::vector<ray> rays;
};

void hierarchy_walk(benchmark::State& state) {
  const bench_scene scene(static_cast<int>(state.range(0)));
  std::uint32_t tests = 0;
  std::size_t next = 0;
  for (auto _ : state) {
    hit_record hit;
    benchmark::DoNotOptimize(scene.geometry.intersect(scene.rays[next], hit, tests));
    benchmark::DoNotOptimize(hit.distance);
    next = (next + 1) % scene.rays.size();
  }
  state.counters["tests_per_ray"] =
      benchmark::Counter(static_cast<double>(tests) / static_cast<double>(state.iterations()));
}
BENCHMARK(hierarchy_walk)->Arg(1000)->Arg(100000);

// The primary rays of a picture of 64 by 64 pixels fanning out over the
// same field as above, row by row; an iteration walks one row of 64. Mode 0
// walks them one at a time, as every ray was walked before groups; modes 1
// to 4 walk the row as the renderer does, in groups, on the plain, SSE2,
// AVX2 and AVX-512 path (a path the processor lacks is skipped).
void primary_walk(benchmark::State& state) {
  constexpr int side = 64;
  const bench_scene scene(static_cast<int>(state.range(0)));
  const int mode = static_cast<int>(state.range(1));
  const simd_path paths[] = {simd_path::sse2, simd_path::plain, simd_path::sse2, simd_path::avx2, simd_path::avx512};
  if (!simd_supported(paths[mode])) {
    state.SkipWithError("this processor lacks the path");
    return;
  }
  const simd_path before = active_simd_path();
  force_simd_path(paths[mode]);
  std::vector<ray> picture;
  for (int y = 0; y < side; ++y)
    for (int x = 0; x < side; ++x) picture.emplace_back(position(0, 0, -30), normalise(vector((x - 32) * 0.019, (y - 32) * 0.019, 1)));
  std::vector<hit_record> hits(side);
  std::vector<std::uint32_t> tests(side);
  std::uint32_t all_tests = 0;
  int row = 0;
  for (auto _ : state) {
    const ray* rays = picture.data() + row * side;
    for (int i = 0; i < side; ++i) hits[i] = hit_record{}, tests[i] = 0;
    if (mode == 0) {
      for (int i = 0; i < side; ++i) scene.geometry.intersect(rays[i], hits[i], tests[i]);
    } else {
      scene.geometry.intersect_each(side, rays, hits.data(), tests.data());
    }
    benchmark::DoNotOptimize(hits.data());
    for (int i = 0; i < side; ++i) all_tests += tests[i];
    row = (row + 1) % side;
  }
  force_simd_path(before);
  state.SetItemsProcessed(state.iterations() * side);
  state.counters["tests_per_ray"] =
      benchmark::Counter(static_cast<double>(all_tests) / static_cast<double>(state.iterations() * side));
}
BENCHMARK(primary_walk)->ArgsProduct({{1000, 100000}, {0, 1, 2, 3, 4}})->ArgNames({"shapes", "mode"});

// Boxes scattered in a cube, or centred on the points of a grid.
class box_list : public box_source {
 public:
  box_list(int count, bool grid) {
    std::mt19937 gen(777);
    std::uniform_real_distribution<double> coord(-10, 10), size(0.05, 0.4);
    const auto cell = [&gen]() { return static_cast<double>(gen() % 100) * 0.2 - 10; };
    for (int i = 0; i < count; ++i) {
      const double x = grid ? cell() : coord(gen), y = grid ? cell() : coord(gen), z = grid ? 0 : coord(gen);
      const double r = size(gen);
      boxes_.push_back({{x - r, y - r, z - r}, {x + r, y + r, z + r}});
      root_.widen(boxes_.back());
    }
  }
  void boxes(const std::uint32_t* objects, std::size_t count, solid_box* out) const override {
    for (std::size_t i = 0; i < count; ++i) out[i] = boxes_[objects[i]];
  }
  std::uint32_t size() const { return static_cast<std::uint32_t>(boxes_.size()); }
  const bounding_box& root() const { return root_; }

 private:
  std::vector<solid_box> boxes_;
  bounding_box root_;
};

void hierarchy_build(benchmark::State& state) {
  const box_list boxes(static_cast<int>(state.range(0)), state.range(1) != 0);
  for (auto _ : state) {
    bounding_hierarchy h;
    h.build(boxes.size(), boxes, boxes.root(), 8);
    benchmark::DoNotOptimize(h.nodes().data());
  }
}
BENCHMARK(hierarchy_build)->ArgsProduct({{4000, 500000}, {0, 1}})->ArgNames({"boxes", "grid"})->Unit(benchmark::kMillisecond);

// The whole build of the geometry: the shapes are added outside the timing.
void scene_build(benchmark::State& state) {
  const material plain;
  for (auto _ : state) {
    state.PauseTiming();
    geometry_builder builder;
    add_shapes(builder, static_cast<int>(state.range(0)), &plain);
    scene_geometry geometry;
    state.ResumeTiming();
    builder.build(geometry);
    benchmark::DoNotOptimize(geometry.hierarchy().nodes().data());
  }
}
BENCHMARK(scene_build)->Arg(4000)->Arg(500000)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace sciray
