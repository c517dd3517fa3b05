// primitive_ref.h - names one primitive of the scene: its kind, and its
// place among the primitives of that kind.
#pragma once

#include <cstdint>

namespace sciray {

enum class shape_kind : std::uint32_t { sphere = 0, cylinder = 1, triangle = 2 };

class primitive_ref {
 public:
  // Each kind numbers its primitives below this.
  static constexpr std::uint32_t index_limit = std::uint32_t{1} << 30;

  constexpr primitive_ref() = default;  // no primitive
  constexpr primitive_ref(shape_kind kind, std::uint32_t index)
      : bits_(static_cast<std::uint32_t>(kind) << 30 | index) {}

  constexpr bool valid() const { return bits_ != none; }
  constexpr shape_kind kind() const { return static_cast<shape_kind>(bits_ >> 30); }
  constexpr std::uint32_t index() const { return bits_ & (index_limit - 1); }
  constexpr bool operator==(const primitive_ref&) const = default;

 private:
  static constexpr std::uint32_t none = ~std::uint32_t{0};
  std::uint32_t bits_ = none;
};

}  // namespace sciray
