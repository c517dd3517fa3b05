// command_line.h - the options after the two file names: "-band i/n" and
// "-threads N", in either order, and "-nomark" anywhere among them.
#pragma once

#include "driver/band.h"

namespace sciray {

struct run_options {
  band_choice band;  // the whole picture unless a good "-band i/n" is given
  int threads = 0;   // 0: every processor the process may run on
  bool mark = true;  // false with "-nomark": no corner mark
};

// Reads "-band i/n" as the third and fourth arguments, or "-threads N"
// there with an optional "-band i/n" after it, or "-band i/n" with
// "-threads N" after it, counting positions as if every "-nomark" after
// the file names were left out. A malformed band silently means the whole
// picture; other arguments are ignored. False when "-threads" is not
// followed by a positive number.
bool parse_run_options(int argc, const char* const* argv, run_options& options);

}  // namespace sciray
