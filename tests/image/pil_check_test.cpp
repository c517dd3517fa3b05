// pil_check_test.cpp - an independent check of the written files: a picture
// converted to the standard big-endian form decodes with python3-pil (a
// separate SGI reader) to the same pixels as the library's own reader.
#include <gtest/gtest.h>

#include "image/image_test_files.h"
#include "support/test_files.h"

namespace sciray {
namespace {

TEST(image_pil, independent_decoder_agrees) {
  const std::string dir = testing::scratch_dir();
  const std::string little = dir + "/picture.rgb", big = dir + "/picture_be.rgb";
  // Wide enough for repeat and literal packets longer than 126, with flat
  // stretches, ramps and channel differences.
  testing::write_picture(little, 301, 7, [](unsigned x, unsigned y, unsigned z) {
    if (x < 140) return std::uint16_t(40 * y + 90 * z);
    return std::uint16_t((x * 7 + y * 3 + z * 11) % 251);
  });
  testing::write_bytes(big, testing::to_big_endian(testing::read_bytes(little)));

  const testing::rgb_picture ours = testing::read_picture(little);
  ASSERT_EQ(ours.rgb.size(), 301u * 7 * 3);
  EXPECT_EQ(ours.rgb[(2 * 301 + 10) * 3 + 1], 40 * 2 + 90);
  EXPECT_EQ(testing::read_picture(big).rgb, ours.rgb);

  const testing::decoded_picture pil = testing::decode_with_pil(big);
  EXPECT_EQ(pil.format, "SGI");
  EXPECT_EQ(pil.picture.width, 301u);
  EXPECT_EQ(pil.picture.height, 7u);
  EXPECT_TRUE(pil.picture.rgb == ours.rgb) << "python3-pil decodes different pixels";
}

}  // namespace
}  // namespace sciray
