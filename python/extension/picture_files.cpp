// picture_files.cpp - a picture in memory written as the program writes it
// (the run-length-encoded SGI file, row by row from the bottom, channel by
// channel, through the same image library) or as PNG through libpng.
#include <nanobind/nanobind.h>
#include <nanobind/ndarray.h>
#include <nanobind/stl/string.h>

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

#include "image/image.h"
#include "image/image_file.h"
#include "image/png_write.h"
#include "render_call.h"

namespace sciray::python {

namespace {

using picture_array = nb::ndarray<const unsigned char, nb::shape<-1, -1, 3>, nb::c_contig, nb::device::cpu>;

[[noreturn]] void raise_os_error(const std::string& message) {
  PyErr_SetString(PyExc_OSError, message.c_str());
  throw nb::python_error();
}

void save_rgb(const picture_array& pixels, const std::string& path) {
  const std::size_t height = pixels.shape(0), width = pixels.shape(1);
  std::vector<std::uint16_t> samples(width);
  // After an error the unfinished file is removed and the record only freed.
  std::unique_ptr<image_file> image;
  try {
    image.reset(iopen(path.c_str(), "w", 257, 3, static_cast<unsigned>(width), static_cast<unsigned>(height), 3));
    for (std::size_t y = 0; y < height; ++y) {
      const unsigned char* row = pixels.data() + (height - 1 - y) * width * 3;
      for (unsigned channel = 0; channel < 3; ++channel) {
        for (std::size_t x = 0; x < width; ++x) samples[x] = row[3 * x + channel];
        putrow(image.get(), samples.data(), static_cast<unsigned>(y), channel);
      }
    }
    iclose(image.release());
  } catch (const scene_failure& failure) {
    raise_os_error(failure.what());
  }
}

// The PNG of the picture into `file`; "" or libpng's reason.
std::string png_into(const picture_array& pixels, std::FILE* file) {
  const std::size_t width = pixels.shape(1);
  return write_png(file, static_cast<std::uint32_t>(width), static_cast<std::uint32_t>(pixels.shape(0)),
                   [&](std::uint32_t y) { return pixels.data() + y * width * 3; });
}

void save_png(const picture_array& pixels, const std::string& path) {
  std::FILE* file = std::fopen(path.c_str(), "wb");
  if (!file) raise_os_error("can't create " + path);
  const std::string error = png_into(pixels, file);
  if (std::fclose(file) != 0 || !error.empty()) {
    std::remove(path.c_str());
    raise_os_error(path + ": " + (error.empty() ? "error on write" : error));
  }
}

nb::bytes png_bytes(const picture_array& pixels) {
  char* data = nullptr;
  std::size_t size = 0;
  std::FILE* memory = open_memstream(&data, &size);
  if (!memory) throw std::bad_alloc();
  const std::string error = png_into(pixels, memory);
  std::fclose(memory);
  const nb::bytes png(data, size);
  std::free(data);
  if (!error.empty()) raise_os_error(error);
  return png;
}

}  // namespace

void bind_picture_files(nb::module_& m) {
  m.def("save_rgb", &save_rgb, nb::arg("pixels"), nb::arg("path"),
        "Writes (height, width, 3) uint8 pixels, top row first, as the program's SGI picture file.");
  m.def("save_png", &save_png, nb::arg("pixels"), nb::arg("path"), "Writes the pixels as a PNG file.");
  m.def("png_bytes", &png_bytes, nb::arg("pixels"), "The pixels as the bytes of a PNG file.");
}

}  // namespace sciray::python
