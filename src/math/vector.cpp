// vector.cpp - diagnostic printing of the vector types.
#include "math/vector.h"

#include <ostream>

namespace sciray {

namespace {
std::ostream& print(std::ostream& out, const char* name, const vector& v) {
  return out << name << '(' << v.x << ", " << v.y << ", " << v.z << ')';
}
}  // namespace

std::ostream& operator<<(std::ostream& out, const vector& v) { return print(out, "vector", v); }
std::ostream& operator<<(std::ostream& out, const position& p) { return print(out, "position", p); }
std::ostream& operator<<(std::ostream& out, const direction& d) { return print(out, "direction", d); }

}  // namespace sciray
