// hostile_run.h - runs the built programs on hostile input and checks what
// every such run must do: end within seconds, and either succeed (status 0)
// or stop with status 1, exactly one line on standard error and no output
// file left behind.
#pragma once

#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <string>
#include <vector>

#include "support/test_files.h"

namespace sciray::testing {

// Generous for the sanitizer build; the release build takes a fraction.
constexpr double seconds_allowed = 30.0;

struct hostile_result : run_result {
  double seconds = 0.0;
};

inline hostile_result run_hostile(const std::string& program, const std::vector<std::string>& args) {
  const auto start = std::chrono::steady_clock::now();
  hostile_result r;
  static_cast<run_result&>(r) = run_program(program, args);
  r.seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
  return r;
}

// The run ended in time, and cleanly: status 0, or status 1 with one line
// on standard error and no file left behind at `output` (a device such as
// /dev/full stays, of course).
inline void expect_clean_end(const hostile_result& r, const std::string& output) {
  EXPECT_LT(r.seconds, seconds_allowed);
  if (r.status == 0) {
    EXPECT_EQ(r.err, "");
    return;
  }
  EXPECT_EQ(r.status, 1) << r.err;
  EXPECT_FALSE(r.err.empty());
  EXPECT_EQ(r.err.find('\n'), r.err.size() - 1) << r.err;
  EXPECT_FALSE(std::filesystem::is_regular_file(output)) << output;
}

}  // namespace sciray::testing
