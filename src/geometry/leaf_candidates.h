// leaf_candidates.h - the primitive tests for the primitives of a leaf, two
// at a time.
//
// None of the three tests needs the current distance until its very end:
// a sphere takes its near root if above 1e-6, else its far one if above
// 1e-6; a cylinder the first of its two roots that lies above 1e-6 and
// within the segment; a triangle its plane root if above 1e-6 and inside
// the triangle; and each then only if that candidate lies below the
// distance (a triangle: not beyond it). So the candidates of a leaf's
// primitives are worked out first, two per SSE2 operation with the same
// operations in the same order as one test at a time, and then taken in
// list order against the shrinking distance, which gives exactly what one
// test after another gives, ties included.
#pragma once

#include <array>
#include <cstdint>

#include "geometry/shape_columns.h"
#include "math/ray.h"

namespace sciray {

// Sphere quantities: centre, squared radius.
enum sphere_column { sx, sy, sz, s_radius_squared };
// Cylinder quantities: start, unit axis, length, squared radius.
enum cylinder_column { cx, cy, cz, c_axis_x, c_axis_y, c_axis_z, c_length, c_radius_squared };
// Triangle quantities: unit normal, offset, the rows giving the weights of corners 1 and 2.
enum triangle_column { n_x, n_y, n_z, t_offset, w1_x, w1_y, w1_z, w1_1, w2_x, w2_y, w2_z, w2_1 };

using sphere_set = shape_columns<4>;
using cylinder_set = shape_columns<8>;
using triangle_set = shape_columns<12>;

// Candidates of `count` (at most 8) shapes from `first`: the root each
// would take, or not a number for none. False when there is none at all.
bool sphere_candidates(const sphere_set& s, std::uint32_t first, std::uint32_t count, const ray& r, double* t);
bool cylinder_candidates(const cylinder_set& c, std::uint32_t first, std::uint32_t count, const ray& r, double* t);
// A triangle's candidate comes with the weights of corners 1 and 2 there.
bool triangle_candidates(const triangle_set& tri, std::uint32_t first, std::uint32_t count, const ray& r, double* t,
                         double* b1, double* b2);

}  // namespace sciray
