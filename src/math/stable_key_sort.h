// stable_key_sort.h - sorts items by a double key, keeping the order of
// items whose keys are equal: the sort that splits the bounding hierarchy.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

namespace sciray {

struct keyed_item {
  double key;
  std::uint32_t item;
};

// Sorts `items` by key, ascending and stable. `scratch` is working space,
// grown as needed and kept for the next call. The result is the one every
// stable sort with `<` gives (-0 and +0 are equal keys); keys that are not
// numbers leave `<` without a strict order, and such a list is sorted by
// std::stable_sort's own rule.
void stable_sort_by_key(std::span<keyed_item> items, std::vector<keyed_item>& scratch);

}  // namespace sciray
