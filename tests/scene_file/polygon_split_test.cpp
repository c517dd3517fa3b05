// polygon_split_test.cpp - the halving split of polygons into triangles.
#include "scene_file/polygon_split.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>

#include "geometry/triangle.h"
#include "scene_text.h"

namespace sciray {
namespace {

using split = std::vector<corner_indices>;

// Quad: cut at corner 2 into (0 1 2) and (2 3 0). Pentagon: (0 1 2), then
// (2 3 4 0) cut at corner 4. Hexagon: the quads (0 1 2 3) and (3 4 5 0).
const std::vector<std::pair<int, split>> shapes = {
    {4, {{0, 1, 2}, {2, 3, 0}}},
    {5, {{0, 1, 2}, {2, 3, 4}, {4, 0, 2}}},
    {6, {{0, 1, 2}, {2, 3, 0}, {3, 4, 5}, {5, 0, 3}}},
};

TEST(polygon_split, halves_depth_first) {
  EXPECT_EQ(split_polygon(2), split{});
  EXPECT_EQ(split_polygon(-1), split{});
  EXPECT_EQ(split_polygon(3), (split{{0, 1, 2}}));
  for (const auto& [n, expected] : shapes) EXPECT_EQ(split_polygon(n), expected) << n;
  EXPECT_EQ(split_polygon(128).size(), 126u);
}

// Corner i of these polygons has the normal along (i, 1, 2) and the value 10 i.
direction corner_normal(int i) { return normalise(vector(i, 1, 2)); }

// The triangles a scene holds, in build order.
std::vector<const triangle*> drawn_polygon(testing::scene_from_text& s) {
  std::vector<const triangle*> pieces;
  for (const primitive* p : s.primitives()) pieces.push_back(dynamic_cast<const triangle*>(p));
  return pieces;
}

// A regular polygon of `n` corners with normals and values.
std::string polygon_record(int n) {
  std::string xyz, norm, values;
  for (int i = 0; i < n; ++i) {
    const double angle = 2.0 * M_PI * i / n;
    xyz += " " + std::to_string(std::cos(angle)) + " " + std::to_string(std::sin(angle)) + " 0";
    norm += " " + std::to_string(i) + " 1 2";
    values += " " + std::to_string(10 * i);
  }
  return "gr_poly_fill_cont " + std::to_string(n) + " { style gr_contour_bands xyz" + xyz + " norm" + norm +
         " values" + values + " }\n";
}

TEST(polygon_split, triangles_carry_their_corners_normals_and_values) {
  for (const auto& [n, expected] : shapes) {
    SCOPED_TRACE(n);
    testing::scene_from_text s(testing::numbered_colormap(2) + "contour_table_001 2 { 0 0 1 1 }\n" +
                               "gr_geometry_001 {\n" + polygon_record(n) + "}\n");
    const auto pieces = drawn_polygon(s);
    ASSERT_EQ(pieces.size(), expected.size());
    for (std::size_t t = 0; t < pieces.size(); ++t) {
      ASSERT_NE(pieces[t], nullptr);
      for (int k = 0; k < 3; ++k) {
        const int corner = expected[t][k];
        EXPECT_EQ(pieces[t]->corner_normal(k), corner_normal(corner)) << t << " " << k;
        EXPECT_EQ(pieces[t]->corner_value(k), 10.0 * corner) << t << " " << k;
      }
    }
  }
}

TEST(polygon_split, without_norm_each_triangle_keeps_its_face_normal) {
  testing::scene_from_text s(testing::numbered_colormap(2) +
                             "gr_geometry_001 { gr_poly_fill 4 { index 1 xyz 0 0 0 1 0 0 1 1 0 0 1 0 } }");
  const auto pieces = drawn_polygon(s);
  ASSERT_EQ(pieces.size(), 2u);
  for (const triangle* t : pieces) {
    ASSERT_NE(t, nullptr);
    EXPECT_EQ(t->get_material()->diffuse, colour(1, 0, 0));
    for (int k = 0; k < 3; ++k) EXPECT_EQ(t->corner_normal(k), t->face_normal());
  }
}

}  // namespace
}  // namespace sciray
