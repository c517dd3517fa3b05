// simd_path.cpp - the processor's vector instructions, asked once.
#include "math/simd_path.h"

namespace sciray {

bool simd_supported(simd_path path) {
  __builtin_cpu_init();  // may be asked before the library's own start-up has run
  switch (path) {
    case simd_path::plain:
    case simd_path::sse2:
      return true;  // every x86-64 has SSE2
    case simd_path::avx2:
      return __builtin_cpu_supports("avx2") && __builtin_cpu_supports("popcnt");
    case simd_path::avx512:
      return __builtin_cpu_supports("avx512f") && __builtin_cpu_supports("popcnt");
  }
  return false;
}

simd_path widest_simd_path() {
  if (simd_supported(simd_path::avx512)) return simd_path::avx512;
  if (simd_supported(simd_path::avx2)) return simd_path::avx2;
  return simd_path::sse2;
}

const char* simd_path_name(simd_path path) {
  switch (path) {
    case simd_path::plain: return "plain";
    case simd_path::sse2: return "sse2";
    case simd_path::avx2: return "avx2";
    case simd_path::avx512: return "avx512";
  }
  return "?";
}

}  // namespace sciray
