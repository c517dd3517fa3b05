// thread_count_test.cpp - the picture and every output line are the same
// at every thread count: feature scenes rendered small on 1, 2, 3 and 8
// threads, whole and in bands; and a scene that recurses a million levels
// deep renders on a thread whose stack was made for it.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/test_files.h"

namespace sciray {
namespace {

using namespace sciray::testing;

struct feature {
  const char* name;
  const char* example;
  const char* settings;  // appended to the example
  std::vector<std::string> band;
};

const feature features[] = {
    {"clouds_antialiased", "weather", "render_002 { cloud_sharpness 0.9 }", {}},
    {"area_spot_antialiased", "molecule", "", {}},
    {"area_spot_plain", "molecule", "render_002 { antialias false }", {}},
    {"glass_plain", "glass", "render_002 { antialias false }", {}},
    {"glass_antialiased", "glass", "render_002 { antialias_depth 1 }", {}},
    {"blocks", "preview", "render_002 { pixel_size 5 }", {}},
    {"orthographic", "surface_bands", "viewing_001 { projection orthographic }", {}},
    {"band_2_of_3", "demo", "", {"-band", "2/3"}},
    {"band_3_of_7_area_light", "molecule", "render_002 { antialias false }", {"-band", "3/7"}},
};

// Renders `f` at 56 x 42 on `threads` threads: the picture's bytes, then
// standard output.
std::pair<std::string, std::string> render(const feature& f, const std::string& threads) {
  const std::string scene = read_file(std::string(SCIRAY_SOURCE_DIR) + "/examples/" + f.example + ".ren") + "\n" +
                            f.settings + "\nrender_002 { width 56 height 42 }\n";
  const std::string picture = scratch_dir() + "/" + f.name + threads + ".rgb";
  std::vector<std::string> args = {write_scratch_file(std::string(f.name) + ".ren", scene), picture};
  args.insert(args.end(), f.band.begin(), f.band.end());
  args.insert(args.end(), {"-threads", threads});
  const run_result r = run_sciray(args);
  EXPECT_EQ(r.status, 0) << f.name << ": " << r.err;
  return {read_file(picture), r.out};
}

TEST(thread_count, changes_no_byte_of_picture_or_output) {
  for (const feature& f : features) {
    const auto one = render(f, "1");
    ASSERT_GT(one.first.size(), 512u) << f.name;
    EXPECT_NE(one.second.find("Row "), std::string::npos) << f.name;
    for (const std::string threads : {"2", "3", "8"}) {
      const auto many = render(f, threads);
      EXPECT_TRUE(many.first == one.first) << f.name << " picture on " << threads << " threads";
      EXPECT_EQ(many.second, one.second) << f.name << " output on " << threads << " threads";
    }
  }
}

// Two facing mirrors, seen head-on through the gap between them: every ray
// bounces until the depth limit. One ray (a single 4 x 4 block) is enough.
std::string facing_mirrors(long depth) {
  return "render_002 { width 4 height 4 pixel_size 4 depth " + std::to_string(depth) +
         " atmosphere_len 0 }\n"
         "viewing_001 { viewpoint 0 0 0.5 lookat 0 0 0 up_vector_1 0 1 0 extents 1 1 projection orthographic }\n"
         "lighting_001 0 { ambient 0.5 0.5 0.5 }\n"
         "colormap_002 1 { index 0 { reflective 1 1 1 ambient 0.2 0.4 0.6 } }\n"
         "gr_geometry_001 {\n"
         "  gr_poly_fill 4 { xyz -2 -2 0  2 -2 0  2 2 0  -2 2 0 }\n"
         "  gr_poly_fill 4 { xyz -2 -2 1  -2 2 1  2 2 1  2 -2 1 }\n"
         "}\n";
}

TEST(deep_recursion, a_million_bounces_between_mirrors_render) {
#if defined(__SANITIZE_ADDRESS__)
  const long depth = 100000;  // sanitized frames are many times larger
#else
  const long depth = 1000000;
#endif
  const std::string picture = scratch_dir() + "/mirrors.rgb";
  const run_result r = run_sciray({write_scratch_file("mirrors.ren", facing_mirrors(depth)), picture, "-threads", "2"});
  ASSERT_EQ(r.status, 0) << r.err;
  EXPECT_EQ(r.out.rfind("Number of objects : 4\n\nRow     0 :         0", 0), 0u);
  // Every bounce adds the ambient 0.2 0.4 0.6 times 0.5: the block is white.
  const std::string bytes = read_file(picture);
  EXPECT_NE(bytes.find(std::string("\x04\xff", 2)), std::string::npos);
}

#if !defined(__SANITIZE_ADDRESS__)
TEST(deep_recursion, a_stack_the_machine_cannot_give_is_one_line_and_no_file) {
  // With the address space held to 4 GB, ten million levels cannot be given.
  const std::string scene = write_scratch_file("mirrors.ren", facing_mirrors(10000000));
  const std::string picture = scratch_dir() + "/mirrors.rgb";
  const run_result r = run_program("/bin/sh", {"-c", "ulimit -v 4000000 && exec \"$0\" \"$1\" \"$2\"", SCIRAY_BINARY,
                                               scene, picture});
  EXPECT_EQ(r.status, 1);
  EXPECT_EQ(r.err, std::string(SCIRAY_BINARY) + ": depth 10000000 needs more stack than this machine gives\n");
  EXPECT_FALSE(file_exists(picture));
}
#endif

}  // namespace
}  // namespace sciray
