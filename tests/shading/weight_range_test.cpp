// weight_range_test.cpp - the weights a cut-off treats alike, and the
// weights that a filter maps into a range.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>
#include <utility>

#include "shading/tracer.h"
#include "shading/weight_range.h"

namespace sciray {
namespace {

TEST(weight_range, cut_offs_and_filters_keep_every_decision_as_it_was) {
  const colour& cut = tracer::cutoff;
  const double below = std::nextafter(cut.x, 0.0), nan = std::numeric_limits<double>::quiet_NaN();
  // Cut off: every channel stays below. Not cut off: the channel with the
  // most to spare stays at its cut-off or above.
  const weight_range off = cut_off_alike(colour(below, 0.005, -1.0), cut);
  EXPECT_TRUE(off.holds(colour(below, below, -5.0)));
  EXPECT_FALSE(off.holds(colour(below, cut.y, 0.0)));
  const weight_range on = cut_off_alike(colour(0.002, 0.5, 0.01), cut);
  EXPECT_TRUE(on.holds(colour(-1.0, cut.y, 7.0)));
  EXPECT_FALSE(on.holds(colour(1.0, below, 1.0)));
  EXPECT_FALSE(cut_off_alike(colour(nan, 0.0, 0.0), cut).holds(colour()));
  EXPECT_FALSE(on.holds(colour(nan, 0.5, 0.0)));

  // Back through a filter: the ends of each interval (and so, products
  // keeping their order, everything between) land in the range beyond.
  std::mt19937_64 random(25);
  std::uniform_real_distribution<double> unit(0.0, 1.0);
  const auto any = [&] { return colour(unit(random), unit(random), unit(random)); };
  for (int i = 0; i < 20000; ++i) {
    const colour w = any(), filter = any();
    weight_range after = cut_off_alike(w * filter, cut);
    after.narrow(weight_range{w * filter * 0.5, w * filter * 1.5});
    const weight_range before = before_filter(after, w, filter);
    ASSERT_TRUE(before.holds(w));
    for (int c = 0; c < 3; ++c) {
      for (const double end : {before.low[c], before.high[c]}) {
        colour x = w;
        x[c] = end;
        ASSERT_TRUE(after.holds(x * filter)) << i << " " << c;
      }
    }
  }
  // No order to lean on: a filter channel of 0 keeps the weight itself.
  const weight_range zero = before_filter(weight_range{}, colour(0.5, 0.5, 0.5), colour(0.0, 1.0, 1.0));
  EXPECT_EQ(std::make_pair(zero.low.x, zero.high.x), std::make_pair(0.5, 0.5));
  EXPECT_FALSE(before_filter(on, colour(0.0, 0.0, 0.0), colour(1.0, 1.0, 1.0)).holds(colour()));
}

}  // namespace
}  // namespace sciray
