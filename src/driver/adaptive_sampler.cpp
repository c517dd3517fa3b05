// adaptive_sampler.cpp - the recursive square test over the sample slots.
#include "driver/adaptive_sampler.h"

#include <cmath>

namespace sciray {

adaptive_sampler::adaptive_sampler(const screen_window& window, double tolerance, int depth)
    : window_(window),
      tolerance_(clamp_above_1(clamp_below_0(tolerance))),
      depth_left_(clamp_int(depth, 1, 4) - 1),
      step_(2 << depth_left_),
      inner_(static_cast<std::size_t>(step_ - 1) * (step_ + 1)) {}

void adaptive_sampler::clear(sample_edge& edge) const {
  edge.assign(static_cast<std::size_t>(step_) * window_.columns + 1, sample_slot{});
}

void adaptive_sampler::sample_lower_edge(sample_edge& edge, int r, const pixel_source& source) const {
  clear(edge);
  const double y = window_.edge_y(r);
  for (int c = 0; c <= window_.columns; ++c) {
    sample_slot& s = edge[static_cast<std::size_t>(c) * step_];
    s.c = source(window_.edge_x(c), y);
    s.computed = 1;
  }
}

sample_slot& adaptive_sampler::at(int j, int i) {
  if (j == 0) return (*lower_)[static_cast<std::size_t>(i)];
  if (j == step_) return (*upper_)[static_cast<std::size_t>(i)];
  return inner_[static_cast<std::size_t>(j - 1) * (step_ + 1) + (i - column_ * step_)];
}

void adaptive_sampler::sample_into(int j, int i, double x, double y) {
  sample_slot& s = at(j, i);
  s.c = (*source_)(x, y);
  s.computed = 1;
}

void adaptive_sampler::begin_pixel(int c) {
  // The left column of this pixel's inner slots is the right column of the
  // pixel before it; the rest start empty.
  for (int j = 0; j < step_ - 1; ++j) {
    sample_slot* row = &inner_[static_cast<std::size_t>(j) * (step_ + 1)];
    row[0] = c == 0 ? sample_slot{} : row[step_];
    for (int i = 1; i <= step_; ++i) row[i] = sample_slot{};
  }
  column_ = c;
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
