// reader_test.cpp - the tokenizer and the top-level reader: separators,
// comments, 511-character pieces, NUL bytes, end of file, numbers read the
// way sscanf reads them, and block dispatch.
#include "scene_text.h"

namespace sciray::testing {
namespace {

TEST(reader_tokens, separators_comments_nul_numbers_and_end_of_file) {
  // CR LF, tab, vertical tab and form feed separate and a value may follow on
  // the next line; a NUL byte ends its line; a '#' in column one comments out
  // a line; numbers are read from the start of a token; the file may end
  // inside a block.
  scene_from_text s(std::string("render_002 {\r\n\twidth\r\n12abc\vheight\f320.7 ") + '\0' + " width 300\n}\r\n" +
                    "#render_002 { shadows false }\nrender_002 { antialias_tol 0.25x depth 6");
  const render_settings& r = s.settings.render;
  EXPECT_EQ(reals({double(r.width), double(r.height), double(r.shadows), r.antialias_tol, double(r.depth)}),
            reals({12, 320, 1, 0.25, 6}));
  // Empty files and files of comments only are scenes without blocks.
  for (const char* text : {"", "# one\n#two\n", "\n \t\n"}) {
    scene_from_text empty(text);
    EXPECT_EQ(empty.settings.render.width, 640);
    EXPECT_EQ(empty.scene.object_count(), 0u);
  }
}

TEST(reader_tokens, long_lines_are_read_in_511_character_pieces) {
  std::string head = "render_002 { width 100";
  head.resize(511, ' ');
  // The second piece starts with '#' and is skipped whole; otherwise it is
  // tokenized like a line of its own...
  EXPECT_EQ(scene_from_text(head + "#x width 300\n}\n").settings.render.width, 100);
  EXPECT_EQ(scene_from_text(head + "height 300\n}\n").settings.render.height, 300);
  // ...and a token across the boundary falls apart: "wi" + "dth".
  std::string open = "render_002 {";
  open.resize(509, ' ');
  expect_messages({{open + "width 300 }\n", "Error (render_002): Unknown keyword 'wi' within render block"}});
}

TEST(reader_tokens, files_larger_than_the_read_block) {
  // Hundreds of kilobytes of records, with comments and CR LF between them:
  // every token survives the refills of the reader's buffer.
  std::string text = numbered_colormap(1) + "gr_geometry_001 {\r\n";
  const int symbols = 30000;
  for (int i = 0; i < symbols; ++i)
    text += (i % 7 ? " " : "#" + std::to_string(i) + "\n") + "gr_symbol { type gr_o xyz " + std::to_string(i) + " -" +
            std::to_string(i) + ".5 1e-3 }\r\n";
  scene_from_text s(text + "}");
  EXPECT_EQ(s.scene.object_count(), static_cast<std::size_t>(symbols));
}

TEST(reader_blocks, any_order_older_versions_and_unknown_keywords) {
  // A repeated block overwrites only what it names; render_001 is render_002.
  scene_from_text s("viewing_001 { roll_angle 5 }\nrender_001 { width 100 height 90 }\n"
                    "render_002 { width 200 }\nviewing_001 { }\n");
  EXPECT_EQ(reals({double(s.settings.render.width), double(s.settings.render.height), s.settings.view.roll_angle}),
            reals({200, 90, 5}));
  scene_from_text old_colormap("colormap_001 1 { index 0 { diffuse 0.5 0.5 0.5 } }\n"
                               "gr_geometry_001 { gr_symbol { type gr_o xyz 0 0 0 } }");
  ASSERT_EQ(old_colormap.primitives().size(), 1u);
  EXPECT_EQ(old_colormap.material_of(old_colormap.primitives()[0])->diffuse, colour(0.5, 0.5, 0.5));

  expect_messages({
      {"Render_002 { }", "Error: Unknown keyword 'Render_002' within input file"},
      {"render_002{ }", "Error: Unknown keyword 'render_002{' within input file"},
      {"render_002 { } }", "Error: Unknown keyword '}' within input file"},
      {"render_003 { }", "Error: Unknown keyword 'render_003' within input file"},
      // After a blank the comment mark is part of a token.
      {" #render_002 {}", "Error: Unknown keyword '#render_002' within input file"},
      {"render_001 { width: 5 }", "Error (render_002): Unknown keyword 'width:' within render block"},
  });
  // Binary garbage is an unknown keyword too, never a crash.
  std::string garbage;
  for (int c = 1; c < 256; ++c) garbage += static_cast<char>(c);
  EXPECT_EXIT(scene_from_text{garbage}, ::testing::ExitedWithCode(1), "^Error: Unknown keyword '");
}

}  // namespace
}  // namespace sciray::testing
