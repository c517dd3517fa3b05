// main.cpp - the program entry.
#include <malloc.h>

#include <new>
#include <string>

#include "driver/program.h"
#include "support/fatal_error.h"

int main(int argc, char** argv) {
  // Large blocks are mapped and unmapped one by one, so the hierarchy
  // build's scratch space, freed before the scene is laid out for tracing,
  // does not stay resident (the C library would otherwise raise this
  // threshold after such a free and keep later blocks in its heap).
  mallopt(M_MMAP_THRESHOLD, 256 * 1024);
  try {
    return sciray::run_program(argc, argv);
  } catch (const std::bad_alloc&) {
    // A scene can ask for more than the machine has (a huge scene, say).
    sciray::fatal(std::string(argv[0]) + ": out of memory");
  }
}
