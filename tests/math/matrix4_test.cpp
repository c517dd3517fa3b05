// matrix4_test.cpp - Gauss-Jordan inversion: pivoting, exact division, singular input.
#include "math/matrix4.h"

#include <gtest/gtest.h>

namespace sciray {
namespace {

TEST(matrix4, inversion_and_singular_input) {
  matrix4 inv;
  // Zeros on the diagonal need row swaps; this scaled permutation's inverse is exact.
  ASSERT_TRUE(invert({{{0, 2, 0, 0}, {4, 0, 0, 0}, {0, 0, 0, 0.5}, {0, 0, 8, 0}}}, inv));
  EXPECT_EQ(inv, (matrix4{{{0, 0.25, 0, 0}, {0.5, 0, 0, 0}, {0, 0, 0, 0.125}, {0, 0, 2, 0}}}));

  // The pivot row is divided: row 0 becomes (1, 5/3 | 1/3, 0), and clearing
  // column 1 leaves -(5/3), where 5 * (1/3) would be one ulp lower.
  ASSERT_TRUE(invert({{{3, 5, 0, 0}, {0, 1, 0, 0}, {0, 0, 1, 0}, {0, 0, 0, 1}}}, inv));
  EXPECT_EQ(inv[0][0], 1.0 / 3.0);
  EXPECT_EQ(inv[0][1], -(5.0 / 3.0));

  // A dense matrix times its inverse is the identity to rounding.
  const matrix4 d{{{1, 2, 3, 4}, {-2, 1, 0.5, 3}, {7, -1, 2, 0}, {0, 3, -4, 1}}};
  ASSERT_TRUE(invert(d, inv));
  for (int r = 0; r < 4; ++r)
    for (int c = 0; c < 4; ++c)
      EXPECT_NEAR(d[r][0] * inv[0][c] + d[r][1] * inv[1][c] + d[r][2] * inv[2][c] + d[r][3] * inv[3][c], r == c, 1e-12);

  // A tiny leading entry: taken as the pivot it would swamp row 1 (1 - 1e20
  // is -1e20) and lose the true inverse; the larger pivot keeps it.
  ASSERT_TRUE(invert({{{1e-20, 1, 0, 0}, {1, 1, 0, 0}, {0, 0, 1, 0}, {0, 0, 0, 1}}}, inv));
  EXPECT_EQ(inv[0][0], -1.0);
  EXPECT_EQ(inv[0][1], 1.0);
  EXPECT_EQ(inv[1][0], 1.0);

  // Singular: row 1 twice row 0 leaves column 1 without a pivot; so does a zero row.
  EXPECT_FALSE(invert({{{1, 2, 0, 0}, {2, 4, 0, 0}, {0, 0, 1, 0}, {0, 0, 0, 1}}}, inv));
  EXPECT_FALSE(invert({{{1, 0, 0, 0}, {0, 0, 0, 0}, {0, 0, 1, 0}, {0, 0, 0, 1}}}, inv));
}

}  // namespace
}  // namespace sciray
