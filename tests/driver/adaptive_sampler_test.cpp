// adaptive_sampler_test.cpp - adaptive anti-aliasing: results on uniform
// scenes, the number of rays traced, and the clamps of its settings.
#include "driver/adaptive_sampler.h"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>
#include <vector>

#include "environment/sky.h"
#include "shading/render_context.h"
#include "shading/tracer.h"

namespace sciray {
namespace {

struct sampler_scene {
  explicit sampler_scene(colour sky_colour) {
    w.sky = std::make_unique<sky_gradient>(direction(0, 1, 0), sky_colour, sky_colour, sky_colour);
  }
  // Renders a columns x rows band from row 0 and returns the pixel colours.
  std::vector<colour> render(int columns, int rows, double tolerance, int depth) {
    window = make_screen_window(2.8, 2.8, columns, rows);
    adaptive_sampler sampler(window, tolerance, depth);
    step = sampler.grid_step();
    std::vector<colour> pixels;
    sample_edge edges[2];
    sampler.sample_lower_edge(edges[0], 0, source);
    for (int y = 0; y < rows; ++y) {
      sample_edge& upper = edges[(y + 1) % 2];
      sampler.clear(upper);
      sampler.render_row(y, edges[y % 2], upper, source, [](int) {},
                         [&](int, const colour& c) { pixels.push_back(c); });
    }
    return pixels;
  }

  world w;
  tracer tracing{w, render_settings{}};
  render_context context;
  std::unique_ptr<camera> cam = make_camera(make_camera_basis(view_settings{}, "sciray"), true);
  pixel_source source{*cam, tracing, context};
  screen_window window;
  int step = 0;
};

TEST(adaptive_sampler, uniform_scene_gives_its_colour_and_shares_every_corner) {
  const colour c(0.25, 0.5, 0.75);
  sampler_scene scene(c);
  const int columns = 5, rows = 3;
  for (const colour& p : scene.render(columns, rows, 0.05, 3)) EXPECT_EQ(p, c);
  // The band's lower edge, then per row one upper left corner and, per
  // pixel, one new corner and one centre: nothing is traced twice.
  EXPECT_EQ(scene.context.ray_count, static_cast<std::uint32_t>((columns + 1) + rows * (1 + 2 * columns)));
}

// With tolerance 0 every square is cut down to the full depth. The finest
// squares are m = n / 2 to a pixel edge; all their corners and centres are
// traced exactly once, and nothing else is.
std::uint32_t full_subdivision_rays(int columns, int rows, int n) {
  const int m = n / 2;
  const int lower_edge = columns + 1 + (m - 1) * columns;  // pixel corners first, the rest while subdividing
  const int per_row = m * (m * columns + 1) + m * (m * columns);  // upper corners and centres of m rows of squares
  return static_cast<std::uint32_t>(lower_edge + rows * per_row);
}

TEST(adaptive_sampler, zero_tolerance_subdivides_to_full_depth) {
  for (int depth = 1; depth <= 4; ++depth) {
    sampler_scene scene(colour(0.1, 0.2, 0.3));
    const auto pixels = scene.render(3, 2, 0.0, depth);
    EXPECT_EQ(scene.step, 2 << (depth - 1));
    EXPECT_EQ(scene.context.ray_count, full_subdivision_rays(3, 2, scene.step)) << "depth " << depth;
    for (const colour& p : pixels) {
      EXPECT_NEAR(p.x, 0.1, 1e-15);
      EXPECT_NEAR(p.z, 0.3, 1e-15);
    }
  }
}

TEST(adaptive_sampler, depth_and_tolerance_are_clamped) {
  sampler_scene low(colour(1, 1, 1));
  low.render(2, 2, -5.0, 0);  // depth 0 acts as 1, a negative tolerance as 0
  EXPECT_EQ(low.step, 2);
  EXPECT_EQ(low.context.ray_count, full_subdivision_rays(2, 2, 2));

  sampler_scene high(colour(1, 1, 1));
  high.render(2, 1, 0.0, 9);  // depth 9 acts as 4
  EXPECT_EQ(high.step, 16);
  EXPECT_EQ(high.context.ray_count, full_subdivision_rays(2, 1, 16));

  sampler_scene lenient(colour(0.9, 0.9, 0.9));
  lenient.render(2, 2, 7.0, 4);  // a tolerance above 1 acts as 1: colours in 0..1 always pass
  EXPECT_EQ(lenient.context.ray_count, static_cast<std::uint32_t>(3 + 2 * 5));
}

TEST(adaptive_sampler, neighbouring_rows_on_two_threads_trace_what_one_thread_does) {
  // A ball in front of the sky: edges and corners of it are subdivided. One
  // thread renders the rows one after another; then two threads render the
  // even and the odd rows at once, each pixel after the pixel below it.
  // The pixels and the rays each row traces must be the same.
  world w;
  material plain;
  plain.ambient = colour(1, 0.5, 0.25);
  w.ambient = colour(1, 1, 1);
  w.sky = std::make_unique<sky_gradient>(direction(0, 1, 0), colour(0, 0, 1), colour(0, 0, 1), colour(0, 0, 1));
  w.builder().add(sphere{position(0.1, -0.2, 0), 0.9}, &plain);
  w.build_hierarchy();
  render_settings settings;
  settings.depth = 2;
  const tracer tracing(w, settings);
  const auto cam = make_camera(make_camera_basis(view_settings{}, "sciray"), true);
  const int columns = 23, rows = 17;
  const screen_window window = make_screen_window(2.8, 2.8, columns, rows);

  struct row_result {
    std::vector<colour> pixels;
    std::uint32_t rays = 0;
  };
  // Pixels finished in each row; the lower edge of row 0 counts as a
  // finished row -1.
  std::vector<std::atomic<int>> finished(rows + 1);
  const auto wait_below = [&](int y, int c) {
    for (int done = finished[y].load(); done <= c; done = finished[y].load()) finished[y].wait(done);
  };
  // Renders the rows r with r % stride == first, the lower edge of row 0 first.
  const auto render_rows = [&](std::vector<row_result>& out, std::vector<sample_edge>& edges, int first, int stride) {
    render_context context;
    const pixel_source source{*cam, tracing, context};
    adaptive_sampler sampler(window, 0.05, 3);
    if (first == 0) sampler.sample_lower_edge(edges[0], 0, source);
    for (int y = first; y < rows; y += stride) {
      const std::uint32_t before = context.ray_count;
      sample_edge& upper = edges[static_cast<std::size_t>(y + 1) % edges.size()];
      sampler.clear(upper);
      sampler.render_row(
          y, edges[static_cast<std::size_t>(y) % edges.size()], upper, source, [&](int c) { wait_below(y, c); },
          [&](int c, const colour& v) {
            out[static_cast<std::size_t>(y)].pixels.push_back(v);
            finished[y + 1].store(c + 1);
            finished[y + 1].notify_all();
          });
      out[static_cast<std::size_t>(y)].rays = context.ray_count - before;
    }
  };
  std::vector<row_result> alone(rows), together(rows);
  std::vector<sample_edge> two(2), ring(rows + 1);
  finished[0] = columns;
  render_rows(alone, two, 0, 1);
  for (int y = 1; y <= rows; ++y) finished[y] = 0;
  std::thread odd([&] { render_rows(together, ring, 1, 2); });
  render_rows(together, ring, 0, 2);
  odd.join();
  int subdivided = 0;
  for (int y = 0; y < rows; ++y) {
    EXPECT_EQ(together[y].pixels, alone[y].pixels) << "row " << y;
    EXPECT_EQ(together[y].rays, alone[y].rays) << "row " << y;
    subdivided += alone[y].rays > static_cast<std::uint32_t>(1 + 2 * columns);
  }
  EXPECT_GT(subdivided, rows / 2);  // the ball's outline makes most rows subdivide
}

}  // namespace
}  // namespace sciray
