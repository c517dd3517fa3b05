// colormap_block_test.cpp - colour-map entries: the "color" preset, the
// reset of an entry, pending attenuation and index values, roughness, and
// the block's messages. Entries are reached through the symbols drawn with them.
#include <gtest/gtest.h>

#include <cmath>

#include "environment/noise.h"
#include "scene_text.h"

namespace sciray::testing {
namespace {

// The materials of entries 0 .. count-1 of `colormap`, one symbol each.
struct colormap_entries {
  colormap_entries(const std::string& colormap, int count) : scene(colormap + symbols(count)) {
    for (const primitive* p : scene.primitives()) materials.push_back(p->get_material());
  }
  static std::string symbols(int count) {
    std::string text = "gr_geometry_001 {\n";
    for (int i = 0; i < count; ++i) text += "gr_symbol { index " + std::to_string(i) + " type gr_o xyz 0 0 0 }\n";
    return text + "}\n";
  }
  const material& operator[](int i) const { return *materials.at(static_cast<std::size_t>(i)); }

  scene_from_text scene;
  std::vector<const material*> materials;
};

TEST(colormap_block, color_preset_and_the_keywords_after_it) {
  colormap_entries m("colormap_002 3 {\n"
                     "  index 0 { emission 0.5 0.5 0.5 ambient 1 1 1 color 1 0 0 specular 0 0 0 }\n"
                     "  index 1 { specular 0 0 0 color 0 1 0 }\n"
                     "}\n", 3);
  ASSERT_EQ(m.materials.size(), 3u);
  EXPECT_EQ(m[0].diffuse, colour(1, 0, 0));
  EXPECT_EQ(m[0].ambient, colour(0, 0, 0));
  EXPECT_EQ(m[0].specular, colour(0, 0, 0));
  EXPECT_EQ(m[0].reflective, colour(0.2, 0.2, 0.2));
  EXPECT_EQ(m[0].refractive, colour(0, 0, 0));
  EXPECT_EQ(m[0].emission, colour(0, 0, 0));
  EXPECT_EQ(m[1].diffuse, colour(0, 1, 0));
  EXPECT_EQ(m[1].specular, colour(1, 1, 1));
  // Entry 2 was never given: black, indices 1, no roughness.
  EXPECT_EQ(m[2].diffuse, colour(0, 0, 0));
  EXPECT_EQ(m[2].specular, colour(0, 0, 0));
  EXPECT_EQ(m[2].shininess, 0.0);
  EXPECT_EQ(m[2].index_by_channel, vector(1, 1, 1));
  EXPECT_EQ(m[2].rough, nullptr);
}

TEST(colormap_block, reset_and_pending_refractive_index) {
  colormap_entries m("colormap_002 4 {\n"
                     "  index 0 { diffuse 0.5 0.5 0.5 reflective 1 1 1 refractive 1 1 1 emission 0.1 0.2 0.3\n"
                     "            shininess 20 rough_scale 2 index_ref 1.5 gray 0.5 }\n"
                     "  index 0 { ambient 0.25 0.25 0.25 }\n"
                     "  index 1 { index_ref 1.5 }\n"
                     "  index 1 { index_ref_spread 0.2 }\n"
                     "  index 2 { index_ref 1.5 index_ref_spread 0.1 }\n"
                     "  index 3 { index_ref_spread 0.1 index_ref 1.5 }\n"
                     "}\n", 4);
  EXPECT_EQ(m[0].diffuse, colour(0, 0, 0));
  EXPECT_EQ(m[0].reflective, colour(0, 0, 0));
  EXPECT_EQ(m[0].refractive, colour(0, 0, 0));
  EXPECT_EQ(m[0].ambient, colour(0.25, 0.25, 0.25));
  EXPECT_EQ(m[0].shininess, 0.0);
  EXPECT_EQ(m[0].rough, nullptr);
  EXPECT_EQ(m[0].emission, colour(0.1, 0.2, 0.3));         // kept by the reset
  EXPECT_EQ(m[0].index_by_channel, vector(1.5, 1.5, 1.5));  // kept until an index keyword
  // The pending index starts again from 1: the spread applies to it.
  EXPECT_DOUBLE_EQ(m[1].index_by_channel.x, 0.9);
  EXPECT_EQ(m[1].index_by_channel.y, 1.0);
  EXPECT_DOUBLE_EQ(m[1].index_by_channel.z, 1.1);
  // Either order of index and spread gives the same channels.
  for (int i = 2; i < 4; ++i) {
    EXPECT_DOUBLE_EQ(m[i].index_by_channel.x, 1.45);
    EXPECT_EQ(m[i].index_by_channel.y, 1.5);
    EXPECT_DOUBLE_EQ(m[i].index_by_channel.z, 1.55);
  }
}

TEST(colormap_block, attenuation_takes_effect_at_atten_len) {
  colormap_entries m("colormap_002 3 {\n"
                     "  index 0 { attenuation 0.5 0.25 1 atten_len 2 }\n"
                     "  index 1 { atten_len 2 attenuation 0.5 0.5 0.5 }\n"
                     "  index 2 { attenuation 0.5 0.5 0.5 color 1 1 1 atten_len 2 }\n"
                     "}\n", 3);
  EXPECT_DOUBLE_EQ(m[0].absorption.x, std::log(2.0) / 2.0);
  EXPECT_DOUBLE_EQ(m[0].absorption.y, std::log(4.0) / 2.0);
  EXPECT_EQ(m[0].absorption.z, 0.0);
  // Too late, and undone by the preset: computed from (1, 1, 1).
  EXPECT_EQ(m[1].absorption, colour(0, 0, 0));
  EXPECT_EQ(m[2].absorption, colour(0, 0, 0));
}

TEST(colormap_block, roughness_is_made_on_first_use) {
  colormap_entries m("colormap_002 3 {\n"
                     "  index 0 { rough_scale 3 rough_amplitude 0.5 rough_depth 5 }\n"
                     "  index 1 { rough_depth 2 }\n"
                     "}\n", 3);
  ASSERT_NE(m[0].rough, nullptr);
  ASSERT_NE(m[1].rough, nullptr);
  EXPECT_NE(m[0].rough, m[1].rough);  // one object per entry
  const fractal_noise& given = *m[0].rough->noise;
  EXPECT_EQ(given.scale, 3.0);
  EXPECT_EQ(given.amplitude, 0.5);
  EXPECT_EQ(given.depth, 5);
  EXPECT_EQ(given.offset, 0.0);
  const fractal_noise& defaults = *m[1].rough->noise;
  EXPECT_EQ(defaults.scale, 1.0);
  EXPECT_EQ(defaults.amplitude, 2.0);
  EXPECT_EQ(defaults.depth, 2);
  EXPECT_EQ(m[2].rough, nullptr);
}

TEST(colormap_block, messages) {
  const std::string e = "Error (colormap_002): ";
  const std::string entry = "colormap_002 2 { index 1 { ";
  std::vector<message_case> cases = {
      {"colormap_002 { }", e + "Unable to read colormap size"},
      {"colormap_001 0 { }", e + "Invalid colormap size 0"},
      {"colormap_002 -3 { }", e + "Invalid colormap size -3"},
      {"colormap_002 2 index", e + "Missing '{' for colormap"},
      {"colormap_002 2 { index x", e + "Unable to read index number"},
      {"colormap_002 2 { index 2 { } }", e + "Invalid index number 2"},
      {"colormap_002 2 { index -1 { } }", e + "Invalid index number -1"},
      {"colormap_002 2 { index 0 color", e + "Missing '{' for colormap index"},
      {"colormap_002 2 { color 1 1 1 }", e + "Unknown keyword 'color' within colormap block"},
      {entry + "colour 1 1 1", e + "Unknown keyword 'colour' within colormap index block"},
      {entry + "color 1 1 }", e + "Unable to read color component"},
      {entry + "gray light", e + "Unable to read gray component"},
  };
  for (const char* key : {"diffuse", "ambient", "specular", "reflective", "refractive", "attenuation", "emission"}) {
    cases.push_back({entry + key + " 1 1 x", e + "Unable to read " + key + " component"});
  }
  for (const char* key :
       {"atten_len", "shininess", "rough_scale", "rough_amplitude", "rough_depth", "index_ref", "index_ref_spread"}) {
    // The value on the next line: the message must not depend on the line buffer.
    cases.push_back({entry + key + "\n}", e + "Unable to read " + key});
  }
  expect_messages(cases);
}

}  // namespace
}  // namespace sciray::testing
