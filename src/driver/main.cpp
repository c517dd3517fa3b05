// main.cpp - the program entry.
#include <new>
#include <string>

#include "driver/program.h"
#include "support/fatal_error.h"

int main(int argc, char** argv) {
  try {
    return sciray::run_program(argc, argv);
  } catch (const std::bad_alloc&) {
    // A scene can ask for more than the machine has (a huge scene, say).
    sciray::fatal(std::string(argv[0]) + ": out of memory");
  }
}
