// shadow_walks_test.cpp - shadow rays through contour blends that mix two
// transparent materials: each crossing walked once, and the light that
// comes through, the rays and the tests counted, to the bit what following
// every chain on its own gives.
#include <gtest/gtest.h>

#include <bit>
#include <utility>

#include "test_scene.h"

namespace sciray::testing {
namespace {

bool same_bits(const colour& a, const colour& b) {
  for (int c = 0; c < 3; ++c) {
    if (std::bit_cast<std::uint64_t>(a[c]) != std::bit_cast<std::uint64_t>(b[c])) return false;
  }
  return true;
}

// A shadow ray followed chain by chain, each chain walking on its own, as
// the light's way through transparent bodies reads: the reference that
// the shared walks must meet, with the rays and tests it counts.
struct every_chain {
  const world& w;
  std::uint32_t rays = 0, tests = 0;

  colour transmit(ray_state s) {
    const colour& cut = tracer::cutoff;
    if (s.weight.x < cut.x && s.weight.y < cut.y && s.weight.z < cut.z) return {};
    ++rays;
    s.hit.distance = s.max_distance;
    s.hit.object = primitive_ref();
    colour c{1.0, 1.0, 1.0};
    if (!w.geometry().intersect(s.r, s.hit, tests)) return c;
    w.geometry().surface(s.r, s.hit);
    c *= through(s, *w.geometry().material_of(s.hit.object));
    if (s.medium) s.medium->apply_medium(s.hit.distance, c);
    return c;
  }
  colour through(const ray_state& s, const material& m) {
    if (const auto* blend = dynamic_cast<const blend_material*>(&m)) {
      const blend_weights weights = blend->weights(s.hit.value);
      colour sum;
      for (int i = 0; i < weights.count; ++i)
        sum = sum + weights.weight[i] * through(s, *blend->entries()[weights.index[i]].mat);
      return sum;
    }
    if (is_black(m.refractive)) return {};
    const material* medium = dot(s.r.dir, s.hit.normal) > 0.0 ? &w.atmosphere : &m;
    return m.refractive * transmit(transmission_state(s, s.hit_point(), s.target, s.weight * m.refractive, medium));
  }
};

// Concentric octahedra of radii 1 to n around the origin, faces turned
// out, every corner of data value `value`, coloured by a continuous blend
// of `a` (level 0) and `b` (level 1); and a shadow ray through all of them.
struct shells {
  shells(int n, const material& a, const material& b, double value) {
    contour_material& blend = bench.w.new_contour_material(true);
    blend.add(&a, 0.0);
    blend.add(&b, 1.0);
    blend.add(&b, 2.0);
    for (int k = 1; k <= n; ++k) {
      for (const double sx : {-1.0, 1.0}) {
        for (const double sy : {-1.0, 1.0}) {
          for (const double sz : {-1.0, 1.0}) {
            position p(sx * k, 0.0, 0.0), q(0.0, sy * k, 0.0), r(0.0, 0.0, sz * k);
            if (sx * sy * sz < 0) std::swap(q, r);
            triangle t{{p, q, r}};
            t.values = {{value, value, value}};
            bench.w.builder().add(t, &blend);
          }
        }
      }
    }
    bench.settings.shadows = true;
    const ray_state at = bench.start(position(), direction(1.0, 0.0, 0.0));
    shadow = transmission_state(at, position(-n - 1.0, 0.013, 0.021), position(n + 1.5, 0.017, 0.019),
                                colour(1.0, 1.0, 1.0), nullptr);
  }
  // Tests the shadow ray and holds it to every chain followed on its own.
  colour test_against_every_chain() {
    render_context& counts = bench.context;
    const std::uint32_t rays = counts.ray_count, tests = counts.test_count;
    ray_state s = shadow;
    const colour shared = s.tracer->transmit(s);
    every_chain reference{bench.w};
    const colour expected = reference.transmit(shadow);
    EXPECT_TRUE(same_bits(shared, expected)) << shared.x << " " << expected.x;
    EXPECT_EQ(counts.ray_count - rays, reference.rays);
    EXPECT_EQ(counts.test_count - tests, reference.tests);
    return shared;
  }

  testing::bench bench;
  ray_state shadow;
};

material transparent(const colour& refractive, const colour& attenuation) {
  material m;
  m.refractive = refractive;
  m.set_attenuation(attenuation, 1.0);
  return m;
}

TEST(shadow_walks, nested_blended_shells_walk_each_crossing_once) {
  // Clear enough that no chain is cut off: n shells, 2n crossings, 2^k
  // chains after the k-th, yet one walk per crossing and one beyond.
  const material a = transparent(colour(0.95, 0.93, 0.9), colour(0.8, 0.9, 0.7));
  const material b = transparent(colour(0.9, 0.92, 0.94), colour(0.6, 0.5, 0.9));
  for (int n = 1; n <= 8; ++n) {
    shells scene(n, a, b, 0.3);
    scene.test_against_every_chain();
    EXPECT_EQ(scene.bench.context.shadow_walk_count, 2u * n + 1) << n;
    EXPECT_EQ(scene.bench.context.ray_count, (2u << (2 * n)) - 1) << n;  // as if every chain had walked
  }
}

TEST(shadow_walks, chains_cut_off_apart_share_nothing_they_should_not) {
  // Refractive colours whose products in different orders fall a rounding
  // apart on either side of the cut-off (checked first), colours that cut
  // channels at different depths, and channels that pass nothing.
  const double p = 0.5283654758586938, q = 0.3296428890299996;
  ASSERT_TRUE((((p * p) * q) * q) * q < 0.01 && (((p * q) * p) * q) * q >= 0.01);
  const std::pair<colour, colour> pairs[] = {
      {colour(p, p, p), colour(q, q, q)},
      {colour(0.9, 0.3, 0.6), colour(0.4, 0.8, 0.2)},
      {colour(0.7, 0.0, 0.5), colour(0.6, 0.5, 0.0)},
  };
  for (const auto& [ra, rb] : pairs) {
    const material a = transparent(ra, colour(0.5, 0.7, 0.9)), b = transparent(rb, colour(0.9, 0.4, 1.0));
    for (const double value : {0.25, 0.5, 0.875}) {
      for (int n = 1; n <= 4; ++n) shells(n, a, b, value).test_against_every_chain();
    }
  }
}

TEST(shadow_walks, a_ray_tested_again_shares_only_while_the_scope_is_open) {
  material a = transparent(colour(0.9, 0.8, 0.7), colour(0.8, 0.9, 0.7));
  const material b = transparent(colour(0.6, 0.7, 0.8), colour(0.9, 0.9, 0.5));
  shells scene(2, a, b, 0.5);
  render_context& counts = scene.bench.context;
  colour first;
  {
    // The entries of a mixing blend test the same shadow rays: the second
    // test walks nothing and counts what the first did.
    const shadow_walks::scope mixing(counts.walks, true);
    first = scene.test_against_every_chain();
    const std::uint64_t walks = counts.shadow_walk_count;
    const std::uint32_t rays = counts.ray_count;
    EXPECT_TRUE(same_bits(scene.test_against_every_chain(), first));
    EXPECT_EQ(counts.shadow_walk_count, walks);
    EXPECT_EQ(counts.ray_count, 2 * rays);
  }
  // A full scope walks what it cannot keep, and answers the same.
  {
    const shadow_walks::scope full(counts.walks, true);
    ray_state past = scene.shadow;
    for (std::size_t i = 0; i < shadow_walks::capacity; ++i) {
      past.r.origin.z = 10.0 + 1e-3 * static_cast<double>(i);
      ray_state s = past;
      s.tracer->transmit(s);
    }
    const std::uint64_t walks = counts.shadow_walk_count;
    const std::uint32_t rays = counts.ray_count;
    EXPECT_TRUE(same_bits(scene.test_against_every_chain(), first));
    EXPECT_EQ(counts.shadow_walk_count - walks, counts.ray_count - rays);
  }
  // Each test on its own learns afresh: a changed material shows.
  a.refractive = colour(0.5, 0.5, 0.5);
  const std::uint64_t walks = counts.shadow_walk_count;
  EXPECT_FALSE(same_bits(scene.test_against_every_chain(), first));
  EXPECT_EQ(counts.shadow_walk_count, walks + 5);
}

}  // namespace
}  // namespace sciray::testing
