// render_fuzz.cpp - fuzz target: the whole renderer on small scenes, so
// that hostile values (not-a-numbers, infinities, degenerate shapes, odd
// contour tables) reach the tracer. The scene is read first to learn what a
// picture of it would cost; only cheap ones are rendered (a few hundred
// samples, a bounded ray depth). A first line "#-band i/n", a comment to
// the reader, renders that band of the picture.
#include <algorithm>
#include <cstdio>
#include <string>
#include <utility>
#include <vector>

#include "fuzz_case.h"
#include "scene_file/scene_reader.h"
#include "shading/render_context.h"
#include "shading/world.h"
#include "support/c_file.h"

using namespace sciray::fuzz;

namespace {

constexpr double sample_budget = 4096;
constexpr int depth_limit = 12;  // deeper rays are another matter (the recursion's stack)

// The render settings of the scene, or false when reading it stops.
bool read_settings(const memory_file& scene, sciray::render_settings& settings) {
  const sciray::c_file file(std::fopen(scene.path().c_str(), "r"));
  sciray::world w;
  sciray::scene_settings s;
  sciray::render_context context;
  try {
    sciray::read_scene_file(file.get(), w, s, context);
  } catch (const case_stopped&) {
    return false;
  }
  settings = s.render;
  return true;
}

// Samples a picture takes, weighted by the octaves a cloudy sky sums.
double cost(const sciray::render_settings& r) {
  const double pixels = static_cast<double>(r.width) * r.height;
  const double per_pixel = r.antialias && r.pixel_size <= 1 ? 1 << (2 * std::min(r.antialias_depth, 4)) : 1;
  const double octaves = r.cloud_inner_frac + r.cloud_outer_frac > 0.0 ? 1 + std::min(r.cloud_depth, 4000) / 100.0 : 1;
  return pixels * per_pixel * octaves;
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  install_case_handlers();
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const memory_file scene(data, size);
  sciray::render_settings settings;
  if (!read_settings(scene, settings) || settings.depth > depth_limit || cost(settings) > sample_budget) return 0;

  std::vector<std::string> args = {"sciray", scene.path(), "/dev/null"};
  const std::string text(reinterpret_cast<const char*>(data), size);
  const std::string band_mark = "#-band ";
  if (text.rfind(band_mark, 0) == 0) {
    args.push_back("-band");
    args.push_back(text.substr(band_mark.size(), text.find('\n') - band_mark.size()));
  }
  run_program_case(std::move(args));
  return 0;
}
