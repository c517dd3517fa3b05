// PLACEHOLDER: replaced by the real implementation.
#include "geometry/cylinder.h"
namespace sciray {
cylinder::cylinder(const position& s, const position& e, double r) : start_(s), end_(e), radius_(r), length_(0) {}
bool cylinder::intersect(const ray&, hit_record&, render_context&) const { return false; }
colour cylinder::shade(ray_state&) const { return {}; }
colour cylinder::shadow_filter(ray_state&) const { return {}; }
}
