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

TEST(rand_stream, discarding_jumps_where_drawing_goes) {
  // Short and long jumps, from the start and from odd places in the ring;
  // both streams count the values they passed.
  rand_stream walked;
  std::uint64_t passed = 0;
  for (const std::uint64_t count : {0, 1, 5, 63, 64, 65, 1000, 33, 34, 123457, 2000000}) {
    passed += count + 40;
    rand_stream jumped = walked;
    jumped.discard(count);
    for (std::uint64_t i = 0; i < count; ++i) walked.next();
    ASSERT_EQ(jumped.drawn(), walked.drawn()) << count;
    for (int i = 0; i < 40; ++i) ASSERT_EQ(jumped.next(), walked.next()) << count << " value " << i;
  }
  EXPECT_EQ(walked.drawn(), passed);
}

}  // namespace
}  // namespace sciray
