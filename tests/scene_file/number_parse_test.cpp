// number_parse_test.cpp - the fast conversions give exactly what sscanf's
// "%d" and "%le" give: on plain decimals (compared bit for bit on many
// random ones, ties and long digit strings included) and on every token the
// fast path must hand over (trailing characters, overflow, underflow,
// hexadecimal, infinities and NaNs, lone signs).
#include "scene_file/number_parse.h"

#include <gtest/gtest.h>

#include <bit>
#include <cstdint>
#include <cstdio>
#include <random>
#include <string>

namespace sciray {
namespace {

void expect_int_as_sscanf(const std::string& token) {
  int want = 12345, got = 12345;
  const bool read = std::sscanf(token.c_str(), "%d", &want) == 1;
  EXPECT_EQ(parse_int(token.c_str(), got), read) << token;
  if (read) {
    EXPECT_EQ(got, want) << token;
  }
}

void expect_real_as_sscanf(const std::string& token) {
  double want = 12345, got = 12345;
  const bool read = std::sscanf(token.c_str(), "%le", &want) == 1;
  EXPECT_EQ(parse_real(token.c_str(), got), read) << token;
  if (read) {
    EXPECT_EQ(std::bit_cast<std::uint64_t>(got), std::bit_cast<std::uint64_t>(want)) << token;
  }
}

TEST(number_parse, integers_as_sscanf_reads_them) {
  for (const char* token : {"0", "12", "+7", "-0", "-42", "007", "123456789", "-999999999", "320.7", "12abc", "1e5",
                            "0x1F", "2147483647", "-2147483648", "2147483648", "4294967297", "99999999999999999999",
                            "-99999999999999999999", "1234567890123", "", "-", "+", "x1", "+-1", "-+1", ".5", "--5"})
    expect_int_as_sscanf(token);
}

TEST(number_parse, reals_as_sscanf_reads_them) {
  // Plain decimals, the fast path's own, including ties, extreme exponents
  // and more digits than a double holds.
  for (const char* token : {"0", "-0", "+0.0", "0.25", "-1e-3", "1E+5", ".5", "5.", "+2.5", "-.75e2", "9007199254740993",
                            "9007199254740993.0000000000000000001", "2.2250738585072011e-308", "1.7976931348623157e308",
                            "0.1000000000000000055511151231257827021181583404541015625",
                            "123456789012345678901234567890e-30"})
    expect_real_as_sscanf(token);
  // Handed over: out of range, hexadecimal, words, and tokens that merely
  // begin with a number; and tokens that do not begin with one.
  for (const char* token : {"1e400", "-1e400", "1e-400", "4.9e-324", "2e-310", "0x1p3", "-0X1.8P1", "inf", "-Infinity",
                            "nan", "NAN(123)", "1e", "1e+", "1.5x", "12abc", "1.2.3", "1e5e5", "1ee5", "--1", "+-1",
                            ".", "e5", "", "+", "-", "-.e1", "x"})
    expect_real_as_sscanf(token);

  // Many random plain decimals, bit for bit.
  std::mt19937_64 gen(20261123);
  std::uniform_int_distribution<int> digits(1, 25), exponent(-330, 330), pick(0, 9);
  for (int i = 0; i < 20000; ++i) {
    std::string token = gen() % 2 ? "-" : "";
    for (int d = digits(gen); d > 0; --d) token += static_cast<char>('0' + pick(gen));
    if (gen() % 2) {
      token += '.';
      for (int d = digits(gen); d > 0; --d) token += static_cast<char>('0' + pick(gen));
    }
    if (gen() % 2) token += "e" + std::to_string(exponent(gen));
    expect_real_as_sscanf(token);
  }
}

}  // namespace
}  // namespace sciray
