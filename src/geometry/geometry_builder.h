// geometry_builder.h - collects the primitives while the scene is read, each
// kind in its list, then builds the bounding hierarchy over them and lays
// them out for tracing in the order of its leaves.
#pragma once

#include <array>
#include <cstdint>
#include <unordered_map>
#include <vector>

#include "geometry/scene_geometry.h"

namespace sciray {

class geometry_builder : private box_source {
 public:
  // Adds a sphere, cylinder or triangle drawn with material `m`.
  template <typename S>
  void add(const S& shape, const material* m);

  std::size_t size() const { return added_.size(); }
  // The union of the boxes of all primitives, widened in the order added.
  const bounding_box& root_box() const { return root_box_; }

  // Builds the hierarchy with leaves of at most `leaf_limit` primitives and
  // moves everything into `geometry`, leaving the builder empty.
  void build(scene_geometry& geometry, std::uint32_t leaf_limit = leaf_size);

 private:
  using numbers = std::vector<std::uint32_t>;

  primitive_ref next_ref(std::uint32_t kind, std::size_t count) const;
  void added(primitive_ref p, const bounding_box& box, const material* m);
  void boxes(const std::uint32_t* objects, std::size_t count, solid_box* out) const override;
  void lay_out(std::array<numbers, kind_count> leaf_order, scene_geometry& g);

  std::vector<primitive_ref> added_;  // in the order added
  bounding_box root_box_;
  per_kind<list_of> lists_;
  std::array<numbers, kind_count> materials_;  // per kind in the order added, numbers in material_list_
  std::vector<const material*> material_list_;
  std::unordered_map<const material*, std::uint32_t> material_index_;
};

template <typename S>
void geometry_builder::add(const S& shape, const material* m) {
  list_of<S>& list = std::get<kind_of<S>>(lists_);
  const primitive_ref p = next_ref(kind_of<S>, list.size());
  list.add(shape);
  added(p, list.bounds(p.index()), m);
}

}  // namespace sciray
