// row_loops.h - the three ways of filling the band's rows: one ray per
// pixel, adaptive anti-aliasing, and the block preview.
#pragma once

#include "driver/band.h"
#include "driver/pixel_source.h"
#include "driver/progress.h"
#include "driver/row_writer.h"
#include "driver/screen_window.h"

namespace sciray {

struct render_settings;

struct row_job {
  const pixel_source& source;
  const screen_window& window;
  band_rows rows;
  progress_reporter& progress;
  row_writer& writer;
};

// One sample at each pixel centre.
void render_plain(const row_job& job);
// Adaptive anti-aliasing with the given tolerance and depth.
void render_antialiased(const row_job& job, double tolerance, int depth);
// Blocks of `block` x `block` pixels aligned to the top and right edges,
// each the colour of its lower left pixel's centre.
void render_blocks(const row_job& job, int block);

// Chooses the loop from the render settings.
void render_rows(const row_job& job, const render_settings& settings);

}  // namespace sciray
