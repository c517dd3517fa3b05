// geometry_block_test.cpp - what the geometry records build (cylinders,
// spheres, triangles), when a record is dropped, and the block's messages.
#include <gtest/gtest.h>

#include <algorithm>

#include "geometry/cylinder.h"
#include "geometry/sphere.h"
#include "geometry/triangle.h"
#include "scene_text.h"

namespace sciray::testing {
namespace {

// Checks that `p` is a cylinder from `start` along `axis` for `length`,
// with radius `radius` (seen in its box), drawn with colour-map entry `entry`.
void expect_segment(const primitive* p, const position& start, const vector& axis, double length, double radius,
                    double entry) {
  const auto* c = dynamic_cast<const cylinder*>(p);
  ASSERT_NE(c, nullptr);
  EXPECT_EQ(c->axis(), axis);
  EXPECT_DOUBLE_EQ(c->length(), length);
  const bounding_box& box = *c->bounds();
  for (int k = 0; k < 3; ++k) {
    const double end = start[k] + length * axis[k];
    EXPECT_DOUBLE_EQ(box.axis[k].lo, std::min(start[k], end) - radius) << k;
    EXPECT_DOUBLE_EQ(box.axis[k].hi, std::max(start[k], end) + radius) << k;
  }
  EXPECT_EQ(c->get_material()->diffuse, colour(entry, 0, 0));
}

TEST(geometry_block, line_records) {
  scene_from_text s(numbered_colormap(2) +
                    "gr_geometry_001 {\n"
                    "  gr_lines 1 { index 1 xyz 5 5 5 }\n"
                    "  gr_lines 3 { xyz 0 0 0  1 0 0  1 2 0  index 1 }\n"
                    "  gr_lines 2 { xyz 0 0 0  0 0 -1 }\n"
                    "  gr_lines 2 { index 2 xyz 0 0 0 1 1 1 }\n"
                    "  gr_lines 2 { index -1 xyz 0 0 0 1 1 1 }\n"
                    "  gr_lines 2 { index 1 }\n"
                    "  gr_lines 0 { xyz index 1 }\n"
                    "  gr_lines 2 { index 1 xyz 0 0 0 1 1 1 index 0 xyz 0 0 0 3 0 0 }\n"
                    "}\n");
  const auto objects = s.primitives();
  ASSERT_EQ(objects.size(), 4u);
  expect_segment(objects[0], {0, 0, 0}, {1, 0, 0}, 1, 0.01, 1);
  expect_segment(objects[1], {1, 0, 0}, {0, 1, 0}, 2, 0.01, 1);
  expect_segment(objects[2], {0, 0, 0}, {0, 0, -1}, 1, 0.01, 0);  // no "index": entry 0
  expect_segment(objects[3], {0, 0, 0}, {1, 0, 0}, 3, 0.01, 0);   // repeated keywords overwrite
}

TEST(geometry_block, radii_as_they_stand_at_each_record) {
  const std::string records =
      "gr_geometry_001 {\n"
      "  gr_lines 2 { xyz 0 0 0 1 0 0 }\n"
      "  gr_poly_fill 3 { xyz 0 0 0 1 0 0 0 1 0 }\n"
      "  gr_symbol { type gr_o xyz 1 2 3 }\n"
      "}\n";
  scene_from_text s(numbered_colormap(1) + "render_002 { line_radius 0 }\n" + records +
                    "render_002 { line_radius 0.5 symbol_radius 0 }\n" + records);
  const auto objects = s.primitives();
  ASSERT_EQ(objects.size(), 4u);
  EXPECT_NE(dynamic_cast<const triangle*>(objects[0]), nullptr);
  const auto* ball = dynamic_cast<const sphere*>(objects[1]);
  ASSERT_NE(ball, nullptr);
  EXPECT_DOUBLE_EQ(ball->bounds()->axis[2].lo, 3 - 0.03);
  EXPECT_DOUBLE_EQ(ball->bounds()->axis[2].hi, 3 + 0.03);
  expect_segment(objects[2], {0, 0, 0}, {1, 0, 0}, 1, 0.5, 0);
  EXPECT_NE(dynamic_cast<const triangle*>(objects[3]), nullptr);
}

TEST(geometry_block, symbols) {
  scene_from_text s(numbered_colormap(2) +
                    "render_002 { symbol_radius 0.25 }\n"
                    "gr_geometry_001 {\n"
                    "  gr_symbol { index 1 type gr_diamond xyz 1 2 3 }\n"
                    "  gr_symbol { xyz 1 2 3 type gr_disk index 1 }\n"
                    "  gr_symbol { index 1 type gr_null xyz 1 2 3 }\n"
                    "  gr_symbol { index 1 xyz 1 2 3 }\n"
                    "  gr_symbol { index 1 type gr_bulb3 }\n"
                    "  gr_symbol { index 1 type gr_o xyz 1 2 3");  // cut off by the end of file: dropped
  const auto objects = s.primitives();
  ASSERT_EQ(objects.size(), 2u);
  for (const primitive* p : objects) {
    ASSERT_NE(dynamic_cast<const sphere*>(p), nullptr);
    EXPECT_EQ(p->get_material()->diffuse, colour(1, 0, 0));
    for (int k = 0; k < 3; ++k) {
      EXPECT_DOUBLE_EQ(p->bounds()->axis[k].lo, (k + 1) - 0.25);
      EXPECT_DOUBLE_EQ(p->bounds()->axis[k].hi, (k + 1) + 0.25);
    }
  }
}

TEST(geometry_block, contour_lines) {
  const std::string table = numbered_colormap(2) + "contour_table_001 2 { 0 0 1 1 }\n";
  scene_from_text s(table +
                    "gr_geometry_001 {\n"
                    "  gr_lines_cont 3 { style gr_contour_bands xyz 0 0 0 1 0 0 1 1 0 values 0.5 1.5 2.5 }\n"
                    "  gr_lines_cont 2 { style gr_contour_lines xyz 0 0 0 1 0 0 }\n"
                    "  gr_lines_cont 2 { xyz 0 0 0 1 0 0 values 1 2 }\n"
                    "  gr_lines_cont 2 { index 2 style gr_contour_lines xyz 0 0 0 1 0 0 values 1 2 }\n"
                    "}\n");
  const auto objects = s.primitives();
  ASSERT_EQ(objects.size(), 2u);
  const double ends[2][2] = {{0.5, 1.5}, {1.5, 2.5}};
  for (int i = 0; i < 2; ++i) {
    const auto* c = dynamic_cast<const cylinder*>(objects[i]);
    ASSERT_NE(c, nullptr);
    EXPECT_EQ(c->value_start, ends[i][0]);
    EXPECT_EQ(c->value_end, ends[i][1]);
    const auto* steps = dynamic_cast<const contour_material*>(c->get_material());
    ASSERT_NE(steps, nullptr);
    EXPECT_FALSE(steps->continuous());
  }
  // Without a contour table a contour record draws nothing.
  scene_from_text no_table(numbered_colormap(1) +
                           "gr_geometry_001 { gr_lines_cont 2 { style gr_contour_lines xyz 0 0 0 1 0 0 values 1 2 } }");
  EXPECT_EQ(no_table.scene.object_count(), 0u);
}

// The contour table and the corner values a contour polygon of `style` gets.
struct contour_polygon {
  explicit contour_polygon(const std::string& style)
      : scene(numbered_colormap(2) + "contour_table_001 2 { 0 0 1 10 }\n" +
              "gr_geometry_001 { gr_poly_fill_cont 4 { " + style +
              " xyz 0 0 0 1 0 0 1 1 0 0 1 0 values 1 2 3 6 } }") {
    for (const primitive* p : scene.primitives()) {
      const auto* t = dynamic_cast<const triangle*>(p);
      if (t == nullptr) continue;
      table = dynamic_cast<const contour_material*>(t->get_material());
      for (int k = 0; k < 3; ++k) values.push_back(t->corner_value(k));
    }
  }
  scene_from_text scene;
  const contour_material* table = nullptr;
  std::vector<double> values;
};

TEST(geometry_block, contour_polygon_styles) {
  // Corners of the quad's triangles (0 1 2) and (2 3 0).
  const std::vector<double> per_vertex = {1, 2, 3, 3, 6, 1};
  for (const char* style : {"", "style gr_contour_lines", "style gr_contour_bands", "style gr_contour_continuous"}) {
    SCOPED_TRACE(style);
    contour_polygon p(style);
    ASSERT_NE(p.table, nullptr);
    EXPECT_EQ(p.table->continuous(), std::string(style) == "style gr_contour_continuous");
    EXPECT_EQ(p.values, per_vertex);
  }
  // The centroid style gives every corner the mean of all four values.
  contour_polygon centroid("style gr_contour_centroid");
  ASSERT_NE(centroid.table, nullptr);
  EXPECT_FALSE(centroid.table->continuous());
  EXPECT_EQ(centroid.values, std::vector<double>(6, 3.0));

  // Without values nothing is drawn.
  scene_from_text no_values(numbered_colormap(1) + "contour_table_001 2 { 0 0 0 1 }\n" +
                            "gr_geometry_001 { gr_poly_fill_cont 3 { xyz 0 0 0 1 0 0 0 1 0 } }");
  EXPECT_EQ(no_values.scene.object_count(), 0u);
}

TEST(geometry_block, vertex_limit) {
  std::string polygon = "gr_poly_fill 128 { xyz";
  for (int i = 0; i < 128; ++i) polygon += "\n" + std::to_string(i) + " " + std::to_string(i * i) + " 0";
  scene_from_text s(numbered_colormap(1) + "gr_geometry_001 { " + polygon + " } }");
  EXPECT_EQ(s.scene.object_count(), 126u);

  const std::string e = "Error (gr_geometry_001): ";
  expect_messages({
      {"gr_geometry_001 { gr_poly_fill 200 { } }", e + "Number of vertices 200 above 128 for gr_poly_fill"},
      {"gr_geometry_001 { gr_lines 129 {", e + "Number of vertices 129 above 128 for gr_lines"},
      {"gr_geometry_001 { gr_lines_cont 1000000 {", e + "Number of vertices 1000000 above 128 for gr_lines_cont"},
  });
}

TEST(geometry_block, messages) {
  const std::string e = "Error (gr_geometry_001): ";
  const std::string g = "gr_geometry_001 { ";
  expect_messages({
      {"gr_geometry_001 gr_lines", e + "Missing '{' for geometry"},
      {g + "gr_line 2 { }", e + "Unknown keyword 'gr_line' within geometry block"},
      {g + "gr_lines { }", e + "Unable to read number of vertices for gr_lines"},
      {g + "gr_poly_fill_cont x", e + "Unable to read number of vertices for gr_poly_fill_cont"},
      {g + "gr_symbol 1 {", e + "Missing '{' for gr_symbol"},
      {g + "gr_poly_fill 3 xyz", e + "Missing '{' for gr_poly_fill"},
      {g + "gr_lines 2 { index one", e + "Unable to read index for gr_lines"},
      {g + "gr_lines_cont 2 { style gr_contour_band", e + "Unable to read style for gr_lines_cont"},
      {g + "gr_poly_fill_cont 3 { style", e + "Unable to read style for gr_poly_fill_cont"},
      {g + "gr_lines 2 { xyz 0 0 0 1 1 }", e + "Unable to read xyz for gr_lines"},
      {g + "gr_symbol { xyz 0 0 }", e + "Unable to read xyz for gr_symbol"},
      {g + "gr_poly_fill 3 { norm 0 0 1 }", e + "Unable to read norm for gr_poly_fill"},
      {g + "gr_poly_fill_cont 3 { values 1 2 }", e + "Unable to read values for gr_poly_fill_cont"},
      {g + "gr_lines_cont 2 { values 1 x", e + "Unable to read values for gr_lines_cont"},
      {g + "gr_symbol { type gr_circle }", e + "Unable to read type for gr_symbol"},
      // A record accepts only its own keywords.
      {g + "gr_lines 2 { norm 0 0 1 0 0 1 }", e + "Unknown keyword 'norm' within gr_lines block"},
      {g + "gr_lines 2 { values 1 2 }", e + "Unknown keyword 'values' within gr_lines block"},
      {g + "gr_poly_fill 3 { style gr_contour_lines }", e + "Unknown keyword 'style' within gr_poly_fill block"},
      {g + "gr_lines_cont 2 { norm", e + "Unknown keyword 'norm' within gr_lines_cont block"},
      {g + "gr_poly_fill_cont 3 { type gr_o }", e + "Unknown keyword 'type' within gr_poly_fill_cont block"},
      {g + "gr_symbol { style gr_contour_lines }", e + "Unknown keyword 'style' within gr_symbol block"},
      {g + "gr_symbol { index 0 color 1 }", e + "Unknown keyword 'color' within gr_symbol block"},
  });
}

}  // namespace
}  // namespace sciray::testing
