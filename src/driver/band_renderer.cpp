// band_renderer.cpp - threads take the band's units in order; each unit is
// rendered into a slot of a small ring, and the calling thread hands the
// slots over in order, each after its progress line with the counts of
// everything before it. A stop request ends the band between units.
#include "driver/band_renderer.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cstdint>
#include <utility>
#include <vector>

#include "driver/adaptive_sampler.h"
#include "driver/band_units.h"
#include "driver/pixel_source.h"
#include "driver/progress.h"
#include "driver/render_threads.h"
#include "driver/row_writer.h"
#include "shading/render_context.h"
#include "shading/tracer.h"

namespace sciray {

namespace {

enum class row_mode { plain, antialiased, blocks };

// States of a unit: waiting, rendered, or given up because of a stop.
enum : int { unit_waiting, unit_done, unit_abandoned };

// The samples between two pixel rows of the anti-aliased mode, handed from
// the row below, which fills them, to the row above, which reads them and
// may add to them, pixel by pixel: two threads render neighbouring rows at
// once and trace exactly the samples one thread would, each in the row
// that would trace it.
struct shared_edge {
  static constexpr int no_sleeper = 1 << 30;

  sample_edge samples;
  std::atomic<int> below{-2};    // the pixel row this edge is the upper edge of, once handed to it
  std::atomic<int> finished{0};  // pixels of that row whose part of the edge is final
  // The count of finished pixels the upper row sleeps for, if it sleeps:
  // the lower row wakes it only then, since a wake-up is a system call.
  std::atomic<int> wanted{no_sleeper};

  // Hands the samples to pixel row r as its upper edge, with `done` pixels finished.
  void hand_to(int r, int done) {
    finished.store(done, std::memory_order_relaxed);
    wanted.store(no_sleeper, std::memory_order_relaxed);
    below.store(r, std::memory_order_release);
    below.notify_all();
  }
  // Returns once the edge has been handed to pixel row r.
  void wait_for_row(int r) const {
    for (int b = below.load(std::memory_order_acquire); b != r; b = below.load(std::memory_order_acquire))
      below.wait(b, std::memory_order_acquire);
  }
  // Returns once the row below has finished pixel c.
  void wait_for_pixel(int c) {
    if (finished.load(std::memory_order_acquire) > c) return;
    wanted.store(c + 1, std::memory_order_seq_cst);
    for (int done = finished.load(std::memory_order_seq_cst); done <= c;
         done = finished.load(std::memory_order_acquire))
      finished.wait(done, std::memory_order_acquire);
    wanted.store(no_sleeper, std::memory_order_relaxed);
  }
  // Marks pixel c of the row below finished.
  void finish_pixel(int c) {
    // Sequentially consistent with wait_for_pixel: either the sleeper sees
    // this pixel finished or this row sees the sleeper waiting for it.
    finished.store(c + 1, std::memory_order_seq_cst);
    if (wanted.load(std::memory_order_seq_cst) <= c + 1) finished.notify_all();
  }
};

// One unit's picture row and what it counted, waiting to be written.
struct unit_output {
  explicit unit_output(int width) : row(width) {}
  sample_row row;
  std::uint32_t rays_before = 0, tests_before = 0;  // counted before its progress line
  std::uint32_t rays = 0, tests = 0;                // counted after it
};

class band_render {
 public:
  band_render(const band_scene& band, int threads)
      : band_(band),
        block_(std::min({band.settings.pixel_size, band.window.columns, band.window.rows})),
        mode_(block_ > 1 ? row_mode::blocks : (band.settings.antialias ? row_mode::antialiased : row_mode::plain)),
        units_(band_units(band.rows, band.window.rows, block_)),
        threads_(std::clamp(threads, 1, static_cast<int>(units_.size()))),
        ring_(static_cast<std::size_t>(2 * threads_ + 2)),
        done_(units_.size()),
        edges_(mode_ == row_mode::antialiased ? ring_ + 2 : 0) {
    const bool draws = band.tracing.scene().draws_random();
    // With anti-aliasing, what a row draws depends on what the rows before
    // it drew: one row after another.
    if (draws && mode_ == row_mode::antialiased) threads_ = 1;
    counting_ = draws && mode_ != row_mode::antialiased && threads_ > 1;
    for (std::size_t i = 0; i < ring_; ++i) slots_.emplace_back(band.window.columns);
  }

  int threads() const { return threads_; }
  bool counting() const { return counting_; }
  bool stopping() const { return band_.stop && band_.stop->load(std::memory_order_relaxed); }

  // The counting pass: the draws each unit makes on the random stream,
  // traced without lighting.
  void count_draws() {
    render_context context;
    const tracer unlit = band_.tracing.unlit();
    const pixel_source source{band_.cam, unlit, context};
    sample_row scratch(band_.window.columns);
    walks_ahead ahead;
    for (std::size_t k = next_++; k < units_.size() && !stopping(); k = next_++) {
      const std::uint64_t before = context.random.drawn();
      sample(k, source, nullptr, ahead, scratch);
      draws_[k] = context.random.drawn() - before;
    }
  }
  void prepare_counting() {
    draws_.resize(units_.size());
    next_ = 0;
  }
  void finish_counting() {
    // Each unit starts where the draws of all units before it end.
    std::uint64_t sum = 0;
    for (std::uint64_t& d : draws_) sum += std::exchange(d, sum);
    next_ = 0;
  }

  void render() {
    render_context context;
    context.random = band_.start;
    const pixel_source source{band_.cam, band_.tracing, context};
    adaptive_sampler sampler(band_.window, band_.settings.antialias_tol, band_.settings.antialias_depth);
    walks_ahead ahead;
    for (std::size_t k = next_++; k < units_.size(); k = next_++) {
      wait_for_slot(k);
      if (stopping()) {
        // The writer stops at this unit; units after it are never waited for.
        done_[k].store(unit_abandoned, std::memory_order_release);
        done_[k].notify_one();
        return;
      }
      unit_output& out = slots_[k % ring_];
      if (counting_) {
        context.random = band_.start;
        context.random.discard(draws_[k]);
      }
      context.ray_count = context.test_count = 0;
      if (mode_ == row_mode::antialiased && k == 0) {
        const int y = units_[0].line_row;
        sampler.sample_lower_edge(edge(0).samples, y, source);
        edge(0).hand_to(y - 1, band_.window.columns);
      }
      out.rays_before = context.ray_count;
      out.tests_before = context.test_count;
      sample(k, source, &sampler, ahead, out.row);
      out.rays = context.ray_count - out.rays_before;
      out.tests = context.test_count - out.tests_before;
      done_[k].store(unit_done, std::memory_order_release);
      done_[k].notify_one();
    }
  }

  // Hands the units over in order, each after its progress line, up to the
  // first one given up.
  void write(band_output& output) {
    output.start(band_.window.columns, band_.rows.end - band_.rows.start);
    row_writer writer(output, band_.window.columns, band_.window.rows, band_.rows.start, band_.mark);
    progress_reporter progress(band_.objects);
    std::uint32_t rays = 0, tests = 0;
    for (std::size_t k = 0; k < units_.size(); ++k) {
      done_[k].wait(unit_waiting, std::memory_order_acquire);
      if (done_[k].load(std::memory_order_acquire) == unit_abandoned) break;
      const unit_output& out = slots_[k % ring_];
      rays += out.rays_before;
      tests += out.tests_before;
      output.progress(progress.next_line(units_[k].line_row, rays, tests));
      for (int y = units_[k].first_row; y < units_[k].end_row; ++y) writer.write(y, out.row);
      rays += out.rays;
      tests += out.tests;
      written_.store(k + 1, std::memory_order_release);
      written_.notify_all();
    }
    // After a stop, threads waiting for a free slot go on to see it.
    written_.store(units_.size(), std::memory_order_release);
    written_.notify_all();
  }

 private:
  shared_edge& edge(std::size_t e) { return edges_[e % edges_.size()]; }

  void wait_for_slot(std::size_t k) {
    for (std::size_t w = written_.load(std::memory_order_acquire); k >= w + ring_;
         w = written_.load(std::memory_order_acquire))
      written_.wait(w, std::memory_order_acquire);
  }

  // Renders unit k into `row`.
  void sample(std::size_t k, const pixel_source& source, adaptive_sampler* sampler, walks_ahead& ahead,
              sample_row& row) {
    const screen_window& w = band_.window;
    const int y = units_[k].line_row;
    switch (mode_) {
      case row_mode::plain: {
        // A run of pixels at a time: their first rays are walked ahead together.
        constexpr int run = 64;
        std::array<ray, run> rays;
        for (int x0 = 0; x0 < w.columns; x0 += run) {
          const int n = std::min(run, w.columns - x0);
          for (int i = 0; i < n; ++i) rays[i] = source.cam.primary_ray(w.centre_x(x0 + i), w.centre_y(y));
          source.tracing.walk_ahead(std::span(rays.data(), static_cast<std::size_t>(n)), ahead);
          for (int i = 0; i < n; ++i) {
            source.context.ahead = {&ahead, static_cast<std::size_t>(i)};
            row.set(x0 + i, source.trace(rays[i]));
          }
        }
        source.context.ahead = {};
        break;
      }
      case row_mode::blocks:
        // Each block takes the colour at the centre of its lower left pixel.
        for (int x0 = 0, size = first_block(w.columns, block_); x0 < w.columns; x0 += size, size = block_) {
          const colour c = source(w.centre_x(x0), w.centre_y(y));
          for (int x = x0; x < x0 + size; ++x) row.set(x, c);
        }
        break;
      case row_mode::antialiased: {
        shared_edge &lower = edge(k), &upper = edge(k + 1);
        sampler->clear(upper.samples);
        upper.hand_to(y, 0);
        lower.wait_for_row(y - 1);
        sampler->render_row(
            y, lower.samples, upper.samples, source, [&lower](int c) { lower.wait_for_pixel(c); },
            [&row, &upper](int c, const colour& v) {
              row.set(c, v);
              upper.finish_pixel(c);
            });
        break;
      }
    }
  }

  const band_scene& band_;
  int block_;
  row_mode mode_;
  std::vector<band_unit> units_;
  int threads_;
  bool counting_ = false;
  std::size_t ring_;
  std::atomic<std::size_t> next_{0};  // the next unit a thread takes
  std::vector<std::uint64_t> draws_;  // the counting pass's draws, then each unit's start in the stream
  std::vector<unit_output> slots_;
  std::vector<std::atomic<int>> done_;     // the state of each unit
  std::atomic<std::size_t> written_{0};  // units written so far
  std::vector<shared_edge> edges_;
};

}  // namespace

bool render_band(const band_scene& band, int threads, std::size_t stack_bytes, band_output& out) {
  band_render r(band, threads);
  if (r.counting()) {
    r.prepare_counting();
    if (!run_threads(r.threads(), stack_bytes, [&r](int) { r.count_draws(); }, [] {})) return false;
    if (r.stopping()) return true;
    r.finish_counting();
  }
  return run_threads(r.threads(), stack_bytes, [&r](int) { r.render(); }, [&r, &out] { r.write(out); });
}

}  // namespace sciray
