// image_read_test.cpp - the reading side against hostile files: missing and
// truncated files, wrong magic, empty sizes, lying tables and rows whose runs
// overflow; and a hand-made big-endian verbatim file.
#include <gtest/gtest.h>

#include "image/image_test_files.h"

namespace sciray {
namespace {

using namespace testing;

// The library's messages when opening `path`, reading every row it claims
// (each row's channels in turn) and then one row past the last.
std::string errors_reading(const std::string& path) {
  captured_errors errors;
  if (image_file* image = iopen(path.c_str(), "r", 0, 0, 0, 0, 0)) {
    samples row(image->xsize);  // exactly one row: an overrun shows under the sanitizers
    const std::size_t rows = image->table_entries();
    for (unsigned i = 0; i <= rows && errors.text().empty(); ++i) {
      const bool read = getrow(image, row.data(), i / image->zsize, i % image->zsize) == int(image->xsize);
      EXPECT_EQ(read, i < rows && errors.text().empty());  // a failure is always reported
    }
    iclose(image);
  }
  return errors.text();
}

TEST(image_read, hostile_files_give_one_line_errors) {
  const std::string missing = scratch_dir() + "/missing.rgb";
  // The good picture's tables are at 512 (rowstart) and 536 (rowsize), 6 entries each.
  const std::pair<std::string, std::string> cases[] = {
      {corrupt([](bytes&) {}), "img_seek: row number out of range\n"},
      {missing, "iopen: can't open input file " + missing + "\n"},
      {scratch_dir(), "iopen: error on read of image header\n"},
      {corrupt([](bytes& f) { f.resize(100); }), "iopen: error on read of image header\n"},
      {corrupt([](bytes& f) { f[0] = 0x34, f[1] = 0x12; }), "iopen: bad magic in image file 1234\n"},
      {corrupt([](bytes& f) { f[6] = 0; }), "iopen: image has a size of 0\n"},
      {corrupt([](bytes& f) { f[10] = 0; }), "iopen: image has a size of 0\n"},
      {corrupt([](bytes& f) { f.resize(520); }), "iopen: error on read of rowstart\n"},
      {corrupt([](bytes& f) { f.resize(536 + 3); }), "iopen: error on read of rowsize\n"},
      // 65535 by 65535 rows claimed by a small file: refused before any allocation.
      {corrupt([](bytes& f) { f[8] = f[9] = f[10] = f[11] = 0xff; }), "iopen: error on read of rowstart\n"},
      {corrupt([](bytes& f) { put_le32(f, 512, 1000000); }), "getrow: row 0 of channel 0 lies outside the file\n"},
      {corrupt([](bytes& f) { put_le32(f, 512 + 4 * 5, std::uint32_t(f.size() - 2)); }),
       "getrow: row 1 of channel 2 lies outside the file\n"},
      {corrupt([](bytes& f) { put_le32(f, 536 + 4, std::uint32_t(-5)); }),
       "getrow: row 1 of channel 0 has a bad length\n"},
      {corrupt([](bytes& f) { put_le32(f, 536 + 8, 0x7fffffff); }), "getrow: row 0 of channel 1 has a bad length\n"},
      {corrupt([](bytes& f) { f[le32(f, 512)] = 0x7f; }), "rle_expand: run of 127 values overflows the row\n"},
      {corrupt([](bytes& f) { f[le32(f, 512)] = 0x85; }), "rle_expand: run of 5 values overflows the row\n"},
      {corrupt([](bytes& f) { f[4] = 7; }), "img_seek: weird dim\n"},
      {corrupt([](bytes& f) { f[3] = 3; }), "getrow: weird image type\n"},
      {corrupt([](bytes& f) { f[2] = 4; }), "getrow: weird bpp\n"},
  };
  for (const auto& [path, message] : cases) EXPECT_EQ(errors_reading(path), message) << path;
}

TEST(image_read, big_endian_verbatim_file) {
  // 2 by 1 pixels, 3 channels of 2-byte values stored verbatim, big-endian;
  // then the same file cut short inside its last row.
  bytes file = {0x01, 0xda, 0x00, 0x02, 0, 3, 0, 2, 0, 1, 0, 3};
  file.resize(512);
  file.insert(file.end(), {0x01, 0x02, 0x03, 0x04, 0x10, 0x20, 0x30, 0x40, 0xff, 0xfe, 0x00, 0x07});
  EXPECT_EQ(read_picture(scratch_file("verbatim.rgb", file)),
            (samples{0x0102, 0x1020, 0xfffe, 0x0304, 0x3040, 0x0007}));
  file.pop_back();
  EXPECT_EQ(errors_reading(scratch_file("short.rgb", file)), "getrow: row 0 of channel 2 lies outside the file\n");
}

}  // namespace
}  // namespace sciray
