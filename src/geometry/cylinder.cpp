// cylinder.cpp - the tube's bounds, its axis frame, its reference test and
// the same test two tubes at a time, and the normal and value of a hit.
#include "geometry/cylinder.h"

#include <cmath>
#include <initializer_list>
#include <limits>

#include "geometry/cylinder_lanes.h"
#include "geometry/pair_roots.h"

namespace sciray {

namespace {

// What the tests read of a tube.
struct tube {
  position start;
  direction axis;  // unit vector from start towards the end
  double length;   // start to end; not a number for a tube that is never hit
  double radius_squared;
};

tube tube_of(const cylinder& c) {
  const vector along = c.end - c.start;
  tube t{c.start, normalise(along), length(along), c.radius * c.radius};
  // Coincident ends or a zero radius: kept, never hit.
  if (t.length == 0.0 || c.radius == 0.0) t.length = std::numeric_limits<double>::quiet_NaN();
  return t;
}

}  // namespace

bounding_box cylinder::bounds() const { return bounding_box::cubes(start, end, radius); }

bool cylinder::intersect(const ray& r, double& distance) const {
  const tube c = tube_of(*this);
  // Work with the parts of origin and direction perpendicular to the axis.
  const vector o = r.origin - c.start;
  const vector d_perp = r.dir - dot(r.dir, c.axis) * c.axis;
  const vector o_perp = o - dot(o, c.axis) * c.axis;
  const double a = dot(d_perp, d_perp);
  if (a == 0.0) return false;
  const double b = dot(o_perp, d_perp);
  const double cc = dot(o_perp, o_perp) - c.radius_squared;
  const double disc = b * b - a * cc;
  if (disc < 0.0) return false;
  const double s = std::sqrt(disc);
  const double t1 = (-b - s) / a, t2 = (-b + s) / a;
  const double near = t1 < t2 ? t1 : t2, far = t1 < t2 ? t2 : t1;
  for (const double t : {near, far}) {
    if (!(t > self_hit_tolerance && t < distance)) continue;
    const double h = dot(o + t * r.dir, c.axis);
    if (h >= 0.0 && h <= c.length) {
      distance = t;
      return true;
    }
  }
  return false;
}

cylinder::set::set(shape_list<cylinder> read, const std::vector<std::uint32_t>& order) {
  columns_.reserve(order.size());
  values_.reserve(order.size());
  for (const std::uint32_t i : order) {
    const tube c = tube_of(read[i]);
    columns_.add({c.start.x, c.start.y, c.start.z, c.axis.x, c.axis.y, c.axis.z, c.length, c.radius_squared});
    values_.push_back({read[i].value_start, read[i].value_end});
  }
  columns_.pad();
}

bool cylinder::set::candidates(std::uint32_t first, std::uint32_t count, const ray& r, double* t) const {
  return pair_roots(*this, columns_, first, count, r, t);
}

void cylinder::set::surface(std::uint32_t i, const position& p, hit_record& hit) const {
  const position start(columns_.at(start_x, i), columns_.at(start_y, i), columns_.at(start_z, i));
  const direction axis(columns_.at(axis_x, i), columns_.at(axis_y, i), columns_.at(axis_z, i));
  const double h = dot(p - start, axis);
  const position foot = start + h * axis;
  hit.normal = normalise(p - foot);
  const double s = h / columns_.at(axis_length, i);
  hit.value = (1.0 - s) * values_[i].start + s * values_[i].end;
}

}  // namespace sciray
