// box_pair.h - the walk's box test, made on both children of a node at
// once with SSE2 (two doubles per register, present on every x86-64).
//
// The test is the slab rule of the scalar box test, operation for operation:
// the same subtractions and products per axis, the same comparisons in the
// same operand order (MINPD and MAXPD return their second operand when the
// first comparison fails, exactly as `a < b ? a : b` does, NaN included), so
// both lanes give the bits the scalar test gives. An empty box is stored as
// NaN bounds, which every branch of the rule rejects.
#pragma once

#include <emmintrin.h>

#include <limits>

#include "math/ray.h"

namespace sciray {

// The ray as the box test uses it: origin and reciprocal direction per axis,
// each in both lanes, and which direction components are exactly 0.
struct box_ray {
  explicit box_ray(const ray& r) {
    for (int a = 0; a < 3; ++a) {
      origin[a] = _mm_set1_pd(r.origin[a]);
      inverse[a] = _mm_set1_pd(r.inv_dir[a]);
      flat[a] = r.dir[a] == 0.0;
    }
    any_flat = flat[0] || flat[1] || flat[2];
  }
  __m128d origin[3], inverse[3];
  bool flat[3];
  bool any_flat;
};

// Two boxes side by side: lane 0 and lane 1 of each bound.
struct box_pair {
  alignas(16) double lo[3][2];
  alignas(16) double hi[3][2];
};

struct box_pair_result {
  int entered;       // bit 0: box 0 entered, bit 1: box 1
  int inside;        // bit 0: the origin lies in box 0, bit 1: in box 1
  double entry[2];   // entry distance of an entered box; 0 when the origin is inside it
  double retest[2];  // an entered box is still entered under a shorter distance d while !(retest > d)
};

// A box is entered when the origin lies in it (ends included), or when on
// every axis the ray meets its slab ahead of the origin (an axis the ray runs
// parallel to must hold the origin) and the latest slab entry is neither past
// the earliest slab exit nor past `distance`. A caller that knows the origin
// lies in neither box (it lies outside their parent's) passes false for
// `origin_may_be_inside`, and the inside test is left out; one whose ray has
// no zero direction component passes false for `may_be_flat`.
template <bool origin_may_be_inside, bool may_be_flat = true>
[[gnu::always_inline]] inline box_pair_result enter_boxes(const box_pair& boxes, const box_ray& r, double distance) {
  const __m128d all = _mm_castsi128_pd(_mm_set1_epi32(-1));
  __m128d inside = origin_may_be_inside ? all : _mm_setzero_pd(), miss = _mm_setzero_pd();
  __m128d near = _mm_set1_pd(-1e20), far = _mm_set1_pd(1e20);
  // One axis; written out three times below so that the ray stays in registers.
  const auto slab = [&](int a) {
    const __m128d lo = _mm_load_pd(boxes.lo[a]), hi = _mm_load_pd(boxes.hi[a]);
    const auto within = [&]() { return _mm_and_pd(_mm_cmple_pd(lo, r.origin[a]), _mm_cmple_pd(r.origin[a], hi)); };
    if (origin_may_be_inside) inside = _mm_and_pd(inside, within());
    if (may_be_flat && r.flat[a]) {
      miss = _mm_or_pd(miss, _mm_andnot_pd(within(), all));
      return;
    }
    const __m128d t1 = _mm_mul_pd(_mm_sub_pd(lo, r.origin[a]), r.inverse[a]);
    const __m128d t2 = _mm_mul_pd(_mm_sub_pd(hi, r.origin[a]), r.inverse[a]);
    const __m128d t_near = _mm_min_pd(t1, t2);  // t1 < t2 ? t1 : t2
    const __m128d t_far = _mm_max_pd(t2, t1);   // t1 < t2 ? t2 : t1
    miss = _mm_or_pd(miss, _mm_cmpngt_pd(t_far, _mm_setzero_pd()));
    near = _mm_max_pd(t_near, near);  // raised by a later entry
    far = _mm_min_pd(t_far, far);     // lowered by an earlier exit
  };
  slab(0);
  slab(1);
  slab(2);
  miss = _mm_or_pd(miss, _mm_or_pd(_mm_cmpgt_pd(near, far), _mm_cmpgt_pd(near, _mm_set1_pd(distance))));

  box_pair_result result;
  result.entered = _mm_movemask_pd(_mm_or_pd(inside, _mm_andnot_pd(miss, all)));
  result.inside = _mm_movemask_pd(inside);
  // From inside: entry 0, and no shorter distance leaves the box.
  const __m128d never = _mm_set1_pd(-std::numeric_limits<double>::infinity());
  _mm_storeu_pd(result.entry, _mm_andnot_pd(inside, near));
  _mm_storeu_pd(result.retest, _mm_or_pd(_mm_and_pd(inside, never), _mm_andnot_pd(inside, near)));
  return result;
}

}  // namespace sciray
