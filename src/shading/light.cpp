// light.cpp - what each light adds at a shaded point: diffuse and specular
// terms of its (shadow-tested, attenuated) light, and its own ambient. An
// area light averages 19 jittered samples over its disc; a spotlight fades
// the point light out between its inner and outer cone.
#include "shading/light.h"

#include <cmath>

#include "shading/ray_state.h"
#include "shading/render_context.h"
#include "shading/world.h"

namespace sciray {

namespace {

constexpr double pi = 3.14159265358979323846;
constexpr double degrees_per_radian = 57.29577951308232;

struct light_terms {
  colour diffuse, specular;
};

// Diffuse and specular of light `lc` arriving along the unit vector `l`.
light_terms terms(const shading_point& p, const direction& l, const colour& lc) {
  light_terms t;
  double n = dot(p.normal, l);
  if (!(n > 0.0)) n = 0.0;
  t.diffuse = n * lc;
  const double s = dot(p.mirror, l);
  if (s > 0.0 && p.shininess > 0.0) t.specular = std::pow(s, p.shininess) * lc;
  return t;
}

// The terms of one light sample at `s`: shadow-tested and attenuated by distance.
light_terms sample_terms(ray_state& state, const shading_point& p, const position& s, const colour& c,
                         const vector& attenuation) {
  ray_state shadow = transmission_state(state, p.point, s, colour{1.0, 1.0, 1.0}, state.medium);
  const double d = shadow.max_distance;
  const double f = 1 / (attenuation.x + attenuation.y * d + attenuation.z * (d * d));
  const colour lc = f * c * state.scene->transmit(shadow);
  return terms(p, shadow.r.dir, lc);
}

// Random offset in [-0.125, 0.125] for one coordinate of a disc point.
double jitter(rand_stream& random) { return (2.0 * random.next() / 2147483647.0 - 1) * 0.125; }

// Draws of one shaded point on the random stream: two per ring point.
constexpr int area_draws = 36;

// A counting pass lights nothing; a light only notes the draws it would make.
bool counted(ray_state& state, int draws) {
  if (!state.context->counting_draws) return false;
  state.context->draws += static_cast<std::uint64_t>(draws);
  state.diffuse_sum = state.specular_sum = state.ambient_sum = colour{};
  return true;
}

}  // namespace

point_light::point_light(const position& where, const colour& c, const colour& ambient)
    : light(c, ambient), position_(where) {}

void point_light::place_samples(ray_state& state, const shading_point& p) const {
  const vector towards = position_ - p.point;
  const double apparent = radius_ * std::cos(std::asin(radius_ / length(towards)));
  // U and V span the disc facing the shaded point.
  const direction axis = normalise(towards);
  const vector helper = std::fabs(axis.z) < 0.9 ? vector(0.0, 0.0, 1.0) : vector(1.0, 0.0, 0.0);
  const direction u = normalise(cross(helper, axis));
  const vector v = cross(axis, u);

  // Three rings of six points (outer, staggered middle, inner), then the centre.
  rand_stream& random = state.context->random;
  auto& samples = state.context->light_samples;
  int m = 0;
  for (int ring = 0; ring < 3; ++ring) {
    const double distance = ring == 0 ? apparent : (ring == 1 ? (std::sqrt(3.0) / 2) * apparent : 0.5 * apparent);
    for (int k = 0; k < 6; ++k) {
      const double a = ring == 1 ? (pi / 6) * (2 * k + 1) : pi * (2 * k) / 6;
      const double c = std::cos(a) + jitter(random);
      const double s = std::sin(a) + jitter(random);
      samples[m++] = position_ + distance * (c * u + s * v);
    }
  }
  samples[m] = position_;
}

void point_light::illuminate(ray_state& state, const shading_point& p) const {
  if (counted(state, radius_ > 0.0 ? area_draws : 0)) return;
  light_terms total;
  if (radius_ > 0.0) {
    place_samples(state, p);  // all positions first: the jitter draws come before any shadow ray
    const auto& samples = state.context->light_samples;
    for (const position& s : samples) {
      const light_terms t = sample_terms(state, p, s, colour_, attenuation_);
      total.diffuse += t.diffuse;
      total.specular += t.specular;
    }
    const double count = static_cast<double>(samples.size());
    total.diffuse = total.diffuse / count;
    total.specular = total.specular / count;
  } else {
    total = sample_terms(state, p, position_, colour_, attenuation_);
  }
  state.diffuse_sum = total.diffuse;
  state.specular_sum = total.specular;
  state.ambient_sum = ambient_;
}

spot_light::spot_light(const position& where, const colour& c, const colour& ambient, const direction& aim,
                       double outer, double inner)
    : point_light(where, c, ambient), aim_(aim), outer_angle_(outer), inner_angle_(inner) {}

void spot_light::illuminate(ray_state& state, const shading_point& p) const {
  const double angle = std::acos(dot(aim_, normalise(p.point - position_))) * degrees_per_radian;
  if (!(angle < outer_angle_)) {  // outside the cone (or no angle at all): nothing
    state.diffuse_sum = colour{};
    state.specular_sum = colour{};
    state.ambient_sum = colour{};
    return;
  }
  const double factor = angle <= inner_angle_ ? 1.0 : (outer_angle_ - angle) / (outer_angle_ - inner_angle_);
  point_light::illuminate(state, p);
  state.diffuse_sum = state.diffuse_sum * factor;
  state.specular_sum = state.specular_sum * factor;
  state.ambient_sum = state.ambient_sum * factor;
}

directional_light::directional_light(const direction& travel, const colour& c, const colour& ambient)
    : light(c, ambient), direction_(travel) {}

void directional_light::illuminate(ray_state& state, const shading_point& p) const {
  if (counted(state, 0)) return;
  // Not attenuated: the light has no distance to the point.
  const direction l = direction::as_given(-direction_);
  ray_state shadow = spawned_state(state, transmission_ray, p.point, l, colour{1.0, 1.0, 1.0}, state.medium);
  shadow.target_at_infinity = true;
  const light_terms t = terms(p, l, colour_ * state.scene->transmit(shadow));
  state.diffuse_sum = t.diffuse;
  state.specular_sum = t.specular;
  state.ambient_sum = ambient_;
}

}  // namespace sciray
