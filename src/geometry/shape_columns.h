// shape_columns.h - a list of shapes kept one array per quantity, so that
// the shapes of a leaf, which lie next to each other, load two at a time.
#pragma once

#include <array>
#include <cstddef>
#include <vector>

namespace sciray {

template <std::size_t N>
class shape_columns {
 public:
  std::size_t size() const { return size_; }
  void reserve(std::size_t n) {
    for (std::vector<double>& column : columns_) column.reserve(n + 1);
  }
  void add(const std::array<double, N>& values) {
    for (std::size_t q = 0; q < N; ++q) columns_[q].push_back(values[q]);
    ++size_;
  }
  // One spare entry after the last shape: a pair load that starts at the
  // last shape stays inside the arrays.
  void pad() {
    for (std::vector<double>& column : columns_) column.resize(size_ + 1, 0.0);
  }
  // Quantity q of every shape.
  const double* operator[](std::size_t q) const { return columns_[q].data(); }
  double at(std::size_t q, std::size_t k) const { return columns_[q][k]; }

 private:
  std::array<std::vector<double>, N> columns_;
  std::size_t size_ = 0;
};

}  // namespace sciray
