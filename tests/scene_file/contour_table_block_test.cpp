// contour_table_block_test.cpp - the two contour tables built from the
// (index, value) pairs, reached through the contour-coloured geometry that uses them,
// and the block's messages.
#include "scene_text.h"

namespace sciray::testing {
namespace {

using entries = std::vector<std::pair<colour, double>>;

// Contour lines use the steps table, continuous contour polygons the blending one.
const std::string contour_geometry =
    "gr_geometry_001 { gr_lines_cont 2 { style gr_contour_lines xyz 0 0 0 1 0 0 values 0 1 }\n"
    "  gr_poly_fill_cont 3 { style gr_contour_continuous xyz 0 0 0 1 0 0 0 1 0 values 0 1 2 } }\n";

// The tables `s` draws with, in build order; the scene must hold only
// contour-coloured geometry.
std::vector<const contour_material*> tables(scene_from_text& s) {
  std::vector<const contour_material*> found;
  for (const primitive_ref p : s.primitives()) found.push_back(dynamic_cast<const contour_material*>(s.material_of(p)));
  return found;
}

// A table's entries: the diffuse colour of the colour-map entry each names,
// and its level.
entries entries_of(const contour_material& table) {
  entries result;
  for (const auto& entry : table.entries()) result.push_back({entry.mat->diffuse, entry.level});
  return result;
}

TEST(contour_table_block, builds_a_steps_and_a_blending_table) {
  scene_from_text s(numbered_colormap(3) + "contour_table_001 3 {\n 2 -1.0\n 0 0.5\n 1 4\n}\n" + contour_geometry);
  const auto t = tables(s);
  ASSERT_EQ(t.size(), 2u);
  ASSERT_TRUE(t[0] != nullptr && t[1] != nullptr);
  // Entries in file order, each pointing at the colour-map entry it names.
  for (const contour_material* table : t) {
    EXPECT_EQ(entries_of(*table), entries({{{2, 0, 0}, -1}, {{0, 0, 0}, 0.5}, {{1, 0, 0}, 4}}));
  }
  EXPECT_EQ(t[0]->entries()[1].mat, t[1]->entries()[1].mat);

  // A later table replaces the earlier one.
  scene_from_text later(numbered_colormap(2) + "contour_table_001 2 { 0 0 1 1 }\ncontour_table_001 2 { 1 5 0 6 }\n" +
                        contour_geometry);
  ASSERT_EQ(tables(later).size(), 2u);
  for (const contour_material* table : tables(later)) {
    ASSERT_NE(table, nullptr);
    EXPECT_EQ(entries_of(*table), entries({{{1, 0, 0}, 5}, {{0, 0, 0}, 6}}));
  }
  // The file may end right after the pairs; geometry before any table draws nothing.
  scene_from_text cut(numbered_colormap(2) + contour_geometry + "contour_table_001 2 { 0 0 1 1");
  EXPECT_EQ(cut.scene.object_count(), 0u);
}

TEST(contour_table_block, messages) {
  const std::string c = numbered_colormap(2) + "contour_table_001 ";
  expect_messages({
      {c + "{ 0 0 1 1 }", "Unable to read number of bands"}, {c + "1 { 0 0 }", "Invalid number of bands 1"},
      {c + "2 0 0 1 1", "Missing '{' for colormap"}, {"contour_table_001 2 { 0 0 1 1 }", "Invalid colormap index 0"},
      {c + "2 { 0 0 2 1 }", "Invalid colormap index 2"}, {c + "2 { -1 0 }", "Invalid colormap index -1"},
      {c + "2 { 0 0 one 1 }", "Unable to read colormap index"}, {c + "2 { 0 low }", "Unable to read value"},
      {c + "2 { 0 0 1 }", "Unable to read value"},
      {c + "2 { 0 0 1 1 0 2 }", "Unknown keyword '0' within contour-table block"},
  }, "Error (contour_table_001): ");
}

}  // namespace
}  // namespace sciray::testing
