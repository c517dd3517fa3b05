// hit_record.h - what a traced ray learns about its nearest hit.
#pragma once

#include "math/vector.h"

namespace sciray {

class primitive;

struct hit_record {
  double distance = 1e20;             // search limit before, hit distance after
  const primitive* object = nullptr;  // nearest primitive hit so far
  direction normal;                   // unit surface normal at the hit
  double value = 0.0;                 // interpolated data value (cylinders, triangles)
  vector surface_coords;              // (u, v, 0)
};

}  // namespace sciray
