// guarded_output_test.cpp - the program never destroys a file: an output
// that is the scene file, by the same name, another path to it, a symbolic
// link or a hard link, is refused before anything is read or written; and
// a run stopped by a signal ends with that signal's status and leaves
// neither a partial picture nor a temporary file behind, and a picture
// that was there before stays as it was.
#include <gtest/gtest.h>

#include <signal.h>
#include <sys/wait.h>

#include <filesystem>
#include <string>
#include <vector>

#include "support/child_process.h"
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

// A render of some minutes: the glass example, large and anti-aliased.
std::string long_scene() {
  return write_scratch_file("long.ren", read_file(std::string(SCIRAY_SOURCE_DIR) + "/examples/glass.ren") +
                                            "\nrender_002 { width 2000 height 2000 antialias true }\n");
}

// Starts a long render into `dir`/`output`, interrupts it with `signal`
// once it has begun writing, and checks how it ended and what is left in
// `dir`: `before`, as it was.
void interrupt(const std::string& dir, const std::string& output, int signal,
               const std::vector<std::string>& extra = {}) {
  const std::vector<std::string> before = names_in(dir);
  std::vector<std::string> args{long_scene(), dir + "/" + output, "-threads", "2"};
  args.insert(args.end(), extra.begin(), extra.end());
  const std::string log = scratch_dir() + "/stdout.txt";
  fs::remove(log);  // not to be taken for this run's
  child_process run(SCIRAY_BINARY, args, log);
  // The picture is begun before the first row's line.
  ASSERT_TRUE(run.wait_for([&] { return read_file(log).find("\nRow ") != std::string::npos; }, 60))
      << read_file(log + ".err");
  EXPECT_EQ(names_in(dir).size(), before.size() + 1);  // the temporary file
  run.send(signal);
  const int status = run.wait();
  EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == signal) << std::hex << status;
  EXPECT_EQ(read_file(log + ".err"), "");
  EXPECT_EQ(names_in(dir), before);
}

TEST(guarded_output, a_signal_leaves_no_partial_picture) {
  const std::string dir = scratch_dir() + "/pictures";
  fs::create_directory(dir);
  for (int signal : {SIGINT, SIGTERM, SIGHUP, SIGXCPU, SIGQUIT, SIGPIPE, SIGXFSZ}) {
    SCOPED_TRACE(strsignal(signal));
    interrupt(dir, "new.rgb", signal);
  }
  // A PNG, and a picture that was there before, which stays as it was.
  interrupt(dir, "new.png", SIGTERM, {"-nomark"});
  const std::string old = write_scratch_file("pictures/old.rgb", "an earlier picture");
  interrupt(dir, "old.rgb", SIGINT, {"-band", "1/2"});
  EXPECT_EQ(read_file(old), "an earlier picture");
}

TEST(guarded_output, a_signal_ignored_at_the_start_stays_ignored) {
  // As under nohup: a hang-up does not stop the run; a TERM does.
  const std::string dir = scratch_dir() + "/pictures";
  fs::create_directory(dir);
  const std::string log = scratch_dir() + "/stdout.txt";
  child_process run(SCIRAY_BINARY, {long_scene(), dir + "/out.rgb", "-threads", "2"}, log, {SIGHUP});
  ASSERT_TRUE(run.wait_for([&] { return read_file(log).find("\nRow ") != std::string::npos; }, 60));
  run.send(SIGHUP);
  EXPECT_FALSE(run.wait_for([&] { return false; }, 0.5));
  EXPECT_TRUE(run.running());
  run.send(SIGTERM);
  const int status = run.wait();
  EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == SIGTERM) << std::hex << status;
  EXPECT_EQ(names_in(dir), std::vector<std::string>{});
}

}  // namespace
}  // namespace sciray
