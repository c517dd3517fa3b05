// test_files.h - scratch files for tests and running the built programs.
#pragma once

#include <string>
#include <vector>

namespace sciray::testing {

// A directory of the current test's own (made empty on first use).
std::string scratch_dir();
// Writes `contents` to a file in scratch_dir() and returns its path.
std::string write_scratch_file(const std::string& name, const std::string& contents);
std::string read_file(const std::string& path);
bool file_exists(const std::string& path);

struct run_result {
  int status = -1;
  std::string out, err;
};

// Runs `program` with `args`, capturing standard output and error.
run_result run_program(const std::string& program, const std::vector<std::string>& args);
// Runs the renderer.
run_result run_sciray(const std::vector<std::string>& args);

}  // namespace sciray::testing
