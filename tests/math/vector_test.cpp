// vector_test.cpp - the vector types' arithmetic, normalisation and printing.
#include "math/vector.h"

#include <gtest/gtest.h>

#include <sstream>

namespace sciray {
namespace {

TEST(vector_types, normalise_zero_and_axis) {
  EXPECT_EQ(normalise(vector(0, 0, 0)), vector(1, 0, 0));
  EXPECT_EQ(normalise(vector(0, 0, -2)), vector(0, 0, -1));
}

}  // namespace
}  // namespace sciray
