// progress_test.cpp - the progress line's fields and percentages.
#include "driver/progress.h"

#include <gtest/gtest.h>


namespace sciray {
namespace {

TEST(progress_line, fields_widths_and_shares) {
  progress_reporter progress(10);
  EXPECT_EQ(progress.next_line(0, 0, 0), "Row     0 :         0 (      0) :         0 (      0)\n");
  // 500 of 10 x 200 possible tests: 25 %.
  EXPECT_EQ(progress.next_line(1, 200, 500), "Row     1 :       200 (     25) :       200 (     25)\n");
  // Since the last line: 500 of 10 x 100 = 50 %; in all 1000 / 3000.
  EXPECT_EQ(progress.next_line(12345, 300, 1000), "Row 12345 :       100 (     50) :       300 (  33.33)\n");
}

TEST(progress_line, no_objects_and_wrapped_counters) {
  EXPECT_EQ(progress_reporter(0).next_line(3, 7, 0), "Row     3 :         7 (      0) :         7 (      0)\n");
  progress_reporter progress(1);
  progress.next_line(0, 0x7fffffffu, 0);
  // Two more rays: the total wraps negative.
  EXPECT_EQ(progress.next_line(1, 0x80000001u, 0), "Row     1 :         2 (      0) : -2147483647 (     -0)\n");
}

}  // namespace
}  // namespace sciray
