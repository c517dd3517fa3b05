// sciray_png_test.cpp - the band-joining PNG tool run on little- and
// big-endian band files, and on every kind of bad input, which must give one
// line on standard error, status 1, and no PNG (or temporary file) behind;
// nor may an output that is an input, or a signal, destroy a file.
#include <gtest/gtest.h>

#include <signal.h>
#include <sys/wait.h>

#include <filesystem>

#include "image/image_test_files.h"
#include "support/child_process.h"

namespace sciray {
namespace {

using namespace testing;

// The whole 6 rows high picture that the band files are cut from.
std::uint16_t picture(unsigned x, unsigned y, unsigned z) { return std::uint16_t(x * 20 + y * 25 + z * 7); }

// A band file holding `height` rows of picture() from row `first` on.
std::string band(const std::string& name, unsigned width, unsigned height, unsigned first) {
  return write_picture(name, width, height,
                       [first](unsigned x, unsigned y, unsigned z) { return picture(x, first + y, z); });
}

// Files in the scratch directory that a conversion may have left behind.
std::vector<std::string> pngs_left() {
  std::vector<std::string> left;
  for (const auto& entry : std::filesystem::directory_iterator(scratch_dir()))
    if (entry.path().filename().string().find(".png") != std::string::npos) left.push_back(entry.path().filename());
  return left;
}

TEST(sciray_png, joins_bands_bottom_first) {
  const std::string b1 = band("b1.rgb", 6, 3, 0), b2 = band("b2.rgb", 6, 2, 3), b3 = band("b3.rgb", 6, 1, 5);
  const std::string b2_big = scratch_file("b2_be.rgb", to_big_endian(file_bytes(b2)));
  const std::string out = scratch_dir() + "/joined.png";
  const run_result r = run_program(SCIRAY_PNG_BINARY, {out, b1, b2_big, b3});
  EXPECT_EQ(r.status, 0);
  EXPECT_EQ(r.err, "");
  EXPECT_EQ(pngs_left(), std::vector<std::string>{"joined.png"});
  EXPECT_EQ(decode_with_pil(out), std::pair(std::string("PNG 6 6"), pixels(6, 6, picture)));
}

TEST(sciray_png, bad_input_leaves_no_png) {
  const std::string good = band("good.rgb", 6, 2, 0), narrow = band("narrow.rgb", 5, 2, 0);
  const std::string truncated = corrupt([](bytes& f) { f.resize(300); });
  const std::string magic = corrupt([](bytes& f) { f[0] = 0x34, f[1] = 0x12; });
  const std::string outside = corrupt([](bytes& f) { put_le32(f, 512, 1000000); });
  const std::string overflow = corrupt([](bytes& f) { f[le32(f, 512)] = 0x7f; });
  const std::string literal = corrupt([](bytes& f) { f[le32(f, 512 + 4)] = 0x85; });
  const std::string negative = corrupt([](bytes& f) { put_le32(f, 536 + 8, std::uint32_t(-1)); });
  const std::string empty = corrupt([](bytes& f) { f[6] = f[7] = 0; });
  const std::string huge = corrupt([](bytes& f) { f[6] = f[7] = f[8] = f[9] = 0xff; });
  const std::string missing = scratch_dir() + "/missing.rgb", grey = scratch_dir() + "/grey.rgb";
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
      {{out, literal}, "sciray-png: " + literal + ": rle_expand: run of 5 values overflows the row"},
      {{out, negative}, "sciray-png: " + negative + ": getrow: row 0 of channel 1 has a bad length"},
      {{out, empty}, "sciray-png: " + empty + ": iopen: image has a size of 0"},
      {{out, huge}, "sciray-png: " + huge + ": iopen: error on read of rowstart"},
      {{out, grey}, "sciray-png: " + grey + ": expected 3 channels, found 1"},
      {{nowhere, good}, "sciray-png: " + nowhere + ": can't create " + nowhere + ": No such file or directory"},
      // A device is written directly, never replaced by a file.
      {{"/dev/full", good}, "sciray-png: /dev/full: "},
  };
  for (const auto& [args, message] : cases) {
    const run_result r = run_program(SCIRAY_PNG_BINARY, args);
    EXPECT_EQ(r.status, 1) << message;
    EXPECT_EQ(r.err.rfind(message, 0), 0u) << r.err;
    EXPECT_EQ(r.err.find('\n'), r.err.size() - 1) << r.err;
    EXPECT_EQ(pngs_left(), std::vector<std::string>{}) << message;
  }
  EXPECT_TRUE(std::filesystem::is_character_file("/dev/full"));
}

TEST(sciray_png, an_output_that_is_a_band_file_is_refused) {
  const std::string b1 = band("b1.rgb", 6, 3, 0), b2 = band("b2.rgb", 6, 3, 3);
  const bytes b2_bytes = file_bytes(b2);
  std::filesystem::create_symlink(b2, scratch_dir() + "/link.png");
  std::filesystem::create_hard_link(b2, scratch_dir() + "/hard.png");
  for (const std::string& out : {b2, scratch_dir() + "/link.png", scratch_dir() + "/hard.png"}) {
    const run_result r = run_program(SCIRAY_PNG_BINARY, {out, b1, b2});
    EXPECT_EQ(r.status, 1) << out;
    EXPECT_EQ(r.err, SCIRAY_PNG_BINARY + std::string(": output file ") + out + " is the same file as input " + b2 + "\n");
    EXPECT_EQ(file_bytes(b2), b2_bytes);
  }
  EXPECT_TRUE(std::filesystem::is_symlink(scratch_dir() + "/link.png"));
}

// A square picture of `side` by `side` pixels of 7s whose rows all share
// one compressed row: a small file for a large picture.
std::string large_picture(unsigned side) {
  bytes file = file_bytes(write_picture("one_row.rgb", side, 1, [](unsigned, unsigned, unsigned) { return 7; }));
  const std::uint32_t row_start = le32(file, 512), row_size = le32(file, 512 + 4 * 3);
  const bytes row(file.begin() + row_start, file.begin() + row_start + row_size);
  file.resize(512 + 8 * 3 * side);
  file[8] = side & 0xff, file[9] = side >> 8;
  const std::size_t data = file.size();
  file.insert(file.end(), row.begin(), row.end());
  for (std::size_t i = 0; i < 3 * side; ++i) {
    put_le32(file, 512 + 4 * i, std::uint32_t(data));
    put_le32(file, 512 + 4 * (3 * side + i), row_size);
  }
  return scratch_file("large.rgb", file);
}

TEST(sciray_png, large_picture_from_a_small_file) {
  // 2000 by 2000 pixels in a 48 KB file, which the tool streams into a PNG
  // row by row.
  const unsigned side = 2000;
  const std::string out = scratch_dir() + "/large.png";
  const run_result r = run_program(SCIRAY_PNG_BINARY, {out, large_picture(side)});
  EXPECT_EQ(r.status, 0) << r.err;
  const auto [format, samples] = decode_with_pil(out);
  EXPECT_EQ(format, "PNG 2000 2000");
  EXPECT_EQ(samples, testing::samples(std::size_t{3} * side * side, 7));
}

TEST(sciray_png, a_signal_leaves_no_partial_png) {
  // 40000 by 40000 pixels take a while to compress; an earlier PNG stays.
  const std::string band = large_picture(40000);
  const std::string out = write_scratch_file("out.png", "an earlier picture");
  const std::string log = scratch_dir() + "/log";
  for (int signal : {SIGINT, SIGTERM, SIGHUP, SIGXCPU}) {
    SCOPED_TRACE(strsignal(signal));
    child_process run(SCIRAY_PNG_BINARY, {out, band}, log);
    ASSERT_TRUE(run.wait_for([] { return pngs_left().size() == 2; }, 30));  // and the temporary one
    run.send(signal);
    const int status = run.wait();
    EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == signal) << std::hex << status;
    EXPECT_EQ(pngs_left(), std::vector<std::string>{"out.png"});
    EXPECT_EQ(read_file(out), "an earlier picture");
  }
}

}  // namespace
}  // namespace sciray
