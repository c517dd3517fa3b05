// render_job.cpp - from an open scene file to a rendered band: reading,
// preparation and the band renderer, in the order a run takes them.
#include "driver/render_job.h"

#include <malloc.h>

#include <string>

#include "driver/band_renderer.h"
#include "driver/camera.h"
#include "driver/render_threads.h"
#include "environment/sky.h"
#include "scene_file/scene_reader.h"
#include "scene_file/scene_settings.h"
#include "shading/recursion_bound.h"
#include "shading/render_context.h"
#include "shading/tracer.h"
#include "shading/world.h"
#include "support/fatal_error.h"

namespace sciray {

namespace {

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

void render_scene(c_file scene_file, const render_request& request, render_output& out) {
  // Large blocks are mapped and unmapped one by one, so the hierarchy
  // build's scratch space, freed before the scene is laid out for tracing,
  // does not stay resident (the C library would otherwise raise this
  // threshold after such a free and keep later blocks in its heap). In a
  // Python session this holds from the first render on.
  mallopt(M_MMAP_THRESHOLD, 256 * 1024);
  render_context context;
  world scene;
  scene_settings settings;
  read_scene_file(scene_file.get(), scene, settings, context);
  scene_file.reset();

  const std::size_t objects = scene.object_count();
  out.scene_read(objects);

  context.ray_count = 0;
  context.test_count = 0;
  scene.build_hierarchy();
  const render_settings& r = settings.render;
  const camera_basis basis = make_camera_basis(settings.view, request.program);
  const std::unique_ptr<camera> cam = make_camera(basis, settings.view.perspective);
  prepare_world(scene, r, basis, context);
  const tracer tracing(scene, r);

  const band_rows rows = split_band(r.height, request.band);
  if (rows.empty()) return;
  const screen_window window = make_screen_window(settings.view.view_width, settings.view.view_height, r.width, r.height);

  const recursion_depth depth = recursion_bound(tracing);
  const band_scene band{*cam, tracing, window, rows, r, objects, context.random, request.mark, request.stop};
  const int threads = request.threads > 0 ? request.threads : usable_processors();
  // Tracing this scene nests deeper than a thread's stack can be made.
  if (!render_band(band, threads, render_stack_bytes(depth), out)) {
    fatal(request.program + (": depth " + std::to_string(r.depth) + " needs more stack than this machine gives"));
  }
}

}  // namespace sciray
