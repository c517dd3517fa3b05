// c_file.h - a C stream that closes itself however the code that reads it
// ends (an error thrown through it included).
#pragma once

#include <cstdio>
#include <memory>

namespace sciray {

struct file_closer {
  void operator()(std::FILE* file) const { std::fclose(file); }
};
using c_file = std::unique_ptr<std::FILE, file_closer>;

}  // namespace sciray
