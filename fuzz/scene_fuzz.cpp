// scene_fuzz.cpp - fuzz target: the scene reader and the preparation after
// it (bounding hierarchy, camera, sky, atmosphere) on arbitrary bytes. The
// program is run on band 1 of 2147483647, a band that is empty for every
// picture height: the run prepares everything and renders no row.
#include "fuzz_case.h"

using namespace sciray::fuzz;

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  install_case_handlers();
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const memory_file scene(data, size);
  run_program_case({"sciray", scene.path(), "/dev/null", "-band", "1/2147483647"});
  return 0;
}
