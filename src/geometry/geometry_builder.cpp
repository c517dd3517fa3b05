// geometry_builder.cpp - the primitives as read, and their layout in leaf
// order once the hierarchy is built.
#include "geometry/geometry_builder.h"

#include <new>
#include <utility>

namespace sciray {

namespace {

// `from` reordered so that entry i is from[order[i]]; `from` is freed.
std::vector<std::uint32_t> reordered(std::vector<std::uint32_t>& from, const std::vector<std::uint32_t>& order) {
  std::vector<std::uint32_t> to;
  to.reserve(order.size());
  for (const std::uint32_t i : order) to.push_back(from[i]);
  std::vector<std::uint32_t>().swap(from);
  return to;
}

}  // namespace

primitive_ref geometry_builder::next_ref(std::uint32_t kind, std::size_t count) const {
  // A scene this large could not be held anyway.
  if (count >= primitive_ref::index_limit) throw std::bad_alloc();
  return primitive_ref(kind, static_cast<std::uint32_t>(count));
}

void geometry_builder::added(primitive_ref p, const bounding_box& box, const material* m) {
  added_.push_back(p);
  root_box_.widen(box);
  const auto [at, fresh] = material_index_.try_emplace(m, static_cast<std::uint32_t>(material_list_.size()));
  if (fresh) material_list_.push_back(m);
  materials_[p.kind()].push_back(at->second);
}

void geometry_builder::boxes(const std::uint32_t* objects, std::size_t count, solid_box* out) const {
  for (std::size_t i = 0; i < count; ++i) {
    const primitive_ref p = added_[objects[i]];
    out[i] = with_kind(p.kind(), lists_, [&](const auto& list) { return list.bounds(p.index()); }).solid();
  }
}

void geometry_builder::build(scene_geometry& g, std::uint32_t leaf_limit) {
  for_each_kind([&](auto k) { std::get<k.value>(lists_).close(); });
  material_index_.clear();
  g.hierarchy_.build(static_cast<std::uint32_t>(added_.size()), *this, root_box_, leaf_limit);

  // Each kind's primitives (their numbers added) in the order the leaves list them.
  std::array<numbers, kind_count> leaf_order;
  numbers order = g.hierarchy_.take_order();
  g.items_.resize(order.size());
  for (std::size_t i = 0; i < order.size(); ++i) {
    const primitive_ref p = added_[order[i]];
    numbers& of_kind = leaf_order[p.kind()];
    g.items_[i] = primitive_ref(p.kind(), static_cast<std::uint32_t>(of_kind.size()));
    of_kind.push_back(p.index());
  }
  std::vector<primitive_ref>().swap(added_);
  numbers().swap(order);
  // A leaf of one kind is tagged with it and starts at its first primitive
  // in that kind's set; any other leaf is tagged mixed.
  g.hierarchy_.retag_leaves([&g](hierarchy_child& leaf) {
    leaf.tag = scene_geometry::mixed_leaf;
    if (leaf.count == 0) return;
    const primitive_ref head = g.items_[leaf.first];
    for (std::uint32_t i = leaf.first; i < leaf.first + leaf.count; ++i)
      if (g.items_[i].kind() != head.kind()) return;
    leaf.tag = head.kind();
    leaf.first = head.index();
  });
  lay_out(std::move(leaf_order), g);
  root_box_ = bounding_box{};
}

void geometry_builder::lay_out(std::array<numbers, kind_count> leaf_order, scene_geometry& g) {
  for_each_kind([&](auto k) {
    g.materials_[k.value] = reordered(materials_[k.value], leaf_order[k.value]);
    auto& list = std::get<k.value>(lists_);
    std::get<k.value>(g.sets_) = {std::exchange(list, {}), std::move(leaf_order[k.value])};
  });
  g.material_list_ = std::move(material_list_);
}

}  // namespace sciray
