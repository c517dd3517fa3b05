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

band_choice parse(std::vector<const char*> args) {
  args.insert(args.begin(), {"sciray", "in.ren", "out.rgb"});
  return parse_band_arguments(static_cast<int>(args.size()), args.data());
}

TEST(band_arguments, good_and_silently_ignored_forms) {
  EXPECT_EQ(parse({"-band", "2/5"}).index, 2);
  EXPECT_EQ(parse({"-band", "2/5"}).count, 5);
  EXPECT_EQ(parse({"-band", "3/3", "extra"}).index, 3);
  for (const char* bad : {"0/3", "4/3", "x", "2", "-1/3", "1/0", "/3"}) {
    const band_choice b = parse({"-band", bad});
    EXPECT_EQ(b.index, 1) << bad;
    EXPECT_EQ(b.count, 1) << bad;
  }
  EXPECT_EQ(parse({"-band"}).count, 1);             // the fourth argument is missing
  EXPECT_EQ(parse({"-bands", "2/5"}).count, 1);     // not the exact word
  EXPECT_EQ(parse({"band", "2/5"}).count, 1);
}

}  // namespace
}  // namespace sciray
