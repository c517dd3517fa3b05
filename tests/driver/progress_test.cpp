// progress_test.cpp - the progress line's fields and percentages.
#include "driver/progress.h"

#include <gtest/gtest.h>

#include "shading/render_context.h"

namespace sciray {
namespace {

TEST(progress_line, fields_widths_and_shares) {
  render_context context;
  progress_reporter progress(10);
  EXPECT_EQ(progress.next_line(0, context), "Row     0 :         0 (      0) :         0 (      0)\n");

  context.ray_count = 200;
  context.test_count = 500;  // 500 of 10 x 200 possible tests: 25 %
  EXPECT_EQ(progress.next_line(1, context), "Row     1 :       200 (     25) :       200 (     25)\n");

  context.ray_count = 300;
  context.test_count = 1000;  // since the last line: 500 of 10 x 100 = 50 %; in all 1000 / 3000
  EXPECT_EQ(progress.next_line(12345, context), "Row 12345 :       100 (     50) :       300 (  33.33)\n");
}

TEST(progress_line, no_objects_and_wrapped_counters) {
  render_context context;
  context.ray_count = 7;
  EXPECT_EQ(progress_reporter(0).next_line(3, context), "Row     3 :         7 (      0) :         7 (      0)\n");

  progress_reporter progress(1);
  context.ray_count = 0x7fffffffu;
  context.test_count = 0;
  progress.next_line(0, context);
  context.ray_count = 0x80000001u;  // two more rays: the total wraps negative
  EXPECT_EQ(progress.next_line(1, context), "Row     1 :         2 (      0) : -2147483647 (     -0)\n");
}

}  // namespace
}  // namespace sciray
