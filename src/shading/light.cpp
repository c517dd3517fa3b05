// light.cpp - what each light adds at a shaded point: diffuse and specular
// terms of its (shadow-tested, attenuated) light, and its own ambient. An
// area light averages 19 jittered samples over its disc; a spotlight fades
// the point light out between its inner and outer cone.
#include "shading/light.h"

#include <cmath>

#include "shading/ray_state.h"
#include "shading/render_context.h"
#include "shading/tracer.h"

namespace sciray {

namespace {

constexpr double pi = 3.14159265358979323846;
constexpr double degrees_per_radian = 57.29577951308232;

// Diffuse and specular of light `lc` arriving along the unit vector `l`.
light_contribution terms(const shading_point& p, const direction& l, const colour& lc) {
  light_contribution t;
  double n = dot(p.normal, l);
  if (!(n > 0.0)) n = 0.0;
  t.diffuse = n * lc;
  const double s = dot(p.mirror, l);
  if (s > 0.0 && p.shininess > 0.0) t.specular = std::pow(s, p.shininess) * lc;
  return t;
}

// The terms of one light sample at `s`: shadow-tested and attenuated by distance.
light_contribution sample_terms(const ray_state& at, const shading_point& p, const position& s, const colour& c,
                                const vector& attenuation) {
  ray_state shadow = transmission_state(at, p.point, s, colour{1.0, 1.0, 1.0}, at.medium);
  const double d = shadow.max_distance;
  const double f = 1 / (attenuation.x + attenuation.y * d + attenuation.z * (d * d));
  const colour lc = f * c * at.tracer->transmit(shadow);
  return terms(p, shadow.r.dir, lc);
}

// Random offset in [-0.125, 0.125] for one coordinate of a disc point.
double jitter(rand_stream& random) { return (2.0 * random.next() / rand_max - 1) * 0.125; }

}  // namespace

point_light::point_light(const position& where, const colour& c, const colour& ambient)
    : light(c, ambient), position_(where) {}

std::optional<bounded_ray> point_light::lone_shadow_ray(const position& p) const {
  if (radius_ > 0.0) return {};
  return ray_between(p, position_);
}

// Two draws per ring point of an area light.
int point_light::draws_at(const position&) const { return radius_ > 0.0 ? 36 : 0; }

void point_light::place_samples(const ray_state& at, const shading_point& p) const {
  const vector towards = position_ - p.point;
  const double apparent = radius_ * std::cos(std::asin(radius_ / length(towards)));
  // U and V span the disc facing the shaded point.
  const direction axis = normalise(towards);
  const vector helper = std::fabs(axis.z) < 0.9 ? vector(0.0, 0.0, 1.0) : vector(1.0, 0.0, 0.0);
  const direction u = normalise(cross(helper, axis));
  const vector v = cross(axis, u);

  // Three rings of six points (outer, staggered middle, inner), then the centre.
  rand_stream& random = at.context->random;
  auto& samples = at.context->light_samples;
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

light_contribution point_light::illuminate(const shading_point& p, const ray_state& at) const {
  if (!(radius_ > 0.0)) {
    light_contribution t = sample_terms(at, p, position_, colour_, attenuation_);
    t.ambient = ambient_;
    return t;
  }
  place_samples(at, p);  // all positions first: the jitter draws come before any shadow ray
  const auto& samples = at.context->light_samples;
  light_contribution total;
  for (const position& s : samples) {
    const light_contribution t = sample_terms(at, p, s, colour_, attenuation_);
    total.diffuse += t.diffuse;
    total.specular += t.specular;
  }
  const double count = static_cast<double>(samples.size());
  return {total.diffuse / count, total.specular / count, ambient_};
}

spot_light::spot_light(const position& where, const colour& c, const colour& ambient, const direction& aim,
                       double outer, double inner)
    : point_light(where, c, ambient), aim_(aim), outer_angle_(outer), inner_angle_(inner) {}

bool spot_light::in_cone(const position& p, double& share) const {
  const double angle = std::acos(dot(aim_, normalise(p - position_))) * degrees_per_radian;
  if (!(angle < outer_angle_)) return false;  // outside the cone (or no angle at all)
  share = angle <= inner_angle_ ? 1.0 : (outer_angle_ - angle) / (outer_angle_ - inner_angle_);
  return true;
}

light_contribution spot_light::illuminate(const shading_point& p, const ray_state& at) const {
  double share;
  if (!in_cone(p.point, share)) return {};
  const light_contribution lit = point_light::illuminate(p, at);
  return {lit.diffuse * share, lit.specular * share, lit.ambient * share};
}

std::optional<bounded_ray> spot_light::lone_shadow_ray(const position& p) const {
  double share;
  return in_cone(p, share) ? point_light::lone_shadow_ray(p) : std::nullopt;
}

int spot_light::draws_at(const position& p) const {
  double share;
  return in_cone(p, share) ? point_light::draws_at(p) : 0;
}

directional_light::directional_light(const direction& travel, const colour& c, const colour& ambient)
    : light(c, ambient), direction_(travel), towards_(position(), direction::as_given(-travel)) {}

std::optional<bounded_ray> directional_light::lone_shadow_ray(const position& p) const {
  bounded_ray shadow{towards_};
  shadow.r.origin = p;
  return shadow;
}

light_contribution directional_light::illuminate(const shading_point& p, const ray_state& at) const {
  // Not attenuated: the light has no distance to the point.
  ray_state shadow = spawned_state(at, transmission_ray, lone_shadow_ray(p.point)->r, colour{1.0, 1.0, 1.0}, at.medium);
  shadow.target_at_infinity = true;
  light_contribution t = terms(p, towards_.dir, colour_ * at.tracer->transmit(shadow));
  t.ambient = ambient_;
  return t;
}

}  // namespace sciray
