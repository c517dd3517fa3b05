// triangle.cpp - the triangle's plane and inverted corner frame, its
// reference test and the same test two triangles at a time, the compact
// list of triangles as read, and the interpolated normal and value of a hit.
#include "geometry/triangle.h"

#include <limits>

#include "geometry/triangle_lanes.h"
#include "geometry/pair_roots.h"
#include "math/matrix4.h"

namespace sciray {

namespace {

// What the tests read of a triangle.
struct plane_frame {
  direction normal;   // e1 x e2 normalised
  double offset;      // normal . corner 0; not a number for a degenerate triangle
  double weight1[4];  // maps a point (x, y, z, 1) to the weight of corner 1
  double weight2[4];  // and of corner 2
};

plane_frame frame_of(const position& p0, const position& p1, const position& p2) {
  const vector e1 = p1 - p0, e2 = p2 - p0;
  plane_frame f;
  f.normal = normalise(cross(e1, e2));
  f.offset = dot(f.normal, p0);
  // The frame's columns are e1, e2, the normal and p0; the first two rows of
  // its inverse give the weights. Collinear or coincident corners have no
  // inverse: such a triangle is never hit.
  const matrix4 frame{{{e1.x, e2.x, f.normal.x, p0.x},
                       {e1.y, e2.y, f.normal.y, p0.y},
                       {e1.z, e2.z, f.normal.z, p0.z},
                       {0.0, 0.0, 0.0, 1.0}}};
  matrix4 to_local{};
  if (!invert(frame, to_local)) f.offset = std::numeric_limits<double>::quiet_NaN();
  for (int c = 0; c < 4; ++c) {
    f.weight1[c] = to_local[0][c];
    f.weight2[c] = to_local[1][c];
  }
  return f;
}

// The weight given by `row` to the point p.
double weight(const double row[4], const position& p) { return row[0] * p.x + row[1] * p.y + row[2] * p.z + row[3]; }

}  // namespace

bounding_box triangle::bounds() const { return bounding_box::corners(corner[0], corner[1], corner[2]); }

bool triangle::intersect(const ray& r, double& distance) const {
  const plane_frame f = frame_of(corner[0], corner[1], corner[2]);
  const double denom = dot(r.dir, f.normal);
  if (denom == 0.0) return false;
  const double t = (f.offset - dot(r.origin, f.normal)) / denom;
  if (!(t > self_hit_tolerance) || t > distance) return false;
  const position p = r.origin + t * r.dir;
  const double b1 = weight(f.weight1, p);
  if (b1 < 0.0 || b1 > 1.0) return false;
  const double b2 = weight(f.weight2, p);
  if (b2 < 0.0 || b2 > 1.0) return false;
  const double b0 = (1.0 - b1) - b2;
  if (b0 < 0.0 || b0 > 1.0) return false;
  distance = t;
  return true;
}

void triangle_list::add(const triangle& t) {
  corners_.push_back({points_.add(t.corner[0]), points_.add(t.corner[1]), points_.add(t.corner[2])});
  triangle_corners data;
  if (t.normals)
    for (int k = 0; k < 3; ++k) data.normal[k] = normals_.add((*t.normals)[k]);
  if (t.values) {
    data.values = static_cast<std::uint32_t>(values_.size());
    values_.push_back(*t.values);
  }
  corner_data_.push_back(data);
}

bounding_box triangle_list::bounds(std::uint32_t i) const {
  const std::vector<vector>& at = points_.points();
  return bounding_box::corners(at[corners_[i][0]], at[corners_[i][1]], at[corners_[i][2]]);
}

void triangle_list::close() {
  points_.close();
  normals_.close();
}

// The planes and weight rows are made here, in leaf order, from the corners.
triangle::set::set(triangle_list read, std::vector<std::uint32_t> order) {
  columns_.reserve(order.size());
  const std::vector<vector>& at = read.points_.points();
  for (const std::uint32_t i : order) {
    const auto& c = read.corners_[i];
    const plane_frame f = frame_of(at[c[0]], at[c[1]], at[c[2]]);
    columns_.add({f.normal.x, f.normal.y, f.normal.z, f.offset, f.weight1[0], f.weight1[1], f.weight1[2],
                  f.weight1[3], f.weight2[0], f.weight2[1], f.weight2[2], f.weight2[3]});
  }
  columns_.pad();
  source_ = std::move(order);
  corner_data_ = std::move(read.corner_data_);
  normals_ = std::move(read.normals_.points());
  values_ = std::move(read.values_);
}

direction triangle::set::corner_normal(std::uint32_t i, int k) const {
  const std::uint32_t n = corner_data_[source_[i]].normal[k];
  if (n != triangle_corners::face) return direction::as_given(normals_[n]);
  return direction(columns_.at(normal_x, i), columns_.at(normal_y, i), columns_.at(normal_z, i));
}

double triangle::set::corner_value(std::uint32_t i, int k) const {
  const std::uint32_t v = corner_data_[source_[i]].values;
  return v == triangle_corners::zeros ? 0.0 : values_[v][static_cast<std::size_t>(k)];
}

bool triangle::set::candidates(std::uint32_t first, std::uint32_t count, const ray& r, double* t) const {
  return pair_roots(*this, columns_, first, count, r, t);
}

void triangle::set::surface(std::uint32_t i, const position& p, hit_record& hit) const {
  // The weights as the test worked them out at the same point.
  const auto weight = [&](column row) {
    return columns_.at(row, i) * p.x + columns_.at(row + 1, i) * p.y + columns_.at(row + 2, i) * p.z +
           columns_.at(row + 3, i);
  };
  const double b1 = weight(weight1_x), b2 = weight(weight2_x);
  const double b0 = (1.0 - b1) - b2;
  hit.normal = normalise((b0 * corner_normal(i, 0) + b1 * corner_normal(i, 1)) + b2 * corner_normal(i, 2));
  hit.value = (b0 * corner_value(i, 0) + b1 * corner_value(i, 1)) + b2 * corner_value(i, 2);
}

}  // namespace sciray
