// block_input.cpp - value conversions exactly as the C library's sscanf does
// them (a token that begins with a number reads that number and the rest is
// ignored), and the fatal messages of the block readers.
#include "scene_file/block_input.h"

#include "scene_file/number_parse.h"
#include "shading/world.h"

namespace sciray {

int reader_state::colormap_size() const { return colormap == nullptr ? 0 : colormap->size(); }

void block_input::fail(std::string_view text) const {
  fatal(std::string("Error (") + block_ + "): " + std::string(text));
}

void block_input::unknown(std::string_view token, std::string_view where) const {
  fail("Unknown keyword '" + std::string(token) + "' within " + std::string(where));
}

bool block_input::next_keyword(std::string_view& key) {
  key = tokens_.next();
  return !key.empty() && key != "}";
}

void block_input::expect_open(std::string_view what) {
  if (std::string_view(tokens_.next()) != "{") fail("Missing '{' for " + std::string(what));
}

template <typename T>
T block_input::convert(bool (*parse)(const char*, T&), std::string_view what) {
  T value{};
  if (!parse(tokens_.next(), value)) fail("Unable to read " + std::string(what));
  return value;
}

int block_input::read_int(std::string_view what) { return convert<int>(parse_int, what); }
double block_input::read_real(std::string_view what) { return convert<double>(parse_real, what); }
float block_input::read_single(std::string_view what) { return convert<float>(parse_single, what); }

vector block_input::read_triple(std::string_view what) {
  vector v;
  v.x = read_real(what);
  v.y = read_real(what);
  v.z = read_real(what);
  return v;
}

bool block_input::read_truth(std::string_view what) {
  return read_word({"false", "true"}, what) == 1;
}

int block_input::read_word(std::initializer_list<std::string_view> words, std::string_view what) {
  const std::string_view token = tokens_.next();
  int code = 0;
  for (std::string_view word : words) {
    if (token == word) return code;
    ++code;
  }
  fail("Unable to read " + std::string(what));
}

}  // namespace sciray
