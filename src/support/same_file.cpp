// same_file.cpp - one file is another when device and inode agree.
#include "support/same_file.h"

#include <sys/stat.h>

#include "support/fatal_error.h"

namespace sciray {

void refuse_output_over_input(const std::string& program, const std::string& output,
                              const std::vector<std::string>& inputs) {
  // Only a regular file can be lost this way: a device such as /dev/null
  // may well be both.
  struct stat out, in;
  if (::stat(output.c_str(), &out) != 0 || !S_ISREG(out.st_mode)) return;
  for (const std::string& input : inputs) {
    if (::stat(input.c_str(), &in) == 0 && in.st_dev == out.st_dev && in.st_ino == out.st_ino)
      fatal(program + ": output file " + output + " is the same file as input " + input);
  }
}

}  // namespace sciray
