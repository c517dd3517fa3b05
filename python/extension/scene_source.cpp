// scene_source.cpp - the text source, a stream over it, and SceneText, the
// Python view of it (read in pieces, or whole).
#include "scene_source.h"

#include <algorithm>
#include <cstring>
#include <stdexcept>

namespace sciray::python {

namespace {

// Records are written in chunks of about this many bytes.
constexpr std::size_t chunk_bytes = 1 << 16;

}  // namespace

scene_source::scene_source(const nb::list& pieces) {
  for (nb::handle item : pieces) {
    piece p;
    p.owner = nb::borrow(item);
    if (nb::isinstance<nb::bytes>(item)) {
      const nb::bytes text = nb::borrow<nb::bytes>(item);
      p.text = text.c_str();
      p.length = text.size();
    } else {
      p.records = nb::cast<const geometry_records*>(item);
    }
    pieces_.push_back(std::move(p));
  }
}

bool scene_source::advance() {
  while (piece_ < pieces_.size()) {
    const piece& p = pieces_[piece_];
    if (!p.records) {
      run_ = p.text;
      left_ = p.length;
      ++piece_;
    } else {
      chunk_.clear();
      const std::size_t count = p.records->size();
      for (; record_ < count && chunk_.size() < chunk_bytes; ++record_) p.records->write(record_, chunk_);
      if (record_ == count) {
        ++piece_;
        record_ = 0;
      }
      run_ = chunk_.data();
      left_ = chunk_.size();
    }
    if (left_ > 0) return true;
  }
  return false;
}

std::size_t scene_source::read(char* out, std::size_t size) {
  std::size_t done = 0;
  while (done < size && (left_ > 0 || advance())) {
    const std::size_t n = std::min(size - done, left_);
    std::memcpy(out + done, run_, n);
    run_ += n;
    left_ -= n;
    done += n;
  }
  return done;
}

std::FILE* scene_source::open() {
  cookie_io_functions_t functions{};
  functions.read = [](void* cookie, char* out, std::size_t size) -> ssize_t {
    return static_cast<ssize_t>(static_cast<scene_source*>(cookie)->read(out, size));
  };
  std::FILE* file = fopencookie(this, "r", functions);
  if (!file) throw std::bad_alloc();
  return file;
}

void bind_scene_source(nb::module_& m) {
  nb::class_<scene_source>(m, "SceneText", "The text of a scene's pieces, read from the start.")
      .def(nb::init<const nb::list&>(), nb::arg("pieces"))
      .def(
          "read",
          [](scene_source& source, long long size) {
            std::string text;
            if (size < 0) {
              char buffer[chunk_bytes];
              for (std::size_t n; (n = source.read(buffer, sizeof buffer)) > 0;) text.append(buffer, n);
            } else {
              text.resize(static_cast<std::size_t>(size));
              text.resize(source.read(text.data(), text.size()));
            }
            return nb::bytes(text.data(), text.size());
          },
          nb::arg("size") = -1, "Up to `size` bytes of the text (all that is left when negative); b'' at the end.");
}

}  // namespace sciray::python
