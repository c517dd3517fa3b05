// simd_paths.h - the vector paths this processor runs, for tests that run
// each of them and compare it with the plain one.
#pragma once

#include <vector>

#include "math/simd_path.h"

namespace sciray::testing {

// Plain first, then every vector path this processor supports.
inline std::vector<simd_path> paths_here() {
  std::vector<simd_path> paths;
  for (simd_path p : {simd_path::plain, simd_path::sse2, simd_path::avx2, simd_path::avx512})
    if (simd_supported(p)) paths.push_back(p);
  return paths;
}

// Makes every walk take `path` while it lives; then the path before.
class forced_path {
 public:
  explicit forced_path(simd_path path) : before_(active_simd_path()) { force_simd_path(path); }
  ~forced_path() { force_simd_path(before_); }
  forced_path(const forced_path&) = delete;
  forced_path& operator=(const forced_path&) = delete;

 private:
  simd_path before_;
};

}  // namespace sciray::testing
