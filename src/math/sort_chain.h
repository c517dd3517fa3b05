// sort_chain.h - the order a node's objects are in when the build reaches
// it. The root lists its objects by number; every split sorts stably by one
// axis's centres, which puts that axis in front of the order the objects
// were in. So a node's objects are ordered by their centres on the axes of
// the splits above it, latest first, and then by number; an axis already in
// the chain adds nothing when it comes again, since objects equal on it are
// already in its order. With centres that are all numbers this is a strict
// order, which any sort reproduces.
#pragma once

#include <array>
#include <cstdint>

#include "math/bounding_box.h"

namespace sciray {

struct sort_chain {
  std::array<int, 3> axis{};
  int length = 0;

  // The chain after a stable sort on axis `a`.
  sort_chain then(int a) const {
    sort_chain c;
    c.axis[c.length++] = a;
    for (int k = 0; k < length; ++k)
      if (axis[k] != a) c.axis[c.length++] = axis[k];
    return c;
  }

  // Whether object `a` (box `box_a`) comes before object `b` in this order.
  bool before(const solid_box& box_a, std::uint32_t a, const solid_box& box_b, std::uint32_t b) const {
    for (int k = 0; k < length; ++k) {
      const double ca = box_a.centre(axis[k]), cb = box_b.centre(axis[k]);
      if (ca < cb) return true;
      if (cb < ca) return false;
    }
    return a < b;
  }
};

}  // namespace sciray
