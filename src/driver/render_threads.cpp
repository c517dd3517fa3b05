// render_threads.cpp - thread start-up. std::thread takes its stack size
// from the process's default thread attributes, so a scene that recurses
// deeply raises that default while its threads are made; and each thread
// takes the signal mask of the thread that makes it.
#include "driver/render_threads.h"

#include <pthread.h>
#include <sched.h>

#include <atomic>
#include <system_error>
#include <thread>
#include <vector>

#include "shading/recursion_bound.h"
#include "support/signal_cleanup.h"

namespace sciray {

namespace {

// Stack per nested trace or transmit call, with room to spare: a trace
// through a contour blend of mirrors, the deepest chain of frames, takes
// about 1.5 KB; sanitizers make every frame several times larger.
#if defined(__SANITIZE_ADDRESS__)
constexpr std::size_t per_level = 16384;
#else
constexpr std::size_t per_level = 2048;
#endif
constexpr std::size_t base_stack = std::size_t{8} << 20;

// Makes `bytes` the default stack of threads made while it lives, if it is
// more than the default already, and puts the old default back after: a
// process that renders (a Python session, say) keeps its own default.
class raised_default_stack {
 public:
  explicit raised_default_stack(std::size_t bytes) {
    pthread_attr_t attributes;
    if (pthread_getattr_default_np(&attributes) != 0) return;
    ok_ = pthread_attr_getstacksize(&attributes, &old_) == 0;
    if (ok_ && bytes > old_) {
      const std::size_t page = 4096;
      ok_ = pthread_attr_setstacksize(&attributes, (bytes + page - 1) / page * page) == 0 &&
            pthread_setattr_default_np(&attributes) == 0;
      raised_ = ok_;
    }
    pthread_attr_destroy(&attributes);
  }
  ~raised_default_stack() {
    pthread_attr_t attributes;
    if (!raised_ || pthread_getattr_default_np(&attributes) != 0) return;
    if (pthread_attr_setstacksize(&attributes, old_) == 0) pthread_setattr_default_np(&attributes);
    pthread_attr_destroy(&attributes);
  }
  raised_default_stack(const raised_default_stack&) = delete;
  raised_default_stack& operator=(const raised_default_stack&) = delete;
  // False if the system refuses.
  bool ok() const { return ok_; }

 private:
  std::size_t old_ = 0;
  bool ok_ = false, raised_ = false;
};

// Saturating a * b + c.
std::size_t grow(std::uint64_t a, std::size_t b, std::size_t c) {
  const std::size_t limit = ~std::size_t{0};
  if (a != 0 && b > (limit - c) / a) return limit;
  return static_cast<std::size_t>(a) * b + c;
}

}  // namespace

int usable_processors() {
  cpu_set_t set;
  if (sched_getaffinity(0, sizeof set, &set) == 0 && CPU_COUNT(&set) > 0) return CPU_COUNT(&set);
  const unsigned known = std::thread::hardware_concurrency();
  return known > 0 ? static_cast<int>(known) : 1;
}

std::size_t render_stack_bytes(const recursion_depth& depth) {
  return grow(depth.traces, per_level, grow(depth.transmits, per_level, base_stack));
}

bool run_threads(int count, std::size_t stack_bytes, const std::function<void(int)>& work,
                 const std::function<void()>& lead) {
  enum : int { waiting, going, giving_up };
  std::atomic<int> gate{waiting};
  std::vector<std::thread> threads;
  try {
    const raised_default_stack stack(stack_bytes);
    if (!stack.ok()) return false;
    // The threads hold back the signals that interrupt a run, so that they
    // reach the calling thread, which writes the output and can make a
    // change to it and its list of unfinished files in one step.
    const signals_held held;
    for (int i = 0; i < count; ++i) {
      threads.emplace_back([&gate, &work, i] {
        gate.wait(waiting);
        if (gate.load() == going) work(i);
      });
    }
  } catch (const std::system_error&) {
    gate = giving_up;
    gate.notify_all();
    for (std::thread& t : threads) t.join();
    return false;
  }
  gate = going;
  gate.notify_all();
  lead();
  for (std::thread& t : threads) t.join();
  return true;
}

}  // namespace sciray
