// row_loops.cpp - the row loops; each prints the progress line before it
// renders a row (or a block row) and hands finished rows to the writer.
#include "driver/row_loops.h"

#include <algorithm>

#include "driver/adaptive_sampler.h"
#include "scene_file/scene_settings.h"
#include "shading/render_context.h"

namespace sciray {

void render_plain(const row_job& job) {
  for (int y = job.rows.start; y < job.rows.end; ++y) {
    job.progress.report(y, job.source.context);
    for (int x = 0; x < job.window.columns; ++x)
      job.writer.set(x, job.source(job.window.centre_x(x), job.window.centre_y(y)));
    job.writer.write(y);
  }
}

void render_antialiased(const row_job& job, double tolerance, int depth) {
  adaptive_sampler sampler(job.source, job.window, job.rows.start, tolerance, depth);
  for (int y = job.rows.start; y < job.rows.end; ++y) {
    job.progress.report(y, job.source.context);
    sampler.begin_row(y);
    for (int x = 0; x < job.window.columns; ++x) job.writer.set(x, sampler.pixel(x));
    job.writer.write(y);
    sampler.end_row();
  }
}

namespace {

// Size of the first (bottom or left) block, which takes the remainder.
int first_block(int extent, int block) { return extent % block == 0 ? block : extent % block; }

}  // namespace

void render_blocks(const row_job& job, int block) {
  const int width = job.window.columns, height = job.window.rows;
  for (int y0 = 0, rows = first_block(height, block); y0 < height; y0 += rows, rows = block) {
    const int y1 = y0 + rows;
    if (y1 <= job.rows.start || y0 >= job.rows.end) continue;
    job.progress.report(y0, job.source.context);
    for (int x0 = 0, columns = first_block(width, block); x0 < width; x0 += columns, columns = block) {
      const colour c = job.source(job.window.centre_x(x0), job.window.centre_y(y0));
      for (int x = x0; x < x0 + columns; ++x) job.writer.set(x, c);
    }
    for (int y = std::max(y0, job.rows.start); y < std::min(y1, job.rows.end); ++y) job.writer.write(y);
  }
}

void render_rows(const row_job& job, const render_settings& settings) {
  const int block = std::min({settings.pixel_size, job.window.columns, job.window.rows});
  if (block > 1) {
    render_blocks(job, block);
  } else if (settings.antialias) {
    render_antialiased(job, settings.antialias_tol, settings.antialias_depth);
  } else {
    render_plain(job);
  }
}

}  // namespace sciray
