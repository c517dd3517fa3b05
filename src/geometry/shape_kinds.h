// shape_kinds.h - the table of the kinds of shape. A kind's number is its
// place here; what the builder, the geometry and the walk do for each kind
// (hold its list, bound it, lay it out, test it, shade it), they do through
// this table. A new kind is a file pair like sphere.{h,cpp} and one more
// entry in per_kind.
#pragma once

#include <cstdint>
#include <tuple>
#include <type_traits>
#include <utility>

#include "geometry/cylinder.h"
#include "geometry/primitive_ref.h"
#include "geometry/sphere.h"
#include "geometry/triangle.h"

namespace sciray {

// One `Of<S>` per kind S, in the order of the kinds' numbers.
template <template <typename> class Of>
using per_kind = std::tuple<Of<sphere>, Of<cylinder>, Of<triangle>>;

using shape_kinds = per_kind<std::type_identity_t>;
inline constexpr std::uint32_t kind_count = std::tuple_size_v<shape_kinds>;
static_assert(kind_count <= std::uint32_t{1} << primitive_ref::kind_bits, "primitive_ref needs more kind bits");

namespace kind_detail {
template <typename S, typename Kinds>
struct number;
template <typename S, typename... Rest>
struct number<S, std::tuple<S, Rest...>> : std::integral_constant<std::uint32_t, 0> {};
template <typename S, typename First, typename... Rest>
struct number<S, std::tuple<First, Rest...>>
    : std::integral_constant<std::uint32_t, 1 + number<S, std::tuple<Rest...>>::value> {};

template <typename Kinds>
inline constexpr bool complete = false;
template <typename... S>
inline constexpr bool complete<std::tuple<S...>> = (shape_kind<S> && ...);
}  // namespace kind_detail

static_assert(kind_detail::complete<shape_kinds>, "every kind provides what shape.h lists");

// The number of kind S.
template <typename S>
inline constexpr std::uint32_t kind_of = kind_detail::number<S, shape_kinds>::value;

// Calls f(std::integral_constant<std::uint32_t, k>()) for every kind number
// k, in order.
template <typename F>
constexpr void for_each_kind(F&& f) {
  [&]<std::uint32_t... k>(std::integer_sequence<std::uint32_t, k...>) {
    (f(std::integral_constant<std::uint32_t, k>()), ...);
  }(std::make_integer_sequence<std::uint32_t, kind_count>());
}

// f(std::get<kind>(entries)): the entry of a per-kind tuple for the kind
// numbered `kind`, known only when the program runs. Inline, as a switch
// would be: the walk calls it for every leaf it enters.
template <std::uint32_t k = 0, typename Entries, typename F>
[[gnu::always_inline]] inline decltype(auto) with_kind(std::uint32_t kind, Entries& entries, F&& f) {
  if constexpr (k + 1 < kind_count) {
    if (kind != k) return with_kind<k + 1>(kind, entries, f);
  }
  return f(std::get<k>(entries));
}

}  // namespace sciray
