// render_job_test.cpp - the render job with an output in memory: it hands
// over what the program writes, stops between rows when asked (in every
// row mode, on one thread and several), and a fatal error thrown through it
// by a handler leaves the process able to render again.
#include "driver/render_job.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <stdexcept>
#include <string>
#include <vector>

#include "memory_render.h"
#include "support/fatal_error.h"

namespace sciray {
namespace {

using namespace sciray::testing;

TEST(render_job, hands_over_what_the_program_prints) {
  const std::string scene = example_with("demo", "render_002 { width 40 height 30 }");
  const std::string path = write_scratch_file("demo.ren", scene);
  const run_result program = run_sciray({path, scratch_dir() + "/demo.rgb", "-threads", "2"});
  memory_output out;
  render_request request;
  request.threads = 2;
  render_text(scene, request, out);
  EXPECT_EQ(out.text, program.out);
  EXPECT_EQ(out.rows.size(), 30u);
}

TEST(render_job, stops_between_rows_in_every_mode) {
  const char* cases[][2] = {{"preview", "render_002 { antialias false }"},
                            {"demo", "render_002 { antialias true }"},
                            {"molecule", "render_002 { antialias false }"},  // area lights: a counting pass first
                            {"molecule", "render_002 { antialias true }"},   // area lights: one thread
                            {"preview", "render_002 { pixel_size 4 }"}};
  for (const auto& [example, settings] : cases) {
    for (int threads : {1, 3}) {
      SCOPED_TRACE(std::string(example) + " " + settings + " on " + std::to_string(threads));
      std::atomic<bool> stop{false};
      memory_output out(&stop, 5);
      render_request request;
      request.threads = threads;
      request.stop = &stop;
      render_text(example_with(example, std::string(settings) + " render_002 { width 48 height 60 }"), request, out);
      const std::size_t lines = std::count(out.text.begin(), out.text.end(), '\n') - 2;
      EXPECT_TRUE(stop);
      EXPECT_GE(lines, 2u);  // rows up to the one that asked (blocks: 4 rows a line)
      EXPECT_LT(lines, 60u);
    }
  }
}

struct thrown_line : std::runtime_error {
  using std::runtime_error::runtime_error;
};

TEST(render_job, a_fatal_error_thrown_through_it_leaves_nothing_behind) {
  set_fatal_handler([](const std::string& line) { throw thrown_line(line); });
  const std::string good = example_with("molecule", "render_002 { width 40 height 30 }");
  memory_output first;
  render_text(good, {}, first);
  for (const char* bad : {"colormap_002 2 { index 0 { color 1 0 0 } }\nrender_002 { width x }",
                          "viewing_001 { viewpoint 0 0 1 lookat 0 0 1 }"}) {
    memory_output out;
    EXPECT_THROW(render_text(good + bad, {}, out), thrown_line);
  }
  memory_output again;
  render_text(good, {}, again);
  set_fatal_handler(nullptr);
  EXPECT_EQ(again.text, first.text);
  EXPECT_EQ(again.rows, first.rows);
}

}  // namespace
}  // namespace sciray
