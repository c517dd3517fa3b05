// PLACEHOLDER: replaced by the real implementation.
#include "geometry/plane.h"
namespace sciray {
plane::plane() : offset_(0) {}
bool plane::plane_root(const ray&, double&) const { return false; }
bool plane::intersect(const ray&, hit_record&, render_context&) const { return false; }
colour plane::shade(ray_state&) const { return {}; }
colour plane::shadow_filter(ray_state&) const { return {}; }
}
