// output_file_test.cpp - an output is written beside its name and put in
// place only when finished: with the permissions it would have had, through
// a symbolic link into the file it names, directly where no file can be
// made beside it (a device, a link to nowhere, a name too long), and
// removed, leaving what was there, when the run fails.
#include "support/output_file.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <stdexcept>
#include <string>

#include "support/child_process.h"
#include "support/fatal_error.h"
#include "support/test_files.h"

namespace sciray {
namespace {

using namespace sciray::testing;
namespace fs = std::filesystem;

// Writes `text` through an output_file for `name`; what the directory held
// while it was being written.
std::vector<std::string> write_through(const std::string& name, const std::string& text) {
  output_file file;
  std::FILE* stream = file.create(name);
  EXPECT_NE(stream, nullptr) << name << ": " << std::strerror(errno);
  if (!stream) return {};
  std::fputs(text.c_str(), stream);
  const std::vector<std::string> meanwhile = names_in(scratch_dir());
  EXPECT_EQ(std::fclose(stream), 0);
  EXPECT_TRUE(file.finish()) << std::strerror(errno);
  return meanwhile;
}

unsigned mode_of(const std::string& path) { return static_cast<unsigned>(fs::status(path).permissions()); }

TEST(output_file, is_written_beside_its_name_and_put_in_place_with_the_usual_permissions) {
  const std::string dir = scratch_dir();
  const mode_t old_mask = ::umask(027);
  const std::vector<std::string> meanwhile = write_through(dir + "/new.rgb", "new");
  ::umask(old_mask);
  ASSERT_EQ(meanwhile.size(), 1u);
  EXPECT_EQ(meanwhile[0].rfind("new.rgb.", 0), 0u) << meanwhile[0];
  EXPECT_EQ(read_file(dir + "/new.rgb"), "new");
  EXPECT_EQ(mode_of(dir + "/new.rgb"), 0640u);
  EXPECT_EQ(names_in(dir), std::vector<std::string>{"new.rgb"});

  // A file replaced keeps its permissions, and its content until the end.
  const std::string old = write_scratch_file("old.rgb", "old");
  fs::permissions(old, fs::perms(0604));
  EXPECT_EQ(write_through(old, "new").size(), 3u);
  EXPECT_EQ(read_file(old), "new");
  EXPECT_EQ(mode_of(old), 0604u);
}

TEST(output_file, follows_a_link_to_the_file_it_names) {
  const std::string dir = scratch_dir();
  write_scratch_file("real.rgb", "old");
  fs::create_symlink("real.rgb", dir + "/link.rgb");
  write_through(dir + "/link.rgb", "new");
  EXPECT_TRUE(fs::is_symlink(dir + "/link.rgb"));
  EXPECT_EQ(read_file(dir + "/real.rgb"), "new");
  EXPECT_EQ(names_in(dir), (std::vector<std::string>{"link.rgb", "real.rgb"}));

  // A link to nowhere makes the file it names, as writing through it does.
  fs::create_symlink("made.rgb", dir + "/dangling.rgb");
  write_through(dir + "/dangling.rgb", "made");
  EXPECT_TRUE(fs::is_symlink(dir + "/dangling.rgb"));
  EXPECT_EQ(read_file(dir + "/made.rgb"), "made");
}

TEST(output_file, is_written_directly_where_nothing_can_be_made_beside_it) {
  output_file device;
  std::FILE* stream = device.create("/dev/null");
  ASSERT_NE(stream, nullptr);
  EXPECT_EQ(std::fclose(stream), 0);
  EXPECT_TRUE(device.finish());
  EXPECT_TRUE(fs::is_character_file("/dev/null"));

  // A name so long that no longer name fits beside it.
  const std::string longest = scratch_dir() + "/" + std::string(250, 'p') + ".rgb";
  write_scratch_file(fs::path(longest).filename(), "old");
  EXPECT_EQ(write_through(longest, "new").size(), 1u);
  EXPECT_EQ(read_file(longest), "new");

  output_file nowhere;
  EXPECT_EQ(nowhere.create(scratch_dir() + "/no/such/dir/out.rgb"), nullptr);
  EXPECT_EQ(errno, ENOENT);
}

struct stopped : std::runtime_error {
  using std::runtime_error::runtime_error;
};

TEST(output_file, an_error_removes_what_was_begun_and_keeps_what_was_there) {
  set_fatal_handler([](const std::string& line) { throw stopped(line); });
  const std::string old = write_scratch_file("old.rgb", "old");
  const std::string longest = scratch_dir() + "/" + std::string(251, 'q') + ".rgb";
  const std::string dangling = scratch_dir() + "/dangling.rgb";
  fs::create_symlink("made.rgb", dangling);
  for (const std::string& name : {old, scratch_dir() + "/new.rgb", longest, dangling}) {
    output_file file;
    std::FILE* stream = file.create(name);
    ASSERT_NE(stream, nullptr);
    std::fputs("half", stream);
    std::fflush(stream);
    EXPECT_THROW(fatal("stopped"), stopped);
    std::fclose(stream);
  }
  set_fatal_handler(nullptr);
  // The file made through the link goes, the link stays.
  EXPECT_EQ(names_in(scratch_dir()), (std::vector<std::string>{"dangling.rgb", "old.rgb"}));
  EXPECT_EQ(read_file(old), "old");
}

}  // namespace
}  // namespace sciray
