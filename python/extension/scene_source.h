// scene_source.h - a scene's text made piece by piece as it is read: text
// pieces as they stand, geometry records written from their arrays a
// chunk at a time. The same text is rendered, saved and returned, and it
// is never held whole in memory unless asked for.
#pragma once

#include <nanobind/nanobind.h>

#include <cstddef>
#include <cstdio>
#include <string>
#include <vector>

#include "scene_records.h"

namespace sciray::python {

namespace nb = nanobind;

class scene_source {
 public:
  // `pieces`: bytes objects and geometry records, in order. Made with the
  // GIL held; reading needs no GIL (the pieces are kept, and not changed).
  explicit scene_source(const nb::list& pieces);
  // Copies up to `size` bytes of the text into `out`; 0 at the end.
  std::size_t read(char* out, std::size_t size);
  // A stream reading the text, for the scene reader; closing it leaves the source.
  std::FILE* open();

 private:
  struct piece {
    const char* text = nullptr;  // a text piece, or
    std::size_t length = 0;
    const geometry_records* records = nullptr;  // a records piece
    nb::object owner;
  };
  // Makes the next run of text the current one; false at the end.
  bool advance();

  std::vector<piece> pieces_;
  std::size_t piece_ = 0, record_ = 0;  // where the next run comes from
  std::string chunk_;                   // records written for the current run
  const char* run_ = nullptr;
  std::size_t left_ = 0;  // bytes of the current run still to read
};

void bind_scene_source(nb::module_& m);

}  // namespace sciray::python
