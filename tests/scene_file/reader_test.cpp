// reader_test.cpp - the tokenizer and the top-level reader: separators,
// comments, 511-character pieces, NUL bytes, end of file, numbers read the
// way sscanf reads them, and block dispatch.
#include <gtest/gtest.h>

#include "scene_text.h"

namespace sciray::testing {
namespace {

TEST(reader_tokens, separators_and_line_ends) {
  // CR LF line ends, tabs, vertical tabs and form feeds all separate; a value
  // may sit on the line after its keyword.
  scene_from_text s("render_002 {\r\n\twidth\r\n100\vheight\f200\r\n}\r\n");
  EXPECT_EQ(s.settings.render.width, 100);
  EXPECT_EQ(s.settings.render.height, 200);
}

TEST(reader_tokens, comments_only_in_column_one) {
  scene_from_text commented("#render_002 { width 300 }\nrender_002 { width 100 }\n");
  EXPECT_EQ(commented.settings.render.width, 100);

  // Empty files and files of comments only are scenes without blocks.
  for (const char* text : {"", "# one\n#two\n", "\n \t\n"}) {
    scene_from_text s(text);
    EXPECT_EQ(s.settings.render.width, 640);
    EXPECT_EQ(s.scene.object_count(), 0u);
  }

  // After a blank the mark is part of a token.
  expect_messages({{" #render_002 {}", "Error: Unknown keyword '#render_002' within input file"}});
}

TEST(reader_tokens, long_lines_are_read_in_511_character_pieces) {
  const std::string head = "render_002 { width 100";
  // The second piece starts with '#' and is skipped whole.
  scene_from_text skipped(head + std::string(511 - head.size(), ' ') + "#x width 300\n}\n");
  EXPECT_EQ(skipped.settings.render.width, 100);
  // Otherwise it is tokenized like a line of its own...
  scene_from_text read(head + std::string(511 - head.size(), ' ') + "height 300\n}\n");
  EXPECT_EQ(read.settings.render.height, 300);
  // ...and a token across the boundary falls apart: "wi" + "dth".
  const std::string open = "render_002 {";
  expect_messages({{open + std::string(509 - open.size(), ' ') + "width 300 }\n",
                    "Error (render_002): Unknown keyword 'wi' within render block"}});
}

TEST(reader_tokens, nul_byte_ends_the_line) {
  scene_from_text s(std::string("render_002 { width 100 ") + '\0' + " width 300\nheight 200 }\n");
  EXPECT_EQ(s.settings.render.width, 100);
  EXPECT_EQ(s.settings.render.height, 200);
}

TEST(reader_tokens, numbers_are_read_from_the_start_of_a_token) {
  scene_from_text s("render_002 { width 12abc height 320.7 antialias_tol 0.25x }");
  EXPECT_EQ(s.settings.render.width, 12);
  EXPECT_EQ(s.settings.render.height, 320);
  EXPECT_EQ(s.settings.render.antialias_tol, 0.25);
}

TEST(reader_tokens, end_of_file_inside_a_block_is_accepted) {
  scene_from_text render("render_002 { width 100");
  EXPECT_EQ(render.settings.render.width, 100);
}

TEST(reader_blocks, any_order_and_older_versions) {
  // A repeated block overwrites only what it names; render_001 is render_002.
  scene_from_text s("viewing_001 { roll_angle 5 }\nrender_001 { width 100 height 90 }\n"
                    "render_002 { width 200 }\nviewing_001 { }\n");
  EXPECT_EQ(s.settings.render.width, 200);
  EXPECT_EQ(s.settings.render.height, 90);
  EXPECT_EQ(s.settings.view.roll_angle, 5.0);

  scene_from_text old_colormap("colormap_001 1 { index 0 { diffuse 0.5 0.5 0.5 } }\n"
                               "gr_geometry_001 { gr_symbol { type gr_o xyz 0 0 0 } }");
  ASSERT_EQ(old_colormap.primitives().size(), 1u);
  EXPECT_EQ(old_colormap.primitives()[0]->get_material()->diffuse, colour(0.5, 0.5, 0.5));
}

TEST(reader_blocks, unknown_block_keywords) {
  expect_messages({
      {"Render_002 { }", "Error: Unknown keyword 'Render_002' within input file"},
      {"render_002{ }", "Error: Unknown keyword 'render_002{' within input file"},
      {"render_002 { } }", "Error: Unknown keyword '}' within input file"},
      {"render_003 { }", "Error: Unknown keyword 'render_003' within input file"},
      {"render_001 { width: 5 }", "Error (render_002): Unknown keyword 'width:' within render block"},
  });
  // Binary garbage is an unknown keyword too, never a crash.
  std::string garbage;
  for (int c = 1; c < 256; ++c) garbage += static_cast<char>(c);
  EXPECT_EXIT(scene_from_text{garbage}, ::testing::ExitedWithCode(1), "^Error: Unknown keyword '");
}

}  // namespace
}  // namespace sciray::testing
