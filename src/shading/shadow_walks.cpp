// shadow_walks.cpp - the shadow rays of one scope, numbered as they come,
// found by their exact bits through a hash table whose slots of earlier
// scopes count as free.
#include "shading/shadow_walks.h"

#include <bit>

#include "shading/ray_state.h"

namespace sciray {

namespace {

std::uint64_t bits(double v) { return std::bit_cast<std::uint64_t>(v); }

// Equal to the bit: a zero of the other sign makes another ray.
bool same_bits(const vector& a, const vector& b) {
  return bits(a.x) == bits(b.x) && bits(a.y) == bits(b.y) && bits(a.z) == bits(b.z);
}

bool same_ray(const shadow_walks::ray_key& a, const shadow_walks::ray_key& b) {
  return same_bits(a.r.origin, b.r.origin) && same_bits(a.r.dir, b.r.dir) &&
         bits(a.max_distance) == bits(b.max_distance) && same_bits(a.target, b.target) &&
         a.target_at_infinity == b.target_at_infinity;
}

std::size_t hash_of(const shadow_walks::ray_key& k) {
  std::uint64_t h = 0;
  for (const double v : {k.r.origin.x, k.r.origin.y, k.r.origin.z, k.r.dir.x, k.r.dir.y, k.r.dir.z, k.max_distance}) {
    h = (h ^ bits(v)) * 0x9e3779b97f4a7c15u;
    h ^= h >> 29;
  }
  return static_cast<std::size_t>(h);
}

}  // namespace

shadow_walks::slot& shadow_walks::slot_of(const ray_key& k, std::size_t h) {
  const std::size_t mask = slots_.size() - 1;
  for (std::size_t i = h & mask;; i = (i + 1) & mask) {
    slot& s = slots_[i];
    if (s.scope != scope_ || (s.hash == h && same_ray(crossings_[s.number].key, k))) return s;
  }
}

std::size_t shadow_walks::find(const ray_state& s, bool& fresh) {
  if (2 * (used_ + 1) > slots_.size() && used_ < capacity) grow();
  const ray_key k{s.r, s.max_distance, s.target, s.target_at_infinity};
  const std::size_t h = hash_of(k);
  slot& place = slot_of(k, h);
  fresh = place.scope != scope_;
  if (!fresh) return place.number;
  if (used_ == capacity) return none;
  place = slot{scope_, h, used_};
  if (used_ == crossings_.size()) crossings_.emplace_back();
  crossing& c = crossings_[used_];
  c.key = k;
  c.filters.clear();
  return used_++;
}

const shadow_walks::filter* shadow_walks::filter_for(std::size_t number, const colour& weight) const {
  if (number == none) return nullptr;
  for (const filter& f : crossings_[number].filters) {
    if (f.weights.holds(weight)) return &f;
  }
  return nullptr;
}

void shadow_walks::keep(std::size_t number, const filter& f) {
  if (number != none) crossings_[number].filters.push_back(f);
}

void shadow_walks::grow() {
  slots_.assign(slots_.empty() ? 64 : 2 * slots_.size(), slot{});
  for (std::size_t n = 0; n < used_; ++n) {
    const std::size_t h = hash_of(crossings_[n].key);
    slot_of(crossings_[n].key, h) = slot{scope_, h, n};
  }
}

}  // namespace sciray
