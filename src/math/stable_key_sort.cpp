// stable_key_sort.cpp - a least-significant-digit radix sort on the high
// half of the keys' bits, then a sort of each run of equal high halves by
// the whole key. Building the hierarchy of a large scene sorts all its
// objects by their centres on each axis; a comparison sort made that the
// slowest part of loading. Keys rarely share their high 32 bits but for
// being equal, and the short runs take an insertion sort; a scene far from
// the origin and small beside that distance (geographic coordinates, say)
// puts many different keys in one run, which takes a merge sort.
#include "math/stable_key_sort.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <utility>

namespace sciray {

namespace {

// Short lists: insertion sort, stable by construction.
constexpr std::size_t short_list = 48;

void insertion_sort(std::span<keyed_item> items) {
  for (std::size_t i = 1; i < items.size(); ++i) {
    const keyed_item moving = items[i];
    std::size_t j = i;
    for (; j > 0 && moving.key < items[j - 1].key; --j) items[j] = items[j - 1];
    items[j] = moving;
  }
}

// The key's bits as an unsigned number in the key's order: -0 is made +0,
// negative keys have all bits flipped, positive ones the sign bit set.
std::uint64_t ordered_bits(double key) {
  const std::uint64_t bits = std::bit_cast<std::uint64_t>(key == 0.0 ? 0.0 : key);
  return (bits >> 63) ? ~bits : bits | (std::uint64_t{1} << 63);
}

}  // namespace

void stable_sort_by_key(std::span<keyed_item> items, std::vector<keyed_item>& scratch) {
  const std::size_t n = items.size();
  const auto by_key = [](const keyed_item& a, const keyed_item& b) { return a.key < b.key; };
  if (std::any_of(items.begin(), items.end(), [](const keyed_item& i) { return std::isnan(i.key); })) {
    std::stable_sort(items.begin(), items.end(), by_key);
    return;
  }
  if (n <= short_list) {
    insertion_sort(items);
    return;
  }

  // One pass counts the four high bytes; a byte the same in every key is skipped.
  std::array<std::array<std::uint32_t, 256>, 4> counts{};
  for (const keyed_item& i : items) {
    const std::uint64_t bits = ordered_bits(i.key);
    for (int b = 0; b < 4; ++b) ++counts[b][(bits >> (32 + 8 * b)) & 0xff];
  }
  if (scratch.size() < n) scratch.resize(n);
  keyed_item* from = items.data();
  keyed_item* to = scratch.data();
  for (int b = 0; b < 4; ++b) {
    std::array<std::uint32_t, 256>& count = counts[b];
    if (std::find(count.begin(), count.end(), n) != count.end()) continue;
    std::uint32_t start = 0;
    for (std::uint32_t& c : count) start += std::exchange(c, start);
    const int shift = 32 + 8 * b;
    for (std::size_t i = 0; i < n; ++i) to[count[(ordered_bits(from[i].key) >> shift) & 0xff]++] = from[i];
    std::swap(from, to);
  }
  if (from != items.data()) std::copy(from, from + n, items.data());
  // Runs of equal high halves, in the order they came, by the whole key.
  for (std::size_t start = 0, end = 0; start < n; start = end) {
    const std::uint64_t high = ordered_bits(items[start].key) >> 32;
    for (end = start + 1; end < n && ordered_bits(items[end].key) >> 32 == high; ++end) {
    }
    const std::span<keyed_item> run = items.subspan(start, end - start);
    if (run.size() <= short_list)
      insertion_sort(run);
    else
      std::stable_sort(run.begin(), run.end(), by_key);
  }
}

}  // namespace sciray
