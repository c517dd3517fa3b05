// sky_test.cpp - the zenith/horizon/ground gradient, the cloud blend's layer
// weights (horizontal rays, the walk over fractions, smooth and sharp
// edges), and the sky's assembly from settings.
#include "environment/sky.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace sciray {
namespace {

const direction up(0.0, 0.0, 1.0);
const colour red(1.0, 0.0, 0.0), green(0.0, 1.0, 0.0), blue(0.0, 0.0, 1.0);

// A layer of one colour in every direction.
struct constant : colour_source {
  explicit constant(const colour& c) : c_(c) {}
  colour colour_of(const direction&) const override { return c_; }
  colour c_;
};

// Red, green and blue layers with fractions 0.5, 0.3, 0.2.
std::unique_ptr<cloud_blend> three_layers(std::unique_ptr<fractal_noise> noise, bool smooth) {
  auto blend = std::make_unique<cloud_blend>(std::move(noise), up, position(), smooth);
  blend->add_layer(std::make_unique<constant>(red), 0.5);
  blend->add_layer(std::make_unique<constant>(green), 0.3);
  blend->add_layer(std::make_unique<constant>(blue), 0.2);
  return blend;
}

// Upward directions spread over the sky.
std::vector<direction> sky_directions() {
  std::vector<direction> out;
  for (int i = -10; i <= 10; ++i)
    for (int j = -10; j <= 10; ++j) out.push_back(normalise(vector(i * 0.4, j * 0.4, 1.0)));
  return out;
}

TEST(sky_gradient, zenith_horizon_ground) {
  const sky_gradient sky(up, blue, colour(1.0, 1.0, 1.0), colour(0.3, 0.2, 0.1));
  EXPECT_EQ(sky.colour_of(up), blue);
  EXPECT_EQ(sky.colour_of(direction(1.0, 0.0, 0.0)), colour(1.0, 1.0, 1.0));
  // The square root: a quarter of the way up in elevation is half way in colour.
  EXPECT_EQ(sky.colour_of(direction(std::sqrt(1 - 0.0625), 0.0, 0.25)), colour(0.5, 0.5, 1.0));
  EXPECT_EQ(sky.colour_of(normalise(vector(1.0, 0.0, -0.01))), colour(0.3, 0.2, 0.1));
  // An elevation that is not a number is not below the horizon.
  const double nan = std::numeric_limits<double>::quiet_NaN();
  EXPECT_TRUE(std::isnan(sky.colour_of(direction(nan, nan, nan)).x));
}

TEST(sky_clouds, layer_weights_from_the_noise_value) {
  rand_stream random;
  noise_registry registry;
  // Amplitude 0: the noise value is the offset, so each case picks its value.
  const auto weights_at = [&](double v, bool smooth) {
    std::vector<double> w(3, -1.0);
    three_layers(std::make_unique<fractal_noise>(1.0, 0.0, v, registry, random), smooth)->set_weights(up, w.data());
    return w;
  };
  const auto expect = [](const std::vector<double>& got, std::vector<double> want, double v) {
    for (int i = 0; i < 3; ++i) EXPECT_NEAR(got[i], want[i], 1e-15) << "value " << v << " layer " << i;
  };
  expect(weights_at(0.2, false), {1, 0, 0}, 0.2);
  expect(weights_at(0.5, false), {1, 0, 0}, 0.5);  // a fraction not less than v stops the walk
  expect(weights_at(0.6, false), {0, 1, 0}, 0.6);
  expect(weights_at(5.0, false), {0, 0, 1}, 5.0);  // above all fractions: the last layer
  expect(weights_at(0.2, true), {0.6, 0.4, 0}, 0.2);
  expect(weights_at(0.6, true), {0, 2 / 3.0, 1 / 3.0}, 0.6);
  expect(weights_at(0.9, true), {0, 0, 1}, 0.9);

  // A horizontal ray never meets the cloud plane: every layer counts the same.
  const auto blend = three_layers(std::make_unique<fractal_noise>(1.0, 0.0, 0.2, registry, random), false);
  EXPECT_EQ(blend->colour_of(direction(1.0, 0.0, 0.0)), colour(1 / 3.0, 1 / 3.0, 1 / 3.0));

  // With real noise, sharp edges show one layer's colour, smooth ones also mixtures.
  const auto sharp = three_layers(std::make_unique<fractal_noise>(0.5, 1.0, 0.0, registry, random), false);
  const auto soft = three_layers(std::make_unique<fractal_noise>(0.5, 1.0, 0.0, registry, random), true);
  int shown[3] = {0, 0, 0}, blended = 0;
  for (const direction& d : sky_directions()) {
    const colour c = sharp->colour_of(d);
    EXPECT_TRUE(c == red || c == green || c == blue) << c;
    for (int i = 0; i < 3; ++i) shown[i] += c[i] == 1.0;
    const colour s = soft->colour_of(d);
    EXPECT_NEAR(s.x + s.y + s.z, 1.0, 1e-12);
    blended += !(s == red || s == green || s == blue);
  }
  EXPECT_TRUE(shown[0] > 0 && shown[1] > 0 && blended > 0);
}

TEST(sky_assembly, gradient_or_clouds_from_the_settings) {
  sky_settings s{};
  s.zenith = blue;
  s.horizon = colour(1.0, 1.0, 1.0);
  s.ground = colour(0.2, 0.2, 0.2);
  s.cloud_inner = red;
  s.cloud_outer = green;
  s.cloud_scale = 0.5;
  s.cloud_depth = 6;
  s.cloud_sharpness = 0.85;

  // No cloud fractions: one gradient; the noise lattice is made all the same.
  rand_stream random;
  noise_registry registry;
  const auto clear = make_sky(s, up, registry, random);
  ASSERT_NE(dynamic_cast<const sky_gradient*>(clear.get()), nullptr);
  EXPECT_EQ(clear->colour_of(up), blue);
  EXPECT_EQ(clear->colour_of(direction(0.0, 0.0, -1.0)), s.ground);
  rand_stream reference;
  for (int i = 0; i < 4 * noise_lattice_size; ++i) reference.next();
  EXPECT_EQ(random.next(), reference.next());
  // Only the inner cloud has a fraction above 0: a gradient with its colour on top.
  s.cloud_inner_frac = 1.0;
  EXPECT_EQ(make_sky(s, up, registry, random)->colour_of(up), red);

  // Layers in the order clear sky, outer cloud, inner cloud: the outer cloud
  // with 0.98 of the noise range fills nearly all the sky.
  s.cloud_inner_frac = 0.01;
  s.cloud_outer_frac = 0.98;
  const auto cloudy = make_sky(s, up, registry, random);
  const auto& blend = dynamic_cast<const cloud_blend&>(*cloudy);
  double w[cloud_blend::max_layers];
  blend.set_weights(direction(1.0, 0.0, 0.0), w);
  for (double x : w) EXPECT_EQ(x, 1 / 3.0);
  int outer = 0;
  const std::vector<direction> sky = sky_directions();
  for (const direction& d : sky) {
    blend.set_weights(d, w);
    outer += w[1] == 1.0;  // sharpness 0.85: one layer whole
  }
  EXPECT_GT(outer, int(sky.size()) * 9 / 10);

  // Sharpness below 2/3: neighbouring layers blend.
  s.cloud_sharpness = 0.5;
  const auto soft = make_sky(s, up, registry, random);
  int blended = 0;
  for (const direction& d : sky) {
    dynamic_cast<const cloud_blend&>(*soft).set_weights(d, w);
    blended += w[1] > 0.0 && w[1] < 1.0;
  }
  EXPECT_GT(blended, 0);
}

}  // namespace
}  // namespace sciray
