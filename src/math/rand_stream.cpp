// rand_stream.cpp - glibc's TYPE_3 random(): r[i] = r[i-31] + r[i-3] over a
// table seeded by a Lehmer generator from seed 1, first 310 outputs dropped.
#include "math/rand_stream.h"

namespace sciray {

namespace {

// Polynomials in x over the 32-bit integers (the ring's arithmetic, which
// wraps), reduced by x^31 = x^28 + 1: the recurrence r[i] = r[i-3] + r[i-31]
// as a rule on the shift x. If x^n = c[0] + c[1] x + ... + c[30] x^30, then
// r[i + n] = c[0] r[i] + ... + c[30] r[i + 30].
using poly = std::array<std::uint32_t, 31>;

poly times(const poly& a, const poly& b) {
  std::array<std::uint32_t, 61> full{};
  for (int i = 0; i < 31; ++i)
    for (int j = 0; j < 31; ++j) full[i + j] += a[i] * b[j];
  for (int k = 60; k >= 31; --k) {
    full[k - 3] += full[k];
    full[k - 31] += full[k];
  }
  poly reduced;
  for (int i = 0; i < 31; ++i) reduced[i] = full[i];
  return reduced;
}

poly times_x(const poly& a) {
  poly shifted{};
  for (int i = 30; i > 0; --i) shifted[i] = a[i - 1];
  shifted[28] += a[30];
  shifted[0] += a[30];
  return shifted;
}

}  // namespace

rand_stream::rand_stream() {
  std::int64_t word = 1;  // the seed of an unseeded stream
  ring_[0] = static_cast<std::uint32_t>(word);
  for (int i = 1; i < 31; ++i) {
    word = (16807 * word) % 2147483647;
    ring_[i] = static_cast<std::uint32_t>(word);
  }
  for (int i = 31; i < 34; ++i) ring_[i] = ring_[i - 31];
  position_ = 34;
  for (int i = 0; i < 310; ++i) next();
  drawn_ = 0;
}

void rand_stream::discard(std::uint64_t count) {
  if (count < 64) {
    while (count-- > 0) next();
    return;
  }
  // x^count by squaring.
  poly power{}, base{};
  power[0] = 1;
  base[1] = 1;
  for (std::uint64_t n = count; n != 0; n >>= 1) {
    if (n & 1) power = times(power, base);
    base = times(base, base);
  }
  // The last 31 values and the 31 values `count` further on.
  std::array<std::uint32_t, 31> window, ahead;
  for (unsigned j = 0; j < 31; ++j) window[j] = ring_[(position_ - 31 + j) % 34];
  for (unsigned j = 0; j < 31; ++j) {
    std::uint32_t value = 0;
    for (unsigned m = 0; m < 31; ++m) value += power[m] * window[m];
    ahead[j] = value;
    power = times_x(power);
  }
  drawn_ += count;
  position_ = static_cast<unsigned>((position_ + count % 34) % 34) + 34;
  for (unsigned j = 0; j < 31; ++j) ring_[(position_ - 31 + j) % 34] = ahead[j];
}

int rand_stream::next() {
  const std::uint32_t value = ring_[(position_ - 31) % 34] + ring_[(position_ - 3) % 34];
  ring_[position_ % 34] = value;
  ++position_;
  ++drawn_;
  if (position_ >= 34 * 1000) position_ -= 34 * 990;  // keep the index small; 34 divides the step
  return static_cast<int>(value >> 1);
}

}  // namespace sciray
