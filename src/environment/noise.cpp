// PLACEHOLDER: replaced by the real implementation.
#include "environment/noise.h"
namespace sciray {
noise_lattice::noise_lattice(int n, rand_stream&) : n_(n) {}
double noise_lattice::corner_value(int, int, int) const { return 0; }
vector noise_lattice::corner_vector(int, int, int) const { return {}; }
double noise_lattice::noise1(double) const { return 0; }
double noise_lattice::noise3(const position&) const { return 0; }
vector noise_lattice::vnoise3(const position&) const { return {}; }
void noise_lattice::reduce(double, int& c, double& f) const { c = 0; f = 0; }
std::shared_ptr<const noise_lattice> noise_registry::acquire(rand_stream& r) {
  auto l = lattice.lock(); if (!l) { l = std::make_shared<noise_lattice>(noise_lattice_size, r); lattice = l; } return l; }
fractal_noise::fractal_noise(double s, double a, double o, noise_registry& reg, rand_stream& r)
    : scale(s), amplitude(a), offset(o), lattice_(reg.acquire(r)) {}
void fractal_noise::update_normaliser() {}
double fractal_noise::value(const position&) const { return offset; }
vector fractal_noise::vector_value(const position&) const { return {}; }
}
