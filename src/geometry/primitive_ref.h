// primitive_ref.h - names one primitive of the scene: the number of its
// kind (its place in the table of shape_kinds.h), and its place among the
// primitives of that kind.
#pragma once

#include <cstdint>

namespace sciray {

class primitive_ref {
 public:
  // Room for four kinds; shape_kinds.h checks that its table fits.
  static constexpr unsigned kind_bits = 2;
  static constexpr unsigned index_bits = 32 - kind_bits;
  // Each kind numbers its primitives below this (all bits set means none).
  static constexpr std::uint32_t index_limit = (std::uint32_t{1} << index_bits) - 1;

  constexpr primitive_ref() = default;  // no primitive
  constexpr primitive_ref(std::uint32_t kind, std::uint32_t index) : bits_(kind << index_bits | index) {}

  constexpr bool valid() const { return bits_ != none; }
  constexpr std::uint32_t kind() const { return bits_ >> index_bits; }
  constexpr std::uint32_t index() const { return bits_ & index_limit; }
  constexpr bool operator==(const primitive_ref&) const = default;

 private:
  static constexpr std::uint32_t none = ~std::uint32_t{0};
  std::uint32_t bits_ = none;
};

}  // namespace sciray
