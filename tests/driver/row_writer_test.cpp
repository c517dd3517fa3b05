// row_writer_test.cpp - colour conversion and the corner mark's sizes and look.
#include "driver/row_writer.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace sciray::testing {
namespace {

TEST(colour_conversion, clamps_scales_and_truncates) {
  EXPECT_EQ(to_sample(1.0), 255);
  EXPECT_EQ(to_sample(7.5), 255);
  EXPECT_EQ(to_sample(0.999), 254);
  EXPECT_EQ(to_sample(0.5), 127);
  EXPECT_EQ(to_sample(0.0), 0);
  EXPECT_EQ(to_sample(-0.3), 0);
  EXPECT_EQ(to_sample(std::nan("")), 0);
  EXPECT_EQ(to_sample(std::numeric_limits<double>::infinity()), 255);
  EXPECT_EQ(to_sample(-std::numeric_limits<double>::infinity()), 0);
}

TEST(corner_mark, grows_with_the_picture_and_stays_small_in_its_corner) {
  // None below 100 pixels; from there a mark that never shrinks as the
  // picture widens, takes with its margin less than a fifth of the width,
  // and stops growing at its largest size.
  EXPECT_FALSE(make_corner_mark(99).present());
  corner_mark before;
  for (int width = 100; width <= 2000; ++width) {
    const corner_mark mark = make_corner_mark(width);
    ASSERT_TRUE(mark.present()) << width;
    EXPECT_GE(mark.width, before.width) << width;
    EXPECT_GE(mark.height, before.height) << width;
    EXPECT_LT(5 * (mark.width + mark.margin), width) << width;
    before = mark;
  }
  EXPECT_LT(make_corner_mark(100).width, make_corner_mark(640).width);
  EXPECT_EQ(make_corner_mark(20000).width, before.width);
  const corner_mark at_640 = make_corner_mark(640);

  // The mark has both ink and plate in it, and its plate border frames the glyphs.
  bool ink = false, plate = false;
  for (std::uint16_t s : at_640.samples) {
    ink = ink || s == 255;
    plate = plate || s == 64;
  }
  EXPECT_TRUE(ink && plate);
  for (int x = 0; x < at_640.width; ++x) EXPECT_EQ(at_640.row(0)[x], 64);
}

}  // namespace
}  // namespace sciray::testing
