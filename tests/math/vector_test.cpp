// vector_test.cpp - the vector types' arithmetic, normalisation and printing.
#include "math/vector.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <sstream>

namespace sciray {
namespace {

TEST(vector_types, normalise_length_and_products) {
  EXPECT_EQ(normalise(vector(0, 0, 0)), vector(1, 0, 0));
  EXPECT_EQ(normalise(vector(0, 0, -2)), vector(0, 0, -1));
  EXPECT_EQ(length(vector(2, 3, 6)), 7.0);
  EXPECT_EQ(dot(vector(1, 2, 3), vector(4, -5, 6)), 12.0);
  EXPECT_EQ(cross(vector(1, 0, 0), vector(0, 1, 0)), vector(0, 0, 1));
  EXPECT_EQ(cross(vector(0, 0, -1), vector(0, 1, 0)), vector(1, 0, 0));
  // Parallel vectors have a zero cross product: how an unusable up vector shows.
  EXPECT_EQ(length(cross(vector(0, 0, 2), vector(0, 0, -5))), 0.0);
  EXPECT_EQ(vector(1, 2, 3) * vector(2, 0.5, -1), vector(2, 1, -3));
}

TEST(vector_types, length_sums_z_first) {
  // Over many vectors the two summation orders round differently somewhere;
  // length must always agree with the z-first order.
  std::uint64_t state = 12345;
  auto next = [&] {
    state = state * 6364136223846793005u + 1442695040888963407u;
    return static_cast<double>(state >> 11) / 9007199254740992.0 * 2.0 - 1.0;
  };
  int orders_differ = 0;
  for (int i = 0; i < 10000; ++i) {
    const vector v(next(), next() * 1e-3, next() * 1e3);
    EXPECT_EQ(length(v), std::sqrt(v.z * v.z + v.y * v.y + v.x * v.x));
    orders_differ += std::sqrt(v.x * v.x + v.y * v.y + v.z * v.z) != length(v);
  }
  EXPECT_GT(orders_differ, 0);
}

TEST(vector_types, printed_forms_name_the_type) {
  std::ostringstream out;
  out << vector(1, 2, 3) << ' ' << position(1, 2, 3) << ' ' << direction(0, 0, 1);
  EXPECT_EQ(out.str(), "vector(1, 2, 3) position(1, 2, 3) direction(0, 0, 1)");
}

}  // namespace
}  // namespace sciray
