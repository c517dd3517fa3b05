// hit_record.h - what a traced ray learns about its nearest hit.
#pragma once

#include "geometry/primitive_ref.h"
#include "math/vector.h"

namespace sciray {

struct hit_record {
  double distance = 1e20;  // search limit before, hit distance after
  primitive_ref object;    // nearest primitive hit so far; none when nothing was hit
  direction normal;        // unit surface normal at the hit
  double value = 0.0;      // interpolated data value (cylinders, triangles)
};

// The first root admissible for every shape.
inline constexpr double self_hit_tolerance = 1e-6;

}  // namespace sciray
