// signal_cleanup.cpp - the handler and its list of files. The handler may
// run on any thread at any moment, so it reads only lock-free flags and
// fixed buffers, and calls only unlink, sigaction, sigprocmask and raise.
#include "support/signal_cleanup.h"

#include <limits.h>
#include <unistd.h>

#include <atomic>
#include <cstring>
#include <mutex>

namespace sciray {

namespace {

constexpr int cleaned_signals[] = {SIGHUP, SIGINT, SIGQUIT, SIGPIPE, SIGTERM, SIGXCPU, SIGXFSZ};

struct listed_file {
  std::atomic<bool> armed{false};  // path holds a file to remove
  char path[PATH_MAX];
};
static_assert(std::atomic<bool>::is_always_lock_free);

listed_file listed[4];
std::mutex list_lock;  // between threads that list files; never taken by the handler

sigset_t cleaned_set() {
  sigset_t set;
  sigemptyset(&set);
  for (int s : cleaned_signals) sigaddset(&set, s);
  return set;
}

extern "C" void on_signal(int number) {
  for (listed_file& f : listed)
    if (f.armed.load(std::memory_order_acquire)) ::unlink(f.path);
  struct sigaction fallback = {};
  fallback.sa_handler = SIG_DFL;
  ::sigaction(number, &fallback, nullptr);
  sigset_t just_this;
  sigemptyset(&just_this);
  sigaddset(&just_this, number);
  ::sigprocmask(SIG_UNBLOCK, &just_this, nullptr);
  ::raise(number);
}

}  // namespace

void clean_up_on_signals() {
  struct sigaction handler = {};
  handler.sa_handler = on_signal;
  handler.sa_mask = cleaned_set();  // one cleanup at a time
  for (int s : cleaned_signals) {
    struct sigaction old;
    if (::sigaction(s, nullptr, &old) == 0 && old.sa_handler != SIG_IGN) ::sigaction(s, &handler, nullptr);
  }
}

bool remove_on_signal(const std::string& path) {
  if (path.size() >= PATH_MAX) return false;
  const std::lock_guard<std::mutex> hold(list_lock);
  for (listed_file& f : listed) {
    if (f.armed.load(std::memory_order_relaxed)) continue;
    std::memcpy(f.path, path.c_str(), path.size() + 1);
    f.armed.store(true, std::memory_order_release);
    return true;
  }
  return false;
}

void keep_on_signal(const std::string& path) {
  const std::lock_guard<std::mutex> hold(list_lock);
  for (listed_file& f : listed)
    if (f.armed.load(std::memory_order_relaxed) && path == f.path) f.armed.store(false, std::memory_order_release);
}

signals_held::signals_held() {
  const sigset_t set = cleaned_set();
  pthread_sigmask(SIG_BLOCK, &set, &old_);
}

signals_held::~signals_held() { pthread_sigmask(SIG_SETMASK, &old_, nullptr); }

}  // namespace sciray
