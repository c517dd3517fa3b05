// contour_test.cpp - the contour blend: weights in band and continuous mode,
// entries without weight never asked for a colour, blended operations and
// the ones handed to the first entry.
#include <gtest/gtest.h>

#include <cmath>

#include "test_scene.h"

namespace sciray {
namespace {

// A material of one colour that counts how often it is asked.
struct counting_material : material {
  counting_material(const colour& c, double shine) {
    emission = c;
    shininess = shine;
  }
  colour shade(ray_state&) const override {
    ++calls;
    return emission;
  }
  colour transmittance(ray_state&) const override {
    ++calls;
    return emission;
  }
  mutable int calls = 0;
};

// The weights as (index, weight) pairs.
std::vector<std::pair<int, double>> listed(const blend_weights& w) {
  std::vector<std::pair<int, double>> out;
  for (int i = 0; i < w.count; ++i) out.emplace_back(w.index[i], w.weight[i]);
  return out;
}
using pairs = std::vector<std::pair<int, double>>;

TEST(contour_weights, bands_and_continuous) {
  material m0, m1, m2, m3;
  contour_material steps(false), blend(true), four(true);
  for (contour_material* t : {&steps, &blend, &four}) {
    t->add(&m0, 0.0);
    t->add(&m1, 1.0);
    t->add(&m2, 2.0);
  }
  four.add(&m3, 3.0);
  // Bands: below the first level, then each interval (level k, level k+1]; the
  // last level is never compared.
  EXPECT_EQ(listed(steps.weights(-1.0)), (pairs{{0, 1.0}}));
  EXPECT_EQ(listed(steps.weights(0.0)), (pairs{{1, 1.0}}));  // equal to level 0 is not below it
  EXPECT_EQ(listed(steps.weights(0.25)), (pairs{{1, 1.0}}));
  EXPECT_EQ(listed(steps.weights(1.0)), (pairs{{1, 1.0}}));
  EXPECT_EQ(listed(steps.weights(1.5)), (pairs{{2, 1.0}}));
  EXPECT_EQ(listed(steps.weights(99.0)), (pairs{{2, 1.0}}));
  // Continuous: linear between neighbours; weights of exactly 0 are left out.
  EXPECT_EQ(listed(blend.weights(-1.0)), (pairs{{0, 1.0}}));
  EXPECT_EQ(listed(blend.weights(0.25)), (pairs{{0, 0.75}, {1, 0.25}}));
  EXPECT_EQ(listed(blend.weights(1.0)), (pairs{{1, 1.0}}));
  EXPECT_EQ(listed(blend.weights(1.5)), (pairs{{2, 1.0}}));
  EXPECT_EQ(listed(four.weights(1.75)), (pairs{{1, 0.25}, {2, 0.75}}));

  // One entry takes everything; none gives nothing; equal levels are not guarded.
  contour_material single(false), empty(true), flat(true);
  single.add(&m0, 5.0);
  EXPECT_EQ(listed(single.weights(-100.0)), (pairs{{0, 1.0}}));
  EXPECT_EQ(empty.weights(1.0).count, 0);
  flat.add(&m0, 0.0);
  flat.add(&m1, 0.0);
  flat.add(&m2, 3.0);
  EXPECT_TRUE(std::isnan(flat.weights(0.0).weight[0]));
}

TEST(contour_blend, weighted_operations_and_first_entry_delegation) {
  world w;
  render_context context;
  counting_material red(colour(1.0, 0.0, 0.0), 10.0), green(colour(0.0, 1.0, 0.0), 20.0),
      blue(colour(0.0, 0.0, 1.0), 40.0);
  red.index_by_channel = vector(1.3, 1.4, 1.5);
  red.set_attenuation(colour(0.5, 0.5, 0.5), 1.0);
  contour_material blend(true);
  blend.add(&red, 0.0);
  blend.add(&green, 1.0);
  blend.add(&blue, 2.0);

  ray_state s = primary_state(w, context, ray());
  s.hit.value = 0.25;
  EXPECT_EQ(blend.shade(s), colour(0.75, 0.25, 0.0));
  EXPECT_EQ(blend.transmittance(s), colour(0.75, 0.25, 0.0));
  EXPECT_EQ(blend.shininess_at(s), 0.75 * 10 + 0.25 * 20);
  s.hit.value = 1.0;
  EXPECT_EQ(blend.shade(s), colour(0.0, 1.0, 0.0));
  EXPECT_EQ(red.calls, 2);  // not asked at weight 0
  EXPECT_EQ(blue.calls, 0);

  // Indices and the medium are the first entry's; with no entries, black and no change.
  EXPECT_EQ(blend.index_triple(), vector(1.3, 1.4, 1.5));
  colour c(1.0, 1.0, 1.0);
  blend.apply_medium(1.0, c);
  EXPECT_NEAR(c.x, 0.5, 1e-15);
  const contour_material empty(false);
  EXPECT_EQ(empty.shade(s), colour());
  EXPECT_EQ(empty.shininess_at(s), 0.0);
  EXPECT_EQ(empty.index_triple(), vector());
  empty.apply_medium(5.0, c);
  EXPECT_NEAR(c.x, 0.5, 1e-15);
}

}  // namespace
}  // namespace sciray
