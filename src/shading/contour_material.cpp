// contour_material.cpp - the blend of colour-map materials by data value:
// colours and filters are weighted sums over the entries that
// carry weight; the medium and the indices are those of the first entry.
#include "shading/contour_material.h"

#include "shading/ray_state.h"
#include "shading/render_context.h"

namespace sciray {

namespace {

// Sum over the weighted entries of what `of` gives for each entry's
// material at the hit of `state`. Entries that mix shade the same point
// and send light on along the same rays, so their shadow rays share what
// they find.
template <typename T, typename Of>
T weighted_sum(const blend_material& blend, const ray_state& state, Of of) {
  const blend_weights w = blend.weights(state.hit.value);
  const shadow_walks::scope mixing(state.context->walks, w.count > 1);
  T sum{};
  for (int i = 0; i < w.count; ++i) sum = sum + w.weight[i] * of(*blend.entries()[w.index[i]].mat);
  return sum;
}

}  // namespace

colour blend_material::shade(ray_state& state) const {
  return weighted_sum<colour>(*this, state, [&](const material& m) { return m.shade(state); });
}

colour blend_material::transmittance(ray_state& state) const {
  return weighted_sum<colour>(*this, state, [&](const material& m) { return m.transmittance(state); });
}

vector blend_material::index_triple() const {
  return entries_.empty() ? vector{} : entries_[0].mat->index_triple();
}

void blend_material::apply_medium(double distance, colour& c) const {
  if (!entries_.empty()) entries_[0].mat->apply_medium(distance, c);
}

blend_weights contour_material::weights(double x) const {
  blend_weights w;
  const int n = static_cast<int>(entries_.size());
  // Records one weight; a weight of exactly 0 is left out.
  const auto put = [&w](int index, double weight) {
    if (weight == 0.0) return;
    w.index[w.count] = index;
    w.weight[w.count] = weight;
    ++w.count;
  };
  if (n == 0) return w;
  if (n == 1 || x < entries_[0].level) {
    put(0, 1.0);
    return w;
  }
  if (x > entries_[n - 2].level) {  // the last entry's own level is never compared
    put(n - 1, 1.0);
    return w;
  }
  int k = 0;
  while (k < n - 2 && !(x <= entries_[k + 1].level)) ++k;
  if (!continuous_) {
    put(k + 1, 1.0);
    return w;
  }
  const double lower = (entries_[k + 1].level - x) / (entries_[k + 1].level - entries_[k].level);
  put(k, lower);
  put(k + 1, 1 - lower);
  return w;
}

}  // namespace sciray
