// shape_bench.cpp - micro-benchmarks of the shapes' fast tests: a leaf of
// eight spheres, cylinders or triangles against rays of which about half
// hit one of them.
#include <benchmark/benchmark.h>

#include <random>
#include <vector>

#include "geometry/geometry_builder.h"
#include "shading/material.h"

namespace sciray {
namespace {

// Shapes scattered in the unit cube, each kind in a scene of its own (one
// leaf); rays from below it towards it. Numbers are drawn in the order the
// first version of this benchmark drew them, so that its figures stay
// comparable.
struct leaf_scene {
  leaf_scene() {
    std::mt19937 gen(5);
    std::uniform_real_distribution<double> coord(-1, 1), size(0.1, 0.3);
    geometry_builder balls, tubes, pieces;
    for (std::uint32_t i = 0; i < leaf_size; ++i) {
      const double z = coord(gen), y = coord(gen), x = coord(gen);
      const position c(x, y, z);
      balls.add(sphere{c, size(gen)}, &plain);
      const double radius = size(gen) / 3, dz = size(gen), dy = size(gen), dx = size(gen);
      tubes.add(cylinder{c, c + vector(dx, dy, dz), radius}, &plain);
      const double up = 4 * size(gen), across = 4 * size(gen);
      pieces.add(triangle{{c, c + vector(across, 0, 0), c + vector(0, up, 0.1)}}, &plain);
    }
    balls.build(spheres);
    tubes.build(cylinders);
    pieces.build(triangles);
    for (int i = 0; i < 1024; ++i) {
      const double dy = coord(gen) * 0.1, dx = coord(gen) * 0.1, y = coord(gen), x = coord(gen);
      rays.emplace_back(position(x, y, -5), normalise(vector(dx, dy, 1)));
    }
  }
  material plain;
  scene_geometry spheres, cylinders, triangles;
  std::vector<ray> rays;
};

template <typename S>
void run(benchmark::State& state, const scene_geometry leaf_scene::*kind) {
  const leaf_scene scene;
  const typename S::set& shapes = (scene.*kind).shapes<S>();
  double t[leaf_size];
  std::size_t next = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(shapes.candidates(0, leaf_size, scene.rays[next], t));
    benchmark::DoNotOptimize(t[0]);
    next = (next + 1) % scene.rays.size();
  }
  state.SetItemsProcessed(state.iterations() * leaf_size);
}

void sphere_leaf(benchmark::State& state) { run<sphere>(state, &leaf_scene::spheres); }
BENCHMARK(sphere_leaf);

void cylinder_leaf(benchmark::State& state) { run<cylinder>(state, &leaf_scene::cylinders); }
BENCHMARK(cylinder_leaf);

void triangle_leaf(benchmark::State& state) { run<triangle>(state, &leaf_scene::triangles); }
BENCHMARK(triangle_leaf);

}  // namespace
}  // namespace sciray
