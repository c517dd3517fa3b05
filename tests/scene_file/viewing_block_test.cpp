// viewing_block_test.cpp - the viewing block's stored values and messages.
#include <gtest/gtest.h>

#include "scene_text.h"

namespace sciray::testing {
namespace {

view_settings read_view(const std::string& body) {
  return scene_from_text("viewing_001 {\n" + body + "\n}\n").settings.view;
}

TEST(viewing_block, stores_values) {
  const view_settings v = read_view(
      "viewpoint 0 -10 3 lookat 1 2 3 up_vector_1 0 0 5 up_vector_2 3 4 0 roll_angle 30\n"
      "extents 4 3 projection orthographic front_dist 0.1 back_dist 100\n"
      "transformations 1 0 0 0  0 1 0 0  0 0 1 0  0 0 0 1");
  EXPECT_EQ(v.viewpoint, vector(0, -10, 3));
  EXPECT_EQ(v.lookat, vector(1, 2, 3));
  EXPECT_EQ(v.up_vector_1, vector(0, 0, 1));
  EXPECT_EQ(v.up_vector_2, vector(0.6, 0.8, 0));
  EXPECT_EQ(v.roll_angle, 30.0);
  EXPECT_EQ(v.view_width, 4.0);
  EXPECT_EQ(v.view_height, 3.0);
  EXPECT_FALSE(v.perspective);
  EXPECT_TRUE(read_view("projection orthographic projection perspective").perspective);

  // Distances and the matrix are read and thrown away.
  const view_settings defaults = read_view("front_dist 1 back_dist 100 transformations 1 2 3 4 5 6 7 8 9 10 11 12 13 14 15 16");
  EXPECT_EQ(defaults.viewpoint, vector(0, 0, 5.6));
  EXPECT_EQ(defaults.view_width, 2.8);
  EXPECT_EQ(defaults.up_vector_1, vector(0, 1, 0));
  EXPECT_TRUE(defaults.perspective);
}

TEST(viewing_block, replaces_degenerate_values) {
  const view_settings v = read_view("up_vector_1 0 0 0 up_vector_2 0 0 -0 extents 0 -2");
  EXPECT_EQ(v.up_vector_1, vector(1, 0, 0));
  EXPECT_EQ(v.up_vector_2, vector(1, 0, 0));
  EXPECT_EQ(v.view_width, 0.001);
  EXPECT_EQ(v.view_height, 0.001);
  EXPECT_EQ(read_view("extents nan 2").view_width, 0.001);
}

TEST(viewing_block, messages) {
  const std::string e = "Error (viewing_001): ";
  expect_messages({
      {"viewing_001 lookat 0 0 0", e + "Missing '{' for viewing block"},
      {"viewing_001 { eye 1 2 3 }", e + "Unknown keyword 'eye' within viewing block"},
      {"viewing_001 { up_vector_1 0 0 x }", e + "Unable to read primary up-vector"},
      {"viewing_001 { up_vector_2 0", e + "Unable to read secondary up-vector"},
      {"viewing_001 { lookat a 0 0 }", e + "Unable to read lookat point"},
      {"viewing_001 { viewpoint 1 1 }", e + "Unable to read viewpoint"},
      {"viewing_001 { roll_angle deg }", e + "Unable to read roll angle"},
      {"viewing_001 { extents w 3 }", e + "Unable to read view width"},
      {"viewing_001 { extents 0 }", e + "Unable to read view height"},
      {"viewing_001 { front_dist far }", e + "Unable to read front distance"},
      {"viewing_001 { back_dist }", e + "Unable to read back distance"},
      {"viewing_001 { projection Perspective }", e + "Unable to read projection"},
      {"viewing_001 { transformations 1 0 0 0 0 1 0 0 0 0 1 0 0 0 0 }", e + "Unable to read transformations"},
  });
}

}  // namespace
}  // namespace sciray::testing
