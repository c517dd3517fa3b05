// PLACEHOLDER: replaced by the real implementation.
#include "math/matrix4.h"
namespace sciray {
bool invert(const matrix4&, matrix4&) { return false; }
}
