// render_block_test.cpp - the render block's stored values, clamps and messages.
#include <gtest/gtest.h>

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
  EXPECT_EQ(std::vector<int>({r.width, r.height, r.cloud_depth, r.depth, r.pixel_size, r.antialias_depth}),
            std::vector<int>({320, 240, 4, 6, 2, 5}));
  EXPECT_EQ(std::vector<colour>({r.zenith, r.horizon, r.ground, r.cloud_inner, r.cloud_outer, r.cloud_offset,
                                 r.atmosphere}),
            std::vector<colour>({{0.2, 0.3, 0.8}, {0.8, 0.8, 0.9}, {0.3, 0.25, 0.2}, {0.1, 0.2, 0.3},
                                 {0.4, 0.5, 0.6}, {-1, 2, -3}, {0.7, 0.7, 0.8}}));
  EXPECT_EQ(std::vector<double>({r.cloud_scale, r.cloud_sharpness, r.atmosphere_len, r.atmosphere_ior,
                                 r.antialias_tol, s.settings.line_radius, s.settings.symbol_radius}),
            std::vector<double>({2.5, 0.5, -3, 1.25, 0.125, 0.5, 0.75}));
  EXPECT_EQ(std::vector<bool>({r.highlights, r.shadows, r.antialias}), std::vector<bool>({false, false, true}));

  // An empty body changes nothing.
  const render_settings empty = read_render("");
  EXPECT_EQ(empty.width, 640);
  EXPECT_EQ(empty.cloud_outer, colour(1, 0.8, 0.8));
  EXPECT_TRUE(empty.highlights);
}

TEST(render_block, clamps_on_store) {
  const render_settings low = read_render(
      "width 2 height -7 depth 0 pixel_size -1 antialias_depth 0 cloud_depth -3 cloud_scale 0 "
      "cloud_sharpness -0.5 antialias_tol -1");
  EXPECT_EQ(low.width, 4);
  EXPECT_EQ(low.height, 4);
  EXPECT_EQ(low.depth, 1);
  EXPECT_EQ(low.pixel_size, 1);
  EXPECT_EQ(low.antialias_depth, 1);
  EXPECT_EQ(low.cloud_depth, 1);
  EXPECT_EQ(low.cloud_scale, 0.0001);
  EXPECT_EQ(low.cloud_sharpness, 0.0);
  EXPECT_EQ(low.antialias_tol, 0.0);

  const render_settings high = read_render("width 65535 cloud_sharpness 3 antialias_tol 2 cloud_scale nan");
  EXPECT_EQ(high.width, 65535);
  EXPECT_EQ(high.cloud_sharpness, 1.0);
  EXPECT_EQ(high.antialias_tol, 1.0);
  EXPECT_EQ(high.cloud_scale, 0.0001);

  scene_from_text radii("render_002 { line_radius -1 symbol_radius -0.5 }");
  EXPECT_EQ(radii.settings.line_radius, 0.0);
  EXPECT_EQ(radii.settings.symbol_radius, 0.0);
}

TEST(render_block, the_cloud_fraction_given_last_wins) {
  const render_settings outer_last = read_render("cloud_inner_frac 0.7 cloud_outer_frac 0.6");
  EXPECT_DOUBLE_EQ(outer_last.cloud_inner_frac, 0.4);
  EXPECT_EQ(outer_last.cloud_outer_frac, 0.6);
  const render_settings inner_last = read_render("cloud_outer_frac 0.6 cloud_inner_frac 0.7");
  EXPECT_EQ(inner_last.cloud_inner_frac, 0.7);
  EXPECT_DOUBLE_EQ(inner_last.cloud_outer_frac, 0.3);
  const render_settings clamped = read_render("cloud_outer_frac 0.5 cloud_inner_frac 1.5");
  EXPECT_EQ(clamped.cloud_inner_frac, 1.0);
  EXPECT_EQ(clamped.cloud_outer_frac, 0.0);
}

TEST(render_block, messages) {
  const std::string e = "Error (render_002): ";
  std::vector<message_case> cases = {
      {"render_002 width 300", e + "Missing '{' for render block"},
      {"render_002", e + "Missing '{' for render block"},
      {"render_001 { shadows true bogus 1 }", e + "Unknown keyword 'bogus' within render block"},
      {"render_002 { width x }", e + "Unable to read width"},
      {"render_002 { height", e + "Unable to read height"},
      {"render_002 { width 70000 }", e + "Invalid width 70000"},
      {"render_002 { height 65536 }", e + "Invalid height 65536"},
      {"render_002 { highlights yes }", e + "Unable to read highlights"},
      {"render_002 { shadows True }", e + "Unable to read shadows"},
      {"render_002 { antialias 1 }", e + "Unable to read antialias"},
  };
  // Colours and the offset: every one of the three values names the keyword.
  for (const char* key : {"zenith", "horizon", "ground", "cloud_inner", "cloud_outer", "cloud_offset", "atmosphere"}) {
    cases.push_back({std::string("render_002 { ") + key + " 1 2 }", e + "Unable to read " + key + " component"});
    cases.push_back({std::string("render_002 { ") + key + " x", e + "Unable to read " + key + " component"});
  }
  for (const char* key : {"cloud_inner_frac", "cloud_outer_frac", "cloud_scale", "cloud_depth", "cloud_sharpness",
                          "atmosphere_len", "atmosphere_ior", "depth", "pixel_size", "antialias_tol",
                          "antialias_depth", "line_radius", "symbol_radius"}) {
    cases.push_back({std::string("render_002 { ") + key + " . }", e + "Unable to read " + key});
  }
  expect_messages(cases);
}

}  // namespace
}  // namespace sciray::testing
