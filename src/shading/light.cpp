// PLACEHOLDER: replaced by the real implementation.
#include "shading/light.h"
namespace sciray {
point_light::point_light(const position& w, const colour& c, const colour& a) : light(c, a), position_(w) {}
void point_light::illuminate(ray_state&, const shading_point&) const {}
spot_light::spot_light(const position& w, const colour& c, const colour& a, const direction& aim, double o, double i)
    : point_light(w, c, a), aim_(aim), outer_angle_(o), inner_angle_(i) {}
void spot_light::illuminate(ray_state&, const shading_point&) const {}
directional_light::directional_light(const direction& t, const colour& c, const colour& a) : light(c, a), direction_(t) {}
void directional_light::illuminate(ray_state&, const shading_point&) const {}
}
