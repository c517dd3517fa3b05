// weight_range.h - the weights, a closed interval per channel, for which
// something worked out at one weight comes out the same. A shadow ray's
// weight decides only whether the ray is cut off, and each transparent
// surface multiplies it by a filter; so what lies beyond a surface comes
// out the same for every weight that every cut-off on the way treats alike.
#pragma once

#include <limits>

#include "math/vector.h"

namespace sciray {

struct weight_range {
  static constexpr double unbounded = std::numeric_limits<double>::infinity();

  colour low{-unbounded, -unbounded, -unbounded};
  colour high{unbounded, unbounded, unbounded};

  // True when every channel of `w` lies in its interval (never for a
  // channel that is not a number).
  bool holds(const colour& w) const {
    return low.x <= w.x && w.x <= high.x && low.y <= w.y && w.y <= high.y && low.z <= w.z && w.z <= high.z;
  }
  // Keeps only the weights that `other` holds too.
  void narrow(const weight_range& other);
};

// The range that holds nothing.
weight_range no_weights();

// Weights, `w` among them, that the cut-off treats as it treats `w`: below
// `cutoff` in every channel, or not.
weight_range cut_off_alike(const colour& w, const colour& cutoff);

// Weights x, `w` among them, for which x * filter (channel by channel, as
// rounded) lies in `after`; `after` should hold w * filter, or nothing is
// held. Rounding a product keeps the order of the factors it is given, so
// each interval of `after` comes from an interval of x.
weight_range before_filter(const weight_range& after, const colour& w, const colour& filter);

}  // namespace sciray
