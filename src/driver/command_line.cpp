// command_line.cpp - the band and thread options.
#include "driver/command_line.h"

#include <cstdio>
#include <cstring>
#include <vector>

namespace sciray {

namespace {

// The band pair at argv[at], argv[at + 1], if there is one; a malformed or
// out-of-range one means the whole picture.
bool read_band(int argc, const char* const* argv, int at, band_choice& band) {
  if (argc <= at + 1 || std::strcmp(argv[at], "-band") != 0) return false;
  int index = 0, count = 0;
  if (std::sscanf(argv[at + 1], "%d/%d", &index, &count) == 2 && index >= 1 && count >= 1 && index <= count) {
    band.index = index;
    band.count = count;
  }
  return true;
}

// A positive decimal number, all digits; a count beyond any machine's
// processors is held at a million.
bool read_count(const char* text, int& count) {
  long long value = 0;
  if (*text == '\0') return false;
  for (const char* c = text; *c != '\0'; ++c) {
    if (*c < '0' || *c > '9') return false;
    if (value < 1000000) value = value * 10 + (*c - '0');
  }
  if (value < 1) return false;
  count = static_cast<int>(value < 1000000 ? value : 1000000);
  return true;
}

// The thread pair at argv[at]: absent (true, nothing read), good, or bad.
bool read_threads(int argc, const char* const* argv, int at, int& threads) {
  if (argc <= at || std::strcmp(argv[at], "-threads") != 0) return true;
  return argc > at + 1 && read_count(argv[at + 1], threads);
}

// The band and thread options at their places.
bool read_positional(int argc, const char* const* argv, run_options& options) {
  if (read_band(argc, argv, 3, options.band)) return read_threads(argc, argv, 5, options.threads);
  if (!read_threads(argc, argv, 3, options.threads)) return false;
  if (options.threads > 0) read_band(argc, argv, 5, options.band);
  return true;
}

}  // namespace

bool parse_run_options(int argc, const char* const* argv, run_options& options) {
  options = run_options{};
  // "-nomark" may stand anywhere after the file names; the band and thread
  // options keep their places among the other arguments.
  std::vector<const char*> others;
  for (int i = 0; i < argc; ++i) {
    if (i > 2 && std::strcmp(argv[i], "-nomark") == 0)
      options.mark = false;
    else
      others.push_back(argv[i]);
  }
  return read_positional(static_cast<int>(others.size()), others.data(), options);
}

}  // namespace sciray
