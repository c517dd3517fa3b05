// fatal_error.cpp - the one way out after an error, shared by the scene
// reader, the camera, the image library and the programs.
#include "support/fatal_error.h"

#include <sys/stat.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <mutex>
#include <vector>

namespace sciray {

namespace {

fatal_handler handler = nullptr;
// Each thread's own: an error on one thread (a failed render in a Python
// session, say) leaves the files other threads are writing alone.
thread_local std::vector<std::string> unfinished_outputs;

// The first error ends the run: a second thread that fails meanwhile waits
// here until the process is gone.
std::mutex exit_lock;

void remove_unfinished_outputs() {
  for (const std::string& path : unfinished_outputs) std::remove(path.c_str());
  unfinished_outputs.clear();
}

}  // namespace

void set_fatal_handler(fatal_handler h) { handler = h; }

void remove_on_fatal(const std::string& path) {
  struct stat info;
  if (::stat(path.c_str(), &info) != 0 || !S_ISREG(info.st_mode)) return;
  unfinished_outputs.push_back(path);
}

void keep_on_fatal(const std::string& path) {
  const auto at = std::find(unfinished_outputs.begin(), unfinished_outputs.end(), path);
  if (at != unfinished_outputs.end()) unfinished_outputs.erase(at);
}

void fatal(const std::string& line) {
  remove_unfinished_outputs();
  if (handler) handler(line);
  exit_lock.lock();
  std::fprintf(stderr, "%s\n", line.c_str());
  std::exit(1);
}

}  // namespace sciray
