// vector_paths_test.cpp - whole renders on every vector path this processor
// has give the picture and the progress lines (whose counts count every
// intersection test) of the plain path, byte for byte: the examples in
// their own modes and without anti-aliasing, and a molecular scene of
// balls, sticks and a mesh under a sun, a lamp and a spot light, with
// shadows and a mirror.
#include <gtest/gtest.h>

#include <random>
#include <sstream>
#include <string>

#include "memory_render.h"
#include "support/simd_paths.h"

namespace sciray {
namespace {

using namespace sciray::testing;

// Balls joined by sticks over a wavy mirror sheet of triangles.
std::string molecular_scene() {
  std::ostringstream s;
  s << "render_002 { width 120 height 90 antialias false depth 3 shadows true highlights true\n"
       "  line_radius 0.05 symbol_radius 0.12 atmosphere_len 0 }\n"
       "viewing_001 { viewpoint 0.5 -6 3 lookat 0 0 0 up_vector_1 0 0 1 up_vector_2 0 1 0 extents 4 3 }\n"
       "lighting_001 3 { ambient 0.1 0.1 0.1\n"
       "  light 0 { on true local false location 1 -2 3 color 0.7 0.7 0.7 }\n"
       "  light 1 { on true local true location -3 -3 4 color 0.4 0.4 0.3 }\n"
       "  light 2 { on true local true location 2 -2 5 color 0.5 0.5 0.5 spotlight true\n"
       "    spotlight_direction -0.3 0.3 -0.9 spotlight_angles 30 20 } }\n"
       "colormap_002 3 { index 0 { color 0.9 0.2 0.2 specular 0.4 0.4 0.4 shininess 30 }\n"
       "  index 1 { color 0.2 0.4 0.9 specular 0.4 0.4 0.4 shininess 30 }\n"
       "  index 2 { color 0.3 0.3 0.3 reflective 0.5 0.5 0.5 } }\n"
       "gr_geometry_001 {\n";
  std::mt19937 gen(3);
  std::uniform_real_distribution<double> coord(-1.5, 1.5);
  double x = 0, y = 0, z = 0.5;
  for (int i = 0; i < 400; ++i) {
    const double nx = i % 20 ? x + coord(gen) * 0.15 : coord(gen), ny = i % 20 ? y + coord(gen) * 0.15 : coord(gen);
    const double nz = i % 20 ? z + coord(gen) * 0.1 : 0.5 + coord(gen) * 0.3;
    s << "gr_symbol { index " << i % 2 << " type gr_disk xyz " << nx << ' ' << ny << ' ' << nz << " }\n";
    if (i % 20) s << "gr_lines 2 { index 1 xyz " << x << ' ' << y << ' ' << z << ' ' << nx << ' ' << ny << ' ' << nz << " }\n";
    x = nx, y = ny, z = nz;
  }
  const auto height = [](double u, double v) { return -0.6 + 0.1 * std::sin(3 * u) * std::cos(2 * v); };
  for (int i = 0; i < 16; ++i)
    for (int j = 0; j < 16; ++j) {
      const double u = -2 + i * 0.25, v = -2 + j * 0.25, w = 0.25;
      s << "gr_poly_fill 4 { index 2 xyz " << u << ' ' << v << ' ' << height(u, v) << ' ' << u + w << ' ' << v << ' '
        << height(u + w, v) << ' ' << u + w << ' ' << v + w << ' ' << height(u + w, v + w) << ' ' << u << ' ' << v + w
        << ' ' << height(u, v + w) << " }\n";
    }
  s << "}\n";
  return s.str();
}

TEST(vector_paths, render_what_the_plain_path_renders) {
  const std::string small = " render_002 { width 64 height 48 }";
  const std::vector<std::string> scenes = {
      molecular_scene(),
      example_with("demo", small),
      example_with("demo", small + " render_002 { antialias false }"),
      example_with("molecule", small + " render_002 { antialias false }"),  // an area light and a spot light
      example_with("weather", small + " render_002 { antialias false }"),
      example_with("surface_bands", small + " render_002 { antialias false }"),
      example_with("glass", " render_002 { width 32 height 24 antialias false }"),
      example_with("preview", small),
  };
  for (std::size_t k = 0; k < scenes.size(); ++k) {
    memory_output plain;
    {
      const forced_path forced(simd_path::plain);
      render_request request;
      request.threads = 1;
      render_text(scenes[k], request, plain);
    }
    ASSERT_GT(plain.rows.size(), 0u);
    for (const simd_path path : paths_here()) {
      if (path == simd_path::plain) continue;
      const forced_path forced(path);
      memory_output out;
      render_request request;
      request.threads = 2;
      render_text(scenes[k], request, out);
      EXPECT_EQ(out.text, plain.text) << "scene " << k << " on " << simd_path_name(path);
      EXPECT_TRUE(out.rows == plain.rows) << "scene " << k << " on " << simd_path_name(path);
    }
  }
}

}  // namespace
}  // namespace sciray
