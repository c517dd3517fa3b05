// expect_near.h - the per-channel near-comparison of two vectors (colours,
// directions) that the tests share.
#pragma once

#include <gtest/gtest.h>

#include "math/vector.h"

namespace sciray::testing {

inline void expect_near(const vector& got, const vector& want, double tolerance = 1e-12) {
  for (int i = 0; i < 3; ++i) EXPECT_NEAR(got[i], want[i], tolerance) << "component " << i;
}

}  // namespace sciray::testing
