// fuzz_case.h - what the fuzz targets share: a fatal error ends the case
// (an exception unwinds it) instead of the process, and the input bytes
// become a file that the programs' own code can open by name.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace sciray::fuzz {

// Thrown by the fatal handler that install_case_handlers() sets up.
struct case_stopped {
  std::string line;
};

// Makes fatal errors throw case_stopped, checks each fatal line (exactly one
// line: no line end inside it, none missing), and sends the programs'
// standard output to /dev/null.
void install_case_handlers();

// Runs the program with `args` (the program name first); a fatal error
// ends the run and is checked, as any case's.
void run_program_case(std::vector<std::string> args);

// The bytes in an anonymous in-memory file, named by path().
class memory_file {
 public:
  memory_file(const std::uint8_t* data, std::size_t size);
  ~memory_file();
  memory_file(const memory_file&) = delete;
  memory_file& operator=(const memory_file&) = delete;
  const std::string& path() const { return path_; }

 private:
  int fd_;
  std::string path_;
};

}  // namespace sciray::fuzz
