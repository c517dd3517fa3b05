// contour_material.h - a material that blends colour-map materials by the
// data value at the hit: in steps (one entry takes all) or continuously
// (the two entries whose levels enclose the value are mixed).
#pragma once

#include <vector>

#include "shading/material.h"

namespace sciray {

// At most two entries ever carry weight; entries with weight exactly 0 are
// not listed, so they are never asked for their colour.
struct blend_weights {
  int count = 0;
  int index[2] = {0, 0};
  double weight[2] = {0.0, 0.0};
};

class blend_material : public material {
 public:
  struct entry {
    const material* mat;  // not owned
    double level;
  };

  void add(const material* m, double level) { entries_.push_back({m, level}); }
  const std::vector<entry>& entries() const { return entries_; }

  colour shade(ray_state& state) const override;
  colour transmittance(ray_state& state) const override;
  vector index_triple() const override;
  void apply_medium(double distance, colour& c) const override;

  virtual blend_weights weights(double value) const = 0;

 protected:
  std::vector<entry> entries_;
};

class contour_material : public blend_material {
 public:
  explicit contour_material(bool continuous) : continuous_(continuous) {}
  bool continuous() const { return continuous_; }
  blend_weights weights(double value) const override;

 private:
  bool continuous_;
};

}  // namespace sciray
