// token_reader.h - splits a scene file into tokens: separators are tab,
// newline, vertical tab, form feed, carriage return and space; a line whose
// first character is '#' is a comment; lines are read in pieces of at most
// 511 characters, each tokenized on its own, and a NUL byte ends the tokens
// of its piece.
#pragma once

#include <cstddef>
#include <cstdio>
#include <vector>

namespace sciray {

class token_reader {
 public:
  explicit token_reader(std::FILE* file);
  token_reader(const token_reader&) = delete;
  token_reader& operator=(const token_reader&) = delete;

  // The next token, or "" once the file is exhausted (and on every call
  // after that). A token lives in the reader's buffer: it stays valid only
  // until the next call, so convert or compare it before asking for
  // another one.
  const char* next();
  bool exhausted() const { return exhausted_; }

 private:
  // Moves to the next piece that is not a comment; false at end of file or
  // on a read error.
  bool next_piece();
  // Makes sure `wanted` unread bytes are in the buffer, or all that remain.
  void fill(std::size_t wanted);

  static constexpr std::size_t piece_size = 511;  // the longest piece, as a 512-byte line buffer holds
  std::FILE* file_;
  std::vector<char> buffer_;   // file bytes [begin_, end_) not yet split into pieces
  std::size_t begin_ = 0, end_ = 0;
  bool file_done_ = false;     // the file has no more bytes to give
  char* cursor_ = nullptr;     // where the search for the next token starts
  char* piece_end_ = nullptr;  // end of the current piece's text (its first NUL or its end)
  char* piece_limit_ = nullptr;  // end of the current piece in the buffer
  char spill_[piece_size + 1] = {};  // a token that runs up to a 511-character boundary
  bool exhausted_ = false;
};

}  // namespace sciray
