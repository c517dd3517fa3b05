// point_table.cpp - an open-addressing index over the points' bits.
#include "geometry/point_table.h"

#include <bit>
#include <cstring>
#include <new>

namespace sciray {

namespace {

std::uint64_t hash(const vector& p) {
  std::uint64_t h = 0x9e3779b97f4a7c15ull;
  for (const double c : {p.x, p.y, p.z}) {
    h ^= std::bit_cast<std::uint64_t>(c);
    h *= 0xff51afd7ed558ccdull;
    h ^= h >> 32;
  }
  return h;
}

bool same(const vector& a, const vector& b) { return std::memcmp(&a, &b, sizeof a) == 0; }

}  // namespace

std::uint32_t point_table::add(const vector& p) {
  if (2 * (points_.size() + 1) > slots_.size()) grow();
  const std::size_t mask = slots_.size() - 1;
  for (std::size_t i = hash(p) & mask;; i = (i + 1) & mask) {
    if (slots_[i] == 0) {
      // More points than a triangle could number cannot be held anyway.
      if (points_.size() >= 0xffffffffu) throw std::bad_alloc();
      points_.push_back(p);
      slots_[i] = static_cast<std::uint32_t>(points_.size());
      return slots_[i] - 1;
    }
    if (same(points_[slots_[i] - 1], p)) return slots_[i] - 1;
  }
}

void point_table::grow() {
  std::vector<std::uint32_t> bigger(slots_.empty() ? 1024 : 2 * slots_.size(), 0);
  const std::size_t mask = bigger.size() - 1;
  for (std::size_t n = 0; n < points_.size(); ++n) {
    std::size_t i = hash(points_[n]) & mask;
    while (bigger[i] != 0) i = (i + 1) & mask;
    bigger[i] = static_cast<std::uint32_t>(n + 1);
  }
  slots_.swap(bigger);
}

void point_table::close() { std::vector<std::uint32_t>().swap(slots_); }

}  // namespace sciray
