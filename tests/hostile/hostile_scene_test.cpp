// hostile_scene_test.cpp - the renderer run on hostile scene files and
// command lines: cut-off files, garbage, huge lines and counts, values that
// are not numbers, extreme picture sizes, outputs that cannot be written,
// and extreme but legal settings, which must render as fast as their
// modest equivalents and give the same picture.
#include <sys/stat.h>

#include <cstdint>
#include <filesystem>
#include <string>

#include "hostile/hostile_run.h"
#include "image/image_test_files.h"

namespace sciray {
namespace {

using namespace testing;

const std::string program = SCIRAY_BINARY;

hostile_result render(const std::string& scene_text, const std::string& output,
                      const std::vector<std::string>& extra = {}) {
  if (std::filesystem::is_regular_file(output)) std::filesystem::remove(output);
  std::vector<std::string> args = {write_scratch_file("scene.ren", scene_text), output};
  args.insert(args.end(), extra.begin(), extra.end());
  const hostile_result r = run_hostile(program, args);
  expect_clean_end(r, output);
  return r;
}

// The picture at `path` is whole: its size, and every row readable.
void expect_picture(const std::string& path, unsigned width, unsigned height) {
  EXPECT_EQ(read_picture(path).size(), std::size_t{width} * height * 3) << path;
}

// A small scene of every block; a symbol, a contour polygon and lines in front of the camera.
const std::string full_scene = R"(# every block
render_002 { width 8 height 6 zenith 0.2 0.3 0.8 horizon 0.8 0.8 0.9 symbol_radius 0.5 line_radius 0.1 }
viewing_001 { viewpoint 0 -5 1 lookat 0 0 0 up_vector_1 0 0 1 extents 3 2 }
lighting_001 1 { ambient 0.1 0.1 0.1 light 0 { on true location 1 -2 3 color 1 1 1 } }
colormap_002 3 { index 0 { color 1 0 0 } index 1 { color 0 1 0 } index 2 { color 0 0 1 } }
contour_table_001 2 { 1 0.0 2 1.0 }
gr_geometry_001 {
  gr_symbol { index 0 type gr_disk xyz 0 0 0 }
  gr_poly_fill_cont 3 { index 1 style gr_contour_continuous xyz -1 1 -1 1 1 -1 0 1 1 values 0 0.5 1 }
  gr_lines 3 { index 2 xyz -1 0 -1 0 0 1 1 0 -1 }
}
)";

TEST(hostile_scene, cut_off_after_every_token) {
  const std::string out = scratch_dir() + "/cut.rgb";
  for (std::size_t at = 0; at <= full_scene.size(); ++at) {
    // Cut where a token ends (at a separator), and at every block's start.
    if (at < full_scene.size() && full_scene[at] != ' ' && full_scene[at] != '\n') continue;
    SCOPED_TRACE(full_scene.substr(0, at));
    const hostile_result r = render(full_scene.substr(0, at), out);
    const bool block_boundary = at == full_scene.size() || full_scene[at] == '\n';
    if (block_boundary && full_scene.substr(0, at).find("render_002") != std::string::npos) {
      EXPECT_EQ(r.status, 0) << r.err;
      expect_picture(out, 8, 6);
    }
  }
}

TEST(hostile_scene, garbage_long_lines_and_counts_beyond_the_data) {
  const std::string out = scratch_dir() + "/out.rgb";
  std::string garbage;
  for (std::uint32_t x = 12345, i = 0; i < 65536; ++i) garbage += static_cast<char>((x = x * 1103515245 + 12345) >> 24);
  const std::string megabyte(1 << 20, 'x');
  const std::string colormap = "colormap_002 1 { index 0 { color 1 1 1 } }\n";
  const std::pair<std::string, std::string> cases[] = {
      {garbage, ""},
      {"render_002 { width 8 height 8 }\n" + garbage, ""},
      {"#" + megabyte + "\n", ""},   // a comment line longer than a line buffer
      {"render_002 { " + megabyte + " }\n", "Error (render_002): Unknown keyword '" + megabyte.substr(0, 498) +
                                                "' within render block"},
      {"lighting_001 2147483647 { }\nrender_002 { width 4 height 4 }\n", ""},
      {"colormap_002 2147483647 { index 2147483647 { } }\n", "Error (colormap_002): Invalid index number 2147483647"},
      {colormap + "contour_table_001 2147483647 { 0 0.0 0 1.0 }\n",
       "Error (contour_table_001): Unable to read colormap index"},
      {colormap + "gr_geometry_001 { gr_lines 2147483647 { } }\n",
       "Error (gr_geometry_001): Number of vertices 2147483647 above 128 for gr_lines"},
      {colormap + "gr_geometry_001 { gr_lines 100 { xyz 0 0 0 1 1 1 } }\n",
       "Error (gr_geometry_001): Unable to read xyz for gr_lines"},
      {colormap + "gr_geometry_001 { gr_poly_fill 128 { xyz 0 0 0 1 0 0 0 1 0 norm 0 0 1 } }\n",
       "Error (gr_geometry_001): Unable to read xyz for gr_poly_fill"},
  };
  for (const auto& [text, message] : cases) {
    SCOPED_TRACE(text.substr(0, 80));
    const hostile_result r = render(text, out);
    if (!message.empty()) {
      EXPECT_EQ(r.err, message + "\n");
    }
  }
  // A 1 MB line of keywords and values is read in pieces: a result either way.
  std::string long_line = "render_002 { width 8 height 8";
  while (long_line.size() < (1 << 20)) long_line += " zenith 0.25 0.5 1";
  render(long_line + " }\n", out);
}

TEST(hostile_scene, values_that_are_not_numbers_render) {
  const std::string out = scratch_dir() + "/nan.rgb";
  const hostile_result r = render(R"(
render_002 { width 12 height 8 zenith nan 1 inf horizon -inf 0 1 ground 1e308 -1e308 0 symbol_radius 1e308
             cloud_outer_frac 0.5 cloud_offset nan 0 0 atmosphere inf nan 1 atmosphere_len -1 }
viewing_001 { viewpoint 0 -4 1e-310 lookat 0 0 0 up_vector_1 0 0 0 up_vector_2 0 0 1 extents inf nan roll_angle inf }
lighting_001 1 { light 0 { on true local true location nan 1 1 color inf 1 1 }
                 light 1 { on true local true spotlight true spotlight_direction 0 0 0 spotlight_angles nan -5 } }
colormap_002 3 { index 0 { color nan 0.5 inf index_ref 0 attenuation 0 -1 inf atten_len 0 shininess -1e308 }
                 index 1 { refractive 1 1 1 index_ref inf rough_scale 0 rough_amplitude inf } }
contour_table_001 3 { 0 1.0 1 1.0 2 -1.0 }
gr_geometry_001 {
  gr_symbol { index 0 type gr_disk xyz nan 0 0 }
  gr_symbol { index 1 type gr_disk xyz 0 4e-320 -0 }
  gr_lines 3 { index 0 xyz 0 0 0 0 0 0 inf inf inf }
  gr_poly_fill 4 { index 1 xyz 0 0 0 1 1 1 2 2 2 -inf 3 3 norm 0 0 0 nan 0 0 1e308 1e308 1e308 0 0 1 }
  gr_poly_fill_cont 3 { index 0 style gr_contour_continuous xyz -1 0 0 1 0 0 0 0 1 values 1 1 1 }
  gr_lines_cont 2 { index 0 style gr_contour_bands xyz -1 0 0 1 0 0 values nan inf }
}
)", out);
  EXPECT_EQ(r.status, 0) << r.err;
  expect_picture(out, 12, 8);
}

TEST(hostile_scene, extreme_sizes_and_an_empty_band) {
  const std::string out = scratch_dir() + "/size.rgb";
  // Sides below 4 pixels become 4.
  EXPECT_EQ(render("render_002 { width 65535 height 1 }\n", out).status, 0);
  expect_picture(out, 65535, 4);
  EXPECT_EQ(render("render_002 { width 1 height 65535 }\n", out).status, 0);
  expect_picture(out, 4, 65535);
  EXPECT_EQ(render("render_002 { width 65536 }\n", out).err, "Error (render_002): Invalid width 65536\n");

  const hostile_result r = render("render_002 { width 6 height 4 }\n", out, {"-band", "3/5"});
  EXPECT_EQ(r.status, 0);
  EXPECT_FALSE(file_exists(out));
}

TEST(hostile_scene, outputs_that_cannot_be_written) {
  const std::string scene = "render_002 { width 256 height 64 }\n";
  const std::string missing = scratch_dir() + "/no/such/dir/out.rgb";
  EXPECT_EQ(render(scene, missing).err, "iopen: can't open output file " + missing + "\n");
  EXPECT_EQ(render(scene, "/dev/full").err, "iopen: error on write of image header\n");
  struct stat info;
  EXPECT_TRUE(::stat("/dev/full", &info) == 0 && S_ISCHR(info.st_mode));

  // A full file system, as a file size limit of 1 KB: the header fits, the
  // first row does not, and the unreadable file is removed.
  const std::string out = scratch_dir() + "/full.rgb";
  const std::string command = "trap '' XFSZ; ulimit -f 2; exec \"$0\" \"$1\" \"$2\"";
  const hostile_result r =
      run_hostile("/bin/sh", {"-c", command, program, write_scratch_file("scene.ren", scene), out});
  expect_clean_end(r, out);
  EXPECT_EQ(r.err, "putrow: error on write of row 0 of channel 0\n");
}

// The scene with `setting` in its render block and with `equivalent` there
// give the same picture, byte for byte.
void expect_same_picture(const std::string& scene, const std::string& setting, const std::string& equivalent) {
  SCOPED_TRACE(setting);
  const std::string extreme = scratch_dir() + "/extreme.rgb", modest = scratch_dir() + "/modest.rgb";
  const auto with = [&](const std::string& s) {
    std::string text = scene;
    return text.replace(text.find("SETTING"), 7, s);
  };
  EXPECT_EQ(render(with(setting), extreme).status, 0);
  EXPECT_EQ(render(with(equivalent), modest).status, 0);
  EXPECT_EQ(file_bytes(extreme), file_bytes(modest));
}

TEST(hostile_scene, extreme_legal_settings_render_like_modest_ones) {
  const std::string sky = R"(render_002 { width 16 height 12 zenith 0.2 0.3 0.8 horizon 0.9 0.9 1
  cloud_inner_frac 0.3 cloud_outer_frac 0.3 cloud_scale 0.2 SETTING }
viewing_001 { viewpoint 0 0 0 lookat 0 1 2 up_vector_1 0 0 1 }
)";
  // Past about 2600 octaves the cloud sum no longer changes.
  expect_same_picture(sky, "cloud_depth 2147483647", "cloud_depth 3000");

  const std::string rough = R"(render_002 { width 16 height 12 symbol_radius 1 }
viewing_001 { viewpoint 0 -4 0 lookat 0 0 0 up_vector_1 0 0 1 }
lighting_001 1 { light 0 { on true location 1 -2 1 } }
colormap_002 1 { index 0 { color 0.8 0.6 0.2 rough_scale 0.3 rough_amplitude 0.5 SETTING } }
gr_geometry_001 { gr_symbol { index 0 type gr_disk xyz 0 0 0 } }
)";
  expect_same_picture(rough, "rough_depth 2147483647", "rough_depth 3000");

  // Two mirrors facing each other: the weight cut-off ends every ray.
  const std::string mirrors = R"(render_002 { width 16 height 12 SETTING }
viewing_001 { viewpoint 0 -0.5 0.3 lookat 0 1 0 up_vector_1 0 0 1 }
lighting_001 1 { light 0 { on true location 0 0 5 } }
colormap_002 1 { index 0 { color 0.5 0.5 0.5 reflective 0.9 0.9 0.9 } }
gr_geometry_001 {
  gr_poly_fill 4 { index 0 xyz -5 -1 -5 5 -1 -5 5 -1 5 -5 -1 5 }
  gr_poly_fill 4 { index 0 xyz -5 1 -5 5 1 -5 5 1 5 -5 1 5 }
}
)";
  expect_same_picture(mirrors, "depth 2147483647", "depth 200");

  // A colour map of 2147483647 entries of which one is given.
  const std::string colormap = R"(render_002 { width 16 height 12 symbol_radius 1 }
viewing_001 { viewpoint 0 -4 0 lookat 0 0 0 up_vector_1 0 0 1 }
lighting_001 1 { light 0 { on true location 1 -2 1 } }
colormap_002 SETTING { index 0 { color 0.8 0.6 0.2 } }
gr_geometry_001 { gr_symbol { index 0 type gr_disk xyz 0 0 0 } }
)";
  expect_same_picture(colormap, "2147483647", "1");
}

}  // namespace
}  // namespace sciray
