// output_file.cpp - the temporary file beside the output, and the direct
// fallback.
#include "support/output_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>

#include "support/fatal_error.h"
#include "support/signal_cleanup.h"

namespace sciray {

namespace {

// The file `name` leads to, links followed; `name` itself if it is none.
std::string resolved(const std::string& name) {
  char* real = ::realpath(name.c_str(), nullptr);
  const std::string path = real ? real : name;
  std::free(real);
  return path;
}

// Lists `path` for removal after an error or a signal, or takes it off.
void list_unfinished(const std::string& path) {
  remove_on_fatal(path);
  remove_on_signal(path);
}
void unlist(const std::string& path) {
  keep_on_fatal(path);
  keep_on_signal(path);
}

// Creates `path`, which must not exist, for writing; with `replaced`, with
// that file's permissions, and when this process is root, its owner (any
// other process replaces only its own files).
std::FILE* create_new(const std::string& path, const struct stat* replaced) {
  const signals_held held;  // the file exists only once it is listed
  const int fd = ::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
  if (fd < 0) return nullptr;
  bool made = true;
  if (replaced) {
    made = (::geteuid() != 0 || ::fchown(fd, replaced->st_uid, replaced->st_gid) == 0) &&
           ::fchmod(fd, replaced->st_mode & 07777) == 0;
  }
  std::FILE* file = made ? ::fdopen(fd, "wb") : nullptr;
  if (!file) {
    const int error = errno;
    ::close(fd);
    ::unlink(path.c_str());
    errno = error;
    return nullptr;
  }
  list_unfinished(path);
  return file;
}

}  // namespace

std::FILE* output_file::create(const std::string& name) {
  struct stat info, link;
  const bool exists = ::stat(name.c_str(), &info) == 0;
  const bool is_link = ::lstat(name.c_str(), &link) == 0 && S_ISLNK(link.st_mode);
  target_ = name;
  bool direct = exists ? !S_ISREG(info.st_mode) : is_link;
  if (exists && S_ISREG(info.st_mode)) {
    // Refused as truncating it would be; and only this process's own file
    // can be replaced by one that looks the same.
    const int fd = ::open(name.c_str(), O_WRONLY | O_CLOEXEC);
    if (fd < 0) return nullptr;
    ::close(fd);
    direct = info.st_uid != ::geteuid() && ::geteuid() != 0;
    if (is_link) target_ = resolved(name);
  }
  if (!direct) {
    // A process id is unique among the processes alive; a file left by a
    // process killed outright is passed over.
    for (int attempt = 0; attempt < 100; ++attempt) {
      temporary_ = target_ + "." + std::to_string(::getpid()) + (attempt ? "-" + std::to_string(attempt) : "") + ".tmp";
      if (std::FILE* file = create_new(temporary_, exists ? &info : nullptr)) return file;
      if (errno != EEXIST) break;
    }
    temporary_.clear();
  }
  const signals_held held;
  std::FILE* file = std::fopen(name.c_str(), "wb");
  if (file && ::stat(name.c_str(), &info) == 0 && S_ISREG(info.st_mode)) {
    written_ = resolved(name);  // the file, not a link to it
    list_unfinished(written_);
  }
  return file;
}

bool output_file::finish() {
  if (temporary_.empty()) {
    unlist(written_);
    return true;
  }
  const signals_held held;
  const bool renamed = std::rename(temporary_.c_str(), target_.c_str()) == 0;
  const int error = errno;
  if (!renamed) std::remove(temporary_.c_str());
  unlist(temporary_);
  errno = error;
  return renamed;
}

void output_file::abandon() {
  const std::string& path = temporary_.empty() ? written_ : temporary_;
  if (path.empty()) return;
  const signals_held held;
  std::remove(path.c_str());
  unlist(path);
}

}  // namespace sciray
