// PLACEHOLDER: replaced by the real implementation.
#include "math/bounding_hierarchy.h"
#include "geometry/primitive.h"
namespace sciray {
void bounding_hierarchy::add(const primitive* p) { pending_.push_back(p); }
void bounding_hierarchy::build(int) {}
bool bounding_hierarchy::intersect(const ray& r, hit_record& hit, render_context& c) const {
  bool found = false;
  for (const primitive* p : pending_) found = p->intersect(r, hit, c) || found;
  return found;
}
}
