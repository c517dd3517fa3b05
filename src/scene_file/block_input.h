// block_input.h - what every block reader shares: the reader state (token
// stream, the objects being filled, the colour map and contour tables in
// force) and block_input, which reads a keyword's values and stops the run
// with the block's message when they cannot be read.
#pragma once

#include <cstdio>
#include <initializer_list>
#include <string>
#include <string_view>

#include "math/vector.h"
#include "scene_file/scene_settings.h"
#include "scene_file/token_reader.h"
#include "support/fatal_error.h"

namespace sciray {

class world;
class contour_material;
class material_table;
struct render_context;

struct reader_state {
  reader_state(std::FILE* file, world& w, scene_settings& s, render_context& c)
      : tokens(file), scene(w), settings(s), context(c) {}

  // Entries of the colour map in force; 0 before any colormap block.
  int colormap_size() const;

  token_reader tokens;
  world& scene;
  scene_settings& settings;
  render_context& context;
  material_table* colormap = nullptr;    // the colour map in force
  contour_material* blending = nullptr;  // contour table of mode 1: neighbouring entries mixed
  contour_material* steps = nullptr;     // contour table of mode 0: one entry takes all
};

// Reads tokens for one block; every message begins "Error (<block>): ".
// A value that cannot be read stops the run with "Unable to read " + what.
class block_input {
 public:
  block_input(reader_state& state, const char* block) : tokens_(state.tokens), block_(block) {}

  // The next body keyword in `key`; false at "}" or at end of file.
  bool next_keyword(std::string_view& key);
  // True once the file is exhausted (a body cut off by the end of file).
  bool at_end_of_file() const { return tokens_.exhausted(); }

  // The next token must be "{", or the run stops with "Missing '{' for " + what.
  void expect_open(std::string_view what);
  // The next token, for a reader that checks it itself.
  std::string_view next_token() { return tokens_.next(); }

  int read_int(std::string_view what);
  double read_real(std::string_view what);
  float read_single(std::string_view what);
  vector read_triple(std::string_view what);  // three reals, all read before any is stored
  bool read_truth(std::string_view what);     // "true" or "false"
  // The position of the next token in `words`.
  int read_word(std::initializer_list<std::string_view> words, std::string_view what);

  [[noreturn]] void fail(std::string_view text) const;
  // "Unknown keyword '" + token + "' within " + where.
  [[noreturn]] void unknown(std::string_view token, std::string_view where) const;

 private:
  // Converts the next token with `parse`; stops the run unless it stores a value.
  template <typename T>
  T convert(bool (*parse)(const char*, T&), std::string_view what);

  token_reader& tokens_;
  const char* block_;
};

}  // namespace sciray
