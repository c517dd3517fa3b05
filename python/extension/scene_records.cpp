// scene_records.cpp - writing the records. Arrays arrive checked (shapes,
// finite positions, indices in range) from the Python side.
#include "scene_records.h"

#include <nanobind/stl/string.h>

#include <algorithm>
#include <charconv>

namespace sciray::python {

namespace {

// Points a record holds at most, and values written on one line.
constexpr std::size_t record_points = 128;
constexpr std::size_t values_per_line = 8;

void put(std::string& out, double v) {
  char text[32];
  out.append(text, std::to_chars(text, text + sizeof text, v).ptr);
}

void put(std::string& out, std::int64_t v) {
  char text[24];
  out.append(text, std::to_chars(text, text + sizeof text, v).ptr);
}

// " x y z" of point `p` of a row-major (n, 3) array.
void put_point(std::string& out, const double* xyz, std::size_t p) {
  for (int c = 0; c < 3; ++c) {
    out += ' ';
    put(out, xyz[3 * p + c]);
  }
}

// The head of a counted record: "gr_lines 5 {\n index 2\n".
void put_head(std::string& out, const char* keyword, std::size_t points, std::int32_t material) {
  out += keyword;
  out += ' ';
  put(out, static_cast<std::int64_t>(points));
  out += " {\n index ";
  put(out, static_cast<std::int64_t>(material));
  out += '\n';
}

// " values a b c ...", a few to a line.
void put_values(std::string& out, const double* values, std::size_t count) {
  out += " values";
  for (std::size_t k = 0; k < count; ++k) {
    out += k > 0 && k % values_per_line == 0 ? "\n " : " ";
    put(out, values[k]);
  }
  out += '\n';
}

}  // namespace

sphere_records::sphere_records(points_array centres, array<std::int32_t, nb::ndim<1>> materials)
    : centres_(std::move(centres)), materials_(std::move(materials)) {}

void sphere_records::write(std::size_t i, std::string& out) const {
  out += "gr_symbol { index ";
  put(out, static_cast<std::int64_t>(materials_.data()[i]));
  out += " type gr_disk xyz";
  put_point(out, centres_.data(), i);
  out += " }\n";
}

line_records::line_records(array<double, nb::shape<-1, -1, 3>> points, array<std::int32_t, nb::ndim<1>> materials,
                           nb::ndarray<const double, nb::ndim<2>, nb::c_contig, nb::device::cpu> values)
    : points_(std::move(points)),
      materials_(std::move(materials)),
      values_(std::move(values)),
      pieces_(points_.shape(1) < 2 ? 0 : (points_.shape(1) - 2) / (record_points - 1) + 1) {}

void line_records::write(std::size_t i, std::string& out) const {
  const std::size_t line = i / pieces_, piece = i % pieces_;
  const std::size_t length = points_.shape(1);
  const std::size_t first = piece * (record_points - 1);
  const std::size_t count = std::min(record_points, length - first);
  const bool contoured = values_.size() > 0;
  put_head(out, contoured ? "gr_lines_cont" : "gr_lines", count, materials_.data()[line]);
  if (contoured) out += " style gr_contour_lines\n";
  out += " xyz";
  const double* xyz = points_.data() + 3 * line * length;
  for (std::size_t p = first; p < first + count; ++p) {
    put_point(out, xyz, p);
    out += '\n';
  }
  if (contoured) put_values(out, values_.data() + line * length + first, count);
  out += "}\n";
}

triangle_records::triangle_records(points_array points, array<std::int64_t, nb::shape<-1, 3>> triangles,
                                   array<std::int32_t, nb::ndim<1>> materials, points_array normals,
                                   array<double, nb::ndim<1>> values, std::string style)
    : points_(std::move(points)),
      triangles_(std::move(triangles)),
      materials_(std::move(materials)),
      normals_(std::move(normals)),
      values_(std::move(values)),
      style_(std::move(style)) {}

void triangle_records::write(std::size_t i, std::string& out) const {
  const std::int64_t* corners = triangles_.data() + 3 * i;
  const bool contoured = values_.size() > 0;
  put_head(out, contoured ? "gr_poly_fill_cont" : "gr_poly_fill", 3, materials_.data()[i]);
  if (contoured) out += " style " + style_ + "\n";
  out += " xyz";
  for (int c = 0; c < 3; ++c) {
    put_point(out, points_.data(), static_cast<std::size_t>(corners[c]));
    out += '\n';
  }
  if (normals_.shape(0) > 0) {
    out += " norm";
    for (int c = 0; c < 3; ++c) {
      put_point(out, normals_.data(), static_cast<std::size_t>(corners[c]));
      out += '\n';
    }
  }
  if (contoured) {
    const double corner_values[3] = {values_.data()[corners[0]], values_.data()[corners[1]],
                                     values_.data()[corners[2]]};
    put_values(out, corner_values, 3);
  }
  out += "}\n";
}

void bind_scene_records(nb::module_& m) {
  nb::class_<geometry_records>(m, "GeometryRecords", "Geometry records written on demand from arrays.")
      .def("__len__", &geometry_records::size);
  nb::class_<sphere_records, geometry_records>(m, "SphereRecords")
      .def(nb::init<points_array, array<std::int32_t, nb::ndim<1>>>(), nb::arg("centres"), nb::arg("materials"));
  nb::class_<line_records, geometry_records>(m, "LineRecords")
      .def(nb::init<array<double, nb::shape<-1, -1, 3>>, array<std::int32_t, nb::ndim<1>>,
                    nb::ndarray<const double, nb::ndim<2>, nb::c_contig, nb::device::cpu>>(),
           nb::arg("points"), nb::arg("materials"), nb::arg("values"));
  nb::class_<triangle_records, geometry_records>(m, "TriangleRecords")
      .def(nb::init<points_array, array<std::int64_t, nb::shape<-1, 3>>, array<std::int32_t, nb::ndim<1>>,
                    points_array, array<double, nb::ndim<1>>, std::string>(),
           nb::arg("points"), nb::arg("triangles"), nb::arg("materials"), nb::arg("normals"), nb::arg("values"),
           nb::arg("style"));
}

}  // namespace sciray::python
