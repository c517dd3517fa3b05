// render_block_test.cpp - the render block's stored values, clamps and messages.
#include "scene_text.h"

namespace sciray::testing {
namespace {

render_settings read_render(const std::string& body) {
  return scene_from_text("render_002 {\n" + body + "\n}\n").settings.render;
}

TEST(render_block, stores_every_keyword) {
  scene_from_text s(
      "render_002 { width 320 height 240 zenith 0.2 0.3 0.8 horizon 0.8 0.8 0.9 ground 0.3 0.25 0.2\n"
      "cloud_inner 0.1 0.2 0.3 cloud_outer 0.4 0.5 0.6 cloud_scale 2.5 cloud_offset -1 2 -3\n"
      "cloud_depth 4 cloud_sharpness 0.5 atmosphere 0.7 0.7 0.8 atmosphere_len -3 atmosphere_ior 1.25\n"
      "highlights false shadows false depth 6 pixel_size 2 antialias true antialias_tol 0.125\n"
      "antialias_depth 5 line_radius 0.5 symbol_radius 0.75 }");
  const render_settings& r = s.settings.render;
  EXPECT_EQ(ints({r.width, r.height, r.cloud_depth, r.depth, r.pixel_size, r.antialias_depth, r.highlights,
                  r.shadows, r.antialias}),
            ints({320, 240, 4, 6, 2, 5, false, false, true}));
  EXPECT_EQ(vectors({r.zenith, r.horizon, r.ground, r.cloud_inner, r.cloud_outer, r.cloud_offset, r.atmosphere}),
            vectors({{0.2, 0.3, 0.8}, {0.8, 0.8, 0.9}, {0.3, 0.25, 0.2}, {0.1, 0.2, 0.3}, {0.4, 0.5, 0.6},
                     {-1, 2, -3}, {0.7, 0.7, 0.8}}));
  EXPECT_EQ(reals({r.cloud_scale, r.cloud_sharpness, r.atmosphere_len, r.atmosphere_ior, r.antialias_tol,
                   s.settings.line_radius, s.settings.symbol_radius}),
            reals({2.5, 0.5, -3, 1.25, 0.125, 0.5, 0.75}));
}

TEST(render_block, clamps_on_store) {
  scene_from_text low("render_002 { width 2 height -7 depth 0 pixel_size -1 antialias_depth 0 cloud_depth -3\n"
                      "cloud_scale 0 cloud_sharpness -0.5 antialias_tol -1 line_radius -1 symbol_radius -0.5 }");
  const render_settings& r = low.settings.render;
  EXPECT_EQ(ints({r.width, r.height, r.depth, r.pixel_size, r.antialias_depth, r.cloud_depth}),
            ints({4, 4, 1, 1, 1, 1}));
  const scene_settings& radii = low.settings;
  EXPECT_EQ(reals({r.cloud_scale, r.cloud_sharpness, r.antialias_tol, radii.line_radius, radii.symbol_radius}),
            reals({0.0001, 0, 0, 0, 0}));
  const render_settings high = read_render("width 65535 cloud_sharpness 3 antialias_tol 2 cloud_scale nan");
  EXPECT_EQ(reals({double(high.width), high.cloud_sharpness, high.antialias_tol, high.cloud_scale}),
            reals({65535, 1, 1, 0.0001}));

  // The cloud fraction given last keeps its value; the other one gives way.
  const struct { const char* body; double inner, outer; } fractions[] = {
      {"cloud_inner_frac 0.7 cloud_outer_frac 0.6", 1.0 - 0.6, 0.6},
      {"cloud_outer_frac 0.6 cloud_inner_frac 0.7", 0.7, 1.0 - 0.7},
      {"cloud_outer_frac 0.5 cloud_inner_frac 1.5", 1.0, 0.0}};
  for (const auto& f : fractions) {
    const render_settings fr = read_render(f.body);
    EXPECT_EQ(reals({fr.cloud_inner_frac, fr.cloud_outer_frac}), reals({f.inner, f.outer})) << f.body;
  }
}

TEST(render_block, messages) {
  message_cases cases = {
      {"render_002 width 300", "Missing '{' for render block"}, {"render_002", "Missing '{' for render block"},
      {"render_001 { shadows true bogus 1 }", "Unknown keyword 'bogus' within render block"},
      {"render_002 { width 70000 }", "Invalid width 70000"}, {"render_002 { height 65536 }", "Invalid height 65536"}};
  // {keyword, what cannot be read after it}: the message names the keyword.
  for (const auto& [key, bad] : message_cases{
           {"width", "x }"}, {"height", ""}, {"highlights", "yes"}, {"shadows", "True"}, {"antialias", "1"},
           {"cloud_inner_frac", "."}, {"cloud_outer_frac", "."}, {"cloud_scale", "."}, {"cloud_depth", "."},
           {"cloud_sharpness", "."}, {"atmosphere_len", "."}, {"atmosphere_ior", "."}, {"depth", "."},
           {"pixel_size", "."}, {"antialias_tol", "."}, {"antialias_depth", "."}, {"line_radius", "."},
           {"symbol_radius", "."}}) {
    cases.push_back({"render_002 { " + key + " " + bad, "Unable to read " + key});
  }
  // Colours and the offset: every one of the three values names the keyword.
  for (const std::string key :
       {"zenith", "horizon", "ground", "cloud_inner", "cloud_outer", "cloud_offset", "atmosphere"}) {
    cases.push_back({"render_002 { " + key + " 1 2 }", "Unable to read " + key + " component"});
    cases.push_back({"render_002 { " + key + " x", "Unable to read " + key + " component"});
  }
  expect_messages(cases, "Error (render_002): ");
}

}  // namespace
}  // namespace sciray::testing
