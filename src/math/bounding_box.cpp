// PLACEHOLDER: replaced by the real implementation.
#include "math/bounding_box.h"
namespace sciray {
void interval::widen(double, double) {}
void bounding_box::widen(const bounding_box&) {}
void bounding_box::widen(const position&) {}
bool enter_box(const bounding_box&, const ray&, double, double&) { return false; }
}
