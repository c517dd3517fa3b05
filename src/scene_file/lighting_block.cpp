// lighting_block.cpp - the lighting block: the world's ambient light, the
// block's distance attenuation and the lights, each built at the closing
// brace of its entry and appended to the world in file order.
#include <memory>

#include "scene_file/block_readers.h"
#include "shading/world.h"

namespace sciray {

namespace {

// Settings of one lighting block; every block starts again from these.
struct light_settings {
  bool attenuation = false;
  vector attenuation_factors{1.0, 0.0, 0.0};
};

// One light entry as read.
struct light_entry {
  bool on = false;
  bool local = false;
  vector location{0.0, 0.0, 1.0};
  colour color{0.9, 0.9, 0.9};
  colour ambient{0.09, 0.09, 0.09};
  double radius = 0.0;
  bool spotlight = false;
  vector spotlight_direction{0.0, 0.0, -1.0};
  double outer_angle = 30.0;  // first of "spotlight_angles"
  double inner_angle = 20.0;  // second
};

// The light an entry describes; attenuation as the block stands now.
std::unique_ptr<light> make_light(const light_entry& e, const light_settings& block) {
  if (!e.local) {
    // Shines from the direction of `location`, from infinitely far.
    return std::make_unique<directional_light>(direction::as_given(-normalise(e.location)), e.color, e.ambient);
  }
  std::unique_ptr<point_light> l;
  if (e.spotlight) {
    l = std::make_unique<spot_light>(e.location, e.color, e.ambient, normalise(e.spotlight_direction),
                                     e.outer_angle, e.inner_angle);
  } else {
    l = std::make_unique<point_light>(e.location, e.color, e.ambient);
  }
  if (block.attenuation) l->set_attenuation(block.attenuation_factors, e.radius);
  return l;
}

void read_light(block_input& in, reader_state& state, const light_settings& block) {
  in.read_int("light number");
  in.expect_open("light");
  light_entry e;
  for (std::string_view key; in.next_keyword(key);) {
    if (key == "on") e.on = in.read_truth("light on/off");
    else if (key == "selected") in.read_truth("light selected");  // checked, changes nothing
    else if (key == "local") e.local = in.read_truth("light local");
    else if (key == "location") e.location = in.read_triple("light location");
    else if (key == "color") e.color = in.read_triple("light color component");
    else if (key == "ambient") e.ambient = in.read_triple("light ambient component");
    else if (key == "radius") e.radius = in.read_real("light radius");
    else if (key == "spotlight") e.spotlight = in.read_truth("light spotlight");
    else if (key == "spotlight_direction") e.spotlight_direction = in.read_triple("spotlight direction");
    else if (key == "spotlight_angles") {
      e.outer_angle = in.read_real("spotlight angle");
      e.inner_angle = in.read_real("spotlight angle");
    } else in.unknown(key, "light block");
  }
  // A light cut off by the end of the file is not built; nor is one left off.
  if (in.at_end_of_file() || !e.on) return;
  state.scene.add_light(make_light(e, block));
}

}  // namespace

void read_lighting_block(reader_state& state) {
  block_input in(state, "lighting_001");
  light_settings block;
  in.read_int("number of lights");  // required, but the entries decide what is built
  in.expect_open("lighting block");
  for (std::string_view key; in.next_keyword(key);) {
    if (key == "ambient") state.scene.ambient = in.read_triple("ambient component");
    else if (key == "attenuation") block.attenuation = in.read_truth("attenuation");
    else if (key == "attenuation_factors") block.attenuation_factors = in.read_triple("attenuation factor");
    else if (key == "light") read_light(in, state, block);
    else in.unknown(key, "lighting block");
  }
}

}  // namespace sciray
