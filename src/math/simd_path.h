// simd_path.h - which vector instructions the walk uses. Every path does the
// same IEEE operations on each ray as the plain one does, so that no picture
// depends on the processor; the widest path the processor offers is chosen
// when the program starts, and the tests force each path in turn to compare
// them.
#pragma once

#include <atomic>

namespace sciray {

enum class simd_path {
  plain,   // one ray at a time in plain scalar code, one box at a time
  sse2,    // two rays at a time (a single ray: a node's two boxes at once)
  avx2,    // four rays at a time
  avx512,  // eight rays at a time
};

// True when this processor (and its system) can run `path`.
bool simd_supported(simd_path path);
// The widest path this processor runs.
simd_path widest_simd_path();

namespace simd_detail {
// Read for every ray walked, so kept where reading it costs nothing.
inline std::atomic<simd_path> active{widest_simd_path()};
}  // namespace simd_detail

// The path walks take: the widest one supported, unless forced.
inline simd_path active_simd_path() { return simd_detail::active.load(std::memory_order_relaxed); }
// Makes every later walk take `path` (a supported one), for the tests.
inline void force_simd_path(simd_path path) { simd_detail::active.store(path, std::memory_order_relaxed); }
// The name of `path`, for messages.
const char* simd_path_name(simd_path path);

}  // namespace sciray
