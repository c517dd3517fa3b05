// noise.cpp - the random lattice (value tables and a permutation filled from
// the render's random stream), trilinear lattice noise, and the octave sum.
#include "environment/noise.h"

#include <bit>
#include <climits>
#include <cmath>
#include <cstdint>

namespace sciray {

namespace {

// floor(x) as a 32-bit integer the way the x86-64 conversion gives it: a
// value out of range, or not a number, becomes the smallest integer.
int floor_to_int(double x) {
  const double f = std::floor(x);
  if (!(f >= -2147483648.0 && f < 2147483648.0)) return INT_MIN;
  return static_cast<int>(f);
}

// a + (1 - a / n) * n in wrapping 32-bit arithmetic: lifts a negative cell
// index into 0 .. n while staying defined for the smallest integer.
int lift_negative(int a, int n) {
  const std::uint32_t steps = static_cast<std::uint32_t>(1 - a / n);
  return static_cast<int>(static_cast<std::uint32_t>(a) + steps * static_cast<std::uint32_t>(n));
}

// The weights of the lower and upper corner along one axis.
struct axis_weights {
  int cell;
  double w[2];
};

axis_weights weigh_axis(const noise_lattice& lattice, double x) {
  axis_weights a;
  double f;
  lattice.reduce(x, a.cell, f);
  a.w[0] = 1 - f;
  a.w[1] = f;
  return a;
}

// Trilinear sum over the eight corners of the cell holding p, x outermost,
// then y, then z, lower corner first on each axis.
template <typename T, typename Corner>
T trilinear(const noise_lattice& lattice, const position& p, Corner corner) {
  const axis_weights ax = weigh_axis(lattice, p.x);
  const axis_weights ay = weigh_axis(lattice, p.y);
  const axis_weights az = weigh_axis(lattice, p.z);
  T sum{};
  for (int a = 0; a < 2; ++a)
    for (int b = 0; b < 2; ++b)
      for (int c = 0; c < 2; ++c) {
        const double weight = ax.w[a] * ay.w[b] * az.w[c];
        sum = sum + weight * corner(ax.cell + a, ay.cell + b, az.cell + c);
      }
  return sum;
}

// Equal bit for bit: a not-a-number equals itself, and -0 differs from +0.
bool same_bits(double a, double b) { return std::bit_cast<std::uint64_t>(a) == std::bit_cast<std::uint64_t>(b); }

bool same_bits(const vector& a, const vector& b) {
  return same_bits(a.x, b.x) && same_bits(a.y, b.y) && same_bits(a.z, b.z);
}

}  // namespace

noise_lattice::noise_lattice(int n, rand_stream& random)
    : n_(n),
      value0_(static_cast<std::size_t>(n)),
      value1_(static_cast<std::size_t>(n)),
      value2_(static_cast<std::size_t>(n)),
      perm_(static_cast<std::size_t>(n) + 1) {
  for (int m = 0; m < n; ++m) {
    value0_[m] = random.next() / rand_max;
    value1_[m] = random.next() / rand_max;
    value2_[m] = random.next() / rand_max;
    perm_[m] = static_cast<int>(static_cast<double>(random.next()) * n / rand_max);
  }
  // The wrap entry: the upper neighbour of cell n-1 is cell n, never reduced.
  perm_[n] = perm_[0];
}

void noise_lattice::reduce(double x, int& cell, double& fraction) const {
  int c = floor_to_int(x);
  fraction = x - c;
  if (c < 0) c = lift_negative(c, n_);
  cell = c % n_;
}

double noise_lattice::corner_value(int i, int j, int k) const {
  return value0_[(i + perm_[j] + perm_[perm_[k]]) % n_];
}

vector noise_lattice::corner_vector(int i, int j, int k) const {
  // Three different index mixes keep the components uncorrelated.
  return {value0_[(i + perm_[j] + perm_[perm_[k]]) % n_], value1_[(j + perm_[perm_[i]] + perm_[k]) % n_],
          value2_[(perm_[i] + perm_[perm_[j]] + k) % n_]};
}

double noise_lattice::noise3(const position& p) const {
  return trilinear<double>(*this, p, [this](int i, int j, int k) { return corner_value(i, j, k); });
}

vector noise_lattice::vnoise3(const position& p) const {
  return trilinear<vector>(*this, p, [this](int i, int j, int k) { return corner_vector(i, j, k); });
}

std::shared_ptr<const noise_lattice> noise_registry::acquire(rand_stream& random) {
  std::shared_ptr<const noise_lattice> held = lattice.lock();
  if (!held) {
    held = std::make_shared<const noise_lattice>(noise_lattice_size, random);
    lattice = held;
  }
  return held;
}

fractal_noise::fractal_noise(double scale_, double amplitude_, double offset_, noise_registry& registry,
                             rand_stream& random)
    : scale(scale_), amplitude(amplitude_), offset(offset_), lattice_(registry.acquire(random)) {
  update_normaliser();
}

// The octave loops below may stop early, with the result they would have
// reached after all `depth` octaves. Each octave computes its new state (the
// sum, the point, the weight) from the old state alone, by the same
// operations every time. So once an octave hands back bit for bit the state
// it started from, every later octave would hand it back again, and the
// loop can stop there. With a ratio below 1 this happens within a few
// thousand octaves: the weight underflows to 0 (or stays infinite or not a
// number), the point's components overflow to infinity (or stay 0 or not a
// number), and then each term, and with it the sum, no longer changes. A
// depth of two billion thus costs no more than a few thousand octaves.

void fractal_noise::update_normaliser() {
  double sum = 0.0;
  double a = 1.0;
  for (int i = 0; i < depth; ++i) {
    const double next_sum = sum + a;
    const double next_a = a * ratio;
    if (same_bits(next_sum, sum) && same_bits(next_a, a)) break;
    sum = next_sum;
    a = next_a;
  }
  normaliser = sum != 0.0 ? 1.0 / sum : 1.0;
}

// The octave sum from `start`: each octave adds the noise at a point that
// shrinks by `ratio` with a weight that shrinks alike. It stops at the
// fixed point where an octave changes neither the sum, the point nor the
// weight, after which further octaves could change nothing either.
template <typename Sum, typename Noise>
Sum fractal_noise::octave_sum(const position& p, Sum s, Noise&& noise) const {
  position q = p / scale;
  double a = amplitude * normaliser;
  for (int i = 0; i < depth; ++i) {
    const Sum next_s = s + a * noise(q);
    const position next_q = q / ratio;
    const double next_a = a * ratio;
    if (same_bits(next_s, s) && same_bits(next_q, q) && same_bits(next_a, a)) break;
    s = next_s;
    q = next_q;
    a = next_a;
  }
  return s;
}

double fractal_noise::value(const position& p) const {
  return octave_sum(p, offset, [this](const position& q) { return lattice_->noise3(q); });
}

vector fractal_noise::vector_value(const position& p) const {
  return octave_sum(p, vector{offset, offset, offset}, [this](const position& q) { return lattice_->vnoise3(q); });
}

}  // namespace sciray
