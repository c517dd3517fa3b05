// image_test_files.cpp - picture files and independent decoding for tests.
#include "image/image_test_files.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <iterator>
#include <sstream>

#include "image/image_file.h"
#include "support/test_files.h"

namespace sciray::testing {

namespace {

std::string errors_seen;

}  // namespace

bytes read_bytes(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  return bytes(std::istreambuf_iterator<char>(in), {});
}

void write_bytes(const std::string& path, const bytes& data) {
  std::ofstream(path, std::ios::binary).write(reinterpret_cast<const char*>(data.data()), std::streamsize(data.size()));
}

std::uint32_t le16(const bytes& data, std::size_t at) { return data.at(at) | data.at(at + 1) << 8; }

std::uint32_t le32(const bytes& data, std::size_t at) { return le16(data, at) | le16(data, at + 2) << 16; }

void put_le(bytes& data, std::size_t at, std::uint32_t value, int width) {
  for (int i = 0; i < width; ++i) data.at(at + i) = static_cast<unsigned char>(value >> (8 * i));
}

void write_picture(const std::string& path, unsigned width, unsigned height,
                   const std::function<std::uint16_t(unsigned, unsigned, unsigned)>& value) {
  image_file* image = iopen(path.c_str(), "w", 257, 3, width, height, 3);
  ASSERT_NE(image, nullptr);
  std::vector<std::uint16_t> row(width);
  for (unsigned y = 0; y < height; ++y)
    for (unsigned z = 0; z < 3; ++z) {
      for (unsigned x = 0; x < width; ++x) row[x] = value(x, y, z);
      ASSERT_EQ(putrow(image, row.data(), y, z), int(width));
    }
  ASSERT_EQ(iclose(image), 0);
}

rgb_picture read_picture(const std::string& path) {
  rgb_picture p;
  image_file* image = iopen(path.c_str(), "r", 0, 0, 0, 0, 0);
  if (!image) return p;
  p.width = image->xsize;
  p.height = image->ysize;
  p.rgb.resize(3 * std::size_t(p.width) * p.height);
  std::vector<std::uint16_t> row(p.width);
  for (unsigned y = 0; y < p.height; ++y)
    for (unsigned z = 0; z < 3; ++z) {
      EXPECT_EQ(getrow(image, row.data(), y, z), int(p.width));
      for (unsigned x = 0; x < p.width; ++x) p.rgb[(std::size_t(y) * p.width + x) * 3 + z] = std::uint8_t(row[x]);
    }
  iclose(image);
  return p;
}

bytes to_big_endian(bytes file) {
  const std::size_t entries = std::size_t(le16(file, 8)) * le16(file, 10);  // ysize * zsize
  auto swap = [&](std::size_t at, std::size_t width) { std::reverse(&file.at(at), &file.at(at + width - 1) + 1); };
  for (std::size_t at : {0, 2, 4, 6, 8, 10}) swap(at, 2);
  for (std::size_t at : {12, 16, 20, 104}) swap(at, 4);
  for (std::size_t i = 0; i < 2 * entries; ++i) swap(512 + 4 * i, 4);
  return file;
}

decoded_picture decode_with_pil(const std::string& path) {
  const std::string raw = path + ".pil";
  const char* script =
      "import sys\n"
      "from PIL import Image\n"
      "im = Image.open(sys.argv[1])\n"
      "print(im.format, im.mode, im.size[0], im.size[1])\n"
      "open(sys.argv[2], 'wb').write(im.convert('RGB').transpose(Image.FLIP_TOP_BOTTOM).tobytes())\n";
  const run_result r = run_program("/usr/bin/python3", {"-c", script, path, raw});
  decoded_picture d;
  if (r.status != 0) {
    ADD_FAILURE() << "python3-pil could not decode " << path << ":\n" << r.err;
    return d;
  }
  std::string mode;
  std::istringstream(r.out) >> d.format >> mode >> d.picture.width >> d.picture.height;
  d.picture.rgb = read_bytes(raw);
  return d;
}

captured_errors::captured_errors() {
  errors_seen.clear();
  set_image_error_handler([](const char* message) { errors_seen += std::string(message) + "\n"; });
}

captured_errors::~captured_errors() { set_image_error_handler(nullptr); }

std::string captured_errors::text() const { return errors_seen; }

}  // namespace sciray::testing
