// sky.h - the colour of rays that hit nothing: a zenith/horizon/ground
// gradient, or several such gradients blended by procedural clouds.
#pragma once

#include <memory>
#include <vector>

#include "environment/noise.h"
#include "math/vector.h"

namespace sciray {

class colour_source {
 public:
  virtual ~colour_source() = default;
  // The colour seen along the unit direction `d`.
  virtual colour colour_of(const direction& d) const = 0;
};

class sky_gradient : public colour_source {
 public:
  sky_gradient(const direction& up, const colour& top, const colour& horizon, const colour& ground)
      : up_(up), top_(top), horizon_(horizon), ground_(ground) {}
  colour colour_of(const direction& d) const override;

 private:
  direction up_;
  colour top_, horizon_, ground_;
};

class cloud_blend : public colour_source {
 public:
  struct layer {
    std::unique_ptr<colour_source> source;
    double fraction;  // share of the noise range this layer occupies
  };
  static constexpr int max_layers = 3;

  cloud_blend(std::unique_ptr<fractal_noise> noise, const direction& up, const position& offset, bool smooth)
      : noise_(std::move(noise)), up_(up), offset_(offset), smooth_(smooth) {}
  void add_layer(std::unique_ptr<colour_source> source, double fraction);

  colour colour_of(const direction& d) const override;
  // Fills one weight per layer for the direction `d`.
  void set_weights(const direction& d, double* weights) const;

 private:
  std::unique_ptr<fractal_noise> noise_;
  direction up_;
  position offset_;
  bool smooth_;
  std::vector<layer> layers_;
};

// Everything the sky is assembled from.
struct sky_settings {
  colour zenith, horizon, ground, cloud_inner, cloud_outer;
  double cloud_inner_frac, cloud_outer_frac, cloud_scale, cloud_sharpness;
  vector cloud_offset;
  int cloud_depth;
};

// Builds the sky. A sky with clouds makes its noise here (and with it, if no
// material made it before, the noise lattice); a clear sky draws nothing.
std::unique_ptr<colour_source> make_sky(const sky_settings& s, const direction& up, noise_registry& registry,
                                        rand_stream& random);

}  // namespace sciray
