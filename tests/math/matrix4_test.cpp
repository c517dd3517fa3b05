// matrix4_test.cpp - Gauss-Jordan inversion: pivoting, exact division, singular input.
#include "math/matrix4.h"

#include <gtest/gtest.h>

namespace sciray {
namespace {

TEST(matrix4, inversion) {
  // Zeros on the diagonal need row swaps; this scaled permutation's inverse is exact.
  const matrix4 m{{{0, 2, 0, 0}, {4, 0, 0, 0}, {0, 0, 0, 0.5}, {0, 0, 8, 0}}};
  matrix4 inv;
  ASSERT_TRUE(invert(m, inv));
  EXPECT_EQ(inv, (matrix4{{{0, 0.25, 0, 0}, {0.5, 0, 0, 0}, {0, 0, 0, 0.125}, {0, 0, 2, 0}}}));

  // The pivot row is divided: row 0 becomes (1, 5/3 | 1/3, 0), and clearing
  // column 1 leaves -(5/3); 5 * (1/3) would be one ulp lower.
  const matrix4 upper{{{3, 5, 0, 0}, {0, 1, 0, 0}, {0, 0, 1, 0}, {0, 0, 0, 1}}};
  ASSERT_TRUE(invert(upper, inv));
  EXPECT_EQ(inv[0][0], 1.0 / 3.0);
  EXPECT_EQ(inv[0][1], -(5.0 / 3.0));
  EXPECT_NE(inv[0][1], -(5.0 * (1.0 / 3.0)));

  // A dense matrix: m * inverse is the identity to rounding.
  const matrix4 d{{{1, 2, 3, 4}, {-2, 1, 0.5, 3}, {7, -1, 2, 0}, {0, 3, -4, 1}}};
  ASSERT_TRUE(invert(d, inv));
  for (int r = 0; r < 4; ++r)
    for (int c = 0; c < 4; ++c) {
      double sum = 0.0;
      for (int k = 0; k < 4; ++k) sum += d[r][k] * inv[k][c];
      EXPECT_NEAR(sum, r == c ? 1.0 : 0.0, 1e-12) << r << "," << c;
    }
}

TEST(matrix4, singular_matrices_fail) {
  // Row 1 is twice row 0: after the first elimination column 1 holds only zeros.
  const matrix4 dependent{{{1, 2, 0, 0}, {2, 4, 0, 0}, {0, 0, 1, 0}, {0, 0, 0, 1}}};
  const matrix4 zero_column{{{1, 0, 0, 0}, {0, 0, 0, 0}, {0, 0, 1, 0}, {0, 0, 0, 1}}};
  matrix4 inv;
  EXPECT_FALSE(invert(dependent, inv));
  EXPECT_FALSE(invert(zero_column, inv));
}

}  // namespace
}  // namespace sciray
