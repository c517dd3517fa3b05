// lanes_plain.h - one lane of plain scalar code, in the shape of the vector
// lane types (lanes_sse2.h, lanes_avx2.h, lanes_avx512.h), so that the code
// written once for any lanes also gives the plain path the others are held
// to. Each operation is the scalar one the vector instruction does per lane.
#pragma once

#include <cmath>

namespace sciray {

struct plain_lanes {
  static constexpr int width = 1;
  using v = double;
  using m = bool;

  static v set1(double x) { return x; }
  static v load(const double* p) { return *p; }
  static void store(double* p, v a) { *p = a; }
  static v gather(const double* base, const int* index) { return base[index[0]]; }

  static v add(v a, v b) { return a + b; }
  static v sub(v a, v b) { return a - b; }
  static v mul(v a, v b) { return a * b; }
  static v div(v a, v b) { return a / b; }
  static v sqrt(v a) { return std::sqrt(a); }
  static v neg(v a) { return -a; }
  // As MINPD and MAXPD: the second operand unless the comparison holds.
  static v min(v a, v b) { return a < b ? a : b; }
  static v max(v a, v b) { return a > b ? a : b; }

  static m eq(v a, v b) { return a == b; }
  static m lt(v a, v b) { return a < b; }
  static m le(v a, v b) { return a <= b; }
  static m gt(v a, v b) { return a > b; }
  static m ge(v a, v b) { return a >= b; }
  static m ngt(v a, v b) { return !(a > b); }
  static m nlt(v a, v b) { return !(a < b); }
  static m neq(v a, v b) { return a != b; }
  static m ordered(v a) { return a == a; }  // a number, not NaN

  static m both(m a, m b) { return a && b; }
  static m either(m a, m b) { return a || b; }
  static m except(m a, m b) { return a && !b; }
  static m all() { return true; }
  static m none() { return false; }
  static bool any(m a) { return a; }
  static unsigned bits(m a) { return a ? 1u : 0u; }
  static m from_bits(unsigned b) { return (b & 1) != 0; }
  static v select(m c, v a, v b) { return c ? a : b; }
};

}  // namespace sciray
