// fuzz_case.cpp - the fatal handler of the fuzz targets and in-memory input files.
#include "fuzz_case.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>

#include "driver/program.h"
#include "support/fatal_error.h"

namespace sciray::fuzz {

namespace {

[[noreturn]] void stop_case(const std::string& line) {
  // The program prints the line and its line end: a second line, or an
  // empty message, would be a fault of the message itself.
  if (line.empty() || line.find('\n') != std::string::npos) {
    std::fprintf(stderr, "fatal message is not one line: [%s]\n", line.c_str());
    std::abort();
  }
  throw case_stopped{line};
}

[[noreturn]] void fail(const char* what) {
  std::perror(what);
  std::abort();
}

}  // namespace

void install_case_handlers() {
  set_fatal_handler(stop_case);
  const int null = ::open("/dev/null", O_WRONLY);
  if (null < 0 || ::dup2(null, STDOUT_FILENO) < 0) fail("fuzz: /dev/null");
  ::close(null);
}

void run_program_case(std::vector<std::string> args) {
  std::vector<char*> argv;
  for (std::string& a : args) argv.push_back(a.data());
  argv.push_back(nullptr);
  try {
    run_program(static_cast<int>(args.size()), argv.data());
  } catch (const case_stopped&) {
  }
}

memory_file::memory_file(const std::uint8_t* data, std::size_t size) : fd_(memfd_create("fuzz-input", MFD_CLOEXEC)) {
  if (fd_ < 0) fail("fuzz: memfd_create");
  for (std::size_t done = 0; done < size;) {
    const ssize_t wrote = ::write(fd_, data + done, size - done);
    if (wrote <= 0) fail("fuzz: write");
    done += static_cast<std::size_t>(wrote);
  }
  path_ = "/proc/self/fd/" + std::to_string(fd_);
}

memory_file::~memory_file() { ::close(fd_); }

}  // namespace sciray::fuzz
