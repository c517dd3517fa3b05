// child_process.cpp - fork and exec; between the two only calls that are
// safe in the child of a process with threads.
#include "support/child_process.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <thread>

namespace sciray::testing {

child_process::child_process(const std::string& program, const std::vector<std::string>& args,
                             const std::string& out_path, const std::vector<int>& ignored) {
  std::vector<std::string> words{program};
  words.insert(words.end(), args.begin(), args.end());
  std::vector<char*> argv;
  for (std::string& w : words) argv.push_back(w.data());
  argv.push_back(nullptr);
  const std::string err_path = out_path + ".err";

  pid_ = ::fork();
  ended_ = pid_ < 0;
  if (pid_ != 0) return;
  for (int s = 1; s < NSIG; ++s) ::signal(s, SIG_DFL);
  for (int s : ignored) ::signal(s, SIG_IGN);
  sigset_t none;
  sigemptyset(&none);
  ::sigprocmask(SIG_SETMASK, &none, nullptr);
  const rlimit no_core{0, 0};
  ::setrlimit(RLIMIT_CORE, &no_core);
  const int in = ::open("/dev/null", O_RDONLY);
  const int out = ::open(out_path.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
  const int err = ::open(err_path.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
  if (in < 0 || out < 0 || err < 0 || ::dup2(in, 0) < 0 || ::dup2(out, 1) < 0 || ::dup2(err, 2) < 0) ::_exit(127);
  ::execv(argv[0], argv.data());
  ::_exit(127);
}

child_process::~child_process() {
  if (pid_ > 0 && !ended_) {
    ::kill(pid_, SIGKILL);
    wait();
  }
}

bool child_process::running() {
  if (ended_) return false;
  ended_ = ::waitpid(pid_, &status_, WNOHANG) == pid_;
  return !ended_;
}

bool child_process::wait_for(const std::function<bool()>& ready, double seconds) {
  const auto until = std::chrono::steady_clock::now() + std::chrono::duration<double>(seconds);
  while (std::chrono::steady_clock::now() < until) {
    if (ready()) return true;
    if (!running()) return false;
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
  }
  return false;
}

void child_process::send(int signal) { ::kill(pid_, signal); }

int child_process::wait() {
  if (!ended_) ended_ = ::waitpid(pid_, &status_, 0) == pid_;
  return status_;
}

std::vector<std::string> names_in(const std::string& dir) {
  std::vector<std::string> names;
  for (const auto& entry : std::filesystem::directory_iterator(dir)) names.push_back(entry.path().filename());
  std::sort(names.begin(), names.end());
  return names;
}

}  // namespace sciray::testing
