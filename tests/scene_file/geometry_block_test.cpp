// geometry_block_test.cpp - what the geometry records build (cylinders,
// spheres, triangles), when a record is dropped, and the block's messages.
#include <algorithm>

#include "scene_text.h"

namespace sciray::testing {
namespace {

// Checks that `p` is a cylinder from `start` along `axis` for `length`,
// of `radius`, drawn with colour-map entry `entry`.
void expect_segment(scene_from_text& s, primitive_ref p, const position& start, const vector& axis, double length,
                    double radius, double entry) {
  ASSERT_EQ(p.kind(), kind_of<cylinder>);
  const cylinder::set& c = s.geometry().shapes<cylinder>();
  const auto q = [&](cylinder::set::column column) { return c.at(column, p.index()); };
  EXPECT_EQ(vectors({{q(c.start_x), q(c.start_y), q(c.start_z)}, {q(c.axis_x), q(c.axis_y), q(c.axis_z)}}),
            vectors({start, axis}));
  EXPECT_EQ(reals({q(c.axis_length), q(c.radius_squared)}), reals({length, radius * radius}));
  EXPECT_EQ(s.material_of(p)->diffuse, colour(entry, 0, 0));
}

void expect_ball(scene_from_text& s, primitive_ref p, const position& centre, double radius, double entry) {
  ASSERT_EQ(p.kind(), kind_of<sphere>);
  const sphere::set& b = s.geometry().shapes<sphere>();
  const auto q = [&](sphere::set::column column) { return b.at(column, p.index()); };
  EXPECT_EQ(position(q(b.center_x), q(b.center_y), q(b.center_z)), centre);
  EXPECT_EQ(q(b.radius_squared), radius * radius);
  EXPECT_EQ(s.material_of(p)->diffuse, colour(entry, 0, 0));
}

TEST(geometry_block, line_records) {
  // N = 1 builds nothing, N = 3 two segments; a bad index or no xyz drops a
  // record. Contour records draw only with a table, a style and values.
  scene_from_text s(
      numbered_colormap(2) +
      "gr_geometry_001 { gr_lines_cont 2 { style gr_contour_lines xyz 0 0 0 1 0 0 values 1 2 } }\n"
      "contour_table_001 2 { 0 0 1 1 }\n"
      "gr_geometry_001 { gr_lines 1 { index 1 xyz 5 5 5 }  gr_lines 3 { xyz 0 0 0  1 0 0  1 2 0  index 1 }\n"
      "  gr_lines 2 { xyz 0 0 0  0 0 -1 }  gr_lines 2 { index 2 xyz 0 0 0 1 1 1 }\n"
      "  gr_lines 2 { index -1 xyz 0 0 0 1 1 1 }  gr_lines 2 { index 1 }  gr_lines 0 { xyz index 1 }\n"
      "  gr_lines 2 { index 1 xyz 0 0 0 1 1 1 index 0 xyz 0 0 0 3 0 0 }\n"
      "  gr_lines_cont 3 { style gr_contour_bands xyz 0 0 0 1 0 0 1 1 0 values 0.5 1.5 2.5 }\n"
      "  gr_lines_cont 2 { style gr_contour_lines xyz 0 0 0 1 0 0 }  gr_poly_fill_cont 3 { xyz 0 0 0 1 0 0 0 1 0 }\n"
      "  gr_lines_cont 2 { xyz 0 0 0 1 0 0 values 1 2 }\n"
      "  gr_lines_cont 2 { index 2 style gr_contour_lines xyz 0 0 0 1 0 0 values 1 2 } }\n");
  const auto objects = s.primitives();
  ASSERT_EQ(objects.size(), 6u);
  expect_segment(s, objects[0], {0, 0, 0}, {1, 0, 0}, 1, 0.01, 1);
  expect_segment(s, objects[1], {1, 0, 0}, {0, 1, 0}, 2, 0.01, 1);
  expect_segment(s, objects[2], {0, 0, 0}, {0, 0, -1}, 1, 0.01, 0);  // no "index": entry 0
  expect_segment(s, objects[3], {0, 0, 0}, {1, 0, 0}, 3, 0.01, 0);   // repeated keywords overwrite
  // Contour lines carry the values of their ends and use the steps table.
  for (int i = 0; i < 2; ++i) {
    const auto* steps = dynamic_cast<const contour_material*>(s.material_of(objects[4 + i]));
    ASSERT_TRUE(objects[4 + i].kind() == kind_of<cylinder> && steps != nullptr && !steps->continuous());
    const cylinder::set& c = s.geometry().shapes<cylinder>();
    const std::uint32_t k = objects[4 + i].index();
    EXPECT_EQ(std::make_pair(c.value_start(k), c.value_end(k)), std::make_pair(0.5 + i, 1.5 + i));
  }
}

TEST(geometry_block, radii_as_they_stand_at_each_record_polygons_and_symbols) {
  const std::string records =
      "gr_geometry_001 { gr_lines 2 { xyz 0 0 0 1 0 0 }\n"
      "  gr_poly_fill 3 { index 1 xyz 0 0 0 1 0 0 0 1 0 }  gr_symbol { type gr_o xyz 1 2 3 } }\n";
  scene_from_text s(numbered_colormap(2) + "render_002 { line_radius 0 }\n" + records +
                    "render_002 { line_radius 0.5 symbol_radius 0 }\n" + records +
                    "render_002 { symbol_radius 0.25 }\n"
                    "gr_geometry_001 { gr_symbol { index 1 type gr_diamond xyz 1 2 3 }\n"
                    "  gr_symbol { xyz 1 2 3 type gr_disk index 1 }  gr_symbol { index 1 type gr_null xyz 1 2 3 }\n"
                    "  gr_symbol { index 1 xyz 1 2 3 }  gr_symbol { index 1 type gr_bulb3 }\n"
                    "  gr_symbol { index 1 type gr_o xyz 1 2 3");
  const auto objects = s.primitives();
  ASSERT_EQ(objects.size(), 6u);
  expect_ball(s, objects[1], {1, 2, 3}, 0.03, 0);
  expect_segment(s, objects[2], {0, 0, 0}, {1, 0, 0}, 1, 0.5, 0);
  // Polygons are drawn whatever the radii; without "norm" a triangle keeps its face normal.
  for (const primitive_ref p : {objects[0], objects[3]}) {
    ASSERT_EQ(p.kind(), kind_of<triangle>);
    EXPECT_EQ(s.material_of(p)->diffuse, colour(1, 0, 0));
    const triangle::set& t = s.geometry().shapes<triangle>();
    double root[2];
    ASSERT_TRUE(t.candidates(p.index(), 1, ray(position(0.25, 0.25, 1), direction(0, 0, -1)), root));
    EXPECT_EQ(root[0], 1.0);
    for (int k = 0; k < 3; ++k) EXPECT_EQ(t.corner_normal(p.index(), k), vector(0, 0, 1));
  }
  // Every symbol shape but gr_null is a ball; no type, no xyz or the end of file drops it.
  for (int i = 4; i < 6; ++i) expect_ball(s, objects[i], {1, 2, 3}, 0.25, 1);
}

TEST(geometry_block, vertex_limit_and_messages) {
  std::string polygon = numbered_colormap(1) + "gr_geometry_001 { gr_poly_fill 128 { xyz";
  for (int i = 0; i < 128; ++i) polygon += "\n" + std::to_string(i) + " " + std::to_string(i * i) + " 0";
  EXPECT_EQ(scene_from_text(polygon + " } }").scene.object_count(), 126u);

  const std::string g = "gr_geometry_001 { ";
  expect_messages({
      {g + "gr_poly_fill 200 { } }", "Number of vertices 200 above 128 for gr_poly_fill"},
      {g + "gr_lines 129 {", "Number of vertices 129 above 128 for gr_lines"},
      {g + "gr_lines_cont 1000000 {", "Number of vertices 1000000 above 128 for gr_lines_cont"},
      {"gr_geometry_001 gr_lines", "Missing '{' for geometry"},
      {g + "gr_line 2 { }", "Unknown keyword 'gr_line' within geometry block"},
      {g + "gr_lines { }", "Unable to read number of vertices for gr_lines"},
      {g + "gr_poly_fill_cont x", "Unable to read number of vertices for gr_poly_fill_cont"},
      {g + "gr_symbol 1 {", "Missing '{' for gr_symbol"}, {g + "gr_poly_fill 3 xyz", "Missing '{' for gr_poly_fill"},
      {g + "gr_lines 2 { index one", "Unable to read index for gr_lines"},
      {g + "gr_lines_cont 2 { style gr_contour_band", "Unable to read style for gr_lines_cont"},
      {g + "gr_poly_fill_cont 3 { style", "Unable to read style for gr_poly_fill_cont"},
      {g + "gr_lines 2 { xyz 0 0 0 1 1 }", "Unable to read xyz for gr_lines"},
      {g + "gr_symbol { xyz 0 0 }", "Unable to read xyz for gr_symbol"},
      {g + "gr_poly_fill 3 { norm 0 0 1 }", "Unable to read norm for gr_poly_fill"},
      {g + "gr_poly_fill_cont 3 { values 1 2 }", "Unable to read values for gr_poly_fill_cont"},
      {g + "gr_lines_cont 2 { values 1 x", "Unable to read values for gr_lines_cont"},
      {g + "gr_symbol { type gr_circle }", "Unable to read type for gr_symbol"},
      // A record accepts only its own keywords.
      {g + "gr_lines 2 { norm 0 0 1 0 0 1 }", "Unknown keyword 'norm' within gr_lines block"},
      {g + "gr_lines 2 { values 1 2 }", "Unknown keyword 'values' within gr_lines block"},
      {g + "gr_poly_fill 3 { style gr_contour_lines }", "Unknown keyword 'style' within gr_poly_fill block"},
      {g + "gr_lines_cont 2 { norm", "Unknown keyword 'norm' within gr_lines_cont block"},
      {g + "gr_poly_fill_cont 3 { type gr_o }", "Unknown keyword 'type' within gr_poly_fill_cont block"},
      {g + "gr_symbol { style gr_contour_lines }", "Unknown keyword 'style' within gr_symbol block"},
      {g + "gr_symbol { index 0 color 1 }", "Unknown keyword 'color' within gr_symbol block"},
  }, "Error (gr_geometry_001): ");
}

}  // namespace
}  // namespace sciray::testing
