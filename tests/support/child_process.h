// child_process.h - a program run in the background, for tests that stop
// it with a signal and look at how it ended.
#pragma once

#include <sys/types.h>

#include <functional>
#include <string>
#include <vector>

namespace sciray::testing {

class child_process {
 public:
  // Starts `program` with `args`, standard output into `out_path` and
  // standard error into `out_path` + ".err", with every signal at its
  // default action but those in `ignored` (as nohup ignores HUP), none held
  // back, and no core file.
  child_process(const std::string& program, const std::vector<std::string>& args, const std::string& out_path,
                const std::vector<int>& ignored = {});
  // Kills the program if it is still running.
  ~child_process();
  child_process(const child_process&) = delete;
  child_process& operator=(const child_process&) = delete;

  // Waits up to `seconds` for `ready` to hold; false if it does not, or the
  // program ends first.
  bool wait_for(const std::function<bool()>& ready, double seconds);
  // True while the program runs.
  bool running();
  void send(int signal);
  // Waits for the end; the wait status.
  int wait();

 private:
  pid_t pid_ = -1;
  bool ended_ = false;
  int status_ = 0;
};

// The names in `dir`, sorted.
std::vector<std::string> names_in(const std::string& dir);

}  // namespace sciray::testing
