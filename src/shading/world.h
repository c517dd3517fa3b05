// world.h - the scene root: everything a ray can meet, owned for the whole
// run. The scene reader adds the primitives, lights, colour maps and
// contour tables and sets the ambient light; the program run makes the sky
// and the atmosphere. The tracer (tracer.h) follows rays through it.
#pragma once

#include <memory>
#include <vector>

#include "environment/sky.h"
#include "geometry/geometry_builder.h"
#include "geometry/scene_geometry.h"
#include "shading/contour_material.h"
#include "shading/light.h"
#include "shading/material.h"
#include "shading/material_table.h"

namespace sciray {

class world {
 public:
  world();
  ~world();
  world(const world&) = delete;
  world& operator=(const world&) = delete;

  // Where the scene reader puts the primitives.
  geometry_builder& builder() { return builder_; }
  void add_light(std::unique_ptr<light> l);
  // Tables and blends stay alive as long as the primitives that refer to them.
  material_table& new_material_table(int size);
  contour_material& new_contour_material(bool continuous);
  // A roughness object detached from its material lives on here.
  void retire(std::shared_ptr<roughness> r);

  std::size_t object_count() const { return builder_.size() + geometry_.size(); }
  // Builds the bounding hierarchy over the primitives added so far, with
  // leaves of at most `leaf_limit` of them; they are traced from then on.
  void build_hierarchy(std::uint32_t leaf_limit = leaf_size) { builder_.build(geometry_, leaf_limit); }
  const scene_geometry& geometry() const { return geometry_; }
  const std::vector<std::unique_ptr<light>>& lights() const { return lights_; }
  // Calls f(m) for every material of every colour map read.
  template <typename F>
  void for_each_material(F&& f) const {
    for (const auto& table : tables_) table->for_each(f);
  }
  // True when shading draws on the random stream (an area light).
  bool draws_random() const;

  colour ambient{0.0, 0.0, 0.0};       // added to the ambient light of every shaded point
  material atmosphere;                 // the medium of open space
  std::unique_ptr<colour_source> sky;  // none: rays that escape are black

 private:
  geometry_builder builder_;
  scene_geometry geometry_;
  std::vector<std::unique_ptr<light>> lights_;
  std::vector<std::unique_ptr<material_table>> tables_;
  std::vector<std::unique_ptr<contour_material>> contours_;
  std::vector<std::shared_ptr<roughness>> retired_;
};

}  // namespace sciray
