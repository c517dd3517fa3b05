// viewing_block_test.cpp - the viewing block's stored values and messages.
#include "scene_text.h"

namespace sciray::testing {
namespace {

view_settings read_view(const std::string& body) {
  return scene_from_text("viewing_001 {\n" + body + "\n}\n").settings.view;
}

TEST(viewing_block, stores_values_and_replaces_degenerate_ones) {
  // Distances and the matrix, given last, are read and thrown away.
  const view_settings v = read_view(
      "viewpoint 0 -10 3 lookat 1 2 3 up_vector_1 0 0 5 up_vector_2 3 4 0 roll_angle 30\n"
      "extents 4 3 projection orthographic front_dist 0.1 back_dist 100\n"
      "transformations 1 2 3 4 5 6 7 8 9 10 11 12 13 14 15 16");
  EXPECT_EQ(vectors({v.viewpoint, v.lookat, v.up_vector_1, v.up_vector_2}),
            vectors({{0, -10, 3}, {1, 2, 3}, {0, 0, 1}, {0.6, 0.8, 0}}));
  EXPECT_EQ(reals({v.roll_angle, v.view_width, v.view_height}), reals({30, 4, 3}));
  EXPECT_FALSE(v.perspective);
  EXPECT_TRUE(read_view("projection orthographic projection perspective").perspective);

  // Zero up vectors normalise to x; extents not above 0 (or not a number) become 0.001.
  const view_settings bad = read_view("up_vector_1 0 0 0 up_vector_2 0 0 -0 extents 0 -2");
  EXPECT_EQ(vectors({bad.up_vector_1, bad.up_vector_2}), vectors({{1, 0, 0}, {1, 0, 0}}));
  EXPECT_EQ(reals({bad.view_width, bad.view_height, read_view("extents nan 2").view_width}),
            reals({0.001, 0.001, 0.001}));
}

TEST(viewing_block, messages) {
  message_cases cases = {{"viewing_001 lookat 0 0 0", "Missing '{' for viewing block"},
                         {"viewing_001 { eye 1 2 3 }", "Unknown keyword 'eye' within viewing block"}};
  for (const auto& [body, what] : message_cases{
           {"up_vector_1 0 0 x }", "primary up-vector"}, {"up_vector_2 0", "secondary up-vector"},
           {"lookat a 0 0 }", "lookat point"}, {"viewpoint 1 1 }", "viewpoint"}, {"roll_angle deg }", "roll angle"},
           {"extents w 3 }", "view width"}, {"extents 0 }", "view height"}, {"front_dist far }", "front distance"},
           {"back_dist }", "back distance"}, {"projection Perspective }", "projection"},
           {"transformations 1 0 0 0 0 1 0 0 0 0 1 0 0 0 0 }", "transformations"}}) {
    cases.push_back({"viewing_001 { " + body, "Unable to read " + what});
  }
  expect_messages(cases, "Error (viewing_001): ");
}

}  // namespace
}  // namespace sciray::testing
