// vector.h - the small value types all geometry is written in: vector,
// position, direction, and colour (a vector of red, green, blue).
#pragma once

#include <cmath>
#include <iosfwd>

namespace sciray {

struct vector {
  double x = 0.0, y = 0.0, z = 0.0;

  constexpr vector() = default;
  constexpr vector(double x_, double y_, double z_) : x(x_), y(y_), z(z_) {}

  // Channel access for per-channel loops (0 = x/red, 1 = y/green, 2 = z/blue).
  constexpr double operator[](int i) const { return i == 0 ? x : (i == 1 ? y : z); }
  constexpr double& operator[](int i) { return i == 0 ? x : (i == 1 ? y : z); }

  vector& operator+=(const vector& b) { x += b.x; y += b.y; z += b.z; return *this; }
  vector& operator-=(const vector& b) { x -= b.x; y -= b.y; z -= b.z; return *this; }
  vector& operator*=(const vector& b) { x *= b.x; y *= b.y; z *= b.z; return *this; }
  vector& operator*=(double s) { x *= s; y *= s; z *= s; return *this; }
};

// A colour is held as a vector of red, green and blue.
using colour = vector;

// A point in world coordinates.
struct position : vector {
  using vector::vector;
  constexpr position() = default;
  constexpr position(const vector& v) : vector(v) {}
};

// A unit vector. Made by normalise(); constant axes may be spelled out, and
// the few directions that are used exactly as computed (not renormalised)
// are made with as_given().
struct direction : vector {
  constexpr direction() : vector(1.0, 0.0, 0.0) {}
  constexpr direction(double x_, double y_, double z_) : vector(x_, y_, z_) {}
  static constexpr direction as_given(const vector& v) { return direction(v.x, v.y, v.z); }
};

constexpr vector operator+(const vector& a, const vector& b) { return {a.x + b.x, a.y + b.y, a.z + b.z}; }
constexpr vector operator-(const vector& a, const vector& b) { return {a.x - b.x, a.y - b.y, a.z - b.z}; }
constexpr vector operator-(const vector& a) { return {-a.x, -a.y, -a.z}; }
constexpr vector operator*(double s, const vector& a) { return {s * a.x, s * a.y, s * a.z}; }
constexpr vector operator*(const vector& a, double s) { return {a.x * s, a.y * s, a.z * s}; }
constexpr vector operator/(const vector& a, double s) { return {a.x / s, a.y / s, a.z / s}; }
// Component-wise product (colour times colour, weight times colour).
constexpr vector operator*(const vector& a, const vector& b) { return {a.x * b.x, a.y * b.y, a.z * b.z}; }
constexpr bool operator==(const vector& a, const vector& b) { return a.x == b.x && a.y == b.y && a.z == b.z; }

constexpr double dot(const vector& a, const vector& b) { return a.x * b.x + a.y * b.y + a.z * b.z; }

constexpr vector cross(const vector& a, const vector& b) {
  return {a.y * b.z - b.y * a.z, a.z * b.x - b.z * a.x, a.x * b.y - b.x * a.y};
}

// Summed z first; the order is part of the picture's exact values.
inline double length(const vector& a) { return std::sqrt(a.z * a.z + a.y * a.y + a.x * a.x); }

// A zero-length vector normalises to (1, 0, 0) instead of failing.
inline direction normalise(const vector& a) {
  const double len = length(a);
  if (len == 0.0) return direction(1.0, 0.0, 0.0);
  return direction(a.x / len, a.y / len, a.z / len);
}

constexpr bool is_black(const colour& c) { return c.x == 0.0 && c.y == 0.0 && c.z == 0.0; }

// Clamping used by the driver and the readers.
constexpr double clamp_below_0(double v) { return v < 0.0 ? 0.0 : v; }
constexpr double clamp_above_1(double v) { return v > 1.0 ? 1.0 : v; }
constexpr int clamp_int(int v, int lo, int hi) { return v < lo ? lo : (v > hi ? hi : v); }

// Diagnostic printing: "vector(x, y, z)", "position(...)", "direction(...)".
std::ostream& operator<<(std::ostream& out, const vector& v);
std::ostream& operator<<(std::ostream& out, const position& p);
std::ostream& operator<<(std::ostream& out, const direction& d);

}  // namespace sciray
