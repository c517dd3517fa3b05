// program.cpp - one run: arguments, scene, preparation, band, rows, file.
#include "driver/program.h"

#include <cstdio>
#include <filesystem>
#include <memory>
#include <string>

#include "driver/band.h"
#include "driver/band_renderer.h"
#include "driver/camera.h"
#include "driver/command_line.h"
#include "driver/render_threads.h"
#include "environment/sky.h"
#include "image/image.h"
#include "scene_file/scene_reader.h"
#include "scene_file/scene_settings.h"
#include "shading/recursion_bound.h"
#include "shading/render_context.h"
#include "shading/tracer.h"
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

sky_settings sky_from(const render_settings& r) {
  return {r.zenith,           r.horizon,          r.ground,      r.cloud_inner,     r.cloud_outer,
          r.cloud_inner_frac, r.cloud_outer_frac, r.cloud_scale, r.cloud_sharpness, r.cloud_offset,
          r.cloud_depth};
}

// Sets up the sky and the atmosphere.
void prepare_world(world& w, const render_settings& r, const camera_basis& basis, render_context& context) {
  // The sky's up is a direction made from the accepted up vector as the
  // viewing block stored it, before any roll.
  w.sky = make_sky(sky_from(r), normalise(basis.up_accepted), context.noise, context.random);
  w.atmosphere.index_by_channel = {r.atmosphere_ior, r.atmosphere_ior, r.atmosphere_ior};
  w.atmosphere.set_atmosphere(r.atmosphere, r.atmosphere_len);
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

  render_context context;
  world scene;
  scene_settings settings;
  read_scene_file(scene_file.get(), scene, settings, context);
  scene_file.reset();

  const std::size_t objects = scene.object_count();
  std::printf("Number of objects : %zu\n\n", objects);

  context.ray_count = 0;
  context.test_count = 0;
  scene.build_hierarchy();
  const render_settings& r = settings.render;
  const camera_basis basis = make_camera_basis(settings.view, program);
  const std::unique_ptr<camera> cam = make_camera(basis, settings.view.perspective);
  prepare_world(scene, r, basis, context);
  const tracer tracing(scene, r);

  const band_rows rows = split_band(r.height, options.band);
  if (rows.empty()) return 0;
  const screen_window window = make_screen_window(settings.view.view_width, settings.view.view_height, r.width, r.height);

  const recursion_depth depth = recursion_bound(tracing);
  const band_scene band{*cam, tracing, window, rows, r, objects, context.random};
  const int threads = options.threads > 0 ? options.threads : usable_processors();
  image_file* image = nullptr;
  const bool rendered = render_band(band, threads, render_stack_bytes(depth), [&] {
    image = iopen(argv[2], "w", 257, 3, static_cast<unsigned>(r.width), static_cast<unsigned>(rows.end - rows.start), 3);
    return image;
  });
  // Tracing this scene nests deeper than a thread's stack can be made.
  if (!rendered) fail(program, ": depth " + std::to_string(r.depth) + " needs more stack than this machine gives");
  iclose(image);
  return 0;
}

}  // namespace sciray
