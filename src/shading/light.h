// light.h - the lights: point (an area light when it has a radius), spot and
// directional. Each answers what it adds to the diffuse, specular and ambient
// light of a shaded point, testing shadows through the tracer's transmit().
#pragma once

#include <optional>

#include "math/ray.h"

namespace sciray {

struct ray_state;

// What a light needs to know of the point being shaded.
struct shading_point {
  position point;
  direction normal;  // the shading normal (after roughness, facing the ray)
  vector mirror;     // mirror direction of the viewing ray, R = d - 2 (d.N) N
  double shininess;  // of the material whose shade is running
};

// What one light adds at a shaded point, or all lights together.
struct light_contribution {
  colour diffuse, specular, ambient;
};

class light {
 public:
  light(const colour& c, const colour& ambient) : colour_(c), ambient_(ambient) {}
  virtual ~light() = default;

  colour get_colour() const { return colour_; }
  colour get_ambient() const { return ambient_; }

  // What this light adds at `p`, the hit of the ray `at`; its shadow rays
  // start from there, in the medium of `at`.
  virtual light_contribution illuminate(const shading_point& p, const ray_state& at) const = 0;
  // The shadow ray that lighting the point `p` casts, when it casts one
  // ray that can be known before shading starts (it draws nothing at
  // random): the tracer walks such rays ahead, many together.
  virtual std::optional<bounded_ray> lone_shadow_ray(const position&) const { return {}; }
  // True when lighting a point may draw on the random stream.
  virtual bool draws_random() const { return false; }
  // The values that lighting the point `p` draws on the random stream.
  virtual int draws_at(const position&) const { return 0; }

 protected:
  colour colour_;
  colour ambient_;
};

class point_light : public light {
 public:
  point_light(const position& where, const colour& c, const colour& ambient);

  void set_attenuation(const vector& factors, double radius) { attenuation_ = factors; radius_ = radius; }
  light_contribution illuminate(const shading_point& p, const ray_state& at) const override;
  std::optional<bounded_ray> lone_shadow_ray(const position& p) const override;
  bool draws_random() const override { return radius_ > 0.0; }
  int draws_at(const position& p) const override;

  const position& location() const { return position_; }
  const vector& attenuation() const { return attenuation_; }
  double radius() const { return radius_; }

 protected:
  // Fills the context's sample buffer with the 19 jittered disc points seen from `p`.
  void place_samples(const ray_state& at, const shading_point& p) const;

  position position_;
  vector attenuation_{1.0, 0.0, 0.0};  // constant, linear, quadratic
  double radius_ = 0.0;                // above 0: an area light of 19 jittered samples
};

class spot_light : public point_light {
 public:
  // Angles in degrees: full intensity within `inner`, none from `outer` on.
  spot_light(const position& where, const colour& c, const colour& ambient, const direction& aim,
             double outer, double inner);
  light_contribution illuminate(const shading_point& p, const ray_state& at) const override;
  std::optional<bounded_ray> lone_shadow_ray(const position& p) const override;
  int draws_at(const position& p) const override;

  const direction& aim() const { return aim_; }
  double outer_angle() const { return outer_angle_; }
  double inner_angle() const { return inner_angle_; }

 private:
  // The share of the light that reaches `p`: 1 within the inner cone,
  // falling linearly to 0 at the outer one; false outside the outer cone.
  bool in_cone(const position& p, double& share) const;

  direction aim_;
  double outer_angle_, inner_angle_;
};

class directional_light : public light {
 public:
  // `travel` is the direction the light travels in.
  directional_light(const direction& travel, const colour& c, const colour& ambient);
  light_contribution illuminate(const shading_point& p, const ray_state& at) const override;
  std::optional<bounded_ray> lone_shadow_ray(const position& p) const override;

  const direction& travel() const { return direction_; }

 private:
  direction direction_;
  ray towards_;  // from the origin towards the light, with the reciprocal that every shadow ray shares
};

}  // namespace sciray
