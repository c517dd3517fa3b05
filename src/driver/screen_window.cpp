// screen_window.cpp - the picture window in view units.
#include "driver/screen_window.h"

#include <cmath>

namespace sciray {

screen_window make_screen_window(double view_width, double view_height, int columns, int rows) {
  double ex = view_width, ey = view_height;
  const double aspect = static_cast<double>(rows) / static_cast<double>(columns);
  if (ey / ex > aspect) {
    ex = ey / aspect;
  } else if (ey / ex < aspect) {
    ey = aspect * ex;
  }
  screen_window w;
  w.width = std::fabs(ex);
  w.height = std::fabs(ey);
  w.columns = columns < 1 ? 1 : columns;
  w.rows = rows < 1 ? 1 : rows;
  w.pixel_width = w.width / w.columns;
  w.pixel_height = w.height / w.rows;
  return w;
}

}  // namespace sciray
