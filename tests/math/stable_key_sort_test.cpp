// stable_key_sort_test.cpp - the radix sort against std::stable_sort, on
// the key sets whose bits take its different paths.
#include "math/stable_key_sort.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <vector>

namespace sciray {
namespace {

// Items numbered in order, so that a wrong order of equal keys shows.
std::vector<keyed_item> numbered(const std::vector<double>& keys) {
  std::vector<keyed_item> items;
  for (std::uint32_t i = 0; i < keys.size(); ++i) items.push_back({keys[i], i});
  return items;
}

void expect_stable_sorted(const std::vector<double>& keys, const char* what) {
  std::vector<keyed_item> expected = numbered(keys), sorted = numbered(keys), scratch;
  std::stable_sort(expected.begin(), expected.end(), [](const keyed_item& a, const keyed_item& b) { return a.key < b.key; });
  stable_sort_by_key(sorted, scratch);
  for (std::size_t i = 0; i < keys.size(); ++i) ASSERT_EQ(sorted[i].item, expected[i].item) << what << ", place " << i;
}

TEST(stable_key_sort, orders_as_a_stable_comparison_sort) {
  std::mt19937 gen(17);
  std::uniform_real_distribution<double> spread(-100, 100);
  std::uniform_int_distribution<int> few(0, 20);

  std::vector<double> scattered, repeated, far_away, short_list;
  for (int i = 0; i < 20000; ++i) {
    scattered.push_back(spread(gen));
    repeated.push_back(few(gen) * 0.5 - 3);  // long runs of equal keys, signed zeros among them
    // Far from the origin and close together: most keys share their high
    // 32 bits but differ below them.
    far_away.push_back(5e6 + spread(gen) * 1e-2 + (i % 7 == 0 ? 0.0 : 1e-9 * i));
  }
  repeated[5] = -0.0;
  for (int i = 0; i < 40; ++i) short_list.push_back(few(gen) - 10.0);

  expect_stable_sorted(scattered, "scattered");
  expect_stable_sorted(repeated, "repeated");
  expect_stable_sorted(far_away, "far away");
  expect_stable_sorted(short_list, "short");
}

}  // namespace
}  // namespace sciray
