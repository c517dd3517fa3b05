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

TEST(band_split, many_more_bands_than_rows_stay_in_range) {
  const band_rows last = split_band(4, {2000000000, 2000000000});
  EXPECT_EQ(last.end, 4);
  EXPECT_LE(last.start, last.end);
}

}  // namespace
}  // namespace sciray
