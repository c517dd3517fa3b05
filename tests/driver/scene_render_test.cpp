// scene_render_test.cpp - small scenes rendered end to end, checked by
// properties of the picture: the object count, which pixels show the
// background, and where contour tables put their colours.
#include <gtest/gtest.h>

#include <string>

#include "image/image_test_files.h"

namespace sciray {
namespace {

using namespace sciray::testing;

// The pixel (x, y) of a picture read with read_picture(), as bytes.
struct rgb {
  std::uint16_t r, g, b;
  bool operator==(const rgb&) const = default;
};
rgb pixel(const samples& s, int width, int x, int y) {
  const std::size_t i = 3 * (static_cast<std::size_t>(y) * width + x);
  return {s[i], s[i + 1], s[i + 2]};
}

samples render(const std::string& scene, std::string* out = nullptr) {
  const std::string picture = scratch_dir() + "/picture.rgb";
  const run_result r = run_sciray({write_scratch_file("scene.ren", scene), picture});
  EXPECT_EQ(r.status, 0) << r.err;
  if (out) *out = r.out;
  return read_picture(picture);
}

TEST(scene_render, small_test_scene_counts_its_objects_and_shows_the_ground_around_them) {
  const std::string scene =
      "render_002 { width 40 height 30 zenith 0.2 0.3 0.8 horizon 0.8 0.8 0.9 ground 0.3 0.25 0.2\n"
      "  antialias true antialias_tol 0.05 antialias_depth 2 line_radius 0.01 symbol_radius 0.03 }\n"
      "viewing_001 { viewpoint 0 -10 3 lookat 0 0 0 up_vector_1 0 0 1 up_vector_2 0 1 0 extents 4 3\n"
      "  front_dist 0.1 back_dist 100 projection perspective }\n"
      "lighting_001 1 { ambient 0.2 0.2 0.2 light 0 { on true local false location 10 -10 10 color 1 1 1 } }\n"
      "colormap_002 2 { index 0 { color 1 0 0 diffuse 0.8 0.8 0.8 specular 0.5 0.5 0.5 shininess 20 }\n"
      "  index 1 { color 0.7 0.7 0.7 } }\n"
      "contour_table_001 2 { 0 0.0 1 1.0 }\n"
      "gr_geometry_001 { gr_lines 2 { index 0 xyz 0 0 0 1 1 1 } gr_symbol { index 1 type gr_disk xyz 0 0 1 } }\n";
  std::string out;
  const samples s = render(scene, &out);
  EXPECT_EQ(out.rfind("Number of objects : 2\n\n", 0), 0u);
  // The whole view looks below the horizon: the sky's ground colour, exact
  // even with anti-aliasing, everywhere but where the line and ball are.
  const rgb ground{76, 63, 51};
  int background = 0;
  for (int y = 0; y < 30; ++y)
    for (int x = 0; x < 40; ++x) background += pixel(s, 40, x, y) == ground;
  EXPECT_GT(background, 40 * 30 * 9 / 10);
  EXPECT_LT(background, 40 * 30);
  EXPECT_EQ(pixel(s, 40, 0, 0), ground);
}

TEST(scene_render, sky_up_is_the_accepted_up_vector_normalised_again) {
  // The line of sight is perpendicular to the up vector, so every ray grazes
  // the horizon: the last bit of the sky's up decides between the horizon
  // (white) and the ground (black). Normalising the stored up vector once
  // more tips these rays just above the horizon.
  const std::string scene =
      "render_002 { width 4 height 4 zenith 1 1 1 horizon 1 1 1 ground 0 0 0 atmosphere_len 0 }\n"
      "viewing_001 { viewpoint 0 0 0 lookat 54 -39 -12 up_vector_1 5 6 3 projection orthographic }\n";
  const samples s = render(scene);
  for (int y = 0; y < 4; ++y)
    for (int x = 0; x < 4; ++x) EXPECT_EQ(pixel(s, 4, x, y), (rgb{255, 255, 255})) << x << ", " << y;
}

// A square facing the camera whose data value runs from 0 at its left edge
// to 2 at its right, coloured by three entries at 0, 1 and 2 that show pure
// red, green and blue under white ambient light.
std::string contour_square(const std::string& style) {
  return "render_002 { width 8 height 8 atmosphere_len 0 }\n"
         "viewing_001 { viewpoint 0 0 5 lookat 0 0 0 extents 2 2 projection orthographic }\n"
         "lighting_001 0 { ambient 1 1 1 }\n"
         "colormap_002 3 { index 0 { ambient 1 0 0 } index 1 { ambient 0 1 0 } index 2 { ambient 0 0 1 } }\n"
         "contour_table_001 3 { 0 0 1 1 2 2 }\n"
         "gr_geometry_001 { gr_poly_fill_cont 4 { style " +
         style + " xyz -1 -1 0 1 -1 0 1 1 0 -1 1 0 values 0 2 2 0 } }\n";
}

TEST(scene_render, contour_steps_and_blends_fall_where_the_values_put_them) {
  const samples steps = render(contour_square("gr_contour_bands"));
  for (int x = 0; x < 8; ++x)  // values up to 1 take entry 1, above it entry 2
    EXPECT_EQ(pixel(steps, 8, x, 3), (x < 4 ? rgb{0, 255, 0} : rgb{0, 0, 255})) << "column " << x;

  // Blended: column 0 has the value 0.125, 7/8 of entry 0 and 1/8 of entry 1;
  // above the middle level the last entry is taken whole.
  const samples blend = render(contour_square("gr_contour_continuous"));
  EXPECT_EQ(pixel(blend, 8, 0, 5), (rgb{223, 31, 0}));
  EXPECT_EQ(pixel(blend, 8, 3, 5), (rgb{31, 223, 0}));
  EXPECT_EQ(pixel(blend, 8, 6, 5), (rgb{0, 0, 255}));
}

}  // namespace
}  // namespace sciray
