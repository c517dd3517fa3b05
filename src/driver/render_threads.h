// render_threads.h - the rendering threads: as many as asked for, each with
// a stack deep enough for the scene's deepest recursion.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>

namespace sciray {

struct recursion_depth;

// The processors this process may run on (at least 1).
int usable_processors();

// Stack for a thread that traces a scene of the given recursion depth.
std::size_t render_stack_bytes(const recursion_depth& depth);

// Starts `count` threads running work(i), i = 0 .. count - 1, each with a
// stack of at least `stack_bytes`; once all of them exist, runs lead() on
// the calling thread, then waits for them. False, with nothing run, when
// the threads cannot be made.
bool run_threads(int count, std::size_t stack_bytes, const std::function<void(int)>& work,
                 const std::function<void()>& lead);

}  // namespace sciray
