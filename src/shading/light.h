// light.h - the lights: point (an area light when it has a radius), spot and
// directional. Each reports what it adds to the diffuse, specular and ambient
// sums of a shaded point, testing shadows through the world's transmit().
#pragma once

#include "math/vector.h"

namespace sciray {

struct ray_state;

// What a light needs to know of the point being shaded.
struct shading_point {
  position point;
  direction normal;  // the shading normal (after roughness, facing the ray)
  vector mirror;     // mirror direction of the viewing ray, R = d - 2 (d.N) N
  double shininess;  // of the material whose shade is running
};

class light {
 public:
  light(const colour& c, const colour& ambient) : colour_(c), ambient_(ambient) {}
  virtual ~light() = default;

  colour get_colour() const { return colour_; }
  colour get_ambient() const { return ambient_; }

  // Writes this light's diffuse, specular and ambient contributions at `p`
  // into the three sums of `state`.
  virtual void illuminate(ray_state& state, const shading_point& p) const = 0;
  // True when lighting a point draws on the random stream.
  virtual bool draws_random() const { return false; }

 protected:
  colour colour_;
  colour ambient_;
};

class point_light : public light {
 public:
  point_light(const position& where, const colour& c, const colour& ambient);

  void set_attenuation(const vector& factors, double radius) { attenuation_ = factors; radius_ = radius; }
  void illuminate(ray_state& state, const shading_point& p) const override;
  bool draws_random() const override { return radius_ > 0.0; }

  const position& location() const { return position_; }
  const vector& attenuation() const { return attenuation_; }
  double radius() const { return radius_; }

 protected:
  // Fills the context's sample buffer with the 19 jittered disc points seen from `p`.
  void place_samples(ray_state& state, const shading_point& p) const;

  position position_;
  vector attenuation_{1.0, 0.0, 0.0};  // constant, linear, quadratic
  double radius_ = 0.0;                // above 0: an area light of 19 jittered samples
};

class spot_light : public point_light {
 public:
  // Angles in degrees: full intensity within `inner`, none from `outer` on.
  spot_light(const position& where, const colour& c, const colour& ambient, const direction& aim,
             double outer, double inner);
  void illuminate(ray_state& state, const shading_point& p) const override;

  const direction& aim() const { return aim_; }
  double outer_angle() const { return outer_angle_; }
  double inner_angle() const { return inner_angle_; }

 private:
  direction aim_;
  double outer_angle_, inner_angle_;
};

class directional_light : public light {
 public:
  // `travel` is the direction the light travels in.
  directional_light(const direction& travel, const colour& c, const colour& ambient);
  void illuminate(ray_state& state, const shading_point& p) const override;

  const direction& travel() const { return direction_; }

 private:
  direction direction_;
};

}  // namespace sciray
