// picture_files.cpp - a picture in memory written as the program writes it
// (the run-length-encoded SGI file, row by row from the bottom, channel by
// channel, through the same image library) or as PNG through libpng; like
// the program's, under a temporary name put in place once complete, so that
// a failed save leaves any earlier file as it was.
#include <nanobind/nanobind.h>
#include <nanobind/ndarray.h>
#include <nanobind/stl/string.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "image/image.h"
#include "image/image_file.h"
#include "image/png_write.h"
#include "render_call.h"
#include "support/output_file.h"

namespace sciray::python {

namespace {

using picture_array = nb::ndarray<const unsigned char, nb::shape<-1, -1, 3>, nb::c_contig, nb::device::cpu>;

[[noreturn]] void raise_os_error(const std::string& message) {
  PyErr_SetString(PyExc_OSError, message.c_str());
  throw nb::python_error();
}

// The file for `path`, or the OSError (FileNotFoundError, PermissionError,
// ...) that creating it gives.
std::FILE* create(output_file& file, const std::string& path) {
  std::FILE* stream = file.create(path);
  if (!stream) {
    PyErr_SetFromErrnoWithFilename(PyExc_OSError, path.c_str());
    throw nb::python_error();
  }
  return stream;
}

void put_in_place(output_file& file, const std::string& path) {
  if (!file.finish()) raise_os_error(path + ": can't put the picture in place: " + std::strerror(errno));
}

void save_rgb(const picture_array& pixels, const std::string& path) {
  const std::size_t height = pixels.shape(0), width = pixels.shape(1);
  std::vector<std::uint16_t> samples(width);
  output_file file;
  std::FILE* stream = create(file, path);
  // After an error the unfinished file is removed and the record only freed.
  std::unique_ptr<image_file> image;
  try {
    image.reset(fiopen(stream, 257, 3, static_cast<unsigned>(width), static_cast<unsigned>(height), 3));
    for (std::size_t y = 0; y < height; ++y) {
      const unsigned char* row = pixels.data() + (height - 1 - y) * width * 3;
      for (unsigned channel = 0; channel < 3; ++channel) {
        for (std::size_t x = 0; x < width; ++x) samples[x] = row[3 * x + channel];
        putrow(image.get(), samples.data(), static_cast<unsigned>(y), channel);
      }
    }
    if (iclose(image.release()) != 0) {
      const std::string reason = std::strerror(errno);
      file.abandon();
      raise_os_error(path + ": error on write: " + reason);
    }
  } catch (const scene_failure& failure) {
    raise_os_error(failure.what());
  }
  put_in_place(file, path);
}

// The PNG of the picture into `file`; "" or libpng's reason.
std::string png_into(const picture_array& pixels, std::FILE* file) {
  const std::size_t width = pixels.shape(1);
  return write_png(file, static_cast<std::uint32_t>(width), static_cast<std::uint32_t>(pixels.shape(0)),
                   [&](std::uint32_t y) { return pixels.data() + y * width * 3; });
}

void save_png(const picture_array& pixels, const std::string& path) {
  output_file file;
  std::FILE* stream = create(file, path);
  const std::string error = png_into(pixels, stream);
  if (std::fclose(stream) != 0 || !error.empty()) {
    file.abandon();
    raise_os_error(path + ": " + (error.empty() ? "error on write" : error));
  }
  put_in_place(file, path);
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
