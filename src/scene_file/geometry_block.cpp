// geometry_block.cpp - the geometry block: poly-lines, filled polygons,
// their contour-coloured forms and symbols. Each record is read on the
// stack and, at its closing brace, built into cylinders, triangles or a
// sphere that go straight into the world; a record that cannot be drawn
// (bad colour-map index, missing data) is dropped without a message.
#include <array>
#include <string>

#include "scene_file/block_readers.h"
#include "scene_file/polygon_split.h"
#include "shading/world.h"

namespace sciray {

namespace {

constexpr int max_vertices = 128;

enum record_kind { gr_lines, gr_lines_cont, gr_poly_fill, gr_poly_fill_cont, gr_symbol };

// What each record kind accepts besides "index" and "xyz".
struct record_form {
  const char* keyword;
  bool counted;  // a vertex count follows the keyword
  bool style, norm, values, type;
};

constexpr record_form forms[] = {
    {"gr_lines", true, false, false, false, false},
    {"gr_lines_cont", true, true, false, true, false},
    {"gr_poly_fill", true, false, true, false, false},
    {"gr_poly_fill_cont", true, true, true, true, false},
    {"gr_symbol", false, false, false, false, true},
};

enum contour_style { gr_contour_lines, gr_contour_centroid, gr_contour_bands, gr_contour_continuous };
constexpr int gr_null = 7;

struct geometry_record {
  record_kind kind = gr_lines;
  int vertex_count = 1;
  int index = 0;
  int style = gr_contour_lines;
  int symbol_type = 0;
  std::array<position, max_vertices> vertices;
  std::array<direction, max_vertices> normals;
  std::array<double, max_vertices> values{};
  bool has_xyz = false, has_norm = false, has_style = false, has_type = false, has_values = false;
};

// One cylinder per segment; contour lines carry the values of their ends.
void add_lines(world& scene, const geometry_record& rec, double radius, const material* m, bool with_values) {
  for (int i = 1; i < rec.vertex_count; ++i) {
    const cylinder segment{rec.vertices[i - 1], rec.vertices[i], radius, with_values ? rec.values[i - 1] : 0.0,
                           with_values ? rec.values[i] : 0.0};
    scene.builder().add(segment, m);
  }
}

// The polygon's triangles; without "norm" each keeps its face normal.
// `values` are the corner values of a contour polygon, or null.
void add_polygon(world& scene, const geometry_record& rec, const material* m, const double* values) {
  for (const corner_indices& c : split_polygon(rec.vertex_count)) {
    triangle piece{{rec.vertices[c[0]], rec.vertices[c[1]], rec.vertices[c[2]]}};
    if (rec.has_norm) piece.normals = std::array{rec.normals[c[0]], rec.normals[c[1]], rec.normals[c[2]]};
    if (values) piece.values = std::array{values[c[0]], values[c[1]], values[c[2]]};
    scene.builder().add(piece, m);
  }
}

// Every corner takes the mean of the polygon's values, summed in order.
std::array<double, max_vertices> centroid_values(const geometry_record& rec) {
  std::array<double, max_vertices> mean{};
  if (rec.vertex_count < 1) return mean;  // such a polygon has no triangles anyway
  double sum = rec.values[0];
  for (int i = 1; i < rec.vertex_count; ++i) sum += rec.values[i];
  mean.fill(sum / rec.vertex_count);
  return mean;
}

// Continuous contours blend neighbouring entries of the contour table; the
// other styles step from entry to entry, and the centroid style gives the
// whole polygon one entry.
void add_contour_polygon(reader_state& state, const geometry_record& rec) {
  if (rec.style == gr_contour_continuous) {
    add_polygon(state.scene, rec, state.blending, rec.values.data());
  } else if (rec.style == gr_contour_centroid) {
    add_polygon(state.scene, rec, state.steps, centroid_values(rec).data());
  } else {
    add_polygon(state.scene, rec, state.steps, rec.values.data());
  }
}

void build_record(reader_state& state, const geometry_record& rec) {
  if (rec.index < 0 || rec.index >= state.colormap_size() || !rec.has_xyz) return;
  const material* m = &state.colormap->entry(rec.index);
  const double line_radius = state.settings.line_radius;
  const double symbol_radius = state.settings.symbol_radius;
  const bool has_contours = state.steps != nullptr;
  switch (rec.kind) {
    case gr_lines:
      if (line_radius > 0.0) add_lines(state.scene, rec, line_radius, m, false);
      break;
    case gr_lines_cont:
      if (line_radius > 0.0 && rec.has_style && rec.has_values && has_contours) {
        add_lines(state.scene, rec, line_radius, state.steps, true);
      }
      break;
    case gr_poly_fill:
      add_polygon(state.scene, rec, m, nullptr);
      break;
    case gr_poly_fill_cont:
      if (rec.has_values && has_contours) add_contour_polygon(state, rec);
      break;
    case gr_symbol:
      // Every symbol shape is drawn as the same ball, except gr_null.
      if (rec.has_type && symbol_radius > 0.0 && rec.symbol_type != gr_null) {
        state.scene.builder().add(sphere{rec.vertices[0], symbol_radius}, m);
      }
      break;
  }
}

void read_record(block_input& in, reader_state& state, record_kind kind) {
  const record_form& form = forms[kind];
  // Read errors name the record: "Unable to read xyz for gr_lines".
  const auto what = [&form](const char* field) { return std::string(field) + " for " + form.keyword; };
  geometry_record rec;
  rec.kind = kind;
  if (form.counted) {
    rec.vertex_count = in.read_int(what("number of vertices"));
    if (rec.vertex_count > max_vertices) {
      in.fail("Number of vertices " + std::to_string(rec.vertex_count) + " above 128 for " + form.keyword);
    }
  }
  in.expect_open(form.keyword);
  for (std::string_view key; in.next_keyword(key);) {
    if (key == "index") {
      rec.index = in.read_int(what("index"));
    } else if (key == "style" && form.style) {
      rec.style = in.read_word({"gr_contour_lines", "gr_contour_centroid", "gr_contour_bands", "gr_contour_continuous"},
                               what("style"));
      rec.has_style = true;
    } else if (key == "type" && form.type) {
      rec.symbol_type = in.read_word({"gr_square", "gr_point", "gr_plus", "gr_star", "gr_o", "gr_x", "gr_diamond",
                                      "gr_null", "gr_block", "gr_disk", "gr_bulb1", "gr_bulb2", "gr_bulb3"},
                                     what("type"));
      rec.has_type = true;
    } else if (key == "xyz") {
      const std::string message = what("xyz");
      for (int i = 0; i < rec.vertex_count; ++i) rec.vertices[i] = in.read_triple(message);
      rec.has_xyz = true;
    } else if (key == "norm" && form.norm) {
      const std::string message = what("norm");
      for (int i = 0; i < rec.vertex_count; ++i) rec.normals[i] = normalise(in.read_triple(message));
      rec.has_norm = true;
    } else if (key == "values" && form.values) {
      const std::string message = what("values");
      for (int i = 0; i < rec.vertex_count; ++i) rec.values[i] = in.read_real(message);
      rec.has_values = true;
    } else {
      in.unknown(key, std::string(form.keyword) + " block");
    }
  }
  // A record cut off by the end of the file is dropped.
  if (!in.at_end_of_file()) build_record(state, rec);
}

}  // namespace

void read_geometry_block(reader_state& state) {
  block_input in(state, "gr_geometry_001");
  in.expect_open("geometry");
  for (std::string_view key; in.next_keyword(key);) {
    int kind = 0;
    while (kind <= gr_symbol && key != forms[kind].keyword) ++kind;
    if (kind > gr_symbol) in.unknown(key, "geometry block");
    read_record(in, state, static_cast<record_kind>(kind));
  }
}

}  // namespace sciray
