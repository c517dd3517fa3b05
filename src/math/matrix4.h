// matrix4.h - 4x4 row-major matrices and their inversion.
#pragma once

#include <array>

namespace sciray {

using matrix4 = std::array<std::array<double, 4>, 4>;

// Gauss-Jordan elimination with partial pivoting on [m | I]. Returns false,
// leaving `inverse` unspecified, when a pivot is exactly 0.
bool invert(const matrix4& m, matrix4& inverse);

}  // namespace sciray
