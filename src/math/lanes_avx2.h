// lanes_avx2.h - four lanes of doubles in an AVX register, with the
// comparison predicates of the SSE2 instructions (lanes_sse2.h). Included
// only after the compiler has been switched to AVX2 (see
// geometry/group_intersect.h), by the one file that builds that path.
#pragma once

namespace sciray {

struct avx2_lanes {
  static constexpr int width = 4;
  using v = __m256d;
  using m = __m256d;

  static v set1(double x) { return _mm256_set1_pd(x); }
  static v load(const double* p) { return _mm256_loadu_pd(p); }
  static void store(double* p, v a) { _mm256_storeu_pd(p, a); }
  // base[index[lane]] in each lane.
  static v gather(const double* base, const int* index) {
    // With every lane kept: GCC 12 warns on the plain form's undefined operand.
    return _mm256_mask_i32gather_pd(_mm256_setzero_pd(), base, _mm_loadu_si128(reinterpret_cast<const __m128i*>(index)),
                                    all(), 8);
  }

  static v add(v a, v b) { return _mm256_add_pd(a, b); }
  static v sub(v a, v b) { return _mm256_sub_pd(a, b); }
  static v mul(v a, v b) { return _mm256_mul_pd(a, b); }
  static v div(v a, v b) { return _mm256_div_pd(a, b); }
  static v sqrt(v a) { return _mm256_sqrt_pd(a); }
  static v neg(v a) { return _mm256_xor_pd(a, _mm256_set1_pd(-0.0)); }
  static v min(v a, v b) { return _mm256_min_pd(a, b); }
  static v max(v a, v b) { return _mm256_max_pd(a, b); }

  static m eq(v a, v b) { return _mm256_cmp_pd(a, b, _CMP_EQ_OQ); }
  static m lt(v a, v b) { return _mm256_cmp_pd(a, b, _CMP_LT_OS); }
  static m le(v a, v b) { return _mm256_cmp_pd(a, b, _CMP_LE_OS); }
  static m gt(v a, v b) { return _mm256_cmp_pd(a, b, _CMP_GT_OS); }
  static m ge(v a, v b) { return _mm256_cmp_pd(a, b, _CMP_GE_OS); }
  static m ngt(v a, v b) { return _mm256_cmp_pd(a, b, _CMP_NGT_US); }
  static m nlt(v a, v b) { return _mm256_cmp_pd(a, b, _CMP_NLT_US); }
  static m neq(v a, v b) { return _mm256_cmp_pd(a, b, _CMP_NEQ_UQ); }
  static m ordered(v a) { return _mm256_cmp_pd(a, a, _CMP_ORD_Q); }

  static m both(m a, m b) { return _mm256_and_pd(a, b); }
  static m either(m a, m b) { return _mm256_or_pd(a, b); }
  static m except(m a, m b) { return _mm256_andnot_pd(b, a); }
  static m all() { return _mm256_castsi256_pd(_mm256_set1_epi32(-1)); }
  static m none() { return _mm256_setzero_pd(); }
  static bool any(m a) { return _mm256_movemask_pd(a) != 0; }
  static unsigned bits(m a) { return static_cast<unsigned>(_mm256_movemask_pd(a)); }
  static m from_bits(unsigned b) {
    const __m256i lane_bit = _mm256_setr_epi64x(1, 2, 4, 8);
    return _mm256_castsi256_pd(_mm256_cmpeq_epi64(_mm256_and_si256(_mm256_set1_epi64x(b), lane_bit), lane_bit));
  }
  static v select(m c, v a, v b) { return _mm256_blendv_pd(b, a, c); }
};

}  // namespace sciray
