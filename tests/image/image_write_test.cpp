// image_write_test.cpp - the written file byte by byte, rewritten rows, the
// value range, the other storage forms, the writer's fatal errors, and an
// independent SGI decoder (python3-pil) reading a written picture.
#include <gtest/gtest.h>

#include <array>
#include <filesystem>

#include "image/image_test_files.h"

namespace sciray {
namespace {

using namespace testing;

// min_value, max_value and waste_bytes of a written file.
using value_range = std::array<std::uint32_t, 3>;
value_range range_of(const bytes& file) { return {le32(file, 12), le32(file, 16), le32(file, 20)}; }

TEST(image_write, file_is_laid_out_byte_exactly) {
  // rows[y][z] with their encodings, worked out from the packet rules.
  const samples rows[2][3] = {{{0, 1, 2, 3}, {5, 5, 5, 7}, {7, 7, 7, 7}},
                              {{1, 2, 3, 3}, {200, 200, 200, 200}, {9, 8, 9, 8}}};
  const bytes packed[2][3] = {{{0x82, 0, 1, 0x01, 2, 0x01, 3, 0}, {0x03, 5, 0x01, 7, 0}, {0x04, 7, 0}},
                              {{0x82, 1, 2, 0x02, 3, 0}, {0x04, 200, 0}, {0x82, 9, 8, 0x01, 9, 0x01, 8, 0}}};
  const pixel_function value = [&](unsigned x, unsigned y, unsigned z) { return rows[y][z][x]; };
  const std::string path = write_picture("layout.rgb", 4, 2, value);

  bytes expected = {0xda, 1,   1,   1,   3,   0,                       // magic 474, type 257, dim 3
                    4,    0,   2,   0,   3,   0,                       // 4 by 2 pixels, 3 channels
                    0,    0,   0,   0,   200, 0,   0,  0, 0, 0, 0, 0,  // values 0 to 200, no waste
                    'n',  'o', ' ', 'n', 'a', 'm', 'e'};
  expected.resize(512 + 48);
  // Rows follow the tables in write order; the tables are indexed y + z * ysize.
  for (unsigned y = 0; y < 2; ++y)
    for (unsigned z = 0; z < 3; ++z) {
      put_le32(expected, 512 + 4 * (y + 2 * z), std::uint32_t(expected.size()));
      put_le32(expected, 536 + 4 * (y + 2 * z), std::uint32_t(packed[y][z].size()));
      expected.insert(expected.end(), packed[y][z].begin(), packed[y][z].end());
    }
  EXPECT_EQ(file_bytes(path), expected);
  // Read back as written and in the standard big-endian form.
  for (const std::string& file : {path, scratch_file("layout_be.rgb", to_big_endian(expected))})
    EXPECT_EQ(read_picture(file), pixels(4, 2, value)) << file;
}

TEST(image_write, rewritten_rows_and_value_range) {
  const std::string path = scratch_dir() + "/rewritten.rgb";
  image_file* image = iopen(path.c_str(), "w", 257, 3, 3, 1, 3);
  // Channel 0 first as 90s (3 bytes, then left behind), last as 1, 2, 3.
  const std::pair<samples, unsigned> writes[] = {
      {{90, 90, 90}, 0}, {{50, 50, 50}, 1}, {{50, 50, 50}, 2}, {{1, 2, 3}, 0}};
  for (const auto& [row, z] : writes) EXPECT_EQ(putrow(image, row.data(), 0, z), 3);
  ASSERT_EQ(iclose(image), 0);
  const bytes file = file_bytes(path);
  EXPECT_EQ(range_of(file), (value_range{1, 90, 3}));  // every value written counts
  EXPECT_EQ(le32(file, 512), 536u + 3 + 3 + 3);        // the new copy goes at the end
  EXPECT_EQ(read_picture(path), (samples{1, 50, 50, 2, 50, 50, 3, 50, 50}));

  const pixel_function zero = [](unsigned, unsigned, unsigned) { return 0; };
  EXPECT_EQ(range_of(file_bytes(write_picture("zeros.rgb", 2, 2, zero))), (value_range{0, 0, 0}));
  ASSERT_EQ(iclose(iopen(path.c_str(), "w", 257, 3, 2, 2, 3)), 0);
  const bytes never = file_bytes(path);
  EXPECT_EQ(range_of(never), (value_range{10000000, 0, 0}));
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
    const bytes file = file_bytes(path);
    EXPECT_EQ((std::array{le16(file, 4), le16(file, 8), le16(file, 10)}), (std::array{dim_out, ysize_out, zsize_out}));
  }

  // Verbatim storage: row y of channel z at 512 + (y * xsize + z * xsize * ysize) * bytes.
  const samples two = {0x1234, 0xabcd};
  for (unsigned bpp : {1u, 2u}) {
    image_file* image = iopen(path.c_str(), "w", bpp, 3, 2, 3, 3);
    ASSERT_EQ(putrow(image, two.data(), 2, 1), 2);
    ASSERT_EQ(iclose(image), 0);
    const bytes file = file_bytes(path);
    ASSERT_EQ(file.size(), 512 + (2 * 2 + 1 * 2 * 3 + 2) * bpp);
    EXPECT_EQ(bytes(file.end() - 2 * bpp, file.end()), (bpp == 1 ? bytes{0x34, 0xcd} : bytes{0x34, 0x12, 0xcd, 0xab}));
  }

  // Two bytes a value survive the trip through both storage forms.
  const pixel_function wide = [](unsigned x, unsigned y, unsigned z) { return 0xabcd - 0x1234 * x + 3 * y + z; };
  for (unsigned type : {0x002u, 0x102u})
    EXPECT_EQ(read_picture(write_picture("wide.rgb", 2, 3, wide, type)), pixels(2, 3, wide)) << type;
}

TEST(image_write, errors_are_fatal_one_line_messages) {
  const std::string missing = scratch_dir() + "/missing/out.rgb", path = scratch_dir() + "/out.rgb";
  const samples row(4, 1);
  const auto put = [&](unsigned type, unsigned y, unsigned z) {
    putrow(iopen(path.c_str(), "w", type, 3, 4, 2, 3), row.data(), y, z);
  };
  const std::pair<std::function<void()>, std::string> cases[] = {
      {[&] { iopen(missing.c_str(), "w", 257, 3, 4, 2, 3); }, "iopen: can't open output file " + missing},
      {[&] { iopen(path.c_str(), "w+", 257, 3, 4, 2, 3); }, "iopen: read/write mode not supported"},
      {[&] { put(257, 2, 0); }, "img_seek: row number out of range"},
      {[&] { put(257, 0, 3); }, "img_seek: row number out of range"},
      {[&] { put(0x103, 2, 0); }, "putrow: weird bpp"},
      {[&] { put(0x201, 2, 0); }, "putrow: weird image type"},
  };
  for (const auto& [call, message] : cases) EXPECT_EXIT(call(), ::testing::ExitedWithCode(1), "^" + message + "\n$");
  if (std::filesystem::exists("/dev/full")) {
    EXPECT_EXIT(iopen("/dev/full", "w", 257, 3, 4, 2, 3), ::testing::ExitedWithCode(1),
                "^iopen: error on write of image header\n$");
  }

  // With a handler the message goes to it and the call fails instead.
  captured_errors errors;
  EXPECT_EQ(iopen(missing.c_str(), "w", 257, 3, 4, 2, 3), nullptr);
  image_file* image = iopen(path.c_str(), "w", 257, 3, 4, 2, 3);
  EXPECT_EQ(putrow(image, row.data(), 2, 0), -1);
  EXPECT_EQ(iclose(image), 0);
  EXPECT_EQ(errors.text(), "iopen: can't open output file " + missing + "\nimg_seek: row number out of range\n");
  EXPECT_EQ(file_bytes(path).size(), 512u + 8 * 6);  // the refused row left nothing behind
}

TEST(image_write, independent_decoder_agrees) {
  // Wide enough for repeat and literal packets longer than 126, with flat
  // stretches, ramps and channel differences.
  const pixel_function value = [](unsigned x, unsigned y, unsigned z) {
    return std::uint16_t(x < 140 ? 20 * y + 60 * z : (x * 7 + y * 3 + z * 11) % 251);
  };
  const std::string path = write_picture("picture.rgb", 301, 7, value);
  const samples expected = pixels(301, 7, value);
  EXPECT_TRUE(read_picture(path) == expected);
  const auto [format, pil] = decode_with_pil(scratch_file("picture_be.rgb", to_big_endian(file_bytes(path))));
  EXPECT_EQ(format, "SGI 301 7");
  EXPECT_TRUE(pil == expected) << "python3-pil decodes different pixels";
}

}  // namespace
}  // namespace sciray
