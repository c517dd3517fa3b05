// PLACEHOLDER: replaced by the real implementation.
#include "geometry/triangle.h"
namespace sciray {
triangle::triangle(const position&, const position&, const position&) {}
void triangle::set_corner_normals(const direction&, const direction&, const direction&) {}
void triangle::set_corner_values(double, double, double) {}
bool triangle::intersect(const ray&, hit_record&, render_context&) const { return false; }
colour triangle::shade(ray_state&) const { return {}; }
colour triangle::shadow_filter(ray_state&) const { return {}; }
}
