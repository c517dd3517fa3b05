// guarded_output_test.cpp - the program never destroys its input: an output
// that is the scene file, by the same name, another path to it, a symbolic
// link or a hard link, is refused before anything is read or written.
#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "support/test_files.h"

namespace sciray {
namespace {

using namespace sciray::testing;
namespace fs = std::filesystem;

const std::string scene_text = "render_002 { width 8 height 4 }\n";

TEST(guarded_output, an_output_that_is_the_scene_file_is_refused) {
  const std::string scene = write_scratch_file("scene.ren", scene_text);
  const std::string dir = scratch_dir();
  fs::create_symlink("scene.ren", dir + "/link.rgb");
  fs::create_hard_link(scene, dir + "/hard.png");
  const std::string same_dir = dir + "/../" + fs::path(dir).filename().string() + "/scene.ren";
  for (const std::string& output : {scene, same_dir, dir + "/link.rgb", dir + "/hard.png"}) {
    for (const char* band : {"1/1", "2/3"}) {
      const run_result r = run_sciray({scene, output, "-band", band});
      EXPECT_EQ(r.status, 1) << output;
      EXPECT_EQ(r.err, SCIRAY_BINARY + std::string(": output file ") + output + " is the same file as input " +
                           scene + "\n");
      EXPECT_EQ(r.out, "");
      EXPECT_EQ(read_file(scene), scene_text);
    }
  }
  EXPECT_TRUE(fs::is_symlink(dir + "/link.rgb"));
}

TEST(guarded_output, other_files_and_devices_are_written_as_before) {
  // A copy of the scene is another file; a device may be input and output.
  const std::string scene = write_scratch_file("scene.ren", scene_text);
  const std::string copy = write_scratch_file("copy.rgb", scene_text);
  run_result r = run_sciray({scene, copy});
  EXPECT_EQ(r.status, 0) << r.err;
  EXPECT_NE(read_file(copy), scene_text);
  r = run_sciray({"/dev/null", "/dev/null"});
  EXPECT_EQ(r.status, 0) << r.err;
  EXPECT_EQ(r.out.rfind("Number of objects : 0\n", 0), 0u);
}

}  // namespace
}  // namespace sciray
