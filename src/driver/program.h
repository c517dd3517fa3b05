// program.h - one run from command line to finished picture file.
#pragma once

namespace sciray {

// Checks the arguments, reads the scene, renders the picture or band and
// writes it. Returns the exit status; fatal errors exit(1) directly.
int run_program(int argc, char** argv);

}  // namespace sciray
