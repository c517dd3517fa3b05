// program.cpp - one run: arguments, scene file, the render, the picture file.
#include "driver/program.h"

#include <cstdio>
#include <filesystem>
#include <string>
#include <utility>

#include "driver/command_line.h"
#include "driver/render_job.h"
#include "image/image.h"
#include "support/c_file.h"
#include "support/fatal_error.h"

namespace sciray {

namespace {

[[noreturn]] void fail(const char* program, const std::string& message) { fatal(program + message); }

c_file open_scene(const char* program, const char* name) {
  std::error_code error;
  std::FILE* file = std::filesystem::is_directory(name, error) ? nullptr : std::fopen(name, "r");
  if (!file) fail(program, std::string(": can't open input file ") + name);
  return c_file(file);
}

// Standard output and the picture file, made only once the rows are coming.
class picture_file : public render_output {
 public:
  explicit picture_file(const char* name) : name_(name) {}
  void scene_read(std::size_t objects) override { std::printf("Number of objects : %zu\n\n", objects); }
  void start(int width, int rows) override {
    image_ = iopen(name_, "w", 257, 3, static_cast<unsigned>(width), static_cast<unsigned>(rows), 3);
  }
  void progress(const std::string& line) override {
    std::fputs(line.c_str(), stdout);
    std::fflush(stdout);
  }
  void put_row(int row, int channel, const std::uint16_t* samples) override {
    putrow(image_, samples, static_cast<unsigned>(row), static_cast<unsigned>(channel));
  }
  void close() {
    if (image_) iclose(image_);
  }

 private:
  const char* name_;
  image_file* image_ = nullptr;
};

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

  render_request request;
  request.band = options.band;
  request.threads = options.threads;
  request.program = program;
  picture_file picture(argv[2]);
  render_scene(std::move(scene_file), request, picture);
  picture.close();
  return 0;
}

}  // namespace sciray
