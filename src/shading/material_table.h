// material_table.h - the colour map: materials indexed from 0 to its size.
// An entry is made, default-constructed, the first time it is asked for, so
// a map of two billion entries of which a few are given holds only those.
// Entries never move once made: primitives and contour tables point at them
// and see later changes.
#pragma once

#include <unordered_map>

#include "shading/material.h"

namespace sciray {

class material_table {
 public:
  explicit material_table(int size) : size_(size) {}
  int size() const { return size_; }
  // Entry `index`, 0 <= index < size().
  material& entry(int index) { return entries_.try_emplace(index).first->second; }
  // Calls f(m) for every entry made so far.
  template <typename F>
  void for_each(F&& f) const {
    for (const auto& made : entries_) f(made.second);
  }

 private:
  int size_;
  std::unordered_map<int, material> entries_;
};

}  // namespace sciray
