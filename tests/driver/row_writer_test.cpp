// row_writer_test.cpp - colour conversion and the corner mark's size classes.
#include "driver/row_writer.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace sciray {
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

TEST(corner_mark, size_class_follows_the_picture_width) {
  EXPECT_FALSE(make_corner_mark(99).present());
  const corner_mark smallest = make_corner_mark(100);
  EXPECT_EQ(smallest.width, 15);
  EXPECT_EQ(smallest.height, 5);
  EXPECT_EQ(smallest.margin, 2);
  const corner_mark at_640 = make_corner_mark(640);
  EXPECT_EQ(at_640.width, 52);
  EXPECT_EQ(at_640.height, 19);
  EXPECT_EQ(at_640.margin, 9);
  EXPECT_EQ(make_corner_mark(1217).width, 87);
  EXPECT_EQ(make_corner_mark(20000).width, 104);

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
}  // namespace sciray
