// render_call.cpp - the in-process render. The job runs on a thread of its
// own while the calling thread, without the GIL, wakes every few
// milliseconds to let Python look at its signals; a KeyboardInterrupt sets
// the stop flag the band renderer checks between rows, and the call ends
// once the job has.
#include "render_call.h"

#include <nanobind/ndarray.h>
#include <nanobind/stl/string.h>
#include <nanobind/stl/tuple.h>

#include <atomic>
#include <cerrno>
#include <chrono>
#include <condition_variable>
#include <exception>
#include <filesystem>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

#include "driver/band_pixels.h"
#include "driver/render_job.h"
#include "scene_source.h"
#include "support/fatal_error.h"

namespace sciray::python {

namespace {

[[noreturn]] void throw_failure(const std::string& line) { throw scene_failure(line); }

// The picture in memory, top row first, and what the program would print.
class memory_picture : public render_output {
 public:
  void scene_read(std::size_t count) override { objects = count; }
  void start(int width, int rows) override { pixels.reset(width, rows); }
  void progress(const std::string& line) override { lines += line; }
  void put_row(int row, int channel, const std::uint16_t* samples) override {
    pixels.put_row(row, channel, samples);
  }

  std::size_t objects = 0;
  band_pixels pixels;
  std::string lines;
};

// Runs `job` on its own thread with the GIL released, looking at Python's
// signals meanwhile; raises what the job threw, or the signal's exception.
void run_interruptibly(const std::function<void()>& job, std::atomic<bool>& stop) {
  std::exception_ptr failure;
  bool interrupted = false;
  {
    nb::gil_scoped_release released;
    std::mutex lock;
    std::condition_variable ended;
    bool done = false;
    std::thread worker([&] {
      try {
        job();
      } catch (...) {
        failure = std::current_exception();
      }
      const std::lock_guard<std::mutex> hold(lock);
      done = true;
      ended.notify_one();
    });
    std::unique_lock<std::mutex> hold(lock);
    while (!ended.wait_for(hold, std::chrono::milliseconds(20), [&done] { return done; })) {
      if (interrupted) continue;
      hold.unlock();
      {
        nb::gil_scoped_acquire gil;
        interrupted = PyErr_CheckSignals() != 0;
      }
      if (interrupted) stop = true;
      hold.lock();
    }
    hold.unlock();
    worker.join();
  }
  if (interrupted) throw nb::python_error();
  if (failure) std::rethrow_exception(failure);
}

using pixel_array = nb::ndarray<nb::numpy, unsigned char, nb::ndim<3>>;

// Renders the scene in `file` (closed once read), with the corner mark or
// without; returns the pixels, the object count and the progress lines.
nb::tuple render(c_file file, int threads, int band_index, int band_count, bool mark) {
  render_request request;
  request.threads = threads;
  request.band = {band_index, band_count};
  request.mark = mark;
  std::atomic<bool> stop{false};
  request.stop = &stop;
  auto picture = std::make_unique<memory_picture>();
  run_interruptibly([&] { render_scene(std::move(file), request, *picture); }, stop);

  const std::size_t shape[3] = {static_cast<std::size_t>(picture->pixels.rows()),
                                static_cast<std::size_t>(picture->pixels.width()), 3};
  auto* pixels = new std::vector<unsigned char>(picture->pixels.take());
  nb::capsule owner(pixels, [](void* p) noexcept { delete static_cast<std::vector<unsigned char>*>(p); });
  return nb::make_tuple(pixel_array(pixels->data(), 3, shape, owner), picture->objects, picture->lines);
}

}  // namespace

void install_fatal_handler() { set_fatal_handler(throw_failure); }

void bind_render_call(nb::module_& m) {
  m.def(
      "render_file",
      [](const nb::object& path, int threads, int band_index, int band_count, bool mark) {
        const std::string name = nb::cast<std::string>(path);
        std::error_code error;
        errno = std::filesystem::is_directory(name, error) ? EISDIR : 0;
        std::FILE* file = errno ? nullptr : std::fopen(name.c_str(), "r");
        if (!file) {
          PyErr_SetFromErrnoWithFilenameObject(PyExc_OSError, path.ptr());
          throw nb::python_error();
        }
        return render(c_file(file), threads, band_index, band_count, mark);
      },
      nb::arg("path"), nb::arg("threads"), nb::arg("band_index"), nb::arg("band_count"), nb::arg("mark"),
      "Renders the scene file at `path`: (pixels, objects, progress).");
  m.def(
      "render_pieces",
      [](const nb::list& pieces, int threads, int band_index, int band_count, bool mark) {
        scene_source source(pieces);
        return render(c_file(source.open()), threads, band_index, band_count, mark);
      },
      nb::arg("pieces"), nb::arg("threads"), nb::arg("band_index"), nb::arg("band_count"), nb::arg("mark"),
      "Renders the scene made of `pieces` (see SceneText): (pixels, objects, progress).");
}

}  // namespace sciray::python
