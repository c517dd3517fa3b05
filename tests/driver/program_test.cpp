// program_test.cpp - whole runs of the renderer: arguments, messages, the
// object count and progress lines, bands, block rows and the written file.
#include <gtest/gtest.h>

#include <cstdint>
#include <sstream>

#include "image/image.h"
#include "support/test_files.h"

namespace sciray {
namespace {

using testing::file_exists;
using testing::run_sciray;
using testing::write_scratch_file;

const std::string program = SCIRAY_BINARY;

std::string render_block(int width, int height, const std::string& extra = "") {
  std::ostringstream s;
  s << "render_002 {\n  width " << width << " height " << height << "\n" << extra << "}\n";
  return s.str();
}

// The "Row" lines of a run's standard output, without the counts.
std::vector<std::string> row_labels(const std::string& out) {
  std::vector<std::string> rows;
  std::istringstream in(out);
  for (std::string line; std::getline(in, line);)
    if (line.rfind("Row ", 0) == 0) rows.push_back(line.substr(0, 9));
  return rows;
}

unsigned header_u16(const std::string& file, std::size_t offset) {
  return static_cast<unsigned char>(file[offset]) | static_cast<unsigned char>(file[offset + 1]) << 8;
}

TEST(program_run, usage_and_unopenable_scene) {
  auto r = run_sciray({});
  EXPECT_EQ(r.status, 1);
  EXPECT_EQ(r.err, "usage: " + program + " input_data.ren output_image.rgb\n");
  EXPECT_EQ(r.out, "");
  EXPECT_EQ(run_sciray({"only_one"}).err, r.err);

  const std::string out = testing::scratch_dir() + "/out.rgb";
  r = run_sciray({"/nonexistent/scene.ren", out});
  EXPECT_EQ(r.status, 1);
  EXPECT_EQ(r.err, program + ": can't open input file /nonexistent/scene.ren\n");
  r = run_sciray({testing::scratch_dir(), out});
  EXPECT_EQ(r.err, program + ": can't open input file " + testing::scratch_dir() + "\n");
  EXPECT_FALSE(file_exists(out));
}

TEST(program_run, counts_objects_and_prints_a_line_per_row) {
  const std::string scene = write_scratch_file("s.ren", render_block(8, 4));
  const std::string out = testing::scratch_dir() + "/out.rgb";
  const auto r = run_sciray({scene, out});
  EXPECT_EQ(r.status, 0) << r.err;
  EXPECT_EQ(r.err, "");
  EXPECT_EQ(r.out.rfind("Number of objects : 0\n\nRow     0 :         0 (      0) :         0 (      0)\n", 0), 0u)
      << r.out;
  EXPECT_EQ(row_labels(r.out), (std::vector<std::string>{"Row     0", "Row     1", "Row     2", "Row     3"}));
  // Every pixel of the first row cast one primary ray.
  EXPECT_NE(r.out.find("Row     1 :         8 (      0) :         8 (      0)\n"), std::string::npos) << r.out;

  const std::string file = testing::read_file(out);
  ASSERT_GE(file.size(), 512u);
  EXPECT_EQ(header_u16(file, 6), 8u);
  EXPECT_EQ(header_u16(file, 8), 4u);
  EXPECT_EQ(header_u16(file, 10), 3u);
}

TEST(program_run, bands_write_only_their_rows_and_empty_bands_write_nothing) {
  const std::string scene = write_scratch_file("s.ren", render_block(6, 6));
  const std::string out = testing::scratch_dir() + "/band.rgb";
  auto r = run_sciray({scene, out, "-band", "2/3"});
  EXPECT_EQ(r.status, 0);
  EXPECT_EQ(row_labels(r.out), (std::vector<std::string>{"Row     2", "Row     3"}));
  EXPECT_EQ(header_u16(testing::read_file(out), 8), 2u);

  // Four rows in five bands: the third band is empty.
  const std::string small = write_scratch_file("small.ren", render_block(6, 4));
  const std::string none = testing::scratch_dir() + "/none.rgb";
  r = run_sciray({small, none, "-band", "3/5"});
  EXPECT_EQ(r.status, 0);
  EXPECT_EQ(r.out, "Number of objects : 0\n\n");
  EXPECT_FALSE(file_exists(none));

  // A malformed band renders the whole picture.
  r = run_sciray({small, none, "-band", "6/5"});
  EXPECT_EQ(row_labels(r.out).size(), 4u);
}

TEST(program_run, block_rows_are_aligned_to_the_top_and_right) {
  const std::string scene = write_scratch_file("s.ren", render_block(10, 10, "pixel_size 4\n"));
  const auto r = run_sciray({scene, testing::scratch_dir() + "/out.rgb"});
  EXPECT_EQ(row_labels(r.out), (std::vector<std::string>{"Row     0", "Row     2", "Row     6"}));
  // One ray per block: block columns of 2, 4 and 4 pixels.
  EXPECT_NE(r.out.find("Row     2 :         3"), std::string::npos) << r.out;
  EXPECT_NE(r.out.find("Row     6 :         3 (      0) :         6"), std::string::npos) << r.out;

  // A block size larger than the picture is the picture's smaller side.
  const std::string big = write_scratch_file("big.ren", render_block(8, 5, "pixel_size 100\n"));
  EXPECT_EQ(row_labels(run_sciray({big, testing::scratch_dir() + "/b.rgb"}).out),
            (std::vector<std::string>{"Row     0"}));
}

TEST(program_run, errors_leave_no_output_file) {
  const std::string out = testing::scratch_dir() + "/out.rgb";
  const std::string bad = write_scratch_file("bad.ren", "render_002 { width x }\n");
  auto r = run_sciray({bad, out});
  EXPECT_EQ(r.status, 1);
  EXPECT_EQ(r.err, "Error (render_002): Unable to read width\n");
  EXPECT_EQ(r.out, "");
  EXPECT_FALSE(file_exists(out));

  const std::string same = write_scratch_file("same.ren", "viewing_001 { viewpoint 1 2 3 lookat 1 2 3 }\n");
  r = run_sciray({same, out});
  EXPECT_EQ(r.status, 1);
  EXPECT_EQ(r.err, program + ": lookat and viewpoint are the same\n");
  EXPECT_FALSE(file_exists(out));

  const std::string ambiguous =
      write_scratch_file("amb.ren", "viewing_001 { up_vector_1 0 0 1 up_vector_2 0 0 -3 }\n");
  r = run_sciray({ambiguous, out});
  EXPECT_EQ(r.err, program + ": up_vector_1 and up_vector_2 are ambiguous\n");
  EXPECT_FALSE(file_exists(out));

  r = run_sciray({write_scratch_file("ok.ren", render_block(4, 4)), "/nonexistent/dir/out.rgb"});
  EXPECT_EQ(r.status, 1);
  EXPECT_EQ(r.err, "iopen: can't open output file /nonexistent/dir/out.rgb\n");
}

}  // namespace
}  // namespace sciray
