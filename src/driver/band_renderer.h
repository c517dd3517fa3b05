// band_renderer.h - renders a band's rows on several threads and hands
// them over, each after its progress line, in row order: the picture and
// the output are the same at every thread count.
//
// Rows are independent but for two things. The adaptive sampler shares the
// samples on the edge between two rows, so a row follows the row below it
// pixel by pixel (see adaptive_sampler.h). Area lights draw on the one
// random stream: without anti-aliasing the number of draws of a row does
// not depend on the values drawn, so a counting pass (the ray trees without
// their lighting) finds where in the stream each row starts, and each row
// jumps there; with anti-aliasing the rows' samples depend on the values
// drawn, and the rows are rendered one after another.
#pragma once

#include <atomic>
#include <cstddef>

#include "driver/band.h"
#include "driver/band_output.h"
#include "driver/camera.h"
#include "driver/screen_window.h"
#include "math/rand_stream.h"
#include "scene_file/scene_settings.h"

namespace sciray {

class tracer;

struct band_scene {
  const camera& cam;
  const tracer& tracing;
  const screen_window& window;
  band_rows rows;
  const render_settings& settings;
  std::size_t objects;  // for the progress lines
  rand_stream start;    // the random stream as reading left it
  bool mark = true;     // stamp the corner mark
  // When set, the threads stop between rows; the output has then had the
  // rows before the stop (or nothing, when no row was done).
  const std::atomic<bool>* stop = nullptr;
};

// Renders the band with up to `threads` threads, each with a stack of
// `stack_bytes`, and hands its lines and rows to `out` on the calling
// thread. False, with nothing handed over, when the threads cannot be made.
bool render_band(const band_scene& band, int threads, std::size_t stack_bytes, band_output& out);

}  // namespace sciray
