// image_read_test.cpp - the reading side against hostile files: truncated
// headers and tables, wrong magic, empty sizes, lying tables and rows whose
// runs overflow; and a hand-made big-endian verbatim file.
#include <gtest/gtest.h>

#include <functional>

#include "image/image_file.h"
#include "image/image_test_files.h"
#include "support/test_files.h"

namespace sciray {
namespace {

using testing::bytes;
using testing::captured_errors;
using testing::put_le;
using testing::scratch_dir;
using testing::write_bytes;

// A valid 4 by 2 picture with 6 rows, as file bytes.
bytes good_file() {
  const std::string path = scratch_dir() + "/good.rgb";
  testing::write_picture(path, 4, 2, [](unsigned x, unsigned y, unsigned z) { return std::uint16_t(x * y + z); });
  return testing::read_bytes(path);
}

bytes truncated(std::size_t length) {
  bytes file = good_file();
  file.resize(length);
  return file;
}

// The library's messages when opening `file` and reading every row it claims.
std::string errors_reading(const bytes& file) {
  const std::string path = scratch_dir() + "/hostile.rgb";
  write_bytes(path, file);
  captured_errors errors;
  image_file* image = iopen(path.c_str(), "r", 0, 0, 0, 0, 0);
  if (!image) return errors.text();
  std::vector<std::uint16_t> row(image->xsize);  // exactly one row: an overrun shows under the sanitizers
  for (unsigned z = 0; z < image->zsize && errors.text().empty(); ++z)
    for (unsigned y = 0; y < image->ysize && errors.text().empty(); ++y) {
      const bool read = getrow(image, row.data(), y, z) == int(image->xsize);
      EXPECT_EQ(read, errors.text().empty());  // a failure is always reported
    }
  iclose(image);
  return errors.text();
}

bytes changed(std::function<void(bytes&)> change) {
  bytes file = good_file();
  change(file);
  return file;
}

TEST(image_read, hostile_headers_and_tables) {
  const std::size_t rowsize = 512 + 24;
  const std::pair<bytes, std::string> cases[] = {
      {truncated(100), "iopen: error on read of image header\n"},
      {changed([](bytes& f) { f[0] = 0x34, f[1] = 0x12; }), "iopen: bad magic in image file 1234\n"},
      {changed([](bytes& f) { f[6] = 0; }), "iopen: image has a size of 0\n"},
      {changed([](bytes& f) { f[10] = 0; }), "iopen: image has a size of 0\n"},
      {truncated(520), "iopen: error on read of rowstart\n"},
      {truncated(rowsize + 3), "iopen: error on read of rowsize\n"},
      // 65535 by 65535 rows claimed by a small file: refused before any allocation.
      {changed([](bytes& f) { f[8] = f[9] = f[10] = f[11] = 0xff; }), "iopen: error on read of rowstart\n"},
      {changed([](bytes& f) { put_le(f, 512, 1000000); }), "getrow: row 0 of channel 0 lies outside the file\n"},
      {changed([](bytes& f) { put_le(f, 512 + 4 * 5, std::uint32_t(f.size() - 2)); }),
       "getrow: row 1 of channel 2 lies outside the file\n"},
      {changed([](bytes& f) { put_le(f, rowsize + 4, std::uint32_t(-5)); }),
       "getrow: row 1 of channel 0 has a bad length\n"},
      {changed([](bytes& f) { put_le(f, rowsize + 8, 0x7fffffff); }), "getrow: row 0 of channel 1 has a bad length\n"},
      {changed([](bytes& f) { f[testing::le32(f, 512)] = 0x7f; }), "rle_expand: run of 127 values overflows the row\n"},
      {changed([](bytes& f) { f[testing::le32(f, 512)] = 0x85; }), "rle_expand: run of 5 values overflows the row\n"},
      {changed([](bytes& f) { f[4] = 7; }), "img_seek: weird dim\n"},
      {changed([](bytes& f) { f[3] = 3; }), "getrow: weird image type\n"},
      {changed([](bytes& f) { f[2] = 4; }), "getrow: weird bpp\n"},
  };
  for (const auto& [file, message] : cases) EXPECT_EQ(errors_reading(file), message);
  EXPECT_EQ(errors_reading(good_file()), "");

  captured_errors errors;
  const std::string missing = scratch_dir() + "/missing.rgb";
  EXPECT_EQ(iopen(missing.c_str(), "r", 0, 0, 0, 0, 0), nullptr);
  EXPECT_EQ(iopen(scratch_dir().c_str(), "r", 0, 0, 0, 0, 0), nullptr);
  image_file* image = iopen((scratch_dir() + "/good.rgb").c_str(), "r", 0, 0, 0, 0, 0);
  std::vector<std::uint16_t> row(4);
  EXPECT_EQ(getrow(image, row.data(), 2, 0), -1);
  iclose(image);
  EXPECT_EQ(errors.text(), "iopen: can't open input file " + missing +
                               "\niopen: error on read of image header\nimg_seek: row number out of range\n");
}

TEST(image_read, hostile_file_is_fatal_without_handler) {
  const std::string path = scratch_dir() + "/magic.rgb";
  write_bytes(path, changed([](bytes& f) { f[0] = 0x34, f[1] = 0x12; }));
  EXPECT_EXIT(iopen(path.c_str(), "r", 0, 0, 0, 0, 0), ::testing::ExitedWithCode(1),
              "^iopen: bad magic in image file 1234\n$");
}

TEST(image_read, big_endian_verbatim_file) {
  // 2 by 1 pixels, 3 channels of 2-byte values, stored verbatim, big-endian.
  bytes file(512, 0);
  const unsigned header[] = {474, 0x0002, 3, 2, 1, 3};
  for (int i = 0; i < 6; ++i) file[2 * i] = std::uint8_t(header[i] >> 8), file[2 * i + 1] = std::uint8_t(header[i]);
  const bytes data = {0x01, 0x02, 0x03, 0x04, 0x10, 0x20, 0x30, 0x40, 0xff, 0xfe, 0x00, 0x07};
  file.insert(file.end(), data.begin(), data.end());
  const std::string path = scratch_dir() + "/verbatim.rgb";
  write_bytes(path, file);

  image_file* image = iopen(path.c_str(), "r", 0, 0, 0, 0, 0);
  ASSERT_NE(image, nullptr);
  const std::vector<std::uint16_t> expected[] = {{0x0102, 0x0304}, {0x1020, 0x3040}, {0xfffe, 0x0007}};
  for (unsigned z = 0; z < 3; ++z) {
    std::vector<std::uint16_t> row(2);
    EXPECT_EQ(getrow(image, row.data(), 0, z), 2);
    EXPECT_EQ(row, expected[z]);
  }
  iclose(image);

  // The same file cut short inside its last row.
  file.pop_back();
  EXPECT_EQ(errors_reading(file), "getrow: row 0 of channel 2 lies outside the file\n");
}

}  // namespace
}  // namespace sciray
