// signal_cleanup.h - what a program does when it is interrupted (INT, QUIT,
// TERM, HUP, PIPE, XCPU, XFSZ): it removes the files it had begun writing,
// then dies of the signal as if it had no handler, so that its parent sees
// the usual status. The programs install it; the Python module does not
// (the interpreter keeps its own Ctrl-C handling).
#pragma once

#include <signal.h>

#include <string>

namespace sciray {

// Installs the handler for those signals, except any the process was
// started with ignored (as under nohup, which must keep ignoring HUP).
void clean_up_on_signals();

// A file to remove if one of those signals arrives, until keep_on_signal is
// called for it. False when too many are listed already (a few at a time
// are enough: a program writes one output at a time).
bool remove_on_signal(const std::string& path);
void keep_on_signal(const std::string& path);

// Holds those signals back on the calling thread while it lives, so that
// making a file and listing it (or renaming it and taking it off the list)
// happen together as far as the handler can tell. Threads made meanwhile
// hold them back for good (the rendering threads do, so that the signals
// go to the thread that writes the output).
class signals_held {
 public:
  signals_held();
  ~signals_held();
  signals_held(const signals_held&) = delete;
  signals_held& operator=(const signals_held&) = delete;

 private:
  sigset_t old_;
};

}  // namespace sciray
