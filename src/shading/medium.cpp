// medium.cpp - a material as the medium a ray travels in: absorption and
// emission per unit length, set up for a body or for the hazy open space.
#include <cmath>

#include "shading/material.h"

namespace sciray {

void material::set_attenuation(const colour& c, double length) {
  if (!(length > 0.0)) return;
  // A channel given as 0 is unspecified, so it is not absorbed at all.
  for (int i = 0; i < 3; ++i) absorption[i] = c[i] > 0.0 ? -std::log(c[i]) / length : 0.0;
  medium_emission = colour{};
}

void material::set_atmosphere(const colour& c, double length) {
  if (!(length > 0.0)) return;
  // Half of a colour survives `length` units; emission / absorption is the haze colour.
  const double k = std::log(2.0) / length;
  absorption = colour{k, k, k};
  for (int i = 0; i < 3; ++i) medium_emission[i] = c[i] * std::log(2.0) / length;
}

void material::apply_medium(double distance, colour& c) const {
  for (int i = 0; i < 3; ++i) {
    const double k = absorption[i];
    const double e = medium_emission[i];
    if (k == 0.0)
      c[i] = c[i] + e * distance;
    else if (e == 0.0)
      c[i] = c[i] * std::exp(-k * distance);
    else
      c[i] = std::exp(-k * distance) * (c[i] - e / k) + e / k;
  }
}

}  // namespace sciray
