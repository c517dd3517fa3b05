// simd_path.h - which vector instructions the walk uses. Every path does the
// same IEEE operations on each ray as the plain one does, so that no picture
// depends on the processor; the best path the processor offers is chosen
// once, and the tests force each path in turn to compare them.
#pragma once

namespace sciray {

enum class simd_path {
  plain,   // one ray at a time, one box at a time, no vector registers
  sse2,    // one ray at a time, a node's two boxes at once
  avx2,    // four rays at a time, one per lane
  avx512,  // eight rays at a time
};

// True when this processor (and its system) can run `path`.
bool simd_supported(simd_path path);
// The path walks take: the widest one supported, unless forced.
simd_path active_simd_path();
// Makes every later walk take `path` (a supported one), for the tests.
void force_simd_path(simd_path path);
// The name of `path`, for messages.
const char* simd_path_name(simd_path path);

}  // namespace sciray
