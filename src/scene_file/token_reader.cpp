// token_reader.cpp - the scene file tokenizer. The file is read in large
// blocks and cut into the pieces a 512-byte line buffer would hold (up to
// and including a newline, at most 511 characters); tokens are split in
// place, each ended by overwriting the separator after it.
#include "scene_file/token_reader.h"

#include <array>
#include <cstring>

namespace sciray {

namespace {

constexpr std::size_t block_size = 256 * 1024;

constexpr std::array<bool, 256> separator_table() {
  std::array<bool, 256> table{};
  for (const unsigned char c : {'\t', '\n', '\v', '\f', '\r', ' '}) table[c] = true;
  return table;
}
constexpr std::array<bool, 256> separators = separator_table();

bool is_separator(char c) { return separators[static_cast<unsigned char>(c)]; }

}  // namespace

// One byte beyond the block: a NUL can always follow the last byte read.
token_reader::token_reader(std::FILE* file) : file_(file), buffer_(block_size + 1) {}

void token_reader::fill(std::size_t wanted) {
  if (end_ - begin_ >= wanted || file_done_) return;
  std::memmove(buffer_.data(), buffer_.data() + begin_, end_ - begin_);
  end_ -= begin_;
  begin_ = 0;
  while (end_ < block_size && !file_done_) {
    const std::size_t got = std::fread(buffer_.data() + end_, 1, block_size - end_, file_);
    end_ += got;
    // A short read is the end of the file or a read error; both end the input.
    if (got == 0 || std::feof(file_) || std::ferror(file_)) file_done_ = true;
  }
}

bool token_reader::next_piece() {
  for (;;) {
    fill(piece_size);
    if (begin_ == end_) return false;
    char* start = buffer_.data() + begin_;
    std::size_t length = end_ - begin_ < piece_size ? end_ - begin_ : piece_size;
    if (const void* newline = std::memchr(start, '\n', length))
      length = static_cast<std::size_t>(static_cast<const char*>(newline) - start) + 1;
    begin_ += length;
    if (start[0] == '#') continue;  // a comment line, or a piece that starts like one
    cursor_ = start;
    piece_limit_ = start + length;
    const void* nul = std::memchr(start, '\0', length);
    piece_end_ = nul ? static_cast<char*>(const_cast<void*>(nul)) : piece_limit_;
    return true;
  }
}

const char* token_reader::next() {
  while (!exhausted_) {
    while (cursor_ < piece_end_ && is_separator(*cursor_)) ++cursor_;
    if (cursor_ < piece_end_) {
      char* token = cursor_;
      while (cursor_ < piece_end_ && !is_separator(*cursor_)) ++cursor_;
      if (cursor_ < piece_limit_) {  // ended by a separator, or by a NUL already there
        if (cursor_ < piece_end_) *cursor_++ = '\0';
        return token;
      }
      // The token runs to the end of the piece, whose last byte may be
      // followed by the next piece's first: it is given its own copy.
      const std::size_t length = static_cast<std::size_t>(cursor_ - token);
      std::memcpy(spill_, token, length);
      spill_[length] = '\0';
      return spill_;
    }
    if (!next_piece()) exhausted_ = true;
  }
  return "";
}

}  // namespace sciray
