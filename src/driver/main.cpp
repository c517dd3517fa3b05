// main.cpp - the program entry.
#include <cstdio>
#include <new>

#include "driver/program.h"

int main(int argc, char** argv) {
  try {
    return sciray::run_program(argc, argv);
  } catch (const std::bad_alloc&) {
    // A scene can ask for more than the machine has (a huge colour map, say).
    std::fprintf(stderr, "%s: out of memory\n", argv[0]);
    return 1;
  }
}
