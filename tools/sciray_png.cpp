// sciray_png.cpp - joins the band files of one picture into a PNG:
//   sciray-png out.png band1.rgb [band2.rgb ...]
// Band 1 is the bottom of the picture. An output that is one of the band
// files is refused, and every band file is checked, before the PNG is
// started; the PNG is written under a temporary name that is renamed only
// once it is complete (see output_file.h), so neither a failure nor an
// interrupting signal leaves a partial picture.
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

#include "band_join.h"
#include "image/png_write.h"
#include "support/fatal_error.h"
#include "support/output_file.h"
#include "support/same_file.h"
#include "support/signal_cleanup.h"

namespace {

std::string output_name;  // the PNG asked for

[[noreturn]] void fail(const std::string& reason) { sciray::fatal("sciray-png: " + output_name + ": " + reason); }

// Writes the joined bands, top row first, to output_name.
void write_joined(sciray::band_join& bands) {
  // PNG counts rows in 31 bits.
  if (bands.height() > 0x7fffffffu) fail(std::to_string(bands.height()) + " rows are more than a PNG can hold");
  sciray::output_file output;
  std::FILE* file = output.create(output_name);
  if (!file) fail("can't create " + output_name + ": " + std::strerror(errno));
  const std::string error = sciray::write_png(file, bands.width(), static_cast<std::uint32_t>(bands.height()),
                                             [&bands](std::uint32_t) { return bands.next_row(); });
  if (!error.empty()) fail(error);
  if (std::fclose(file) != 0) fail(std::string("error on write: ") + std::strerror(errno));
  if (!output.finish()) fail(std::string("can't rename: ") + std::strerror(errno));
}

}  // namespace

int main(int argc, char** argv) {
  sciray::clean_up_on_signals();
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
