// adaptive_sampler.cpp - the grid cache and the recursive square test.
#include "driver/adaptive_sampler.h"

#include <cmath>

namespace sciray {

adaptive_sampler::adaptive_sampler(const pixel_source& source, const screen_window& window, int band_start,
                                   double tolerance, int depth)
    : source_(source),
      window_(window),
      tolerance_(clamp_above_1(clamp_below_0(tolerance))),
      depth_left_(clamp_int(depth, 1, 4) - 1),
      step_(2 << depth_left_),
      columns_(static_cast<std::size_t>(step_) * window.columns + 1),
      grid_(static_cast<std::size_t>(step_ + 1) * columns_) {
  const double y = window_.edge_y(band_start);
  for (int c = 0; c <= window_.columns; ++c) sample_into(0, c * step_, window_.edge_x(c), y);
}

void adaptive_sampler::sample_into(int j, int i, double x, double y) {
  slot& s = at(j, i);
  s.c = source_(x, y);
  s.computed = 1;
}

void adaptive_sampler::begin_row(int r) {
  y_low_ = window_.edge_y(r);
  y_high_ = window_.edge_y(r + 1);
  sample_into(step_, 0, window_.edge_x(0), y_high_);
}

colour adaptive_sampler::pixel(int c) {
  const double x0 = window_.edge_x(c), x1 = window_.edge_x(c + 1);
  sample_into(step_, (c + 1) * step_, x1, y_high_);
  return sample_square(x0, y_low_, x1, y_high_, c * step_, 0, (c + 1) * step_, step_);
}

void adaptive_sampler::end_row() {
  for (std::size_t i = 0; i < columns_; ++i) at(0, static_cast<int>(i)) = at(step_, static_cast<int>(i));
  for (int j = 1; j <= step_; ++j)
    for (std::size_t i = 0; i < columns_; ++i) at(j, static_cast<int>(i)).computed = 0;
}

colour adaptive_sampler::sample_square(double x0, double y0, double x1, double y1, int i0, int j0, int i1, int j1) {
  const double xm = (x0 + x1) / 2, ym = (y0 + y1) / 2;
  const int im = (i0 + i1) / 2, jm = (j0 + j1) / 2;
  const colour c00 = at(j0, i0).c, c10 = at(j0, i1).c, c01 = at(j1, i0).c, c11 = at(j1, i1).c;
  sample_into(jm, im, xm, ym);
  const colour m = at(jm, im).c;

  const colour e = 0.5 * m + 0.125 * (c00 + c10 + c01 + c11);
  if (depth_left_ == 0) return e;

  bool close = true;
  for (const colour* s : {&c00, &c10, &c01, &c11, &m})
    for (int ch = 0; ch < 3 && close; ++ch) close = std::fabs(e[ch] - (*s)[ch]) < tolerance_;
  if (close) return e;

  if (!at(j0, im).computed) sample_into(j0, im, xm, y0);
  if (!at(jm, i0).computed) sample_into(jm, i0, x0, ym);
  if (!at(jm, i1).computed) sample_into(jm, i1, x1, ym);
  if (!at(j1, im).computed) sample_into(j1, im, xm, y1);

  --depth_left_;
  const colour q00 = sample_square(x0, y0, xm, ym, i0, j0, im, jm);
  const colour q10 = sample_square(xm, y0, x1, ym, im, j0, i1, jm);
  const colour q01 = sample_square(x0, ym, xm, y1, i0, jm, im, j1);
  const colour q11 = sample_square(xm, ym, x1, y1, im, jm, i1, j1);
  ++depth_left_;
  return 0.25 * (q00 + q10 + q01 + q11);
}

}  // namespace sciray
