// picture_file.h - the program's output: the object count and the progress
// lines on standard output, and the picture file, the run-length-encoded
// SGI picture or, for a name ending in ".png", a PNG of the same pixels.
// The file is made when the first row is about to come, under a temporary
// name (see output_file.h), and put in place by close().
#pragma once

#include <cstdint>
#include <cstdio>
#include <string>

#include "driver/band_pixels.h"
#include "driver/render_job.h"
#include "support/output_file.h"

namespace sciray {

struct image_file;

class picture_file : public render_output {
 public:
  // `program` begins the messages of errors that are not the image
  // library's.
  picture_file(const char* program, std::string name);
  void scene_read(std::size_t objects) override;
  void start(int width, int rows) override;
  void progress(const std::string& line) override;
  void put_row(int row, int channel, const std::uint16_t* samples) override;
  // Finishes the picture, if one was begun, and puts it in place.
  void close();

 private:
  [[noreturn]] void fail(const std::string& reason) const;

  const char* program_;
  std::string name_;
  bool png_;
  output_file file_;
  std::FILE* stream_ = nullptr;  // the file, until the picture owns it or it is closed
  image_file* image_ = nullptr;  // the SGI picture being written
  band_pixels pixels_;           // the rows of a PNG, until they are all there
};

}  // namespace sciray
