// group_walk_test.cpp - rays walked together, on every vector path this
// processor has and on the plain one, each take exactly what the walk of
// that ray alone takes: the same distance to the bit, the same primitive
// (ties included) and the same number of tests. Random scenes of all three
// kinds with repeated shapes, shared triangle edges, degenerate shapes and
// boxes that are not numbers; rays in neighbouring-pixel fans, parallel
// from many origins, in all directions from inside the scene (so that the
// rays of a group go different ways), along the axes and with limits.
#include <gtest/gtest.h>

#include <bit>
#include <cstdint>
#include <limits>
#include <random>
#include <vector>

#include "geometry/geometry_builder.h"
#include "shading/material.h"
#include "support/simd_paths.h"

namespace sciray::testing {
namespace {

struct outcome {
  double distance;
  primitive_ref object;
  std::uint32_t tests;
  bool found;
  bool operator==(const outcome& o) const {
    return std::bit_cast<std::uint64_t>(distance) == std::bit_cast<std::uint64_t>(o.distance) &&
           object == o.object && tests == o.tests && found == o.found;
  }
};

std::ostream& operator<<(std::ostream& os, const outcome& o) {
  return os << "distance " << o.distance << " kind " << o.object.kind() << " index " << o.object.index() << " tests "
            << o.tests << (o.found ? " found" : "");
}

// Shapes scattered in a cube of side 20 about the origin, a third of each
// kind, with the odd one repeated, sharing an edge with the one before,
// degenerate or not a number (and so is its leaf's box, or one of them).
void add_shapes(geometry_builder& builder, std::mt19937& gen, int count, int odd_in, const material* m) {
  std::uniform_real_distribution<double> coord(-10, 10), size(0.2, 1.5);
  const double nan = std::numeric_limits<double>::quiet_NaN();
  position last_a, last_b, last_c;
  for (int i = 0; i < count; ++i) {
    const position c(coord(gen), coord(gen), coord(gen));
    // Not the first: a box that is not a number would make the root's box one.
    const int odd = i == 0 ? odd_in - 1 : static_cast<int>(gen() % odd_in);
    switch (i % 3) {
      case 0:
        builder.add(sphere{odd == 0 ? position(c.x, nan, c.z) : (odd == 3 ? position(nan, nan, nan) : c),
                           odd == 1 ? 0.0 : size(gen)},
                    m);
        if (odd == 2) {  // equal roots
          builder.add(sphere{c, 0.8}, m);
          builder.add(sphere{c, 0.8}, m);
        }
        break;
      case 1: {
        const position end = odd == 0 ? c : position(c + vector(size(gen), size(gen), -size(gen)));
        builder.add(cylinder{c, end, size(gen) / 4}, m);
        break;
      }
      default: {
        if (odd < 4 && i > 3) {  // on the edge of the triangle before: both take a hit on it
          builder.add(triangle{{last_b, last_a, last_b + vector(0.3, -size(gen), 0.2)}}, m);
          break;
        }
        last_a = c;
        last_b = c + vector(size(gen) * 2, 0, size(gen));
        last_c = odd == 5 ? last_b : c + vector(0, size(gen) * 2, size(gen));
        builder.add(triangle{{last_a, last_b, last_c}}, m);
      }
    }
  }
}

// `odd_in`: one shape in about that many is odd in one of its ways.
struct scene {
  scene(unsigned seed, int count, std::uint32_t leaf_limit, int odd_in) {
    std::mt19937 gen(seed);
    geometry_builder builder;
    add_shapes(builder, gen, count, odd_in, &plain);
    builder.build(geometry, leaf_limit);
  }
  material plain;
  scene_geometry geometry;
};

// Rays in the orders a group walk meets them, each with its limit.
struct ray_list {
  std::vector<ray> rays;
  std::vector<double> limits;
  void add(const position& o, const vector& d, double limit = 1e20) {
    rays.emplace_back(o, normalise(d));
    limits.push_back(limit);
  }
};

ray_list every_kind_of_ray(std::mt19937& gen) {
  ray_list l;
  std::uniform_real_distribution<double> coord(-11, 11), unit(-1, 1);
  // The primary rays of a picture, row by row.
  for (int y = 0; y < 24; ++y)
    for (int x = 0; x < 40; ++x) l.add(position(0, 0, -30), vector((x - 20) * 0.02, (y - 12) * 0.02, 1));
  // Shadow rays: parallel, from points across the scene, some on a shape.
  for (int y = 0; y < 20; ++y)
    for (int x = 0; x < 20; ++x) l.add(position(x - 10, y - 10, (x * y) % 7 - 3.0), vector(1, 2, 3));
  // From anywhere, anywhere: the rays of a group go their own ways.
  for (int i = 0; i < 600; ++i) l.add(position(coord(gen), coord(gen), coord(gen)), vector(unit(gen), unit(gen), unit(gen)), i % 3 ? 1e20 : 4.0);
  // Along the axes and planes, and with a direction component so small
  // that its reciprocal is infinite; some alone, some among others.
  for (int i = 0; i < 120; ++i) {
    const position o(coord(gen), coord(gen), coord(gen));
    switch (i % 5) {
      case 0: l.add(o, vector(0, 0, i % 2 ? 1 : -1)); break;
      case 1: l.add(o, vector(1, 0, 0)); break;
      case 2: l.add(o, vector(0, unit(gen), unit(gen))); break;
      case 3: l.add(o, vector(1e-310, unit(gen), 1)); break;
      default: l.add(o, vector(unit(gen), unit(gen), unit(gen)));
    }
  }
  return l;
}

// The walk of one ray alone, as the renderer walked every ray before
// groups: one ray at a time, two boxes at once with SSE2.
outcome alone(const scene_geometry& g, const ray& r, double limit) {
  const forced_path sse2(simd_path::sse2);
  hit_record hit;
  hit.distance = limit;
  std::uint32_t tests = 0;
  const bool found = g.intersect(r, hit, tests);
  return {hit.distance, hit.object, tests, found};
}

// The rays of the bits of `lanes` from rays[first], walked together on `path`.
std::vector<outcome> together(const scene_geometry& g, simd_path path, const ray_list& l, std::size_t first,
                              unsigned lanes) {
  hit_record hits[scene_geometry::group_limit];
  std::uint32_t tests[scene_geometry::group_limit] = {};
  for (int i = 0; i < scene_geometry::group_limit; ++i)
    if ((lanes >> i) & 1) hits[i].distance = l.limits[first + i];
  const unsigned found = g.intersect_group(path, l.rays.data() + first, lanes, hits, tests);
  std::vector<outcome> out(scene_geometry::group_limit);
  for (int i = 0; i < scene_geometry::group_limit; ++i) out[i] = {hits[i].distance, hits[i].object, tests[i], ((found >> i) & 1) != 0};
  return out;
}

TEST(group_walk, takes_on_every_path_what_each_ray_takes_alone) {
  // The last scene has leaves of one primitive, many of them odd, so that
  // boxes that are not numbers or have no thickness are met everywhere.
  for (const auto& [seed, count, leaf_limit, odd_in] :
       {std::tuple{1u, 3000, 8u, 40}, {2u, 900, 8u, 40}, {3u, 500, 30u, 40}, {4u, 900, 1u, 8}}) {
    const scene s(seed, count, leaf_limit, odd_in);
    std::mt19937 gen(seed + 100);
    const ray_list l = every_kind_of_ray(gen);
    std::vector<outcome> want;
    int hits = 0;
    for (std::size_t i = 0; i < l.rays.size(); ++i) {
      want.push_back(alone(s.geometry, l.rays[i], l.limits[i]));
      hits += want.back().found;
    }
    EXPECT_GT(hits, static_cast<int>(l.rays.size() / 5)) << "too few hits to test the taking";

    for (const simd_path path : paths_here()) {
      SCOPED_TRACE(simd_path_name(path));
      const std::size_t width = static_cast<std::size_t>(scene_geometry::group_width(path));
      // Groups of neighbours, the last one short, and groups with gaps.
      for (std::size_t first = 0; first < l.rays.size(); first += width) {
        const std::size_t n = std::min(width, l.rays.size() - first);
        const unsigned full = (1u << n) - 1, gappy = full & (first % 3 ? 0xb5u : 0x6eu);
        for (const unsigned lanes : {full, gappy}) {
          if (!lanes) continue;
          const std::vector<outcome> got = together(s.geometry, path, l, first, lanes);
          for (std::size_t i = 0; i < n; ++i) {
            if ((lanes >> i) & 1) {
              ASSERT_EQ(got[i], want[first + i]) << "ray " << first + i << " seed " << seed;
            }
          }
        }
      }
      // One ray at a time through the path's own walk of one ray.
      const forced_path forced(path);
      for (std::size_t i = 0; i < l.rays.size(); i += 7) {
        hit_record hit;
        hit.distance = l.limits[i];
        std::uint32_t tests = 0;
        const bool found = s.geometry.intersect(l.rays[i], hit, tests);
        ASSERT_EQ((outcome{hit.distance, hit.object, tests, found}), want[i]) << "ray " << i;
      }
    }
  }
}

TEST(group_walk, each_ray_of_a_group_keeps_its_own_order_and_ties) {
  // Two equal balls at the origin, each in a leaf of its own with a small
  // ball above or below: the lower leaf holds the first big ball, the upper
  // the second. A ball takes only a root below its distance, so of equal
  // roots the one tested first keeps the hit: a ray from above meets the
  // upper leaf first and keeps the second ball, a ray from below the first.
  // Rays from above and from below, alternately, in one group.
  geometry_builder builder;
  const material m;
  builder.add(sphere{position(0, 1.5, -3), 0.1}, &m);
  builder.add(sphere{position(), 1}, &m);
  builder.add(sphere{position(), 1}, &m);
  builder.add(sphere{position(0, 1.5, 3), 0.1}, &m);
  scene_geometry g;
  builder.build(g, 2);
  ray_list l;
  for (int i = 0; i < 2 * scene_geometry::group_limit; ++i) {
    const double side = i % 2 ? 1 : -1;
    l.add(position(0.01 * (i / 2), 0, 10 * side), vector(0, 0, -side));
  }
  std::vector<outcome> want;
  for (std::size_t i = 0; i < l.rays.size(); ++i) want.push_back(alone(g, l.rays[i], l.limits[i]));
  EXPECT_EQ(want[0].distance, want[1].distance);
  EXPECT_NE(want[0].object, want[1].object);
  for (const simd_path path : paths_here()) {
    const std::size_t width = static_cast<std::size_t>(scene_geometry::group_width(path));
    for (std::size_t first = 0; first < l.rays.size(); first += width) {
      const std::vector<outcome> got = together(g, path, l, first, (1u << width) - 1);
      for (std::size_t i = 0; i < width; ++i)
        EXPECT_EQ(got[i], want[first + i]) << simd_path_name(path) << " ray " << first + i;
    }
  }
}

}  // namespace
}  // namespace sciray::testing
