// shape.h - what a kind of shape must provide to be held, bounded and traced.
// sphere.h, cylinder.h and triangle.h each provide it; shape_kinds.h lists
// them. A kind is two types: the shape as the scene reader gives it (say
// `sphere`), and all shapes of that kind in a scene, laid out for the walk
// (`sphere::set`):
//
//   list_of<S>       holds the shapes as read until the hierarchy is built:
//                    add(s), size(), bounds(i) by the number read, and
//                    close() once the last is added; shape_list<S> unless
//                    S names its own as S::list
//   s.intersect(r, distance)
//                    the reference test: plain scalar code taking the root
//                    the shape admits (above 1e-6 and below `distance`, or
//                    for kinds that take equal roots not beyond it) into
//                    `distance`
//   S::set           made from the list and the leaf order (the numbers read,
//                    leaf by leaf): each quantity the fast test reads in one
//                    array (shape_columns), in leaf order, and beside them
//                    the data of the surface
//   set.candidates(first, count, r, t)
//                    the fast test of shapes first .. first + count - 1 (at
//                    most leaf_size): the root each would take under an
//                    unlimited distance, or not a number; false if none. It
//                    does the reference test's operations in its order, so
//                    that taking the roots against the distance in list
//                    order leaves exactly what the reference leaves
//   fast_root<L>(set, rays, at)
//                    in S_lanes.h: that test's arithmetic written once for
//                    any lane type L, the shape's quantities at(column) in
//                    each lane; candidates uses it two shapes at a time, the
//                    walk of a group of rays one shape against all its rays
//   set.surface(i, p, hit)
//                    the unit normal (and, for shapes with data values, the
//                    value) at the hit point p of shape i
//   S::set::takes_equal_roots
//                    whether a root equal to the distance is taken (the
//                    last of equal roots wins) or not (the first wins)
#pragma once

#include <concepts>
#include <cstdint>
#include <vector>

#include "geometry/hit_record.h"
#include "geometry/shape_columns.h"
#include "math/bounding_box.h"
#include "math/ray.h"

namespace sciray {

// The most primitives a leaf of the bounding hierarchy holds, and the most
// a fast test takes at once (a larger leaf is tested in pieces).
inline constexpr std::uint32_t leaf_size = 8;

// The list of a kind whose shapes are kept whole until the build.
template <typename S>
class shape_list {
 public:
  void add(const S& shape) { shapes_.push_back(shape); }
  std::size_t size() const { return shapes_.size(); }
  bounding_box bounds(std::uint32_t i) const { return shapes_[i].bounds(); }
  const S& operator[](std::uint32_t i) const { return shapes_[i]; }
  void close() {}

 private:
  std::vector<S> shapes_;
};

namespace shape_detail {
template <typename S>
struct list {
  using type = shape_list<S>;
};
template <typename S>
  requires requires { typename S::list; }
struct list<S> {
  using type = typename S::list;
};
}  // namespace shape_detail

template <typename S>
using list_of = typename shape_detail::list<S>::type;
template <typename S>
using set_of = typename S::set;

template <typename S>
concept shape_kind = requires(const S& shape, list_of<S>& list, const set_of<S>& set, const ray& r,
                              double& distance, std::uint32_t i, double* t, const position& p, hit_record& hit) {
  { shape.intersect(r, distance) } -> std::same_as<bool>;
  list.add(shape);
  { list.size() } -> std::same_as<std::size_t>;
  { list.bounds(i) } -> std::same_as<bounding_box>;
  list.close();
  { set.candidates(i, i, r, t) } -> std::same_as<bool>;
  set.surface(i, p, hit);
  { set_of<S>::takes_equal_roots } -> std::convertible_to<bool>;
};

}  // namespace sciray
