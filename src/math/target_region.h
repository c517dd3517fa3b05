// target_region.h - compiles the functions between a begin and an end for
// other vector instructions than the rest of the program (AVX2, AVX-512),
// so that one file can hold a wider path the processor is asked about at
// run time. GCC switches with its target pragma; clang gives the target to
// every function declared in between. Headers the rest of the program also
// uses must be included before the begin, so that no copy of their inline
// functions is built for the wider instructions.
#pragma once

#define SCIRAY_PRAGMA(text) _Pragma(#text)

#if defined(__clang__)
#define SCIRAY_TARGET_BEGIN(features) \
  SCIRAY_PRAGMA(clang attribute push(__attribute__((target(features))), apply_to = function))
#define SCIRAY_TARGET_END SCIRAY_PRAGMA(clang attribute pop)
#else
#define SCIRAY_TARGET_BEGIN(features) SCIRAY_PRAGMA(GCC push_options) SCIRAY_PRAGMA(GCC target(features))
#define SCIRAY_TARGET_END SCIRAY_PRAGMA(GCC pop_options)
#endif
