// scene_text.h - reads scene text in-process (through fmemopen) into a fresh
// world and settings, and checks the reader's one-line fatal messages.
#pragma once

#include <gtest/gtest.h>

#include <cstdio>
#include <string>
#include <utility>
#include <vector>

#include "scene_file/scene_reader.h"
#include "shading/render_context.h"
#include "shading/world.h"
#include "support/c_file.h"

namespace sciray::testing {

// A scene read from `text`, which may hold any bytes, NUL included.
struct scene_from_text {
  explicit scene_from_text(std::string text) {
    const c_file file(fmemopen(text.data(), text.size(), "r"));
    read_scene_file(file.get(), scene, settings, context);
  }
  // The primitives in the order read (built into one leaf, which keeps the
  // list order).
  const std::vector<primitive_ref>& primitives() {
    if (scene.builder().size() > 0) scene.build_hierarchy(1 << 30);
    return scene.geometry().leaf_order();
  }
  const scene_geometry& geometry() {
    primitives();
    return scene.geometry();
  }
  const material* material_of(primitive_ref p) { return geometry().material_of(p); }
  world scene;
  scene_settings settings;
  render_context context;
};

// Lists of settings, compared whole.
using ints = std::vector<int>;
using reals = std::vector<double>;
using vectors = std::vector<vector>;  // positions, directions and colours

// {scene text, message}: the text must stop the run with status 1 and
// `prefix` + message + line end as the whole of standard error.
using message_cases = std::vector<std::pair<std::string, std::string>>;
inline void expect_messages(const message_cases& cases, const std::string& prefix = "") {
  for (const auto& [text, message] : cases) {
    SCOPED_TRACE(text);
    EXPECT_EXIT(scene_from_text{text}, ::testing::ExitedWithCode(1),
                ::testing::Matcher<const std::string&>(prefix + message + "\n"));
  }
}

// A colour map of `size` entries, entry i with diffuse (i, 0, 0) so that
// tests can tell them apart.
inline std::string numbered_colormap(int size) {
  std::string text = "colormap_002 " + std::to_string(size) + " {\n";
  for (int i = 0; i < size; ++i) text += " index " + std::to_string(i) + " { diffuse " + std::to_string(i) + " 0 0 }\n";
  return text + "}\n";
}

}  // namespace sciray::testing
