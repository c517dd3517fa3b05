// main.cpp - the program entry.
#include <new>
#include <string>

#include "driver/program.h"
#include "support/fatal_error.h"
#include "support/signal_cleanup.h"

int main(int argc, char** argv) {
  // An interrupted run leaves no unfinished picture behind.
  sciray::clean_up_on_signals();
  try {
    return sciray::run_program(argc, argv);
  } catch (const std::bad_alloc&) {
    // A scene can ask for more than the machine has (a huge scene, say).
    sciray::fatal(std::string(argv[0]) + ": out of memory");
  }
}
