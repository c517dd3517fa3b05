// token_reader.h - splits a scene file into tokens: separators are tab,
// newline, vertical tab, form feed, carriage return and space; a line whose
// first character is '#' is a comment; lines are read in pieces of at most
// 511 characters, each tokenized on its own.
#pragma once

#include <cstdio>

namespace sciray {

class token_reader {
 public:
  explicit token_reader(std::FILE* file) : file_(file) {}
  token_reader(const token_reader&) = delete;
  token_reader& operator=(const token_reader&) = delete;

  // The next token, or "" once the file is exhausted (and on every call
  // after that). A token lives in the line buffer: it stays valid only
  // until the next line is read, so convert or compare it before asking
  // for another one.
  const char* next();
  bool exhausted() const { return exhausted_; }

 private:
  // Reads the next piece that is not a comment; false at end of file or on
  // a read error.
  bool read_piece();

  static constexpr int line_size = 512;
  std::FILE* file_;
  char line_[line_size] = {};
  char* cursor_ = line_;  // where the search for the next token starts
  bool exhausted_ = false;
};

}  // namespace sciray
