// hierarchy_bench.cpp - micro-benchmark of the bounding hierarchy walk over a
// few thousand random spheres and triangles.
#include <benchmark/benchmark.h>

#include <memory>
#include <random>
#include <vector>

#include "geometry/sphere.h"
#include "geometry/triangle.h"
#include "math/bounding_hierarchy.h"
#include "shading/render_context.h"

namespace sciray {
namespace {

// Half spheres, half triangles, scattered in a cube of side 20 about the
// origin; the rays start in front of it and fan out across it.
struct bench_scene {
  explicit bench_scene(int count) {
    std::mt19937 gen(12345);
    std::uniform_real_distribution<double> coord(-10, 10), size(0.05, 0.4), spread(-0.6, 0.6);
    for (int i = 0; i < count; ++i) {
      const position c(coord(gen), coord(gen), coord(gen));
      if (i % 2)
        shapes.push_back(std::make_unique<sphere>(c, size(gen)));
      else
        shapes.push_back(
            std::make_unique<triangle>(c, c + vector(size(gen), 0, 0), c + vector(0, size(gen), size(gen))));
      hierarchy.add(shapes.back().get());
    }
    hierarchy.build(8);
    for (int i = 0; i < 4096; ++i)
      rays.emplace_back(position(0, 0, -30), normalise(vector(spread(gen), spread(gen), 1)));
  }

  std::vector<std::unique_ptr<primitive>> shapes;
  bounding_hierarchy hierarchy;
  std::vector<ray> rays;
};

void hierarchy_walk(benchmark::State& state) {
  const bench_scene scene(static_cast<int>(state.range(0)));
  render_context context;
  std::size_t next = 0;
  for (auto _ : state) {
    hit_record hit;
    benchmark::DoNotOptimize(scene.hierarchy.intersect(scene.rays[next], hit, context));
    benchmark::DoNotOptimize(hit.distance);
    next = (next + 1) % scene.rays.size();
  }
  state.counters["tests_per_ray"] =
      benchmark::Counter(static_cast<double>(context.test_count) / static_cast<double>(state.iterations()));
}
BENCHMARK(hierarchy_walk)->Arg(1000)->Arg(4000);

void hierarchy_build(benchmark::State& state) {
  for (auto _ : state) {
    bench_scene scene(static_cast<int>(state.range(0)));
    benchmark::DoNotOptimize(scene.hierarchy.nodes().data());
  }
}
BENCHMARK(hierarchy_build)->Arg(4000)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace sciray
