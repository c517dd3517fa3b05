// material.h - one colour-map entry as a shading class. A material is also
// the medium inside its body (absorption and emission per unit length); the
// atmosphere is a material used only as a medium.
#pragma once

#include <memory>

#include "math/vector.h"

namespace sciray {

class fractal_noise;
struct ray_state;

// Roughness tilts the shading normal by centred vector noise.
struct roughness {
  static constexpr unsigned seed = 3944498989u;  // every roughness object is made with it
  explicit roughness(std::unique_ptr<fractal_noise> n);
  ~roughness();
  std::unique_ptr<fractal_noise> noise;
};

class material {
 public:
  material();
  virtual ~material();

  // The colour seen at the hit recorded in `state`.
  virtual colour shade(ray_state& state) const;
  // The fraction of light of each channel that passes the body towards a
  // light. The shadow goes on through tracer::transmit_through, the one
  // use of the state's weight: the tracer shares what chains that differ
  // only in weight and medium find beyond.
  virtual colour transmittance(ray_state& state) const;
  // The refractive indices of red, green and blue, for the other side of a refraction.
  virtual vector index_triple() const;
  // Absorbs and emits along a segment of `distance` travelled inside this medium.
  virtual void apply_medium(double distance, colour& c) const;

  // A body: `c` is the fraction of each channel left after `length` units.
  void set_attenuation(const colour& c, double length);
  // Open space: haze colour `c`; over `length` half of a colour turns to haze.
  void set_atmosphere(const colour& c, double length);

  colour diffuse, reflective, refractive, emission, ambient, specular;
  double shininess = 0.0;
  vector index_by_channel{1.0, 1.0, 1.0};
  std::shared_ptr<roughness> rough;  // none unless the colour map gives one

  // Medium part.
  colour absorption;       // per unit length
  colour medium_emission;  // per unit length
};

}  // namespace sciray
