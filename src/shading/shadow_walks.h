// shadow_walks.h - what shadow rays share beneath a contour blend whose
// entries mix. A shadow ray that crosses such a surface goes on as one
// chain per entry, and every chain beyond the same crossing follows the
// same ray; the entries also shade the same point, each testing the same
// shadow rays. So while the blend is at work (a scope), each distinct
// shadow ray is walked once, and what comes back from beyond its hit is
// worked out once for every range of weights that the cut-offs on the way
// treat alike; a chain that comes again takes the result and counts the
// rays and tests it stands for.
#pragma once

#include <cstdint>
#include <vector>

#include "geometry/hit_record.h"
#include "math/ray.h"
#include "shading/weight_range.h"

namespace sciray {

class material;
struct ray_state;

class shadow_walks {
 public:
  // What the hit's material let through from beyond, for a range of weights.
  struct filter {
    weight_range weights;
    colour value;
    std::uint32_t rays, tests;  // of every chain that worked it out
  };
  // What makes two shadow rays the same, to the bit.
  struct ray_key {
    ray r;
    double max_distance = 0.0;
    position target;
    bool target_at_infinity = false;
  };
  // One shadow ray: its nearest hit, as the walk and the surface left it,
  // and what was worked out beyond it.
  struct crossing {
    ray_key key;
    bool found = false;
    hit_record hit;
    const material* mat = nullptr;  // of the hit primitive, or none
    std::uint32_t tests = 0;        // made by the walk
    std::vector<filter> filters;
  };

  // While a scope is open the scene stays as it is, and what one shadow
  // ray learns serves the same ray again. The outermost scope forgets what
  // earlier ones learnt. A scope made with `opens` false does nothing.
  class scope {
   public:
    scope(shadow_walks& walks, bool opens) : walks_(walks), opens_(opens) {
      if (opens_ && walks_.open_++ == 0) walks_.forget();
    }
    ~scope() {
      if (opens_) --walks_.open_;
    }
    scope(const scope&) = delete;
    scope& operator=(const scope&) = delete;

   private:
    shadow_walks& walks_;
    bool opens_;
  };
  bool open() const { return open_ > 0; }

  // The weights that the filter being worked out at the innermost shadow
  // ray hold for; the chains that go on beyond it narrow them. Null while
  // no filter is being worked out.
  weight_range* narrowing = nullptr;

  // A scope keeps at most this many shadow rays; those beyond are walked
  // and worked out without being kept.
  static constexpr std::size_t capacity = std::size_t{1} << 15;
  static constexpr std::size_t none = ~std::size_t{0};

  // The number of the shadow ray of `s` in this scope; `fresh` when it is
  // new, its walk still to be filled in (none when the scope is full). The
  // number stays while the scope is open.
  std::size_t find(const ray_state& s, bool& fresh);
  crossing& operator[](std::size_t number) { return crossings_[number]; }
  // What was let through beyond the shadow ray `number` for a range that
  // holds `weight`, or null.
  const filter* filter_for(std::size_t number, const colour& weight) const;
  // Keeps `f` for the shadow ray `number` (if it is kept itself).
  void keep(std::size_t number, const filter& f);

 private:
  // A place of the hash table: a number in `crossings_`, if kept in this scope.
  struct slot {
    std::uint64_t scope = 0;
    std::size_t hash = 0;
    std::size_t number = 0;
  };

  // Begins a new scope: everything kept counts as free.
  void forget() {
    ++scope_;
    used_ = 0;
  }
  // The slot of the ray `k` of hash `h`, or the free slot where it would go.
  slot& slot_of(const ray_key& k, std::size_t h);
  void grow();

  std::vector<crossing> crossings_;  // the first used_ are this scope's; the rest are kept for their room
  std::size_t used_ = 0;
  std::vector<slot> slots_;  // open addressing, never more than half taken
  std::uint64_t scope_ = 0;
  int open_ = 0;
};

}  // namespace sciray
