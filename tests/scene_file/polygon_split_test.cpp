// polygon_split_test.cpp - the halving split of polygons into triangles, and
// the corner normals, contour values and contour table of those triangles.
#include "scene_file/polygon_split.h"

#include <cmath>
#include <string>

#include "scene_text.h"

namespace sciray::testing {
namespace {

using split = std::vector<corner_indices>;

// Quad: cut at corner 2 into (0 1 2) and (2 3 0). Pentagon: (0 1 2), then
// (2 3 4 0) cut at corner 4. Hexagon: the quads (0 1 2 3) and (3 4 5 0).
const std::vector<std::pair<int, split>> shapes = {
    {4, {{0, 1, 2}, {2, 3, 0}}},
    {5, {{0, 1, 2}, {2, 3, 4}, {4, 0, 2}}},
    {6, {{0, 1, 2}, {2, 3, 0}, {3, 4, 5}, {5, 0, 3}}},
};

// One contour polygon of `n` corners and `style`, regular; corner i has the
// normal along (i, 1, 2) and the value 10 i.
std::string polygon_scene(int n, const std::string& style) {
  std::string xyz, norm, values;
  for (int i = 0; i < n; ++i) {
    const double angle = 2.0 * M_PI * i / n;
    xyz += " " + std::to_string(std::cos(angle)) + " " + std::to_string(std::sin(angle)) + " 0";
    norm += " " + std::to_string(i) + " 1 2";
    values += " " + std::to_string(10 * i);
  }
  return numbered_colormap(2) + "contour_table_001 2 { 0 0 1 1 }\ngr_geometry_001 { gr_poly_fill_cont " +
         std::to_string(n) + " { " + style + " xyz" + xyz + " norm" + norm + " values" + values + " } }\n";
}

TEST(polygon_split, halves_depth_first_into_triangles_that_carry_their_corner_data) {
  EXPECT_EQ(split_polygon(2), split{});
  EXPECT_EQ(split_polygon(-1), split{});
  EXPECT_EQ(split_polygon(3), (split{{0, 1, 2}}));
  EXPECT_EQ(split_polygon(128).size(), 126u);
  for (const auto& [n, expected] : shapes) {
    EXPECT_EQ(split_polygon(n), expected) << n;
    // The drawn triangles, in build order, carry their corners' normals and
    // values; no style draws lines; only the continuous style blends entries,
    // and the centroid style gives every corner the mean of all n values.
    for (const std::string style : {"", "style gr_contour_lines", "style gr_contour_bands",
                                    "style gr_contour_continuous", "style gr_contour_centroid"}) {
      SCOPED_TRACE(std::to_string(n) + " " + style);
      scene_from_text s(polygon_scene(n, style));
      const auto pieces = s.primitives();
      const triangle::set& triangles = s.geometry().shapes<triangle>();
      ASSERT_EQ(pieces.size(), expected.size());
      for (std::size_t t = 0; t < pieces.size(); ++t) {
        const auto* table = dynamic_cast<const contour_material*>(s.material_of(pieces[t]));
        ASSERT_TRUE(pieces[t].kind() == kind_of<triangle> && table != nullptr);
        EXPECT_EQ(table->continuous(), style == "style gr_contour_continuous");
        for (int k = 0; k < 3; ++k) {
          const int corner = expected[t][k];
          const std::uint32_t i = pieces[t].index();
          EXPECT_EQ(triangles.corner_normal(i, k), normalise(vector(corner, 1, 2))) << t << " " << k;
          EXPECT_EQ(triangles.corner_value(i, k),
                    style == "style gr_contour_centroid" ? 5.0 * (n - 1) : 10.0 * corner)
              << t << " " << k;
        }
      }
    }
  }
}

}  // namespace
}  // namespace sciray::testing
