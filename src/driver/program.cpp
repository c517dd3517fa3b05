// program.cpp - one run: arguments, scene file, the render, the picture file.
#include "driver/program.h"

#include <cstdio>
#include <filesystem>
#include <string>
#include <utility>

#include "driver/command_line.h"
#include "driver/picture_file.h"
#include "driver/render_job.h"
#include "support/c_file.h"
#include "support/fatal_error.h"
#include "support/same_file.h"

namespace sciray {

namespace {

[[noreturn]] void fail(const char* program, const std::string& message) { fatal(program + message); }

c_file open_scene(const char* program, const char* name) {
  std::error_code error;
  std::FILE* file = std::filesystem::is_directory(name, error) ? nullptr : std::fopen(name, "r");
  if (!file) fail(program, std::string(": can't open input file ") + name);
  return c_file(file);
}

}  // namespace

int run_program(int argc, char** argv) {
  const char* program = argv[0];
  if (argc <= 2) {
    std::fprintf(stderr, "usage: %s input_data.ren output_image.rgb\n", program);
    return 1;
  }
  run_options options;
  if (!parse_run_options(argc, argv, options)) fail(program, ": -threads needs a positive number");
  c_file scene_file = open_scene(program, argv[1]);
  refuse_output_over_input(program, argv[2], {argv[1]});

  render_request request;
  request.band = options.band;
  request.threads = options.threads;
  request.program = program;
  request.mark = options.mark;
  picture_file picture(program, argv[2]);
  render_scene(std::move(scene_file), request, picture);
  picture.close();
  return 0;
}

}  // namespace sciray
