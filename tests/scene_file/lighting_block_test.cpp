// lighting_block_test.cpp - which lights the lighting block builds, with
// what attenuation, and its messages.
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
      "  light 4 { on true location 0 0 0 } }\n");
  const auto& lights = s.scene.lights();
  ASSERT_EQ(lights.size(), 5u);
  const auto* sun = dynamic_cast<const directional_light*>(lights[0].get());
  const auto* bulb = dynamic_cast<const point_light*>(lights[1].get());
  const auto* spot = dynamic_cast<const spot_light*>(lights[2].get());
  const auto* default_spot = dynamic_cast<const spot_light*>(lights[3].get());
  const auto* origin_sun = dynamic_cast<const directional_light*>(lights[4].get());
  ASSERT_TRUE(sun && bulb && spot && default_spot && origin_sun);
  EXPECT_EQ(dynamic_cast<const spot_light*>(bulb), nullptr);
  // A distant light travels away from its location, towards the origin; from
  // the origin it takes (1, 0, 0) before the negation. The bulb has the
  // entry's default colours.
  EXPECT_EQ(vectors({sun->travel(), sun->get_colour(), sun->get_ambient(), origin_sun->travel(), bulb->location(),
                     bulb->get_colour(), bulb->get_ambient()}),
            vectors({{0, 0, -1}, {1, 0.5, 0.25}, {0.1, 0.2, 0.3}, {-1, 0, 0}, {1, 2, 3}, {0.9, 0.9, 0.9},
                     {0.09, 0.09, 0.09}}));
  // Spotlights as given, and with the defaults (a zero direction normalises to x).
  EXPECT_EQ(vectors({spot->location(), spot->aim(), default_spot->location(), default_spot->aim()}),
            vectors({{4, 5, 6}, {0, -1, 0}, {0, 0, 1}, {1, 0, 0}}));
  EXPECT_EQ(reals({spot->outer_angle(), spot->inner_angle(), default_spot->outer_angle(), default_spot->inner_angle()}),
            reals({40, 10, 30, 20}));
}

TEST(lighting_block, only_lights_switched_on_are_built_and_ambient) {
  // Off by default, switched off again, or cut off by the end of the file.
  for (const char* text : {"lighting_001 5 { }", "lighting_001 1 { light 0 { local true selected true } }",
                           "lighting_001 1 { light 0 { on true on false } }", "lighting_001 1 { light 0 { on true"}) {
    EXPECT_TRUE(scene_from_text(text).scene.lights().empty()) << text;
  }
  // The same number twice is two lights; two blocks append to one list.
  EXPECT_EQ(scene_from_text("lighting_001 1 { light 0 { on true } light 0 { on true } }\n"
                            "lighting_001 1 { light 0 { on true } }").scene.lights().size(), 3u);
  // "ambient" is the world's; a block without one leaves it.
  EXPECT_EQ(scene_from_text("lighting_001 0 { ambient 0.2 0.3 0.4 }\nlighting_001 0 { }").scene.ambient,
            colour(0.2, 0.3, 0.4));
}

TEST(lighting_block, attenuation_as_the_block_stands_at_each_light) {
  scene_from_text s(
      "lighting_001 3 { light 0 { on true local true radius 2 }  attenuation true attenuation_factors 1 0.5 0.25\n"
      "  light 1 { on true local true radius 2 }  light 2 { on true local true spotlight true }\n"
      "  attenuation_factors 2 0 0 attenuation false  light 3 { on true local true radius 3 } }\n"
      "lighting_001 1 { attenuation_factors 3 3 3 light 4 { on true local true radius 1 } }\n");
  ASSERT_EQ(s.scene.lights().size(), 5u);
  // Without "attenuation true" (and a new block starts again from false) a
  // light keeps (1, 0, 0) and radius 0.
  const vector none(1, 0, 0), given(1, 0.5, 0.25);
  const std::pair<vector, double> expected[] = {{none, 0}, {given, 2}, {given, 0}, {none, 0}, {none, 0}};
  for (int i = 0; i < 5; ++i) {
    const auto* l = dynamic_cast<const point_light*>(s.scene.lights()[i].get());
    ASSERT_NE(l, nullptr) << i;
    EXPECT_EQ(std::make_pair(l->attenuation(), l->radius()), expected[i]) << i;
  }
}

TEST(lighting_block, messages) {
  const std::string b = "lighting_001 1 { ";
  message_cases cases = {
      {"lighting_001 { }", "Unable to read number of lights"},
      {"lighting_001 1 light", "Missing '{' for lighting block"},
      {b + "ambient 1 1 }", "Unable to read ambient component"}, {b + "attenuation on }", "Unable to read attenuation"},
      {b + "attenuation_factors 1 0 }", "Unable to read attenuation factor"},
      {b + "light { } }", "Unable to read light number"}, {b + "light 0 on true }", "Missing '{' for light"},
      {b + "color 1 1 1 }", "Unknown keyword 'color' within lighting block"},
      {b + "light 0 { attenuation true", "Unknown keyword 'attenuation' within light block"}};
  // Inside a light entry: {what follows, what cannot be read}.
  for (const auto& [body, what] : message_cases{
           {"on yes", "light on/off"}, {"selected 1", "light selected"}, {"local", "light local"},
           {"location 1 2 }", "light location"}, {"color 1 x 1", "light color component"},
           {"ambient 1 1 }", "light ambient component"}, {"radius r", "light radius"},
           {"spotlight false1", "light spotlight"}, {"spotlight_direction 0 0", "spotlight direction"},
           {"spotlight_angles 30 }", "spotlight angle"}}) {
    cases.push_back({b + "light 0 { " + body, "Unable to read " + what});
  }
  expect_messages(cases, "Error (lighting_001): ");
}

}  // namespace
}  // namespace sciray::testing
