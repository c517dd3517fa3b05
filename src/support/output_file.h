// output_file.h - a program's output file, made so that no half-written file
// ever stands under its name: it is written under a temporary name beside
// it and renamed into place once complete. Until then an error (fatal) or
// an interrupting signal removes the temporary file, and a picture that was
// there before stays. The temporary file gets the permissions the output
// would have had (0666 before the umask, or those of the file it replaces).
//
// A device or a pipe (/dev/stdout, say) is written directly, as is an
// output that cannot be replaced by renaming (a link to nowhere, another
// user's file, a file in a directory this process may not write, a name
// too long to add to); a regular file written directly is removed after an
// error or a signal.
#pragma once

#include <cstdio>
#include <string>

namespace sciray {

class output_file {
 public:
  // Creates the file for the output `name`. Null, with errno set, when it
  // cannot be created or is not writable.
  std::FILE* create(const std::string& name);
  // Once the stream from create() is closed without error: puts the file in
  // place. False, with errno set, when the rename fails (the temporary file
  // is then removed).
  bool finish();
  // Gives the output up after a failure: removes what was written, as an
  // error of the program would.
  void abandon();

 private:
  std::string target_;     // the file the output ends up as (links followed)
  std::string temporary_;  // where it is written, if not directly
  std::string written_;    // the regular file being written, removed on an error
};

}  // namespace sciray
