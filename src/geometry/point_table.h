// point_table.h - a list of distinct points or directions, each stored
// once: the corners (and corner normals) of a mesh are shared by several
// triangles, so a triangle keeps the numbers of its corners instead.
#pragma once

#include <cstdint>
#include <vector>

#include "math/vector.h"

namespace sciray {

class point_table {
 public:
  // The number of `p` in the list, which gains it if it is new. Points are
  // the same when their coordinates have the same bits.
  std::uint32_t add(const vector& p);
  const std::vector<vector>& points() const { return points_; }
  std::vector<vector>& points() { return points_; }
  // Frees the lookup once no more points will be added.
  void close();

 private:
  void grow();

  std::vector<vector> points_;
  std::vector<std::uint32_t> slots_;  // open addressing: point number + 1, or 0 for a free slot
};

}  // namespace sciray
