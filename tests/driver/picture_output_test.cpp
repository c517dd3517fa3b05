// picture_output_test.cpp - what the program writes: the corner mark, left
// out with -nomark, and a PNG of the same pixels for a name ending in
// ".png", whole or in bands.
#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "image/image_test_files.h"

namespace sciray {
namespace {

using namespace sciray::testing;

// A sky of one colour, (102, 153, 204) in bytes, and nothing else: every
// pixel is that colour but for the mark.
std::string uniform_scene(int width, int height) {
  return write_scratch_file("uniform.ren", "render_002 { width " + std::to_string(width) + " height " +
                                               std::to_string(height) +
                                               " zenith 0.4 0.6 0.8 horizon 0.4 0.6 0.8 ground 0.4 0.6 0.8 }\n");
}

// Renders `scene` into `name` in the scratch directory: the file's path.
std::string render(const std::string& scene, const std::string& name, std::vector<std::string> options = {},
                   std::string* out = nullptr) {
  const std::string path = scratch_dir() + "/" + name;
  options.insert(options.begin(), {scene, path});
  const run_result r = run_sciray(options);
  EXPECT_EQ(r.status, 0) << r.err;
  EXPECT_EQ(r.err, "");
  if (out) *out = r.out;
  return path;
}

// The pixels that differ from the sky, as (x, y) with y from the bottom.
std::vector<std::pair<unsigned, unsigned>> not_sky(const samples& s, unsigned width) {
  std::vector<std::pair<unsigned, unsigned>> found;
  for (std::size_t i = 0; i < s.size(); i += 3)
    if (s[i] != 102 || s[i + 1] != 153 || s[i + 2] != 204) found.emplace_back(i / 3 % width, i / 3 / width);
  return found;
}

TEST(corner_mark_option, nomark_leaves_the_rendered_pixels_under_the_mark) {
  // 320 pixels wide: a mark of 26 x 9 pixels, 4 from the top and right edges.
  const std::string scene = uniform_scene(320, 40);
  std::string marked_out, clean_out;
  const samples marked = read_picture(render(scene, "marked.rgb", {}, &marked_out));
  const samples clean = read_picture(render(scene, "clean.rgb", {"-nomark"}, &clean_out));
  EXPECT_EQ(clean_out, marked_out);
  EXPECT_TRUE(not_sky(clean, 320).empty());
  const auto mark = not_sky(marked, 320);
  ASSERT_EQ(mark.size(), 26u * 9u);
  EXPECT_EQ(mark.front(), std::make_pair(290u, 40u - 4u - 9u));
  EXPECT_EQ(mark.back(), std::make_pair(315u, 40u - 4u - 1u));

  // The same in the band that holds the top rows, with the other options.
  const samples top = read_picture(render(scene, "top.rgb", {"-band", "2/2", "-nomark", "-threads", "2"}));
  EXPECT_EQ(top.size(), 320u * 20u * 3u);
  EXPECT_TRUE(not_sky(top, 320).empty());
  EXPECT_EQ(not_sky(read_picture(render(scene, "top_marked.rgb", {"-band", "2/2"})), 320).size(), 26u * 9u);
}

TEST(png_output, a_png_name_gives_a_png_of_the_same_pixels_whole_or_in_bands) {
  const std::string scene = write_scratch_file(
      "demo.ren", read_file(std::string(SCIRAY_SOURCE_DIR) + "/examples/demo.ren") +
                      "\nrender_002 { width 160 height 90 }\n");
  for (const std::vector<std::string>& options :
       {std::vector<std::string>{}, {"-nomark"}, {"-band", "1/3"}, {"-band", "2/3", "-threads", "3"}}) {
    std::string label;
    for (const std::string& o : options) label += o + " ";
    SCOPED_TRACE(label);
    std::string sgi_out, png_out;
    const samples sgi = read_picture(render(scene, "picture.rgb", options, &sgi_out));
    const auto [format, png] = decode_with_pil(render(scene, "picture.png", options, &png_out));
    EXPECT_EQ(format, "PNG 160 " + std::to_string(sgi.size() / 3 / 160));
    EXPECT_EQ(png, sgi);
    EXPECT_EQ(png_out, sgi_out);
  }
  // Only a name ending in ".png", as written, asks for one.
  for (const char* name : {"picture.PNG", "picture.png.rgb", "picture.pngx"}) {
    const bytes file = file_bytes(render(scene, name));
    ASSERT_GE(file.size(), 2u) << name;
    EXPECT_EQ(le16(file, 0), 474u) << name;
  }
}

TEST(png_output, a_failed_png_is_one_line_and_leaves_no_file) {
  const std::string scene = uniform_scene(40, 30);
  // A link with a PNG name to a device that takes nothing.
  const std::string full = scratch_dir() + "/full.png";
  std::filesystem::create_symlink("/dev/full", full);
  run_result r = run_sciray({scene, full});
  EXPECT_EQ(r.status, 1);
  EXPECT_EQ(r.err.rfind(SCIRAY_BINARY + std::string(": ") + full + ": ", 0), 0u) << r.err;
  EXPECT_EQ(r.err.find('\n'), r.err.size() - 1) << r.err;
  EXPECT_TRUE(std::filesystem::is_symlink(full));

  const std::string nowhere = scratch_dir() + "/no/such/dir/out.png";
  r = run_sciray({scene, nowhere});
  EXPECT_EQ(r.status, 1);
  EXPECT_EQ(r.err, "iopen: can't open output file " + nowhere + "\n");
}

}  // namespace
}  // namespace sciray
