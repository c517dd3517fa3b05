// lanes_avx512.h - eight lanes of doubles in an AVX-512 register, lane
// masks in mask registers, with the comparison predicates of the SSE2
// instructions (lanes_sse2.h). Included only after the compiler has been
// switched to AVX-512 (see geometry/group_intersect.h), by the one file
// that builds that path.
#pragma once

namespace sciray {

struct avx512_lanes {
  static constexpr int width = 8;
  using v = __m512d;
  using m = __mmask8;
  // Square root, min, max and gather are masked with every lane kept: GCC
  // 12 warns on the plain forms' undefined pass-through operand.

  static v set1(double x) { return _mm512_set1_pd(x); }
  static v load(const double* p) { return _mm512_loadu_pd(p); }
  static void store(double* p, v a) { _mm512_storeu_pd(p, a); }
  // base[index[lane]] in each lane.
  static v gather(const double* base, const int* index) {
    return _mm512_mask_i32gather_pd(_mm512_setzero_pd(), all(),
                                    _mm256_loadu_si256(reinterpret_cast<const __m256i*>(index)), base, 8);
  }

  static v add(v a, v b) { return _mm512_add_pd(a, b); }
  static v sub(v a, v b) { return _mm512_sub_pd(a, b); }
  static v mul(v a, v b) { return _mm512_mul_pd(a, b); }
  static v div(v a, v b) { return _mm512_div_pd(a, b); }
  static v sqrt(v a) { return _mm512_maskz_sqrt_pd(0xff, a); }
  static v neg(v a) { return _mm512_castsi512_pd(_mm512_xor_si512(_mm512_castpd_si512(a), _mm512_set1_epi64(INT64_MIN))); }
  static v min(v a, v b) { return _mm512_maskz_min_pd(0xff, a, b); }
  static v max(v a, v b) { return _mm512_maskz_max_pd(0xff, a, b); }

  static m eq(v a, v b) { return _mm512_cmp_pd_mask(a, b, _CMP_EQ_OQ); }
  static m lt(v a, v b) { return _mm512_cmp_pd_mask(a, b, _CMP_LT_OS); }
  static m le(v a, v b) { return _mm512_cmp_pd_mask(a, b, _CMP_LE_OS); }
  static m gt(v a, v b) { return _mm512_cmp_pd_mask(a, b, _CMP_GT_OS); }
  static m ge(v a, v b) { return _mm512_cmp_pd_mask(a, b, _CMP_GE_OS); }
  static m ngt(v a, v b) { return _mm512_cmp_pd_mask(a, b, _CMP_NGT_US); }
  static m nlt(v a, v b) { return _mm512_cmp_pd_mask(a, b, _CMP_NLT_US); }
  static m neq(v a, v b) { return _mm512_cmp_pd_mask(a, b, _CMP_NEQ_UQ); }
  static m ordered(v a) { return _mm512_cmp_pd_mask(a, a, _CMP_ORD_Q); }

  static m both(m a, m b) { return static_cast<m>(a & b); }
  static m either(m a, m b) { return static_cast<m>(a | b); }
  static m except(m a, m b) { return static_cast<m>(a & ~b); }
  static m all() { return 0xff; }
  static m none() { return 0; }
  static bool any(m a) { return a != 0; }
  static unsigned bits(m a) { return a; }
  static m from_bits(unsigned b) { return static_cast<m>(b); }
  static v select(m c, v a, v b) { return _mm512_mask_blend_pd(c, b, a); }
};

}  // namespace sciray
