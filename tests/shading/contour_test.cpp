// contour_test.cpp - the contour blend: weights in steps and continuous mode,
// entries without weight never asked for a colour, blended operations and
// the ones handed to the first entry.
#include <gtest/gtest.h>

#include <cmath>
#include <utility>
#include <vector>

#include "shading/contour_material.h"
#include "shading/ray_state.h"
#include "shading/render_context.h"

namespace sciray {
namespace {

// A material of one colour that counts how often it is asked.
struct counting_material : material {
  colour shade(ray_state&) const override {
    ++calls;
    return emission;
  }
  colour transmittance(ray_state& state) const override { return shade(state); }
  mutable int calls = 0;
};

using pairs = std::vector<std::pair<int, double>>;

// The weights of `t` at `value` as (index, weight) pairs.
pairs listed(const contour_material& t, double value) {
  const blend_weights w = t.weights(value);
  pairs out;
  for (int i = 0; i < w.count; ++i) out.emplace_back(w.index[i], w.weight[i]);
  return out;
}

TEST(contour_blend, weights_blended_operations_and_first_entry_delegation) {
  // Red, green, blue and black entries; the first three at levels 0, 1, 2
  // in steps, all four at 0 .. 3 blended.
  counting_material entry[4];
  contour_material steps(false), four(true), single(false), empty(true), flat(true);
  for (int i = 0; i < 4; ++i) four.add(&entry[i], i);
  for (int i = 0; i < 3; ++i) {
    entry[i].emission[i] = 1.0;
    steps.add(&entry[i], i);
  }
  // Steps: below the first level, then each interval (level k, level k+1]; the
  // last level is never compared.
  EXPECT_EQ(listed(steps, -1.0), (pairs{{0, 1.0}}));
  EXPECT_EQ(listed(steps, 0.0), (pairs{{1, 1.0}}));  // equal to level 0 is not below it
  EXPECT_EQ(listed(steps, 1.0), (pairs{{1, 1.0}}));
  EXPECT_EQ(listed(steps, 1.5), (pairs{{2, 1.0}}));
  EXPECT_EQ(listed(steps, 99.0), (pairs{{2, 1.0}}));
  // Continuous: linear between neighbours, weights of exactly 0 left out, and
  // again the last level never compared.
  EXPECT_EQ(listed(four, -1.0), (pairs{{0, 1.0}}));
  EXPECT_EQ(listed(four, 0.25), (pairs{{0, 0.75}, {1, 0.25}}));
  EXPECT_EQ(listed(four, 1.0), (pairs{{1, 1.0}}));
  EXPECT_EQ(listed(four, 1.75), (pairs{{1, 0.25}, {2, 0.75}}));
  EXPECT_EQ(listed(four, 2.5), (pairs{{3, 1.0}}));
  // One entry takes everything; none gives nothing; equal levels are not guarded.
  single.add(&entry[0], 5.0);
  EXPECT_EQ(listed(single, -100.0), (pairs{{0, 1.0}}));
  EXPECT_EQ(listed(empty, 1.0), pairs());
  for (double level : {0.0, 0.0, 3.0}) flat.add(&entry[0], level);
  EXPECT_TRUE(std::isnan(flat.weights(0.0).weight[0]));

  // Colours and filters are weighted sums; an entry of weight 0 is
  // never asked.
  render_context context;
  ray_state s;
  s.context = &context;
  s.hit.value = 0.25;
  EXPECT_EQ(four.shade(s), colour(0.75, 0.25, 0.0));
  EXPECT_EQ(four.transmittance(s), colour(0.75, 0.25, 0.0));
  s.hit.value = 1.0;
  EXPECT_EQ(four.shade(s), colour(0.0, 1.0, 0.0));
  EXPECT_EQ(std::make_pair(entry[0].calls, entry[2].calls), std::make_pair(2, 0));

  // Indices and the medium are the first entry's; with no entries, black and no change.
  entry[0].index_by_channel = vector(1.3, 1.4, 1.5);
  entry[0].set_attenuation(colour(0.5, 0.5, 0.5), 1.0);
  EXPECT_EQ(four.index_triple(), vector(1.3, 1.4, 1.5));
  colour c(1.0, 1.0, 1.0);
  four.apply_medium(1.0, c);
  empty.apply_medium(5.0, c);
  EXPECT_NEAR(c.x, 0.5, 1e-15);
  EXPECT_EQ(empty.shade(s), colour());
  EXPECT_EQ(empty.index_triple(), vector());
}

}  // namespace
}  // namespace sciray
