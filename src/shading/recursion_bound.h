// recursion_bound.h - how deeply tracing a scene can nest: every reflected
// or refracted ray is traced inside the trace of its parent, and a shadow
// ray continued through a transparent body is tested inside the test of
// the ray before it.
#pragma once

#include <cstdint>

namespace sciray {

class tracer;

struct recursion_depth {
  std::uint64_t traces;     // trace calls open at once
  std::uint64_t transmits;  // shadow-ray tests open at once under the innermost trace
};

// A bound from the depth limit, the weight cut-off and the colours that
// weigh each new ray (a ray is traced only while its weight, the product
// of the reflective or refractive colours along its path, reaches the
// cut-off in some channel), and from the number of surfaces a shadow ray
// can cross.
recursion_depth recursion_bound(const tracer& t);

}  // namespace sciray
