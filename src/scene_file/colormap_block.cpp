// colormap_block.cpp - the colour map: a new table of materials, each
// "index" entry reset and then filled keyword by keyword. Attenuation and
// refractive index are pending values that take effect when "atten_len",
// "index_ref" or "index_ref_spread" is read.
#include <memory>
#include <string>

#include "environment/noise.h"
#include "scene_file/block_readers.h"
#include "shading/render_context.h"
#include "shading/world.h"

namespace sciray {

namespace {

// Values an entry collects before they are turned into material fields.
struct pending_values {
  colour attenuation{1.0, 1.0, 1.0};
  double atten_len = 1.0;
  double index_ref = 1.0;
  double index_ref_spread = 0.0;
};

// The spread splits the index over the channels: red below, blue above.
vector channel_indices(const pending_values& p) {
  const double n = p.index_ref;
  const double s = p.index_ref_spread;
  if (s == 0.0) return {n, n, n};
  return {n - s / 2.0, n, n + s / 2.0};
}

// The entry's roughness noise, made on first use; every one starts from the
// same fixed seed (roughness::seed) so a scene always renders the same.
fractal_noise& roughness_noise(material& m, render_context& context) {
  if (!m.rough) {
    m.rough = std::make_shared<roughness>(
        std::make_unique<fractal_noise>(1.0, 2.0, 0.0, context.noise, context.random));
  }
  return *m.rough->noise;
}

// One roughness keyword replaces scale, amplitude or depth of the noise.
void read_roughness(block_input& in, const std::string& name, fractal_noise& noise) {
  if (name == "rough_depth") noise.depth = in.read_int(name);
  else (name == "rough_scale" ? noise.scale : noise.amplitude) = in.read_real(name);
  noise.update_normaliser();
}

// A plain coloured surface with a faint mirror and a highlight.
void apply_color_preset(material& m, pending_values& p, const colour& c) {
  m.diffuse = c;
  m.ambient = colour{0.0, 0.0, 0.0};
  m.specular = colour{1.0, 1.0, 1.0};
  m.reflective = colour{0.2, 0.2, 0.2};
  m.refractive = colour{0.0, 0.0, 0.0};
  m.absorption = colour{0.0, 0.0, 0.0};
  m.emission = colour{0.0, 0.0, 0.0};
  p.attenuation = colour{1.0, 1.0, 1.0};
  p.atten_len = 1.0;
}

// Starts an entry again; the emission and the channel indices stay. The
// roughness object is detached but kept alive, so the shared noise lattice
// is never rebuilt while the scene is read.
void reset_entry(material& m, world& scene) {
  m.diffuse = m.ambient = m.specular = m.reflective = m.refractive = colour{0.0, 0.0, 0.0};
  m.absorption = colour{0.0, 0.0, 0.0};
  m.shininess = 0.0;
  if (m.rough) scene.retire(std::move(m.rough));
}

void read_index_entry(block_input& in, reader_state& state) {
  const int index = in.read_int("index number");
  if (index < 0 || index >= state.colormap_size()) in.fail("Invalid index number " + std::to_string(index));
  in.expect_open("colormap index");
  material& m = state.colormap->entry(index);
  reset_entry(m, state.scene);
  pending_values p;
  for (std::string_view key; in.next_keyword(key);) {
    // Reading a value may refill the token buffer: keep the keyword's name.
    const std::string name(key);
    const std::string component = name + " component";
    if (name == "color") apply_color_preset(m, p, in.read_triple(component));
    else if (name == "gray") in.read_real(component);  // accepted, deliberately without effect
    else if (name == "diffuse") m.diffuse = in.read_triple(component);
    else if (name == "ambient") m.ambient = in.read_triple(component);
    else if (name == "specular") m.specular = in.read_triple(component);
    else if (name == "reflective") m.reflective = in.read_triple(component);
    else if (name == "refractive") m.refractive = in.read_triple(component);
    else if (name == "attenuation") p.attenuation = in.read_triple(component);
    else if (name == "atten_len") {
      p.atten_len = in.read_real(name);
      m.set_attenuation(p.attenuation, p.atten_len);
    } else if (name == "emission") m.emission = in.read_triple(component);
    else if (name == "shininess") m.shininess = in.read_real(name);
    else if (name == "rough_scale" || name == "rough_amplitude" || name == "rough_depth") {
      read_roughness(in, name, roughness_noise(m, state.context));
    } else if (name == "index_ref" || name == "index_ref_spread") {
      (name == "index_ref" ? p.index_ref : p.index_ref_spread) = in.read_real(name);
      m.index_by_channel = channel_indices(p);
    } else in.unknown(key, "colormap index block");
  }
}

}  // namespace

void read_colormap_block(reader_state& state) {
  block_input in(state, "colormap_002");
  const int size = in.read_int("colormap size");
  if (size <= 0) in.fail("Invalid colormap size " + std::to_string(size));
  state.colormap = &state.scene.new_material_table(size);
  in.expect_open("colormap");
  for (std::string_view key; in.next_keyword(key);) {
    if (key == "index") read_index_entry(in, state);
    else in.unknown(key, "colormap block");
  }
}

}  // namespace sciray
