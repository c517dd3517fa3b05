// image_test_files.h - picture files for the image library and tool tests:
// pictures written and read through the library, file bytes, hostile
// variants of a good file, the standard big-endian form, and decoding with
// an independent reader (python3-pil).
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "image/image_file.h"
#include "support/test_files.h"

namespace sciray::testing {

using bytes = std::vector<unsigned char>;
using samples = std::vector<std::uint16_t>;
// The value of column x, row y, channel z of a picture.
using pixel_function = std::function<std::uint16_t(unsigned x, unsigned y, unsigned z)>;

inline bytes file_bytes(const std::string& path) {
  const std::string s = read_file(path);
  return bytes(s.begin(), s.end());
}

// Writes `data` to a file in scratch_dir() and returns its path.
inline std::string scratch_file(const std::string& name, const bytes& data) {
  return write_scratch_file(name, std::string(data.begin(), data.end()));
}

inline std::uint32_t le16(const bytes& data, std::size_t at) { return data.at(at) | data.at(at + 1) << 8; }
inline std::uint32_t le32(const bytes& data, std::size_t at) { return le16(data, at) | le16(data, at + 2) << 16; }
inline void put_le32(bytes& data, std::size_t at, std::uint32_t value) {
  for (int i = 0; i < 4; ++i) data.at(at + i) = static_cast<unsigned char>(value >> (8 * i));
}

// Writes a 3-channel picture of `type` (run-length encoded, 1 byte a value
// by default) to a file in scratch_dir(), rows bottom first, each row's
// channels in turn, and returns its path. Values must fit the bytes a value.
inline std::string write_picture(const std::string& name, unsigned width, unsigned height, const pixel_function& value,
                                 unsigned type = 257) {
  const std::string path = scratch_dir() + "/" + name;
  image_file* image = iopen(path.c_str(), "w", type, 3, width, height, 3);
  samples row(width);
  for (unsigned y = 0; y < height; ++y)
    for (unsigned z = 0; z < 3; ++z) {
      for (unsigned x = 0; x < width; ++x) row[x] = value(x, y, z);
      EXPECT_EQ(putrow(image, row.data(), y, z), int(width));
    }
  EXPECT_EQ(iclose(image), 0);
  return path;
}

// The samples of such a picture pixel by pixel, channels interleaved,
// bottom row first: what read_picture gives back.
inline samples pixels(unsigned width, unsigned height, const pixel_function& value) {
  samples all;
  for (unsigned y = 0; y < height; ++y)
    for (unsigned x = 0; x < width; ++x)
      for (unsigned z = 0; z < 3; ++z) all.push_back(value(x, y, z));
  return all;
}

// Every sample of a picture read with the library, in the order of pixels().
inline samples read_picture(const std::string& path) {
  image_file* image = iopen(path.c_str(), "r", 0, 0, 0, 0, 0);
  const std::size_t width = image->xsize, channels = image->zsize;
  samples all(width * image->ysize * channels), row(width);
  for (unsigned y = 0; y < image->ysize; ++y)
    for (unsigned z = 0; z < channels; ++z) {
      EXPECT_EQ(getrow(image, row.data(), y, z), int(width));
      for (std::size_t x = 0; x < width; ++x) all[(y * width + x) * channels + z] = row[x];
    }
  iclose(image);
  return all;
}

// A good 4 by 2 picture with `change` made to its bytes, as a new file.
inline std::string corrupt(const std::function<void(bytes&)>& change) {
  static int made = 0;
  bytes file =
      file_bytes(write_picture("intact.rgb", 4, 2, [](unsigned x, unsigned y, unsigned z) { return x * y + z; }));
  change(file);
  return scratch_file("changed" + std::to_string(++made) + ".rgb", file);
}

// The file in the standard big-endian form: the header's 16- and 32-bit
// fields and both tables byte-swapped, the row data unchanged.
inline bytes to_big_endian(bytes file) {
  const std::size_t entries = std::size_t(le16(file, 8)) * le16(file, 10);  // ysize * zsize
  auto swap = [&](std::size_t at, std::size_t width) { std::reverse(&file.at(at), &file.at(at + width - 1) + 1); };
  for (std::size_t at : {0, 2, 4, 6, 8, 10}) swap(at, 2);
  for (std::size_t at : {12, 16, 20, 104}) swap(at, 4);
  for (std::size_t i = 0; i < 2 * entries; ++i) swap(512 + 4 * i, 4);
  return file;
}

// A picture decoded by python3-pil: "FORMAT width height", and its samples
// in the order of pixels().
inline std::pair<std::string, samples> decode_with_pil(const std::string& path) {
  const char* script =
      "import sys; from PIL import Image\n"
      "im = Image.open(sys.argv[1]); print(im.format, *im.size, end='')\n"
      "open(sys.argv[2], 'wb').write(im.convert('RGB').transpose(Image.FLIP_TOP_BOTTOM).tobytes())\n";
  const run_result r = run_program("/usr/bin/python3", {"-c", script, path, path + ".pil"});
  EXPECT_EQ(r.status, 0) << "python3-pil could not decode " << path << ":\n" << r.err;
  const bytes rgb = file_bytes(path + ".pil");
  return {r.out, samples(rgb.begin(), rgb.end())};
}

// Collects the image library's error messages, one line each, for the life
// of the object.
inline std::string errors_seen;
struct captured_errors {
  captured_errors() {
    errors_seen.clear();
    set_image_error_handler([](const char* message) { errors_seen += message + std::string("\n"); });
  }
  ~captured_errors() { set_image_error_handler(nullptr); }
  std::string text() const { return errors_seen; }
};

}  // namespace sciray::testing
