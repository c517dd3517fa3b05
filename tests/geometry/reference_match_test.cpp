// reference_match_test.cpp - the walk's leaf test, with the shapes' fast
// tests two at a time, takes what the reference tests take one after
// another: on random leaves of spheres, cylinders and triangles, some
// repeated (equal roots), some around the ray's origin, some degenerate or
// not a number, under limits that cut some roots off.
#include <gtest/gtest.h>

#include <limits>
#include <random>
#include <variant>
#include <vector>

#include "geometry_test_support.h"

namespace sciray::testing {
namespace {

using shape = std::variant<sphere, cylinder, triangle>;

// What one reference test after another leaves: the distance and the shape taken.
std::pair<double, int> one_by_one(const std::vector<shape>& leaf, const ray& r, double limit) {
  double distance = limit;
  int taken = -1;
  for (std::size_t i = 0; i < leaf.size(); ++i) {
    if (std::visit([&](const auto& s) { return s.intersect(r, distance); }, leaf[i])) taken = static_cast<int>(i);
  }
  return {distance, taken};
}

TEST(leaf_test, takes_what_one_reference_test_after_another_takes) {
  std::mt19937 gen(11);
  std::uniform_real_distribution<double> coord(-3, 3), size(0.1, 2);
  const double nan = std::numeric_limits<double>::quiet_NaN();
  const auto point = [&]() { return position(coord(gen), coord(gen), coord(gen)); };
  int hits = 0;
  for (int trial = 0; trial < 6000; ++trial) {
    const position origin = point();
    const ray r(origin, normalise(vector(coord(gen), coord(gen), coord(gen))));
    // First a ball around everything: its box keeps the root's box finite
    // when a later box is not a number.
    std::vector<shape> leaf{sphere{position(), 100}};
    const int count = 1 + trial % 8;
    for (int i = 0; i < count; ++i) {
      const int pick = static_cast<int>(gen() % 10);
      const position a = pick == 9 ? position(coord(gen), nan, coord(gen)) : (pick == 8 ? origin : point());
      if (pick == 7 && i > 0) {
        leaf.push_back(leaf.back());  // a repeat: equal roots
      } else if (trial % 3 == 0) {
        leaf.push_back(sphere{a, size(gen)});
      } else if (trial % 3 == 1) {
        leaf.push_back(cylinder{a, pick == 6 ? a : point(), size(gen)});
      } else {
        const position b = point();
        leaf.push_back(triangle{{a, b, pick == 6 ? b : point()}});
      }
      // Every fourth leaf mixes all three kinds.
      if (trial % 4 == 0 && i % 3 == 1) leaf.back() = sphere{point(), size(gen)};
      if (trial % 4 == 0 && i % 3 == 2) leaf.back() = cylinder{point(), point(), size(gen) / 4};
    }
    shape_scene scene(16);
    for (const shape& s : leaf) std::visit([&](const auto& one) { scene.add(one); }, s);
    const double limit = trial % 5 == 0 ? 1.5 : 1e20;
    const auto [distance, taken] = one_by_one(leaf, r, limit);
    const hit_record got = scene.hit(r, limit);
    EXPECT_EQ(got.distance, taken < 0 ? -1.0 : distance) << trial;
    hits += taken > 0;
  }
  EXPECT_GT(hits, 1000);  // the leaves' own shapes are hit often enough to test the taking
}

}  // namespace
}  // namespace sciray::testing
