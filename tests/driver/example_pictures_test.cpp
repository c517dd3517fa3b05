// example_pictures_test.cpp - every example scene rendered small and compared
// pixel by pixel with its reviewed reference picture, and the band workflow
// (bands rendered apart, then joined) checked against the whole picture.
//
// To accept new pictures after a deliberate change, run the tests with
// SCIRAY_UPDATE_REFERENCES=1 and review the written files before checking in.
#include <gtest/gtest.h>

#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "image/image.h"
#include "support/test_files.h"

namespace sciray {
namespace {

namespace fs = std::filesystem;
using testing::read_file;
using testing::run_program;
using testing::run_sciray;
using testing::scratch_dir;
using testing::write_scratch_file;

constexpr int small_width = 96, small_height = 72;

struct picture {
  unsigned width = 0, height = 0;
  std::vector<std::uint16_t> samples;  // channel-major: [z][y][x]
  std::uint16_t at(unsigned x, unsigned y, unsigned z) const { return samples[(z * height + y) * width + x]; }
};

picture load(const std::string& path) {
  picture p;
  const std::string bytes = read_file(path);
  if (bytes.size() < 12) return p;
  auto u16 = [&](std::size_t o) { return unsigned(std::uint8_t(bytes[o])) | unsigned(std::uint8_t(bytes[o + 1])) << 8; };
  image_file* image = iopen(path.c_str(), "r", 0, 0, 0, 0, 0);
  if (!image) return p;
  p.width = u16(6);
  p.height = u16(8);
  p.samples.resize(3 * std::size_t(p.width) * p.height);
  for (unsigned z = 0; z < 3; ++z)
    for (unsigned y = 0; y < p.height; ++y) getrow(image, &p.samples[(z * p.height + y) * p.width], y, z);
  iclose(image);
  return p;
}

// Writes a picture that is black where a and b agree and white where they differ.
void write_difference(const picture& a, const picture& b, const std::string& rgb) {
  image_file* image = iopen(rgb.c_str(), "w", 257, 3, a.width, a.height, 3);
  std::vector<std::uint16_t> row(a.width);
  for (unsigned z = 0; z < 3; ++z)
    for (unsigned y = 0; y < a.height; ++y) {
      for (unsigned x = 0; x < a.width; ++x) {
        bool same = true;
        for (unsigned c = 0; c < 3; ++c) same = same && a.at(x, y, c) == b.at(x, y, c);
        row[x] = same ? 0 : 255;
      }
      putrow(image, row.data(), y, z);
    }
  iclose(image);
}

std::string small_scene(const std::string& example) {
  // A render block later in the file changes only the keys it names.
  return read_file(std::string(SCIRAY_SOURCE_DIR) + "/examples/" + example + ".ren") + "\nrender_002 { width " +
         std::to_string(small_width) + " height " + std::to_string(small_height) + " }\n";
}

class example_picture : public ::testing::TestWithParam<std::string> {};

TEST_P(example_picture, matches_its_reference) {
  const std::string name = GetParam();
  const std::string rendered = scratch_dir() + "/" + name + ".rgb";
  const auto r = run_sciray({write_scratch_file(name + ".ren", small_scene(name)), rendered});
  ASSERT_EQ(r.status, 0) << r.err;

  const std::string reference = std::string(SCIRAY_SOURCE_DIR) + "/tests/reference/" + name + ".rgb";
  if (std::getenv("SCIRAY_UPDATE_REFERENCES")) {
    fs::copy_file(rendered, reference, fs::copy_options::overwrite_existing);
    GTEST_SKIP() << "reference written: " << reference;
  }
  const picture want = load(reference), got = load(rendered);
  ASSERT_EQ(want.width, unsigned(small_width)) << "missing or unreadable reference " << reference;
  ASSERT_EQ(got.width, want.width);
  ASSERT_EQ(got.height, want.height);
  int differing = 0;
  for (unsigned y = 0; y < got.height; ++y)
    for (unsigned x = 0; x < got.width; ++x) {
      bool same = true;
      for (unsigned z = 0; z < 3; ++z) same = same && got.at(x, y, z) == want.at(x, y, z);
      differing += same ? 0 : 1;
    }
  if (differing > 0) {
    const std::string diff = scratch_dir() + "/" + name + "_difference";
    write_difference(got, want, diff + ".rgb");
    run_program(SCIRAY_PNG_BINARY, {diff + ".png", diff + ".rgb"});
    ADD_FAILURE() << differing << " pixels differ from " << reference << "; difference picture: " << diff << ".png";
  }
}

INSTANTIATE_TEST_SUITE_P(examples, example_picture,
                         ::testing::Values("demo", "molecule", "surface_continuous", "surface_bands", "glass",
                                           "weather", "preview"));

TEST(band_workflow, joined_bands_equal_the_whole_picture) {
  const std::string scene = write_scratch_file("scene.ren", small_scene("surface_continuous"));
  const std::string dir = scratch_dir();
  ASSERT_EQ(run_sciray({scene, dir + "/whole.rgb"}).status, 0);
  ASSERT_EQ(run_program(SCIRAY_PNG_BINARY, {dir + "/whole.png", dir + "/whole.rgb"}).status, 0);
  const std::string whole = read_file(dir + "/whole.png");
  ASSERT_FALSE(whole.empty());

  for (int bands : {3, 7}) {
    std::vector<std::string> join_args{dir + "/joined.png"};
    for (int i = 1; i <= bands; ++i) {
      const std::string part = dir + "/part" + std::to_string(i) + ".rgb";
      ASSERT_EQ(run_sciray({scene, part, "-band", std::to_string(i) + "/" + std::to_string(bands)}).status, 0);
      join_args.push_back(part);
    }
    const auto joined = run_program(SCIRAY_PNG_BINARY, join_args);
    ASSERT_EQ(joined.status, 0) << joined.err;
    EXPECT_EQ(read_file(dir + "/joined.png"), whole) << bands << " bands";
  }
}

}  // namespace
}  // namespace sciray
