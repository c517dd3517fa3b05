// lanes_sse2.h - two lanes of doubles in an SSE2 register, which every
// x86-64 has. A lane mask holds all bits set in a lane where it holds.
#pragma once

#include <emmintrin.h>

namespace sciray {

struct sse2_lanes {
  static constexpr int width = 2;
  using v = __m128d;
  using m = __m128d;

  static v set1(double x) { return _mm_set1_pd(x); }
  static v load(const double* p) { return _mm_loadu_pd(p); }
  static void store(double* p, v a) { _mm_storeu_pd(p, a); }
  // base[index[lane]] in each lane.
  static v gather(const double* base, const int* index) { return _mm_set_pd(base[index[1]], base[index[0]]); }

  static v add(v a, v b) { return _mm_add_pd(a, b); }
  static v sub(v a, v b) { return _mm_sub_pd(a, b); }
  static v mul(v a, v b) { return _mm_mul_pd(a, b); }
  static v div(v a, v b) { return _mm_div_pd(a, b); }
  static v sqrt(v a) { return _mm_sqrt_pd(a); }
  static v neg(v a) { return _mm_xor_pd(a, _mm_set1_pd(-0.0)); }
  // The second operand unless a < b (MINPD), a > b (MAXPD).
  static v min(v a, v b) { return _mm_min_pd(a, b); }
  static v max(v a, v b) { return _mm_max_pd(a, b); }

  static m eq(v a, v b) { return _mm_cmpeq_pd(a, b); }
  static m lt(v a, v b) { return _mm_cmplt_pd(a, b); }
  static m le(v a, v b) { return _mm_cmple_pd(a, b); }
  static m gt(v a, v b) { return _mm_cmpgt_pd(a, b); }
  static m ge(v a, v b) { return _mm_cmpge_pd(a, b); }
  static m ngt(v a, v b) { return _mm_cmpngt_pd(a, b); }
  static m nlt(v a, v b) { return _mm_cmpnlt_pd(a, b); }
  static m neq(v a, v b) { return _mm_cmpneq_pd(a, b); }
  static m ordered(v a) { return _mm_cmpord_pd(a, a); }  // a number, not NaN

  static m both(m a, m b) { return _mm_and_pd(a, b); }
  static m either(m a, m b) { return _mm_or_pd(a, b); }
  static m except(m a, m b) { return _mm_andnot_pd(b, a); }
  static m all() { return _mm_castsi128_pd(_mm_set1_epi32(-1)); }
  static m none() { return _mm_setzero_pd(); }
  static bool any(m a) { return _mm_movemask_pd(a) != 0; }
  static unsigned bits(m a) { return static_cast<unsigned>(_mm_movemask_pd(a)); }
  static m from_bits(unsigned b) {
    return _mm_castsi128_pd(_mm_set_epi64x(-static_cast<long long>((b >> 1) & 1), -static_cast<long long>(b & 1)));
  }
  static v select(m c, v a, v b) { return _mm_or_pd(_mm_and_pd(c, a), _mm_andnot_pd(c, b)); }
};

}  // namespace sciray
