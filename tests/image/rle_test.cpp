// rle_test.cpp - the run-length scheme on the documented example rows, with
// 1- and 2-byte values in either byte order, and the expander's refusal of
// malformed streams.
#include "image/rle.h"

#include <gtest/gtest.h>

#include <tuple>

#include "image/image_test_files.h"

namespace sciray {
namespace {

using namespace testing;

TEST(image_rle, rows_compact_and_expand_exactly) {
  // 300 distinct values: literal packets of 126, 126 and 46, then the last
  // two values as repeats of one.
  samples ramp;
  bytes ramp_packed;
  for (unsigned i = 0; i < 298; ++i) {
    if (i % 126 == 0) ramp_packed.push_back(std::uint8_t(0x80 | (i < 252 ? 126 : 46)));
    ramp_packed.push_back(std::uint8_t(i));
    ramp.push_back(i & 0xff);
  }
  ramp.insert(ramp.end(), {298 & 0xff, 299 & 0xff});
  ramp_packed.insert(ramp_packed.end(), {0x01, 298 & 0xff, 0x01, 299 & 0xff, 0});

  const value_layout one = {1, false}, little = {2, false}, big = {2, true};
  const std::tuple<samples, value_layout, bytes> cases[] = {
      // Packets of 126, 126, 126, 126, 126 and 10, then the terminating 0.
      {samples(640, 9), one, {126, 9, 126, 9, 126, 9, 126, 9, 126, 9, 10, 9, 0}},
      // The literal scan stops two short of the end: 2 and 3 go out alone.
      {{0, 1, 2, 3}, one, {0x82, 0, 1, 0x01, 2, 0x01, 3, 0}},
      {{5, 5, 5, 7}, one, {0x03, 5, 0x01, 7, 0}},
      {{1, 2, 3, 3, 3, 4, 5}, one, {0x82, 1, 2, 0x03, 3, 0x01, 4, 0x01, 5, 0}},
      {{7}, one, {0x01, 7, 0}},
      {ramp, one, ramp_packed},
      // Two-byte counts and values in the layout's byte order.
      {{0x1234, 0x1234, 0x1234, 0xabcd}, little, {0x03, 0, 0x34, 0x12, 0x01, 0, 0xcd, 0xab, 0, 0}},
      {{0x1234, 0x1234, 0x1234, 0xabcd}, big, {0, 0x03, 0x12, 0x34, 0, 0x01, 0xab, 0xcd, 0, 0}},
      {{1, 2, 3}, little, {0x81, 0, 1, 0, 0x01, 0, 2, 0, 0x01, 0, 3, 0, 0, 0}},
  };
  for (const auto& [row, layout, packed] : cases) {
    bytes out(row.size() * 4 + 16);
    out.resize(rle_compact(row.data(), out.data(), layout, row.size()) * layout.bytes);
    EXPECT_EQ(out, packed) << "row of " << row.size();
    samples back(row.size());
    EXPECT_EQ(rle_expand(packed.data(), packed.size(), layout, back.data(), back.size()), int(row.size()));
    EXPECT_EQ(back, row);
  }
}

TEST(image_rle, malformed_streams_are_refused) {
  const std::pair<bytes, std::string> cases[] = {
      {{0x05, 9, 0}, "rle_expand: run of 5 values overflows the row\n"},
      {{0x83, 1, 2, 3, 0x02, 4, 0}, "rle_expand: run of 2 values overflows the row\n"},
      {{0x84, 1, 2}, "rle_expand: row data ends inside a run\n"},
      {{0x02, 9, 0x02}, "rle_expand: row data ends inside a run\n"},
      {{0x02, 9, 0}, "rle_expand: row ends after 2 of 4 values\n"},
      {{0}, "rle_expand: row ends after 0 of 4 values\n"},
      {{0x04, 9}, ""},  // a full row whose terminator is missing is accepted
  };
  for (const auto& [stream, message] : cases) {
    captured_errors errors;
    samples row(4);  // exactly one row: an overrun shows under the sanitizers
    EXPECT_EQ(rle_expand(stream.data(), stream.size(), {}, row.data(), row.size()), message.empty() ? 4 : -1);
    EXPECT_EQ(errors.text(), message);
  }
}

}  // namespace
}  // namespace sciray
