// noise.h - the shared random lattice and the fractal noise built on it,
// used by the clouds (scalar noise) and by rough surfaces (vector noise).
#pragma once

#include <memory>
#include <vector>

#include "math/rand_stream.h"
#include "math/vector.h"

namespace sciray {

class noise_lattice {
 public:
  // Fills the tables from `random`, four values per cell in a fixed order.
  noise_lattice(int n, rand_stream& random);

  int size() const { return n_; }
  double corner_value(int i, int j, int k) const;
  vector corner_vector(int i, int j, int k) const;
  double noise3(const position& p) const;
  vector vnoise3(const position& p) const;

  // Reduces one coordinate to its lattice cell (0 .. n-1) and fraction.
  void reduce(double x, int& cell, double& fraction) const;

 private:
  int n_;
  std::vector<double> value0_, value1_, value2_;
  std::vector<int> perm_;
};

// Hands out the one lattice: built by the first generator that asks for it,
// gone when the last one that holds it is destroyed.
struct noise_registry {
  std::weak_ptr<const noise_lattice> lattice;
  std::shared_ptr<const noise_lattice> acquire(rand_stream& random);
};

inline constexpr int noise_lattice_size = 10000;

class fractal_noise {
 public:
  fractal_noise(double scale, double amplitude, double offset, noise_registry& registry, rand_stream& random);

  void update_normaliser();
  double value(const position& p) const;
  vector vector_value(const position& p) const;

  double scale;
  double amplitude;
  double offset;
  int depth = 3;
  double ratio = 0.5;
  double normaliser = 1.0;

 private:
  template <typename Sum, typename Noise>
  Sum octave_sum(const position& p, Sum start, Noise&& noise) const;

  std::shared_ptr<const noise_lattice> lattice_;
};

}  // namespace sciray
