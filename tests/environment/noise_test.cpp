// noise_test.cpp - the shared lattice filled from the random stream in its
// fixed order, coordinate wrapping (negative and out-of-range coordinates),
// the noise at lattice points, and the fractal octave sum.
#include "environment/noise.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <cstring>
#include <limits>
#include <memory>
#include <set>

#include "support/expect_near.h"

namespace sciray::testing {
namespace {

constexpr int n = noise_lattice_size;

TEST(noise_lattice, filled_from_the_stream_wrapped_and_summed_in_octaves) {
  // The first fractal generator makes the lattice; a second shares it and
  // draws nothing.
  rand_stream random, reference;
  noise_registry registry;
  fractal_noise f(2.0, 3.0, 0.5, registry, random);
  const fractal_noise second(1.0, 1.0, 0.0, registry, random);
  const std::shared_ptr<const noise_lattice> shared = registry.acquire(random);
  const noise_lattice& lattice = *shared;
  // Four draws per cell: the three values of its tables, then a
  // permutation entry. Every corner's value comes from the first table,
  // and the components of its vector from the three tables in turn.
  std::array<std::set<double>, 3> table;
  for (int m = 0; m < n; ++m) {
    for (std::set<double>& t : table) t.insert(reference.next() / rand_max);
    reference.next();
  }
  EXPECT_EQ(random.next(), reference.next());  // exactly 40000 draws in all
  const int corners[][3] = {{0, 0, 0}, {1, 2, 3}, {n - 1, 5, n}, {123, n, 4567}, {9999, 9998, 9997}};
  for (const auto& [i, j, k] : corners) {
    const vector c = lattice.corner_vector(i, j, k);
    EXPECT_EQ(c.x, lattice.corner_value(i, j, k));
    for (int t = 0; t < 3; ++t) EXPECT_TRUE(table[t].count(c[t])) << i << " " << j << " " << k << " component " << t;
  }
  // Corner n is corner 0 again on every axis.
  EXPECT_EQ(lattice.corner_vector(n, n, n), lattice.corner_vector(0, 0, 0));
  EXPECT_EQ(lattice.corner_vector(n, 7, n), lattice.corner_vector(0, 7, 0));

  // Coordinates wrap into the cells 0 .. n-1.
  const auto cell_of = [&](double x) {
    int cell;
    double fraction;
    lattice.reduce(x, cell, fraction);
    return std::make_pair(cell, fraction);
  };
  EXPECT_EQ(cell_of(-0.5), std::make_pair(n - 1, 0.5));
  EXPECT_EQ(cell_of(-10000.5), std::make_pair(n - 1, 0.5));
  EXPECT_EQ(cell_of(-20000.0).first, 0);
  EXPECT_EQ(cell_of(25000.25), std::make_pair(5000, 0.25));
  // Out of range and not-a-number coordinates become the smallest 32-bit
  // integer, which lies 6352 cells above a multiple of n.
  for (double x : {1e300, -1e300, std::numeric_limits<double>::quiet_NaN(), 2147483648.0})
    EXPECT_EQ(cell_of(x).first, 6352) << x;

  // The cell below 0 is the last cell, whose upper neighbour is the wrap entry.
  EXPECT_EQ(lattice.noise3(position(-0.5, 0.0, 0.0)), lattice.noise3(position(n - 0.5, 0.0, 0.0)));
  EXPECT_EQ(lattice.vnoise3(position(-0.5, -2.25, 0.0)), lattice.vnoise3(position(n - 0.5, n - 2.25, 0.0)));

  // At lattice points the noise is the corner's own value.
  EXPECT_EQ(lattice.noise3(position(3.0, 7.0, 11.0)), lattice.corner_value(3, 7, 11));
  EXPECT_EQ(lattice.noise3(position(-2.0, 5.0, 0.0)), lattice.corner_value(n - 2, 5, 0));
  EXPECT_EQ(lattice.vnoise3(position(3.0, 7.0, 11.0)), lattice.corner_vector(3, 7, 11));
  EXPECT_NEAR(lattice.noise3(position(3.5, 7.0, 11.0)),
              0.5 * lattice.corner_value(3, 7, 11) + 0.5 * lattice.corner_value(4, 7, 11), 1e-15);

  // Between lattice points: each axis weighs its own two corners, x with
  // the fraction of p.x, y of p.y, z of p.z (no smoothing curve).
  const position p(3.25, 7.5, 11.875);
  double want = 0.0;
  vector want_vector;
  for (int a = 0; a < 2; ++a)
    for (int b = 0; b < 2; ++b)
      for (int c = 0; c < 2; ++c) {
        const double w = (a ? 0.25 : 0.75) * (b ? 0.5 : 0.5) * (c ? 0.875 : 0.125);
        want += w * lattice.corner_value(3 + a, 7 + b, 11 + c);
        want_vector += w * lattice.corner_vector(3 + a, 7 + b, 11 + c);
      }
  EXPECT_NEAR(lattice.noise3(p), want, 1e-15);
  expect_near(lattice.vnoise3(p), want_vector, 1e-14);

  // The fractal sum.
  EXPECT_EQ(f.normaliser, 1 / 1.75);  // depth 3, ratio 0.5
  for (int i = 0; i < 20; ++i) {  // the sum lies in [offset, offset + amplitude]
    const double sum = f.value(position(i * 0.71, i * -0.13, i * 2.9));
    EXPECT_TRUE(sum >= 0.5 && sum <= 3.5) << sum;
  }
  // Three octaves with the clouds' ratio: each octave divides the point and
  // multiplies the weight by the ratio.
  f.ratio = 0.571;
  f.update_normaliser();
  const double r = 0.571, a0 = 3.0 / (1 + r + r * r);
  const position q0(3.25, 1.125, 2.375), q1 = q0 / r, q2 = q1 / r;
  EXPECT_NEAR(f.value(position(6.5, 2.25, 4.75)),
              0.5 + a0 * lattice.noise3(q0) + a0 * r * lattice.noise3(q1) + a0 * r * r * lattice.noise3(q2), 1e-14);
  expect_near(f.vector_value(position(6.5, 2.25, 4.75)),
              vector(0.5, 0.5, 0.5) + a0 * lattice.vnoise3(q0) + a0 * r * lattice.vnoise3(q1) +
                  a0 * r * r * lattice.vnoise3(q2),
              1e-14);
  f.ratio = 0.5;
  // One octave: the lattice noise at p / scale.
  f.depth = 1;
  f.update_normaliser();
  EXPECT_EQ(f.value(position(6.0, 2.0, 4.0)), 0.5 + 3.0 * lattice.noise3(position(3.0, 1.0, 2.0)));
  EXPECT_EQ(f.vector_value(position(6.0, 2.0, 4.0)).y, 0.5 + 3.0 * lattice.vnoise3(position(3.0, 1.0, 2.0)).y);
  // Depth 0: nothing but the offset.
  f.depth = 0;
  f.update_normaliser();
  EXPECT_EQ(f.normaliser, 1.0);
  EXPECT_EQ(f.value(position(1.3, 2.2, 3.1)), 0.5);
  EXPECT_EQ(f.vector_value(position(1.3, 2.2, 3.1)), vector(0.5, 0.5, 0.5));
}

// The octave sums as written: every one of `depth` octaves computed.
double plain_normaliser(int depth, double ratio) {
  double sum = 0.0, a = 1.0;
  for (int i = 0; i < depth; ++i) {
    sum = sum + a;
    a = a * ratio;
  }
  return sum != 0.0 ? 1.0 / sum : 1.0;
}

vector plain_sum(const fractal_noise& f, const noise_lattice& lattice, const position& p, bool vectors) {
  position q = p / f.scale;
  double a = f.amplitude * f.normaliser;
  vector s{f.offset, f.offset, f.offset};
  for (int i = 0; i < f.depth; ++i) {
    s = s + a * (vectors ? lattice.vnoise3(q) : vector(lattice.noise3(q), 0.0, 0.0));
    q = q / f.ratio;
    a = a * f.ratio;
  }
  return vectors ? s : vector(s.x, f.offset, f.offset);
}

// Bit for bit, except that any two not-a-numbers count as equal.
bool same(double a, double b) {
  return (std::isnan(a) && std::isnan(b)) || std::memcmp(&a, &b, sizeof a) == 0;
}

TEST(fractal_noise, deep_sums_stop_at_their_fixed_point_with_the_same_bits) {
  rand_stream random;
  noise_registry registry;
  const std::shared_ptr<const noise_lattice> lattice = registry.acquire(random);
  const double inf = std::numeric_limits<double>::infinity(), nan = std::numeric_limits<double>::quiet_NaN();
  const position points[] = {{0.3, -1.7, 2.9}, {0.0, 0.0, 0.0}, {0.0, 1e-300, -4e-320},
                             {1e300, -2.5, 0.0}, {inf, 1.0, 2.0},  {nan, 0.5, 0.5}};
  // The clouds' ratio and the roughness's; weights of every size.
  for (const double ratio : {0.571, 0.5}) {
    for (const double amplitude : {1.0, 1e308, 5e-324, inf}) {
      fractal_noise f(0.37, amplitude, 0.25, registry, random);
      f.ratio = ratio;
      // Depths below, around and far beyond the fixed points (the weight
      // underflows after about 1300 octaves, the points overflow after
      // about 2600 at most).
      for (const int depth : {0, 1, 6, 700, 1300, 2600, 4000}) {
        SCOPED_TRACE(::testing::Message() << "ratio " << ratio << " amplitude " << amplitude << " depth " << depth);
        f.depth = depth;
        f.update_normaliser();
        EXPECT_TRUE(same(f.normaliser, plain_normaliser(depth, ratio)));
        for (const position& p : points) {
          const vector want = plain_sum(f, *lattice, p, false), want_vector = plain_sum(f, *lattice, p, true);
          EXPECT_TRUE(same(f.value(p), want.x)) << p << ": " << f.value(p) << " against " << want.x;
          const vector got = f.vector_value(p);
          for (int k = 0; k < 3; ++k) EXPECT_TRUE(same(got[k], want_vector[k])) << p << " component " << k;
        }
      }
      // Two billion octaves give what 4000 gave, at once.
      f.depth = 4000;
      f.update_normaliser();
      const double normaliser = f.normaliser, value = f.value(points[0]);
      const vector vector_value = f.vector_value(points[0]);
      f.depth = 2147483647;
      f.update_normaliser();
      EXPECT_TRUE(same(f.normaliser, normaliser));
      EXPECT_TRUE(same(f.value(points[0]), value));
      for (int k = 0; k < 3; ++k) EXPECT_TRUE(same(f.vector_value(points[0])[k], vector_value[k]));
    }
  }
}

}  // namespace
}  // namespace sciray::testing
