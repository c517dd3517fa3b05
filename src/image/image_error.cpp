// image_error.cpp - the image library's one error path: a formatted line to
// the installed handler, or else the run stops with it (fatal_error).
#include <cstdarg>
#include <string>

#include "image/image_file.h"
#include "support/fatal_error.h"

namespace sciray {

namespace {

image_error_handler error_handler = nullptr;

}  // namespace

void set_image_error_handler(image_error_handler handler) { error_handler = handler; }

void image_error(const char* format, ...) {
  std::va_list args, sizing;
  va_start(args, format);
  va_copy(sizing, args);
  const int length = std::vsnprintf(nullptr, 0, format, sizing);
  va_end(sizing);
  std::string message(static_cast<std::size_t>(length > 0 ? length : 0), '\0');
  std::vsnprintf(message.data(), message.size() + 1, format, args);
  va_end(args);

  if (!error_handler) fatal(message);
  error_handler(message.c_str());
}

}  // namespace sciray
