// sciray_png.cpp - joins the band files of one picture into a PNG:
//   sciray-png out.png band1.rgb [band2.rgb ...]
// Band 1 is the bottom of the picture. An output that is one of the band
// files is refused, and every band file is checked, before the PNG is
// started, and the PNG is written under a temporary name that is
// renamed only on success, so a failure never leaves a partial picture (a
// device or a pipe as the output is written directly).
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

#include "band_join.h"
#include "image/png_write.h"
#include "support/fatal_error.h"
#include "support/same_file.h"

namespace {

std::string output_name;  // the PNG asked for

[[noreturn]] void fail(const std::string& reason) { sciray::fatal("sciray-png: " + output_name + ": " + reason); }

// True when `name` exists and is not a regular file: a device or a pipe
// (/dev/stdout, say), which is written directly and never replaced.
bool is_special(const std::string& name) {
  struct stat info;
  return ::stat(name.c_str(), &info) == 0 && !S_ISREG(info.st_mode);
}

// Writes the joined bands, top row first, to output_name.
void write_joined(sciray::band_join& bands) {
  // PNG counts rows in 31 bits.
  if (bands.height() > 0x7fffffffu) fail(std::to_string(bands.height()) + " rows are more than a PNG can hold");
  const bool special = is_special(output_name);
  const std::string temporary = special ? output_name : output_name + "." + std::to_string(getpid()) + ".tmp";
  std::FILE* file = std::fopen(temporary.c_str(), special ? "wb" : "wbx");
  if (!file) fail(std::string("can't create ") + temporary + ": " + std::strerror(errno));
  if (!special) sciray::remove_on_fatal(temporary);

  const std::string error = sciray::write_png(file, bands.width(), static_cast<std::uint32_t>(bands.height()),
                                             [&bands](std::uint32_t) { return bands.next_row(); });
  if (!error.empty()) fail(error);
  if (std::fclose(file) != 0) fail(std::string("error on write: ") + std::strerror(errno));
  if (special) return;
  if (std::rename(temporary.c_str(), output_name.c_str()) != 0) {
    fail(std::string("can't rename: ") + std::strerror(errno));
  }
  sciray::keep_on_fatal(temporary);
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 3) {
    std::fprintf(stderr, "usage: sciray-png out.png band1.rgb [band2.rgb ...]\n");
    return 1;
  }
  const std::vector<std::string> inputs(argv + 2, argv + argc);
  sciray::refuse_output_over_input(argv[0], argv[1], inputs);
  sciray::band_join bands(inputs);
  output_name = argv[1];
  write_joined(bands);
  return 0;
}
