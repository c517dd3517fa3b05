// token_reader.cpp - the scene file tokenizer: a cursor through a 512-byte
// line buffer, refilled with fgets. A NUL byte ends a piece's tokens, as it
// ends the string that fgets leaves in the buffer.
#include "scene_file/token_reader.h"

#include <cstring>

namespace sciray {

namespace {
constexpr const char* separators = "\t\n\v\f\r ";
}

bool token_reader::read_piece() {
  do {
    if (std::fgets(line_, line_size, file_) == nullptr) return false;
  } while (line_[0] == '#');
  cursor_ = line_;
  return true;
}

const char* token_reader::next() {
  while (!exhausted_) {
    cursor_ += std::strspn(cursor_, separators);
    if (*cursor_ != '\0') {
      char* token = cursor_;
      cursor_ += std::strcspn(cursor_, separators);
      if (*cursor_ != '\0') *cursor_++ = '\0';
      return token;
    }
    if (!read_piece()) exhausted_ = true;
  }
  return "";
}

}  // namespace sciray
