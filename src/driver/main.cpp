// main.cpp - the program entry.
#include "driver/program.h"

int main(int argc, char** argv) { return sciray::run_program(argc, argv); }
