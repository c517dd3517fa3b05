// contour_table_block_test.cpp - the two contour tables built from the
// band pairs, reached through the contour-coloured geometry that uses them,
// and the block's messages.
#include <gtest/gtest.h>

#include "scene_text.h"

namespace sciray::testing {
namespace {

// Contour lines use the steps table, continuous contour polygons the blending one.
const std::string contour_geometry =
    "gr_geometry_001 {\n"
    "  gr_lines_cont 2 { style gr_contour_lines xyz 0 0 0 1 0 0 values 0 1 }\n"
    "  gr_poly_fill_cont 3 { style gr_contour_continuous xyz 0 0 0 1 0 0 0 1 0 values 0 1 2 }\n"
    "}\n";

TEST(contour_table_block, builds_a_steps_and_a_blending_table) {
  scene_from_text s(numbered_colormap(3) + "contour_table_001 3 {\n 2 -1.0\n 0 0.5\n 1 4\n}\n" + contour_geometry);
  const auto objects = s.primitives();
  ASSERT_EQ(objects.size(), 2u);
  const auto* steps = dynamic_cast<const contour_material*>(objects[0]->get_material());
  const auto* blending = dynamic_cast<const contour_material*>(objects[1]->get_material());
  ASSERT_NE(steps, nullptr);
  ASSERT_NE(blending, nullptr);
  EXPECT_FALSE(steps->continuous());
  EXPECT_TRUE(blending->continuous());
  for (const contour_material* table : {steps, blending}) {
    ASSERT_EQ(table->entries().size(), 3u);
    // Bands in file order, each the colour-map entry it names.
    EXPECT_EQ(table->entries()[0].mat->diffuse, colour(2, 0, 0));
    EXPECT_EQ(table->entries()[0].level, -1.0);
    EXPECT_EQ(table->entries()[1].mat->diffuse, colour(0, 0, 0));
    EXPECT_EQ(table->entries()[1].level, 0.5);
    EXPECT_EQ(table->entries()[2].mat->diffuse, colour(1, 0, 0));
    EXPECT_EQ(table->entries()[2].level, 4.0);
  }
  EXPECT_EQ(steps->entries()[1].mat, blending->entries()[1].mat);
}

TEST(contour_table_block, a_later_table_replaces_the_earlier_one) {
  scene_from_text s(numbered_colormap(2) + "contour_table_001 2 { 0 0 1 1 }\ncontour_table_001 2 { 1 5 0 6 }\n" +
                    contour_geometry);
  const auto objects = s.primitives();
  ASSERT_EQ(objects.size(), 2u);
  for (const primitive* p : objects) {
    const auto& entries = dynamic_cast<const contour_material&>(*p->get_material()).entries();
    ASSERT_EQ(entries.size(), 2u);
    EXPECT_EQ(entries[0].level, 5.0);
  }
  // The file may end right after the pairs.
  scene_from_text cut(numbered_colormap(2) + contour_geometry + "contour_table_001 2 { 0 0 1 1");
  EXPECT_EQ(cut.scene.object_count(), 0u);  // the geometry came before any table
}

TEST(contour_table_block, messages) {
  const std::string e = "Error (contour_table_001): ";
  const std::string colormap = numbered_colormap(2);
  expect_messages({
      {colormap + "contour_table_001 { 0 0 1 1 }", e + "Unable to read number of bands"},
      {colormap + "contour_table_001 1 { 0 0 }", e + "Invalid number of bands 1"},
      {colormap + "contour_table_001 2 0 0 1 1", e + "Missing '{' for colormap"},
      {"contour_table_001 2 { 0 0 1 1 }", e + "Invalid colormap index 0"},
      {colormap + "contour_table_001 2 { 0 0 2 1 }", e + "Invalid colormap index 2"},
      {colormap + "contour_table_001 2 { -1 0 }", e + "Invalid colormap index -1"},
      {colormap + "contour_table_001 2 { 0 0 one 1 }", e + "Unable to read colormap index"},
      {colormap + "contour_table_001 2 { 0 low }", e + "Unable to read value"},
      {colormap + "contour_table_001 2 { 0 0 1 }", e + "Unable to read value"},
      {colormap + "contour_table_001 2 { 0 0 1 1 0 2 }", e + "Unknown keyword '0' within contour-table block"},
  });
}

}  // namespace
}  // namespace sciray::testing
