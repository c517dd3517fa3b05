// picture_fuzz.cpp - fuzz target: the picture reader and sciray-png's
// joining path on arbitrary bytes. The bytes are read as a picture file
// through the image library (every row of every channel, whatever the
// storage and the bytes per value), then joined as the two bands of one
// picture the way sciray-png reads them.
#include <algorithm>
#include <cstdint>
#include <string>
#include <vector>

#include "band_join.h"
#include "fuzz_case.h"
#include "image/image.h"
#include "image/image_file.h"

using namespace sciray::fuzz;

namespace {

// Legal pictures whose rows share their bytes can be far larger than the
// file; a case reads no more than this many samples.
constexpr std::uint64_t sample_limit = std::uint64_t{1} << 20;

// Every row of every channel, until one cannot be read or the limit is reached.
void read_rows(sciray::image_file* image) {
  std::vector<std::uint16_t> row(image->xsize);
  std::uint64_t budget = sample_limit;
  for (unsigned z = 0; z < image->zsize; ++z) {
    for (unsigned y = 0; y < image->ysize; ++y) {
      if (budget < image->xsize || sciray::getrow(image, row.data(), y, z) < 0) return;
      budget -= image->xsize;
    }
  }
}

void read_picture(const std::string& path) {
  sciray::set_image_error_handler([](const char*) {});
  if (sciray::image_file* image = sciray::iopen(path.c_str(), "r", 0, 0, 0, 0, 0)) {
    read_rows(image);
    sciray::iclose(image);
  }
  sciray::set_image_error_handler(nullptr);
}

void join_bands(const std::string& path) {
  try {
    sciray::band_join bands({path, path});
    const std::uint64_t rows = std::min<std::uint64_t>(bands.height(), sample_limit / (bands.width() + 1));
    for (std::uint64_t y = 0; y < rows; ++y) bands.next_row();
  } catch (const case_stopped&) {
  }
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  install_case_handlers();
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const memory_file picture(data, size);
  read_picture(picture.path());
  join_bands(picture.path());
  return 0;
}
