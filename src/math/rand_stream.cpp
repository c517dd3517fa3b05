// rand_stream.cpp - glibc's TYPE_3 random(): r[i] = r[i-31] + r[i-3] over a
// table seeded by a Lehmer generator from seed 1, first 310 outputs dropped.
#include "math/rand_stream.h"

namespace sciray {

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
}

int rand_stream::next() {
  const std::uint32_t value = ring_[(position_ - 31) % 34] + ring_[(position_ - 3) % 34];
  ring_[position_ % 34] = value;
  ++position_;
  if (position_ >= 34 * 1000) position_ -= 34 * 990;  // keep the index small; 34 divides the step
  return static_cast<int>(value >> 1);
}

}  // namespace sciray
