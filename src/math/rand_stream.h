// rand_stream.h - the renderer's one stream of random numbers: the C
// library's unseeded rand() sequence (glibc's additive feedback generator),
// reproduced here so that the stream is an object a render owns.
#pragma once

#include <array>
#include <cstdint>

namespace sciray {

// The largest value of the stream.
inline constexpr double rand_max = 2147483647.0;

class rand_stream {
 public:
  rand_stream();
  // The next value in 0 .. rand_max, exactly as rand() would return it.
  int next();
  // Moves `count` values ahead, as that many next() calls would, in time
  // that grows with the number of digits of `count` only.
  void discard(std::uint64_t count);
  // The values drawn or discarded since the stream was made.
  std::uint64_t drawn() const { return drawn_; }

 private:
  std::array<std::uint32_t, 34> ring_{};
  unsigned position_ = 0;  // index of the next value to produce, modulo 34
  std::uint64_t drawn_ = 0;
};

}  // namespace sciray
