// matrix4.cpp - inversion of 4x4 matrices by Gauss-Jordan elimination.
#include "math/matrix4.h"

#include <cmath>
#include <utility>

namespace sciray {

bool invert(const matrix4& m, matrix4& inverse) {
  // The working matrix [m | I], one row of eight entries per matrix row.
  std::array<std::array<double, 8>, 4> a{};
  for (int r = 0; r < 4; ++r) {
    for (int c = 0; c < 4; ++c) a[r][c] = m[r][c];
    a[r][4 + r] = 1.0;
  }

  for (int col = 0; col < 4; ++col) {
    // Partial pivoting: the largest magnitude from the diagonal down, the
    // first such row on ties.
    int pivot_row = col;
    for (int r = col + 1; r < 4; ++r)
      if (std::fabs(a[r][col]) > std::fabs(a[pivot_row][col])) pivot_row = r;
    if (a[pivot_row][col] == 0.0) return false;
    std::swap(a[col], a[pivot_row]);

    const double pivot = a[col][col];
    for (double& v : a[col]) v = v / pivot;

    for (int r = 0; r < 4; ++r) {
      if (r == col) continue;
      const double f = a[r][col];
      for (int c = 0; c < 8; ++c) a[r][c] = a[r][c] - f * a[col][c];
    }
  }

  for (int r = 0; r < 4; ++r)
    for (int c = 0; c < 4; ++c) inverse[r][c] = a[r][4 + c];
  return true;
}

}  // namespace sciray
