// image_write_test.cpp - the written file byte by byte, rewritten rows,
// the value range, the other storage forms, and the writer's fatal errors.
#include <gtest/gtest.h>

#include <cstring>
#include <filesystem>

#include "image/image.h"
#include "image/image_test_files.h"
#include "support/test_files.h"

namespace sciray {
namespace {

using testing::bytes;
using testing::captured_errors;
using testing::le32;
using testing::put_le;
using testing::read_bytes;
using testing::scratch_dir;

using row = std::vector<std::uint16_t>;

TEST(image_write, file_is_laid_out_byte_exactly) {
  // rows[y][z] with their encodings, worked out from the packet rules.
  const row rows[2][3] = {{{0, 1, 2, 3}, {5, 5, 5, 7}, {7, 7, 7, 7}},
                          {{1, 2, 3, 3}, {200, 200, 200, 200}, {9, 8, 9, 8}}};
  const bytes packed[2][3] = {{{0x82, 0, 1, 0x01, 2, 0x01, 3, 0}, {0x03, 5, 0x01, 7, 0}, {0x04, 7, 0}},
                              {{0x82, 1, 2, 0x02, 3, 0}, {0x04, 200, 0}, {0x82, 9, 8, 0x01, 9, 0x01, 8, 0}}};
  const std::string path = scratch_dir() + "/layout.rgb";
  image_file* image = iopen(path.c_str(), "w", 257, 3, 4, 2, 3);
  ASSERT_NE(image, nullptr);
  for (unsigned y = 0; y < 2; ++y)
    for (unsigned z = 0; z < 3; ++z) ASSERT_EQ(putrow(image, rows[y][z].data(), y, z), 4);
  ASSERT_EQ(iclose(image), 0);

  bytes expected(512 + 48, 0);
  const std::uint32_t header[][3] = {{0, 474, 2}, {2, 257, 2}, {4, 3, 2},    {6, 4, 2}, {8, 2, 2},
                                     {10, 3, 2},  {12, 0, 4},  {16, 200, 4}, {20, 0, 4}};
  for (const auto& [at, value, width] : header) put_le(expected, at, value, int(width));
  std::memcpy(&expected[24], "no name", 7);
  // Rows follow the tables in write order; the tables are indexed y + z * ysize.
  for (unsigned y = 0; y < 2; ++y)
    for (unsigned z = 0; z < 3; ++z) {
      put_le(expected, 512 + 4 * (y + 2 * z), std::uint32_t(expected.size()), 4);
      put_le(expected, 512 + 24 + 4 * (y + 2 * z), std::uint32_t(packed[y][z].size()), 4);
      expected.insert(expected.end(), packed[y][z].begin(), packed[y][z].end());
    }
  EXPECT_EQ(read_bytes(path), expected);

  // Read back in this form and in the standard big-endian form.
  const std::string big = scratch_dir() + "/layout_be.rgb";
  testing::write_bytes(big, testing::to_big_endian(expected));
  for (const std::string& file : {path, big}) {
    const testing::rgb_picture p = testing::read_picture(file);
    ASSERT_EQ(p.rgb.size(), 24u) << file;
    for (unsigned y = 0; y < 2; ++y)
      for (unsigned z = 0; z < 3; ++z)
        for (unsigned x = 0; x < 4; ++x) EXPECT_EQ(p.rgb[(y * 4 + x) * 3 + z], rows[y][z][x]) << file;
  }
}

TEST(image_write, rewritten_rows_and_value_range) {
  const std::string path = scratch_dir() + "/rewritten.rgb";
  image_file* image = iopen(path.c_str(), "w", 257, 3, 3, 1, 3);
  ASSERT_NE(image, nullptr);
  const row high = {90, 90, 90}, low = {1, 2, 3}, middle = {50, 50, 50};
  putrow(image, high.data(), 0, 0);  // 3 bytes, then left behind
  putrow(image, middle.data(), 0, 1);
  putrow(image, middle.data(), 0, 2);
  putrow(image, low.data(), 0, 0);
  ASSERT_EQ(iclose(image), 0);
  const bytes file = read_bytes(path);
  EXPECT_EQ(le32(file, 12), 1u);   // min_value
  EXPECT_EQ(le32(file, 16), 90u);  // max_value: every value written counts
  EXPECT_EQ(le32(file, 20), 3u);   // waste_bytes
  EXPECT_EQ(le32(file, 512), 536u + 3 + 3 + 3);
  EXPECT_EQ(file.size(), 536u + 3 + 3 + 3 + 7);
  EXPECT_EQ(testing::read_picture(path).rgb, (bytes{1, 50, 50, 2, 50, 50, 3, 50, 50}));

  const std::string zeros = scratch_dir() + "/zeros.rgb", empty = scratch_dir() + "/empty.rgb";
  testing::write_picture(zeros, 2, 2, [](unsigned, unsigned, unsigned) { return std::uint16_t(0); });
  EXPECT_EQ(le32(read_bytes(zeros), 12), 0u);
  EXPECT_EQ(le32(read_bytes(zeros), 16), 0u);
  ASSERT_EQ(iclose(iopen(empty.c_str(), "w", 257, 3, 2, 2, 3)), 0);
  const bytes never = read_bytes(empty);
  EXPECT_EQ(le32(never, 12), 10000000u);
  EXPECT_EQ(le32(never, 16), 0u);
  EXPECT_EQ(le32(never, 512), 0u);                   // rowstart
  EXPECT_EQ(le32(never, 512 + 4 * 6), 0xffffffffu);  // rowsize -1
  EXPECT_EQ(never.size(), 512u + 8 * 6);
}

TEST(image_write, dimensions_and_other_storage) {
  const std::string path = scratch_dir() + "/dims.rgb";
  // ysize counts only from dim 2 and zsize from dim 3; dim follows the sizes.
  const unsigned cases[][6] = {{1, 5, 3, 1, 1, 1}, {2, 5, 3, 2, 5, 1}, {3, 4, 1, 2, 4, 1}, {3, 1, 3, 3, 1, 3}};
  for (const auto& [dim, ysize, zsize, dim_out, ysize_out, zsize_out] : cases) {
    ASSERT_EQ(iclose(iopen(path.c_str(), "w", 257, dim, 2, ysize, zsize)), 0);
    const bytes file = read_bytes(path);
    EXPECT_EQ(testing::le16(file, 4), dim_out);
    EXPECT_EQ(testing::le16(file, 8), ysize_out);
    EXPECT_EQ(testing::le16(file, 10), zsize_out);
  }

  // Verbatim storage: row y of channel z at 512 + (y * xsize + z * xsize * ysize) * bytes.
  const row samples = {0x1234, 0xabcd};
  for (unsigned bpp : {1u, 2u}) {
    image_file* image = iopen(path.c_str(), "w", bpp, 3, 2, 3, 3);
    ASSERT_EQ(putrow(image, samples.data(), 2, 1), 2);
    ASSERT_EQ(iclose(image), 0);
    const bytes file = read_bytes(path);
    const std::size_t at = 512 + (2 * 2 + 1 * 2 * 3) * bpp;
    ASSERT_EQ(file.size(), at + 2 * bpp);
    const bytes expected = bpp == 1 ? bytes{0x34, 0xcd} : bytes{0x34, 0x12, 0xcd, 0xab};
    EXPECT_EQ(bytes(file.begin() + long(at), file.end()), expected);
  }

  // Two bytes a value survive the trip through both storage forms.
  for (unsigned type : {0x002u, 0x102u}) {
    image_file* image = iopen(path.c_str(), "w", type, 2, 2, 3, 1);
    putrow(image, samples.data(), 1, 0);
    ASSERT_EQ(iclose(image), 0);
    image = iopen(path.c_str(), "r", 0, 0, 0, 0, 0);
    row back(2);
    EXPECT_EQ(getrow(image, back.data(), 1, 0), 2);
    EXPECT_EQ(back, samples);
    iclose(image);
  }
}

TEST(image_write, errors_are_fatal_one_line_messages) {
  const std::string dir = scratch_dir();
  const std::string missing = dir + "/missing/out.rgb", path = dir + "/out.rgb";
  const row samples(4, 1);
  using ::testing::ExitedWithCode;
  EXPECT_EXIT(iopen(missing.c_str(), "w", 257, 3, 4, 2, 3), ExitedWithCode(1),
              "^iopen: can't open output file " + missing + "\n$");
  EXPECT_EXIT(iopen(path.c_str(), "w+", 257, 3, 4, 2, 3), ExitedWithCode(1),
              "^iopen: read/write mode not supported\n$");
  if (std::filesystem::exists("/dev/full")) {
    EXPECT_EXIT(iopen("/dev/full", "w", 257, 3, 4, 2, 3), ExitedWithCode(1),
                "^iopen: error on write of image header\n$");
  }
  const std::pair<unsigned, const char*> cases[] = {{257, "^img_seek: row number out of range\n$"},
                                                    {0x103, "^putrow: weird bpp\n$"},
                                                    {0x201, "^putrow: weird image type\n$"}};
  for (const auto& [type, message] : cases)
    EXPECT_EXIT(putrow(iopen(path.c_str(), "w", type, 3, 4, 2, 3), samples.data(), 2, 0), ExitedWithCode(1), message);
  EXPECT_EXIT(putrow(iopen(path.c_str(), "w", 257, 3, 4, 2, 3), samples.data(), 0, 3), ExitedWithCode(1),
              "^img_seek: row number out of range\n$");

  // With a handler the message goes to it and the call fails instead.
  captured_errors errors;
  EXPECT_EQ(iopen(missing.c_str(), "w", 257, 3, 4, 2, 3), nullptr);
  image_file* image = iopen(path.c_str(), "w", 257, 3, 4, 2, 3);
  EXPECT_EQ(putrow(image, samples.data(), 2, 0), -1);
  EXPECT_EQ(iclose(image), 0);
  EXPECT_EQ(errors.text(), "iopen: can't open output file " + missing + "\nimg_seek: row number out of range\n");
  EXPECT_EQ(read_bytes(path).size(), 512u + 8 * 6);  // the refused row left nothing behind
}

}  // namespace
}  // namespace sciray
