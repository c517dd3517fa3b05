// sciray_png_test.cpp - the band-joining PNG tool run on little- and
// big-endian band files, and on every kind of bad input, which must give one
// line on standard error, status 1, and no PNG (or temporary file) behind.
#include <gtest/gtest.h>

#include <filesystem>

#include "image/image.h"
#include "image/image_test_files.h"
#include "support/test_files.h"

namespace sciray {
namespace {

#ifdef SCIRAY_PNG_BINARY

using testing::bytes;
using testing::scratch_dir;

std::uint16_t pattern(unsigned x, unsigned y, unsigned z) { return std::uint16_t(x * 30 + y * 50 + z * 7); }

std::string band(const std::string& name, unsigned width, unsigned height, unsigned base) {
  const std::string path = scratch_dir() + "/" + name;
  testing::write_picture(path, width, height,
                         [base](unsigned x, unsigned y, unsigned z) { return std::uint16_t(base + pattern(x, y, z)); });
  return path;
}

std::string variant(const std::string& name, bytes file) {
  const std::string path = scratch_dir() + "/" + name;
  testing::write_bytes(path, file);
  return path;
}

// Files in the scratch directory that a conversion may have left behind.
std::vector<std::string> pictures_left() {
  std::vector<std::string> left;
  for (const auto& entry : std::filesystem::directory_iterator(scratch_dir())) {
    const std::string name = entry.path().filename().string();
    if (name.find(".png") != std::string::npos) left.push_back(name);
  }
  return left;
}

TEST(sciray_png, joins_bands_bottom_first) {
  const std::string b1 = band("b1.rgb", 6, 3, 0), b2 = band("b2.rgb", 6, 2, 1), b3 = band("b3.rgb", 6, 1, 2);
  const std::string b2_big = variant("b2_be.rgb", testing::to_big_endian(testing::read_bytes(b2)));
  const std::string out = scratch_dir() + "/joined.png";
  const testing::run_result r = testing::run_program(SCIRAY_PNG_BINARY, {out, b1, b2_big, b3});
  EXPECT_EQ(r.status, 0);
  EXPECT_EQ(r.err, "");
  EXPECT_EQ(pictures_left(), std::vector<std::string>{"joined.png"});

  const testing::decoded_picture png = testing::decode_with_pil(out);
  EXPECT_EQ(png.format, "PNG");
  EXPECT_EQ(png.picture.width, 6u);
  EXPECT_EQ(png.picture.height, 6u);
  bytes expected;
  for (const std::string& b : {b1, b2, b3}) {
    const bytes rgb = testing::read_picture(b).rgb;
    expected.insert(expected.end(), rgb.begin(), rgb.end());
  }
  EXPECT_EQ(png.picture.rgb, expected);
  // Band 3's only row is the top of the picture: its first pixel's red.
  EXPECT_EQ(png.picture.rgb[5 * 6 * 3], 2 + pattern(0, 0, 0));
}

TEST(sciray_png, bad_input_leaves_no_png) {
  const std::string good = band("good.rgb", 6, 2, 0), narrow = band("narrow.rgb", 5, 2, 0);
  const bytes file = testing::read_bytes(good);
  auto with = [&](std::size_t at, std::initializer_list<unsigned char> values) {
    bytes f = file;
    std::copy(values.begin(), values.end(), f.begin() + long(at));
    return f;
  };
  const std::string missing = scratch_dir() + "/missing.rgb";
  const std::string truncated = variant("truncated.rgb", bytes(file.begin(), file.begin() + 300));
  const std::string magic = variant("magic.rgb", with(0, {0x34, 0x12}));
  const std::string outside = variant("outside.rgb", with(512, {0x40, 0x42, 0x0f, 0}));
  const std::string overflow = variant("overflow.rgb", with(testing::le32(file, 512), {0x7f}));
  const std::string grey = scratch_dir() + "/grey.rgb";
  ASSERT_EQ(iclose(iopen(grey.c_str(), "w", 257, 2, 6, 2, 1)), 0);

  const std::string out = scratch_dir() + "/out.png", nowhere = scratch_dir() + "/no/such/dir/out.png";
  const std::pair<std::vector<std::string>, std::string> cases[] = {
      {{out}, "usage: sciray-png out.png band1.rgb [band2.rgb ...]"},
      {{out, good, missing}, "sciray-png: " + missing + ": iopen: can't open input file " + missing},
      {{out, truncated}, "sciray-png: " + truncated + ": iopen: error on read of rowstart"},
      {{out, magic, good}, "sciray-png: " + magic + ": iopen: bad magic in image file 1234"},
      {{out, outside}, "sciray-png: " + outside + ": getrow: row 0 of channel 0 lies outside the file"},
      {{out, good, narrow}, "sciray-png: " + narrow + ": width 5 differs from 6 of " + good},
      {{out, overflow}, "sciray-png: " + overflow + ": rle_expand: run of 127 values overflows the row"},
      {{out, grey}, "sciray-png: " + grey + ": expected 3 channels, found 1"},
      {{nowhere, good}, "sciray-png: " + nowhere + ": can't create " + nowhere + "."},
  };
  for (const auto& [args, message] : cases) {
    const testing::run_result r = testing::run_program(SCIRAY_PNG_BINARY, args);
    EXPECT_EQ(r.status, 1) << message;
    EXPECT_EQ(r.err.rfind(message, 0), 0u) << r.err;
    EXPECT_EQ(r.err.find('\n'), r.err.size() - 1) << r.err;
    EXPECT_EQ(pictures_left(), std::vector<std::string>{}) << message;
  }
}

#else

TEST(sciray_png, not_built) { GTEST_SKIP() << "sciray-png is built only where libpng is found"; }

#endif

}  // namespace
}  // namespace sciray
