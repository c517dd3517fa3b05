// sky.cpp - the sky gradient, the cloud blend that picks gradient layers by
// noise projected onto a cloud plane, and the sky's assembly from settings.
#include "environment/sky.h"

#include <cmath>

namespace sciray {

colour sky_gradient::colour_of(const direction& d) const {
  const double e = dot(d, up_);
  if (e < 0.0) return ground_;
  // Not-a-number elevations take this branch too.
  return horizon_ + (top_ - horizon_) * std::sqrt(e);
}

void cloud_blend::add_layer(std::unique_ptr<colour_source> source, double fraction) {
  // The weights of a ray live in a fixed array of max_layers.
  if (static_cast<int>(layers_.size()) < max_layers) layers_.push_back({std::move(source), fraction});
}

colour cloud_blend::colour_of(const direction& d) const {
  double weights[max_layers];
  set_weights(d, weights);
  colour c;
  for (std::size_t i = 0; i < layers_.size(); ++i)
    if (weights[i] != 0.0) c = c + weights[i] * layers_[i].source->colour_of(d);
  return c;
}

void cloud_blend::set_weights(const direction& d, double* weights) const {
  const int n = static_cast<int>(layers_.size());
  if (n == 0) return;
  if (n == 1) {
    weights[0] = 1.0;
    return;
  }
  for (int i = 0; i < n; ++i) weights[i] = 0.0;

  const double e = dot(d, up_);
  if (e == 0.0) {  // parallel to the cloud plane: no point to look up
    for (int i = 0; i < n; ++i) weights[i] = 1.0 / n;
    return;
  }
  // Where the ray meets the cloud plane at unit height.
  vector q = d / e - offset_;
  q = q + (1 - dot(q, up_)) * up_;
  double v = noise_->value(q);

  // The layers share the noise range in order, each by its fraction.
  int i = 0;
  while (i < n - 1) {
    if (!(layers_[i].fraction < v)) break;
    v = v - layers_[i].fraction;
    ++i;
  }
  if (i < n - 1 && smooth_) {
    weights[i] = (layers_[i].fraction - v) / layers_[i].fraction;
    weights[i + 1] = 1 - weights[i];
  } else {
    weights[i] = 1.0;
  }
}

std::unique_ptr<colour_source> make_sky(const sky_settings& s, const direction& up, noise_registry& registry,
                                        rand_stream& random) {
  struct entry {
    colour top;
    double fraction;
  };
  const entry candidates[3] = {{s.zenith, 1 - s.cloud_inner_frac - s.cloud_outer_frac},
                               {s.cloud_outer, s.cloud_outer_frac},
                               {s.cloud_inner, s.cloud_inner_frac}};
  entry entries[3];
  int count = 0;
  for (const entry& c : candidates)
    if (c.fraction > 0.0) entries[count++] = c;

  if (count == 1) return std::make_unique<sky_gradient>(up, entries[0].top, s.horizon, s.ground);

  // Only clouds need the noise; making it may fill the noise lattice, which
  // draws on the random stream, so a clear sky must not make it.
  auto noise = std::make_unique<fractal_noise>(s.cloud_scale, 1.0, 0.0, registry, random);
  noise->depth = s.cloud_depth;
  noise->ratio = 0.571;
  noise->update_normaliser();
  const bool smooth = s.cloud_sharpness < 2.0 / 3.0;
  auto blend = std::make_unique<cloud_blend>(std::move(noise), up, position(s.cloud_offset), smooth);
  for (int i = 0; i < count; ++i)
    blend->add_layer(std::make_unique<sky_gradient>(up, entries[i].top, s.horizon, s.ground), entries[i].fraction);
  return blend;
}

}  // namespace sciray
