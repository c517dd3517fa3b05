// number_parse.cpp - fast conversions for the common plain tokens, and
// sscanf for everything else.
//
// Scene files are mostly long runs of plain decimal numbers, and sscanf
// spends most of the reading time on them. A token that is nothing but a
// plain decimal ("-12", "0.25", "1e-3") is converted here: an integer of at
// most nine digits cannot overflow, and std::from_chars rounds a decimal to
// the nearest double exactly as strtod (and so sscanf) does. Anything else -
// a token that merely begins with a number, hexadecimal, "inf", "nan",
// overflow and underflow, long integers - goes to sscanf itself, so its
// odd cases stay exactly the C library's.
#include "scene_file/number_parse.h"

#include <charconv>
#include <cstdio>
#include <cstring>

namespace sciray {

namespace {

bool is_digit(char c) { return c >= '0' && c <= '9'; }

// The end of a plain decimal real at `p` (digits with at most one point and
// at least one digit, then an optional exponent with digits), or null.
const char* plain_real_end(const char* p) {
  const char* digits = p;
  while (is_digit(*p)) ++p;
  bool any = p != digits;
  if (*p == '.') {
    const char* fraction = ++p;
    while (is_digit(*p)) ++p;
    any = any || p != fraction;
  }
  if (!any) return nullptr;
  if (*p == 'e' || *p == 'E') {
    ++p;
    if (*p == '+' || *p == '-') ++p;
    const char* exponent = p;
    while (is_digit(*p)) ++p;
    if (p == exponent) return nullptr;
  }
  return p;
}

}  // namespace

bool parse_int(const char* token, int& value) {
  const char* p = token;
  const bool negative = *p == '-';
  if (*p == '+' || *p == '-') ++p;
  long long n = 0;
  int digits = 0;
  while (is_digit(p[digits]) && digits < 10) n = n * 10 + (p[digits++] - '0');
  // Nine digits always fit; more (or none) are sscanf's to judge.
  if (digits >= 1 && digits <= 9) {
    value = static_cast<int>(negative ? -n : n);
    return true;
  }
  return std::sscanf(token, "%d", &value) == 1;
}

bool parse_real(const char* token, double& value) {
  const char* p = token + (*token == '+' || *token == '-');
  const char* end = plain_real_end(p);
  if (end != nullptr && *end == '\0') {
    // from_chars reads a leading '-' but not a '+'.
    const char* from = *token == '-' ? token : p;
    double v;
    const auto [stop, error] = std::from_chars(from, end, v);
    if (error == std::errc() && stop == end) {
      value = v;
      return true;
    }
  }
  return std::sscanf(token, "%le", &value) == 1;
}

bool parse_single(const char* token, float& value) { return std::sscanf(token, "%e", &value) == 1; }

}  // namespace sciray
