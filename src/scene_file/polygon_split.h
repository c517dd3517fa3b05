// polygon_split.h - the split of a polygon into triangles, as corner indices.
#pragma once

#include <array>
#include <vector>

namespace sciray {

using corner_indices = std::array<int, 3>;

// Fewer than 3 corners give nothing and 3 give (0, 1, 2). A larger polygon
// of n corners is cut at corner m = n / 2 into (0 .. m) and (m .. n-1, 0),
// and each part is split again, the first part first. n corners always give
// n - 2 triangles.
std::vector<corner_indices> split_polygon(int corner_count);

}  // namespace sciray
