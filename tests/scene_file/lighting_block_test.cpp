// lighting_block_test.cpp - which lights the lighting block builds, with
// what attenuation, and its messages.
#include <gtest/gtest.h>

#include "scene_text.h"

namespace sciray::testing {
namespace {

TEST(lighting_block, builds_each_kind_of_light) {
  scene_from_text s(
      "lighting_001 3 {\n"
      "  light 0 { on true local false location 0 0 2 color 1 0.5 0.25 ambient 0.1 0.2 0.3 }\n"
      "  light 1 { on true local true location 1 2 3 }\n"
      "  light 2 { local true on true spotlight true location 4 5 6 spotlight_direction 0 -3 0\n"
      "            spotlight_angles 40 10 }\n"
      "  light 3 { on true local true spotlight true spotlight_direction 0 0 0 }\n"
      "}\n");
  const auto& lights = s.scene.lights();
  ASSERT_EQ(lights.size(), 4u);

  // A distant light travels away from its location, towards the origin.
  const auto* sun = dynamic_cast<const directional_light*>(lights[0].get());
  ASSERT_NE(sun, nullptr);
  EXPECT_EQ(sun->travel(), vector(0, 0, -1));
  EXPECT_EQ(sun->get_colour(), colour(1, 0.5, 0.25));
  EXPECT_EQ(sun->get_ambient(), colour(0.1, 0.2, 0.3));

  const auto* bulb = dynamic_cast<const point_light*>(lights[1].get());
  ASSERT_NE(bulb, nullptr);
  EXPECT_EQ(dynamic_cast<const spot_light*>(bulb), nullptr);
  EXPECT_EQ(bulb->location(), vector(1, 2, 3));
  EXPECT_EQ(bulb->get_colour(), colour(0.9, 0.9, 0.9));     // entry defaults
  EXPECT_EQ(bulb->get_ambient(), colour(0.09, 0.09, 0.09));

  const auto* spot = dynamic_cast<const spot_light*>(lights[2].get());
  ASSERT_NE(spot, nullptr);
  EXPECT_EQ(spot->location(), vector(4, 5, 6));
  EXPECT_EQ(spot->aim(), vector(0, -1, 0));
  EXPECT_EQ(spot->outer_angle(), 40.0);
  EXPECT_EQ(spot->inner_angle(), 10.0);

  const auto* default_spot = dynamic_cast<const spot_light*>(lights[3].get());
  ASSERT_NE(default_spot, nullptr);
  EXPECT_EQ(default_spot->location(), vector(0, 0, 1));
  EXPECT_EQ(default_spot->aim(), vector(1, 0, 0));  // a zero direction normalises to x
  EXPECT_EQ(default_spot->outer_angle(), 30.0);
  EXPECT_EQ(default_spot->inner_angle(), 20.0);

  // A distant light at the origin: (1, 0, 0) before the negation.
  scene_from_text origin("lighting_001 1 { light 0 { on true location 0 0 0 } }");
  ASSERT_EQ(origin.scene.lights().size(), 1u);
  EXPECT_EQ(dynamic_cast<const directional_light&>(*origin.scene.lights()[0]).travel(), vector(-1, 0, 0));
}

TEST(lighting_block, only_lights_switched_on_are_built_and_ambient) {
  EXPECT_TRUE(scene_from_text("lighting_001 5 { }").scene.lights().empty());
  EXPECT_TRUE(scene_from_text("lighting_001 1 { light 0 { local true selected true } }").scene.lights().empty());
  EXPECT_TRUE(scene_from_text("lighting_001 1 { light 0 { on true on false } }").scene.lights().empty());
  // Cut off by the end of the file: not built.
  EXPECT_TRUE(scene_from_text("lighting_001 1 { light 0 { on true").scene.lights().empty());
  // The same number twice is two lights; two blocks append to one list.
  scene_from_text twice("lighting_001 1 { light 0 { on true } light 0 { on true } }\n"
                        "lighting_001 1 { light 0 { on true } }");
  EXPECT_EQ(twice.scene.lights().size(), 3u);

  // "ambient" is the world's; a block without one leaves it.
  scene_from_text ambient("lighting_001 0 { ambient 0.2 0.3 0.4 }\nlighting_001 0 { }");
  EXPECT_EQ(ambient.scene.ambient, colour(0.2, 0.3, 0.4));
}

TEST(lighting_block, attenuation_as_the_block_stands_at_each_light) {
  scene_from_text s(
      "lighting_001 3 {\n"
      "  light 0 { on true local true radius 2 }\n"
      "  attenuation true attenuation_factors 1 0.5 0.25\n"
      "  light 1 { on true local true radius 2 }\n"
      "  light 2 { on true local true spotlight true }\n"
      "  attenuation_factors 2 0 0 attenuation false\n"
      "  light 3 { on true local true radius 3 }\n"
      "}\n"
      "lighting_001 1 { attenuation_factors 3 3 3 light 4 { on true local true radius 1 } }\n");
  const auto& lights = s.scene.lights();
  ASSERT_EQ(lights.size(), 5u);
  const auto light_at = [&](int i) { return dynamic_cast<const point_light*>(lights[i].get()); };
  for (int i = 0; i < 5; ++i) ASSERT_NE(light_at(i), nullptr) << i;
  // Before "attenuation true" the light keeps (1, 0, 0) and radius 0.
  EXPECT_EQ(light_at(0)->attenuation(), vector(1, 0, 0));
  EXPECT_EQ(light_at(0)->radius(), 0.0);
  EXPECT_EQ(light_at(1)->attenuation(), vector(1, 0.5, 0.25));
  EXPECT_EQ(light_at(1)->radius(), 2.0);
  EXPECT_EQ(light_at(2)->attenuation(), vector(1, 0.5, 0.25));
  EXPECT_EQ(light_at(3)->attenuation(), vector(1, 0, 0));
  EXPECT_EQ(light_at(3)->radius(), 0.0);
  // A new block starts again from attenuation false.
  EXPECT_EQ(light_at(4)->attenuation(), vector(1, 0, 0));
  EXPECT_EQ(light_at(4)->radius(), 0.0);
}

TEST(lighting_block, messages) {
  const std::string e = "Error (lighting_001): ";
  const std::string light = "lighting_001 1 { light 0 { ";
  expect_messages({
      {"lighting_001 { }", e + "Unable to read number of lights"},
      {"lighting_001 1 light", e + "Missing '{' for lighting block"},
      {"lighting_001 1 { ambient 1 1 }", e + "Unable to read ambient component"},
      {"lighting_001 1 { attenuation on }", e + "Unable to read attenuation"},
      {"lighting_001 1 { attenuation_factors 1 0 }", e + "Unable to read attenuation factor"},
      {"lighting_001 1 { light { } }", e + "Unable to read light number"},
      {"lighting_001 1 { light 0 on true }", e + "Missing '{' for light"},
      {"lighting_001 1 { color 1 1 1 }", e + "Unknown keyword 'color' within lighting block"},
      {light + "on yes", e + "Unable to read light on/off"},
      {light + "selected 1", e + "Unable to read light selected"},
      {light + "local", e + "Unable to read light local"},
      {light + "location 1 2 }", e + "Unable to read light location"},
      {light + "color 1 x 1", e + "Unable to read light color component"},
      {light + "ambient 1 1 }", e + "Unable to read light ambient component"},
      {light + "radius r", e + "Unable to read light radius"},
      {light + "spotlight false1", e + "Unable to read light spotlight"},
      {light + "spotlight_direction 0 0", e + "Unable to read spotlight direction"},
      {light + "spotlight_angles 30 }", e + "Unable to read spotlight angle"},
      {light + "attenuation true", e + "Unknown keyword 'attenuation' within light block"},
  });
}

}  // namespace
}  // namespace sciray::testing
