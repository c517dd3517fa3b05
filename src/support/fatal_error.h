// fatal_error.h - how a run stops on an error: one line on standard error,
// any unfinished output file removed, exit status 1. A handler can take the
// line instead (the fuzz targets end one case that way and go on).
#pragma once

#include <string>

namespace sciray {

// Reports `line` (given without its line end) and ends the run.
[[noreturn]] void fatal(const std::string& line);

// With a handler installed, fatal() removes the unfinished outputs and calls
// it instead of printing and exiting. The handler must not return (it
// throws); if it does, fatal() prints and exits after all.
using fatal_handler = void (*)(const std::string& line);
void set_fatal_handler(fatal_handler handler);

// An output file that is being written and would be unreadable if the run
// stopped now: fatal() on the same thread removes it until keep_on_fatal is
// called for it. Only regular files are listed (a device such as /dev/full
// is left alone).
void remove_on_fatal(const std::string& path);
void keep_on_fatal(const std::string& path);

}  // namespace sciray
