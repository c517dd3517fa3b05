// weight_range.cpp - weight ranges: the one a cut-off draws, and the one
// a filter maps back to the weights before it.
#include "shading/weight_range.h"

#include <algorithm>
#include <cmath>

namespace sciray {

namespace {

constexpr double unbounded = weight_range::unbounded;

// The smallest x found, at most w, whose product with r (above 0, finite)
// reaches `low`; w * r reaches it. The quotient is rounded, so a few steps
// up may be needed; the product checks every answer.
double least_before(double low, double w, double r) {
  if (low == -unbounded) return low;
  double x = low / r;
  for (int step = 0; step < 4 && !(x * r >= low); ++step) x = std::nextafter(x, unbounded);
  return x * r >= low && x < w ? x : w;
}

// The largest x found, at least w, whose product with r stays within `high`.
double greatest_before(double high, double w, double r) {
  if (high == unbounded) return high;
  double x = high / r;
  for (int step = 0; step < 4 && !(x * r <= high); ++step) x = std::nextafter(x, -unbounded);
  return x * r <= high && x > w ? x : w;
}

}  // namespace

void weight_range::narrow(const weight_range& other) {
  for (int c = 0; c < 3; ++c) {
    low[c] = std::max(low[c], other.low[c]);
    high[c] = std::min(high[c], other.high[c]);
  }
}

weight_range no_weights() {
  weight_range r;
  r.low = colour{unbounded, unbounded, unbounded};
  r.high = colour{-unbounded, -unbounded, -unbounded};
  return r;
}

weight_range cut_off_alike(const colour& w, const colour& cutoff) {
  weight_range r;
  if (w.x < cutoff.x && w.y < cutoff.y && w.z < cutoff.z) {
    for (int c = 0; c < 3; ++c) r.high[c] = std::nextafter(cutoff[c], -unbounded);
    return r;
  }
  // Not cut off: a channel that reaches its cut-off keeps it so; the one
  // with the most to spare keeps it so for the widest range.
  int best = -1;
  for (int c = 0; c < 3; ++c) {
    if (w[c] >= cutoff[c] && (best < 0 || w[c] - cutoff[c] > w[best] - cutoff[best])) best = c;
  }
  if (best < 0) return no_weights();  // a channel that is not a number
  r.low[best] = cutoff[best];
  return r;
}

weight_range before_filter(const weight_range& after, const colour& w, const colour& filter) {
  if (!after.holds(w * filter)) return no_weights();
  weight_range r;
  for (int c = 0; c < 3; ++c) {
    const double f = filter[c];
    if (f > 0.0 && f < unbounded) {
      r.low[c] = least_before(after.low[c], w[c], f);
      r.high[c] = greatest_before(after.high[c], w[c], f);
    } else {
      // No order to lean on: only weights equal to w give equal products.
      r.low[c] = r.high[c] = w[c];
    }
  }
  return r;
}

}  // namespace sciray
