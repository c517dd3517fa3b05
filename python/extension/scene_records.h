// scene_records.h - geometry records written from arrays: balls, poly-lines
// and triangles. Numbers are written in the shortest form that reads back
// to the same double, and no line comes near the reader's 511 characters.
#pragma once

#include <nanobind/ndarray.h>

#include <cstddef>
#include <cstdint>
#include <string>

namespace sciray::python {

namespace nb = nanobind;

template <typename T, typename... Shape>
using array = nb::ndarray<const T, nb::c_contig, nb::device::cpu, Shape...>;
using points_array = array<double, nb::shape<-1, 3>>;

// A run of records of one kind; record i is written on demand.
class geometry_records {
 public:
  virtual ~geometry_records() = default;
  virtual std::size_t size() const = 0;
  // Appends record i to `out`.
  virtual void write(std::size_t i, std::string& out) const = 0;
};

// One ball ("gr_symbol") per centre, each with its own colour-map index.
class sphere_records : public geometry_records {
 public:
  sphere_records(points_array centres, array<std::int32_t, nb::ndim<1>> materials);
  std::size_t size() const override { return centres_.shape(0); }
  void write(std::size_t i, std::string& out) const override;

 private:
  points_array centres_;
  array<std::int32_t, nb::ndim<1>> materials_;
};

// Poly-lines of k points each: a record holds at most 128 points, so a
// longer line is several records that share their end points. With values
// (one per point), the lines are contour-coloured.
class line_records : public geometry_records {
 public:
  line_records(array<double, nb::shape<-1, -1, 3>> points, array<std::int32_t, nb::ndim<1>> materials,
               nb::ndarray<const double, nb::ndim<2>, nb::c_contig, nb::device::cpu> values);
  std::size_t size() const override { return points_.shape(0) * pieces_; }
  void write(std::size_t i, std::string& out) const override;

 private:
  array<double, nb::shape<-1, -1, 3>> points_;
  array<std::int32_t, nb::ndim<1>> materials_;
  nb::ndarray<const double, nb::ndim<2>, nb::c_contig, nb::device::cpu> values_;  // empty: no values
  std::size_t pieces_;  // records per line
};

// Triangles over shared points, with normals and values at the points when
// given; with values, contour-coloured in `style` (a "gr_contour_" word).
class triangle_records : public geometry_records {
 public:
  triangle_records(points_array points, array<std::int64_t, nb::shape<-1, 3>> triangles,
                   array<std::int32_t, nb::ndim<1>> materials, points_array normals,
                   array<double, nb::ndim<1>> values, std::string style);
  std::size_t size() const override { return triangles_.shape(0); }
  void write(std::size_t i, std::string& out) const override;

 private:
  points_array points_;
  array<std::int64_t, nb::shape<-1, 3>> triangles_;
  array<std::int32_t, nb::ndim<1>> materials_;
  points_array normals_;              // no rows: no normals
  array<double, nb::ndim<1>> values_;  // no entries: no values
  std::string style_;
};

void bind_scene_records(nb::module_& m);

}  // namespace sciray::python
