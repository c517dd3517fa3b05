// test_files.cpp - scratch directories and child processes for tests.
#include "support/test_files.h"

#include <gtest/gtest.h>
#include <sys/wait.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

namespace sciray::testing {

namespace {

std::string quote(const std::string& s) {
  std::string q = "'";
  for (char c : s) q += c == '\'' ? std::string("'\\''") : std::string(1, c);
  return q + "'";
}

}  // namespace

std::string scratch_dir() {
  const auto* info = ::testing::UnitTest::GetInstance()->current_test_info();
  std::string name = std::string(info->test_suite_name()) + "." + info->name();
  for (char& c : name)
    if (c == '/') c = '_';
  const std::filesystem::path dir = std::filesystem::path(SCIRAY_TEST_OUTPUT_DIR) / name;
  static std::string made;
  if (made != dir.string()) {
    std::filesystem::remove_all(dir);
    std::filesystem::create_directories(dir);
    made = dir.string();
  }
  return dir.string();
}

std::string write_scratch_file(const std::string& name, const std::string& contents) {
  const std::string path = scratch_dir() + "/" + name;
  std::ofstream(path, std::ios::binary) << contents;
  return path;
}

std::string read_file(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  std::ostringstream s;
  s << in.rdbuf();
  return s.str();
}

bool file_exists(const std::string& path) { return std::filesystem::exists(path); }

run_result run_program(const std::string& program, const std::vector<std::string>& args) {
  const std::string out = scratch_dir() + "/stdout.txt", err = scratch_dir() + "/stderr.txt";
  std::string command = quote(program);
  for (const std::string& a : args) command += " " + quote(a);
  command += " >" + quote(out) + " 2>" + quote(err) + " </dev/null";
  const int raw = std::system(command.c_str());
  run_result r;
  r.status = WIFEXITED(raw) ? WEXITSTATUS(raw) : -1;
  r.out = read_file(out);
  r.err = read_file(err);
  return r;
}

run_result run_sciray(const std::vector<std::string>& args) { return run_program(SCIRAY_BINARY, args); }

}  // namespace sciray::testing
