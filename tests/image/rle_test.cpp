// rle_test.cpp - the run-length scheme on the documented example rows, with
// 1- and 2-byte values, and the expander's refusal of malformed streams.
#include "image/rle.h"

#include <gtest/gtest.h>

#include <vector>

#include "image/image_test_files.h"

namespace sciray {
namespace {

using testing::bytes;
using testing::captured_errors;

bytes compact(const std::vector<std::uint16_t>& row, value_layout layout = {}) {
  bytes out(row.size() * 4 + 16);
  out.resize(rle_compact(row.data(), out.data(), layout, row.size()) * layout.bytes);
  return out;
}

TEST(image_rle, documented_rows) {
  const std::vector<std::pair<std::vector<std::uint16_t>, bytes>> cases = {
      // Packets of 126, 126, 126, 126, 126 and 10, then the terminating 0.
      {std::vector<std::uint16_t>(640, 9), {126, 9, 126, 9, 126, 9, 126, 9, 126, 9, 10, 9, 0}},
      // The literal scan stops two short of the end: 2 and 3 go out alone.
      {{0, 1, 2, 3}, {0x82, 0, 1, 0x01, 2, 0x01, 3, 0}},
      {{5, 5, 5, 7}, {0x03, 5, 0x01, 7, 0}},
      {{1, 2, 3, 3, 3, 4, 5}, {0x82, 1, 2, 0x03, 3, 0x01, 4, 0x01, 5, 0}},
      {{7}, {0x01, 7, 0}},
  };
  for (const auto& [row, expected] : cases) {
    EXPECT_EQ(compact(row), expected) << "row of " << row.size();
    std::vector<std::uint16_t> back(row.size());
    EXPECT_EQ(rle_expand(expected.data(), expected.size(), {}, back.data(), back.size()), int(row.size()));
    EXPECT_EQ(back, row);
  }

  // 300 distinct values: literal packets of 126, 126 and 46, then the last
  // two values as repeats of one.
  std::vector<std::uint16_t> ramp(300);
  for (std::uint16_t i = 0; i < 300; ++i) ramp[i] = i;
  const bytes out = compact(ramp);
  ASSERT_EQ(out.size(), 3 + 298 + 4 + 1u);
  EXPECT_EQ(out[0], 0x80 | 126);
  EXPECT_EQ(out[1], 0);
  EXPECT_EQ(out[127], 0x80 | 126);
  EXPECT_EQ(out[128], 126);
  EXPECT_EQ(out[254], 0x80 | 46);
  EXPECT_EQ(out[255], 252);
  EXPECT_EQ(bytes(out.end() - 5, out.end()), (bytes{0x01, 298 & 0xff, 0x01, 299 & 0xff, 0}));
}

TEST(image_rle, two_byte_values_in_either_order) {
  const std::vector<std::uint16_t> row = {0x1234, 0x1234, 0x1234, 0xabcd};
  const bytes little = {0x03, 0, 0x34, 0x12, 0x01, 0, 0xcd, 0xab, 0, 0};
  const bytes big = {0, 0x03, 0x12, 0x34, 0, 0x01, 0xab, 0xcd, 0, 0};
  EXPECT_EQ(compact(row, {2, false}), little);
  EXPECT_EQ(compact(row, {2, true}), big);
  std::vector<std::uint16_t> back(4);
  EXPECT_EQ(rle_expand(big.data(), big.size(), {2, true}, back.data(), 4), 4);
  EXPECT_EQ(back, row);
  // A literal packet: the count carries 0x80 in its 2-byte value.
  EXPECT_EQ(compact({1, 2, 3}, {2, false}), (bytes{0x81, 0, 1, 0, 0x01, 0, 2, 0, 0x01, 0, 3, 0, 0, 0}));
}

TEST(image_rle, malformed_streams_are_refused) {
  const std::vector<std::pair<bytes, std::string>> cases = {
      {{0x05, 9, 0}, "rle_expand: run of 5 values overflows the row\n"},
      {{0x83, 1, 2, 3, 0x02, 4, 0}, "rle_expand: run of 2 values overflows the row\n"},
      {{0x84, 1, 2}, "rle_expand: row data ends inside a run\n"},
      {{0x02, 9, 0x02}, "rle_expand: row data ends inside a run\n"},
      {{0x02, 9, 0}, "rle_expand: row ends after 2 of 4 values\n"},
      {{0}, "rle_expand: row ends after 0 of 4 values\n"},
  };
  for (const auto& [stream, message] : cases) {
    captured_errors errors;
    std::vector<std::uint16_t> row(4);  // exactly one row: an overrun shows under the sanitizers
    EXPECT_EQ(rle_expand(stream.data(), stream.size(), {}, row.data(), row.size()), -1);
    EXPECT_EQ(errors.text(), message);
  }
  // A full row whose terminator is missing is accepted.
  std::vector<std::uint16_t> row(4);
  const bytes unterminated = {0x04, 9};
  EXPECT_EQ(rle_expand(unterminated.data(), unterminated.size(), {}, row.data(), 4), 4);

  // Without a handler the error ends the process.
  EXPECT_EXIT(rle_expand(bytes{0x05, 9, 0}.data(), 3, {}, row.data(), 4), ::testing::ExitedWithCode(1),
              "^rle_expand: run of 5 values overflows the row\n$");
}

}  // namespace
}  // namespace sciray
