// PLACEHOLDER: replaced by the real implementation.
#include "geometry/sphere.h"
namespace sciray {
sphere::sphere(const position& c, double r) : center_(c), radius_(r) {}
bool sphere::intersect(const ray&, hit_record&, render_context&) const { return false; }
colour sphere::shade(ray_state&) const { return {}; }
colour sphere::shadow_filter(ray_state&) const { return {}; }
}
