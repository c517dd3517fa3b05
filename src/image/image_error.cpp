// image_error.cpp - the image library's one error path: a formatted line to
// the installed handler, or to standard error followed by exit status 1.
#include <cstdarg>
#include <cstdlib>
#include <string>

#include "image/image_file.h"

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

  if (error_handler) {
    error_handler(message.c_str());
    return;
  }
  message += '\n';
  std::fwrite(message.data(), 1, message.size(), stderr);
  std::exit(1);
}

}  // namespace sciray
