// memory_render.h - renders scene text in process into memory: the text
// the program prints and the picture's rows, for tests that compare
// renders.
#pragma once

#include <atomic>
#include <cstdio>
#include <string>
#include <vector>

#include "driver/render_job.h"
#include "support/test_files.h"

namespace sciray::testing {

// Keeps everything; asks to stop once `stop_after` rows have come.
class memory_output : public render_output {
 public:
  explicit memory_output(std::atomic<bool>* stop = nullptr, int stop_after = 0) : stop_(stop), after_(stop_after) {}
  void scene_read(std::size_t n) override { text += "Number of objects : " + std::to_string(n) + "\n\n"; }
  void start(int w, int h) override { rows.assign(static_cast<std::size_t>(h), std::string(3 * w, '\0')); }
  void progress(const std::string& line) override { text += line; }
  void put_row(int row, int channel, const std::uint16_t* samples) override {
    std::string& r = rows[static_cast<std::size_t>(row)];
    for (std::size_t x = 0; x < r.size() / 3; ++x) r[3 * x + channel] = static_cast<char>(samples[x]);
    if (channel == 2 && ++done_ == after_ && stop_) *stop_ = true;
  }
  std::string text;
  std::vector<std::string> rows;

 private:
  std::atomic<bool>* stop_;
  int after_, done_ = 0;
};

// The example scene `example` with `settings` after it.
inline std::string example_with(const char* example, const std::string& settings) {
  return read_file(std::string(SCIRAY_SOURCE_DIR) + "/examples/" + example + ".ren") + "\n" + settings + "\n";
}

inline void render_text(const std::string& text, render_request request, render_output& out) {
  const std::string path = write_scratch_file("scene.ren", text);
  render_scene(c_file(std::fopen(path.c_str(), "r")), request, out);
}

}  // namespace sciray::testing
