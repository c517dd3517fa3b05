// shape_bench.cpp - micro-benchmarks of the primitive tests: a leaf of
// eight spheres, cylinders or triangles against rays of which about half
// hit one of them.
#include <benchmark/benchmark.h>

#include <random>
#include <vector>

#include "geometry/cylinder.h"
#include "geometry/leaf_candidates.h"
#include "geometry/sphere.h"
#include "geometry/triangle.h"

namespace sciray {
namespace {

constexpr int leaf = 8;

// Shapes scattered in the unit cube; rays from below it towards it.
struct leaf_scene {
  leaf_scene() {
    std::mt19937 gen(5);
    std::uniform_real_distribution<double> coord(-1, 1), size(0.1, 0.3);
    for (int i = 0; i < leaf; ++i) {
      const position c(coord(gen), coord(gen), coord(gen));
      const sphere s(c, size(gen));
      spheres.add({s.center.x, s.center.y, s.center.z, s.radius_squared});
      const cylinder_shape k = cylinder(c, c + vector(size(gen), size(gen), size(gen)), size(gen) / 3).shape;
      cylinders.add({k.start.x, k.start.y, k.start.z, k.axis.x, k.axis.y, k.axis.z, k.length, k.radius_squared});
      const triangle_shape t = triangle(c, c + vector(4 * size(gen), 0, 0), c + vector(0, 4 * size(gen), 0.1)).shape;
      triangles.add({t.normal.x, t.normal.y, t.normal.z, t.offset, t.weight1[0], t.weight1[1], t.weight1[2],
                     t.weight1[3], t.weight2[0], t.weight2[1], t.weight2[2], t.weight2[3]});
    }
    spheres.pad();
    cylinders.pad();
    triangles.pad();
    for (int i = 0; i < 1024; ++i)
      rays.emplace_back(position(coord(gen), coord(gen), -5), normalise(vector(coord(gen) * 0.1, coord(gen) * 0.1, 1)));
  }
  sphere_set spheres;
  cylinder_set cylinders;
  triangle_set triangles;
  std::vector<ray> rays;
};

template <typename Test>
void run(benchmark::State& state, Test&& test) {
  const leaf_scene scene;
  double t[leaf], b1[leaf], b2[leaf];
  std::size_t next = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(test(scene, scene.rays[next], t, b1, b2));
    benchmark::DoNotOptimize(t[0]);
    next = (next + 1) % scene.rays.size();
  }
  state.SetItemsProcessed(state.iterations() * leaf);
}

void sphere_leaf(benchmark::State& state) {
  run(state, [](const leaf_scene& s, const ray& r, double* t, double*, double*) {
    return sphere_candidates(s.spheres, 0, leaf, r, t);
  });
}
BENCHMARK(sphere_leaf);

void cylinder_leaf(benchmark::State& state) {
  run(state, [](const leaf_scene& s, const ray& r, double* t, double*, double*) {
    return cylinder_candidates(s.cylinders, 0, leaf, r, t);
  });
}
BENCHMARK(cylinder_leaf);

void triangle_leaf(benchmark::State& state) {
  run(state, [](const leaf_scene& s, const ray& r, double* t, double* b1, double* b2) {
    return triangle_candidates(s.triangles, 0, leaf, r, t, b1, b2);
  });
}
BENCHMARK(triangle_leaf);

}  // namespace
}  // namespace sciray
