// rand_stream_test.cpp - the project's random stream is the C library's.
#include "math/rand_stream.h"

#include <gtest/gtest.h>

#include <cstdlib>

namespace sciray {
namespace {

TEST(rand_stream, equals_the_c_library_stream_from_its_start) {
  std::srand(1);  // seed 1 is the state of a stream nobody has seeded
  rand_stream stream;
  for (int i = 0; i < 100000; ++i) ASSERT_EQ(stream.next(), std::rand()) << "value " << i;
}

TEST(rand_stream, two_streams_are_independent_objects) {
  rand_stream a, b;
  const int first = a.next();
  a.next();
  EXPECT_EQ(b.next(), first);
}

}  // namespace
}  // namespace sciray
