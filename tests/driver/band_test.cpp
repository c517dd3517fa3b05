// band_test.cpp - band arguments and the split of the picture's rows.
#include "driver/band.h"

#include <gtest/gtest.h>

#include <vector>

namespace sciray {
namespace {

std::vector<int> band_sizes(int height, int count) {
  std::vector<int> sizes;
  int expected_start = 0;
  for (int i = 1; i <= count; ++i) {
    const band_rows rows = split_band(height, {i, count});
    EXPECT_EQ(rows.start, expected_start) << "band " << i << " must start where band " << i - 1 << " ended";
    expected_start = rows.end;
    sizes.push_back(rows.end - rows.start);
  }
  EXPECT_EQ(expected_start, height);
  return sizes;
}

TEST(band_split, sizes_differ_by_at_most_one_and_cover_the_picture) {
  EXPECT_EQ(band_sizes(480, 7), (std::vector<int>{69, 68, 69, 68, 69, 68, 69}));
  EXPECT_EQ(split_band(480, {1, 7}).end, 69);
  EXPECT_EQ(split_band(480, {7, 7}).start, 411);
  EXPECT_EQ(band_sizes(3, 5), (std::vector<int>{1, 0, 1, 0, 1}));
  EXPECT_TRUE(split_band(3, {2, 5}).empty());
  EXPECT_EQ(band_sizes(480, 1), (std::vector<int>{480}));
  EXPECT_EQ(band_sizes(10, 10), std::vector<int>(10, 1));
}

// Bresenham's walk step by step: the rows each band ends at.
std::vector<int> walked_ends(int height, int count) {
  const int q = height / count, step = 2 * (height - q * count);
  int error = 2 * height - (2 * q + 1) * count, end = 0;
  std::vector<int> ends;
  for (int k = 1; k <= count; ++k) {
    end += error < 0 ? q : q + 1;
    error += error < 0 ? step : step - 2 * count;
    ends.push_back(end);
  }
  return ends;
}

TEST(band_split, agrees_with_the_walk_step_by_step) {
  for (int height = 4; height <= 40; ++height)
    for (int count = 1; count <= 90; ++count) {
      const std::vector<int> ends = walked_ends(height, count);
      for (int i = 1; i <= count; ++i) {
        const band_rows rows = split_band(height, {i, count});
        ASSERT_EQ(rows.end, ends[i - 1]) << height << " rows, band " << i << "/" << count;
        ASSERT_EQ(rows.start, i == 1 ? 0 : ends[i - 2]) << height << " rows, band " << i << "/" << count;
      }
    }
}

TEST(band_split, many_more_bands_than_rows_stay_in_range) {
  const band_rows last = split_band(4, {2000000000, 2000000000});
  EXPECT_EQ(last.end, 4);
  EXPECT_LE(last.start, last.end);
  // The largest picture in the most bands: the last band is empty, and the
  // band halfway up holds the middle row.
  const band_rows top = split_band(65535, {2147483647, 2147483647});
  EXPECT_EQ(top.end, 65535);
  EXPECT_TRUE(top.empty());
  const band_rows middle = split_band(65535, {1073741824, 2147483647});
  EXPECT_EQ(middle.start, 32767);
  EXPECT_EQ(middle.end, 32768);
}

}  // namespace
}  // namespace sciray
