// example_pictures_test.cpp - every example scene rendered small and compared
// pixel by pixel with its reviewed reference picture, and the band workflow
// (bands rendered apart, then joined) checked against the whole picture.
//
// To accept new pictures after a deliberate change, run the tests with
// SCIRAY_UPDATE_REFERENCES=1 and review the written files before checking in.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "image/image_test_files.h"

namespace sciray {
namespace {

using namespace sciray::testing;

constexpr unsigned small_width = 96, small_height = 72;

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
    std::filesystem::copy_file(rendered, reference, std::filesystem::copy_options::overwrite_existing);
    GTEST_SKIP() << "reference written: " << reference;
  }
  const samples want = read_picture(reference), got = read_picture(rendered);
  ASSERT_EQ(got.size(), want.size()) << "missing or unreadable reference " << reference;
  // A pixel differs when any of its three channels does.
  std::vector<bool> differs(got.size() / 3);
  for (std::size_t i = 0; i < got.size(); ++i) differs[i / 3] = differs[i / 3] || got[i] != want[i];
  const auto differing = std::count(differs.begin(), differs.end(), true);
  if (differing > 0) {
    const std::string diff = write_picture(name + "_difference.rgb", small_width, small_height,
                                           [&](unsigned x, unsigned y, unsigned) -> std::uint16_t {
                                             return differs[y * small_width + x] ? 255 : 0;
                                           });
    const std::string png = scratch_dir() + "/" + name + "_difference.png";
    run_program(SCIRAY_PNG_BINARY, {png, diff});
    ADD_FAILURE() << differing << " pixels differ from " << reference << "; difference picture: " << png;
  }
}

INSTANTIATE_TEST_SUITE_P(examples, example_picture,
                         ::testing::Values("demo", "molecule", "surface_continuous", "surface_bands", "glass",
                                           "weather", "preview", "torus"));

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
