// colormap_block_test.cpp - colour-map entries: the "color" preset, the
// reset of an entry, pending attenuation and index values, roughness, and
// the block's messages. Entries are reached through the symbols drawn with them.
#include <cmath>

#include "environment/noise.h"
#include "scene_text.h"

namespace sciray::testing {
namespace {

const colour black(0, 0, 0);

// A colour map of `count` entries with `body`, and one symbol drawn with each
// entry in turn.
std::string colormap_scene(int count, const std::string& body) {
  std::string text = "colormap_002 " + std::to_string(count) + " {\n" + body + "}\ngr_geometry_001 {\n";
  for (int i = 0; i < count; ++i) text += "gr_symbol { index " + std::to_string(i) + " type gr_o xyz 0 0 0 }\n";
  return text + "}\n";
}

// The materials of `s`'s primitives in build order: the entries, in turn.
std::vector<const material*> entries(scene_from_text& s) {
  std::vector<const material*> found;
  for (const primitive_ref p : s.primitives()) found.push_back(s.material_of(p));
  return found;
}

// Diffuse, ambient, specular, reflective, refractive, emission, absorption.
vectors surface(const material* m) {
  return {m->diffuse, m->ambient, m->specular, m->reflective, m->refractive, m->emission, m->absorption};
}

TEST(colormap_block, color_preset_and_the_keywords_after_it) {
  scene_from_text s(colormap_scene(3, "index 0 { emission 0.5 0.5 0.5 ambient 1 1 1 color 1 0 0 specular 0 0 0 }\n"
                                      "index 1 { specular 0 0 0 color 0 1 0 }\n"));
  const auto m = entries(s);
  ASSERT_EQ(m.size(), 3u);
  EXPECT_EQ(surface(m[0]), vectors({{1, 0, 0}, black, black, {0.2, 0.2, 0.2}, black, black, black}));
  EXPECT_EQ(surface(m[1]), vectors({{0, 1, 0}, black, {1, 1, 1}, {0.2, 0.2, 0.2}, black, black, black}));
  // Entry 2 was never given: black, indices 1, no roughness.
  EXPECT_EQ(surface(m[2]), vectors(7, black));
  EXPECT_EQ(std::make_pair(m[2]->shininess, m[2]->index_by_channel), std::make_pair(0.0, vector(1, 1, 1)));
  EXPECT_EQ(m[2]->rough, nullptr);
}

TEST(colormap_block, reset_pending_values_and_roughness) {
  scene_from_text s(colormap_scene(
      9,
      "index 0 { diffuse 0.5 0.5 0.5 reflective 1 1 1 refractive 1 1 1 emission 0.1 0.2 0.3\n"
      "          shininess 20 rough_scale 2 index_ref 1.5 gray 0.5 }\n"
      "index 0 { ambient 0.25 0.25 0.25 }  index 1 { index_ref 1.5 }  index 1 { index_ref_spread 0.2 }\n"
      "index 2 { index_ref 1.5 index_ref_spread 0.1 }  index 3 { index_ref_spread 0.1 index_ref 1.5 }\n"
      "index 4 { attenuation 0.5 0.25 1 atten_len 2 }  index 5 { atten_len 2 attenuation 0.5 0.5 0.5 }\n"
      "index 6 { attenuation 0.5 0.5 0.5 color 1 1 1 atten_len 2 }\n"
      "index 7 { rough_scale 3 rough_amplitude 0.5 rough_depth 5 }  index 8 { rough_depth 2 }\n"));
  const auto m = entries(s);
  ASSERT_EQ(m.size(), 9u);
  // The reset keeps the emission, and the indices until an index keyword.
  EXPECT_EQ(surface(m[0]), vectors({black, {0.25, 0.25, 0.25}, black, black, black, {0.1, 0.2, 0.3}, black}));
  EXPECT_EQ(std::make_pair(m[0]->shininess, m[0]->index_by_channel), std::make_pair(0.0, vector(1.5, 1.5, 1.5)));
  EXPECT_EQ(m[0]->rough, nullptr);
  // The pending index starts again from 1: the spread applies to it. Either
  // order of index and spread gives the same channels.
  EXPECT_EQ(m[1]->index_by_channel, vector(1.0 - 0.2 / 2, 1.0, 1.0 + 0.2 / 2));
  EXPECT_EQ(m[2]->index_by_channel, vector(1.5 - 0.1 / 2, 1.5, 1.5 + 0.1 / 2));
  EXPECT_EQ(m[3]->index_by_channel, m[2]->index_by_channel);
  // Attenuation takes effect at "atten_len": too late, or undone by the
  // preset, it is computed from (1, 1, 1).
  EXPECT_DOUBLE_EQ(m[4]->absorption.x, std::log(2.0) / 2.0);
  EXPECT_DOUBLE_EQ(m[4]->absorption.y, std::log(4.0) / 2.0);
  EXPECT_EQ(m[4]->absorption.z, 0.0);
  EXPECT_EQ(vectors({m[5]->absorption, m[6]->absorption}), vectors(2, black));
  // Roughness is made on first use, one object per entry, from scale 1 and amplitude 2.
  ASSERT_TRUE(m[7]->rough != nullptr && m[8]->rough != nullptr);
  EXPECT_NE(m[7]->rough, m[8]->rough);
  const fractal_noise& given = *m[7]->rough->noise;
  const fractal_noise& defaults = *m[8]->rough->noise;
  EXPECT_EQ(reals({given.scale, given.amplitude, double(given.depth), given.offset}), reals({3, 0.5, 5, 0}));
  EXPECT_EQ(reals({defaults.scale, defaults.amplitude}), reals({1, 2}));
}

TEST(colormap_block, messages) {
  const std::string b = "colormap_002 2 { ", entry = b + "index 1 { ";
  message_cases cases = {
      {"colormap_002 { }", "Unable to read colormap size"}, {"colormap_001 0 { }", "Invalid colormap size 0"},
      {"colormap_002 -3 { }", "Invalid colormap size -3"}, {"colormap_002 2 index", "Missing '{' for colormap"},
      {b + "index x", "Unable to read index number"}, {b + "index 2 { } }", "Invalid index number 2"},
      {b + "index -1 { } }", "Invalid index number -1"}, {b + "index 0 color", "Missing '{' for colormap index"},
      {b + "color 1 1 1 }", "Unknown keyword 'color' within colormap block"},
      {entry + "colour 1 1 1", "Unknown keyword 'colour' within colormap index block"},
      {entry + "color 1 1 }", "Unable to read color component"},
      {entry + "gray light", "Unable to read gray component"}};
  for (const std::string key :
       {"diffuse", "ambient", "specular", "reflective", "refractive", "attenuation", "emission"}) {
    cases.push_back({entry + key + " 1 1 x", "Unable to read " + key + " component"});
  }
  // The value on the next line: the message must not depend on the line buffer.
  for (const std::string key :
       {"atten_len", "shininess", "rough_scale", "rough_amplitude", "rough_depth", "index_ref", "index_ref_spread"}) {
    cases.push_back({entry + key + "\n}", "Unable to read " + key});
  }
  expect_messages(cases, "Error (colormap_002): ");
}

}  // namespace
}  // namespace sciray::testing
