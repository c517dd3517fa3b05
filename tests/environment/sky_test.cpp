// sky_test.cpp - the sky assembled from settings: the zenith/horizon/ground
// gradient, and the cloud blend's layer weights (horizontal rays, the walk
// over fractions, smooth and sharp edges, the layers' order).
#include "environment/sky.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace sciray {
namespace {

const direction up(0.0, 0.0, 1.0), horizontal(1.0, 0.0, 0.0);
const colour red(1.0, 0.0, 0.0), green(0.0, 1.0, 0.0), blue(0.0, 0.0, 1.0), white(1.0, 1.0, 1.0);

// A layer of one colour in every direction.
struct constant : colour_source {
  explicit constant(const colour& c) : c_(c) {}
  colour colour_of(const direction&) const override { return c_; }
  colour c_;
};

// Settings with a blue zenith over a white horizon and grey ground, and
// inner (red) and outer (green) clouds with the given fractions.
sky_settings settings(double inner_frac, double outer_frac, double sharpness) {
  return {.zenith = blue, .horizon = white, .ground = colour(0.2, 0.2, 0.2), .cloud_inner = red, .cloud_outer = green,
          .cloud_inner_frac = inner_frac, .cloud_outer_frac = outer_frac, .cloud_scale = 0.5,
          .cloud_sharpness = sharpness, .cloud_offset = vector(), .cloud_depth = 6};
}

TEST(sky_gradient, zenith_horizon_ground_from_the_settings) {
  // No cloud fractions: one gradient and no noise, so nothing is drawn from
  // the random stream (an area light's jitter starts where reading left it).
  rand_stream random, reference;
  noise_registry registry;
  const auto sky = make_sky(settings(0.0, 0.0, 0.85), up, registry, random);
  ASSERT_NE(dynamic_cast<const sky_gradient*>(sky.get()), nullptr);
  EXPECT_EQ(random.next(), reference.next());
  EXPECT_TRUE(registry.lattice.expired());
  EXPECT_EQ(sky->colour_of(up), blue);
  EXPECT_EQ(sky->colour_of(horizontal), white);
  // The square root: a quarter of the way up in elevation is half way in colour.
  EXPECT_EQ(sky->colour_of(direction(std::sqrt(1 - 0.0625), 0.0, 0.25)), colour(0.5, 0.5, 1.0));
  EXPECT_EQ(sky->colour_of(normalise(vector(1.0, 0.0, -0.01))), colour(0.2, 0.2, 0.2));
  // An elevation that is not a number is not below the horizon.
  const double nan = std::numeric_limits<double>::quiet_NaN();
  EXPECT_TRUE(std::isnan(sky->colour_of(direction(nan, nan, nan)).x));
  // Only the inner cloud has a fraction above 0: a gradient with its colour on top.
  EXPECT_EQ(make_sky(settings(1.0, 0.0, 0.85), up, registry, random)->colour_of(up), red);
  EXPECT_EQ(random.next(), reference.next());

  // Clouds make the noise, and the first noise fills the lattice: 40000 draws.
  const auto cloudy = make_sky(settings(0.3, 0.0, 0.85), up, registry, random);
  for (int i = 0; i < 4 * noise_lattice_size; ++i) reference.next();
  EXPECT_EQ(random.next(), reference.next());
}

TEST(sky_clouds, layer_weights_and_layers_from_the_settings) {
  rand_stream random;
  noise_registry registry;
  // Red, green and blue layers with fractions 0.5, 0.3, 0.2 over noise of
  // amplitude 0 (the default), so that the noise value is the offset.
  const auto three_layers = [&](double value, bool smooth, double amplitude = 0.0) {
    cloud_blend blend(std::make_unique<fractal_noise>(0.5, amplitude, value, registry, random), up, position(), smooth);
    blend.add_layer(std::make_unique<constant>(red), 0.5);
    blend.add_layer(std::make_unique<constant>(green), 0.3);
    blend.add_layer(std::make_unique<constant>(blue), 0.2);
    return blend;
  };
  const struct {
    double value;
    bool smooth;
    double want[3];
  } cases[] = {{0.2, false, {1, 0, 0}},  {0.5, false, {1, 0, 0}},  // a fraction not less than v stops the walk
               {0.6, false, {0, 1, 0}},  {5.0, false, {0, 0, 1}},  // above all fractions: the last layer
               {0.2, true, {0.6, 0.4, 0}}, {0.6, true, {0, 2 / 3.0, 1 / 3.0}}, {0.9, true, {0, 0, 1}}};
  for (const auto& c : cases) {
    double w[3];
    three_layers(c.value, c.smooth).set_weights(up, w);
    for (int i = 0; i < 3; ++i) EXPECT_NEAR(w[i], c.want[i], 1e-15) << "value " << c.value << " layer " << i;
  }
  // A horizontal ray never meets the cloud plane: every layer counts the same.
  EXPECT_EQ(three_layers(0.2, false).colour_of(horizontal), colour(1 / 3.0, 1 / 3.0, 1 / 3.0));

  // With real noise, sharp edges show one layer's colour, smooth ones also
  // mixtures. From the settings, layers clear sky, outer cloud, inner cloud:
  // the outer cloud with 0.98 of the noise range fills nearly all the sky,
  // whole at sharpness 2/3 or more, blended with its neighbours below.
  const cloud_blend sharp = three_layers(0.0, false, 1.0), soft = three_layers(0.0, true, 1.0);
  const auto whole = make_sky(settings(0.01, 0.98, 0.85), up, registry, random);
  const auto blending = make_sky(settings(0.01, 0.98, 0.5), up, registry, random);
  int shown[3] = {0, 0, 0}, mixtures = 0, outer = 0, blended = 0, directions = 0;
  for (int i = -10; i <= 10; ++i)
    for (int j = -10; j <= 10; ++j, ++directions) {
      const direction d = normalise(vector(i * 0.4, j * 0.4, 1.0));
      const colour c = sharp.colour_of(d), s = soft.colour_of(d);
      EXPECT_TRUE(c == red || c == green || c == blue) << c;
      for (int k = 0; k < 3; ++k) shown[k] += c[k] == 1.0;
      mixtures += !(s == red || s == green || s == blue);
      double w[cloud_blend::max_layers];
      dynamic_cast<const cloud_blend&>(*whole).set_weights(d, w);
      outer += w[1] == 1.0;
      dynamic_cast<const cloud_blend&>(*blending).set_weights(d, w);
      blended += w[1] > 0.0 && w[1] < 1.0;
    }
  EXPECT_TRUE(shown[0] > 0 && shown[1] > 0 && mixtures > 0);
  EXPECT_GT(outer, directions * 9 / 10);
  EXPECT_GT(blended, 0);
}

}  // namespace
}  // namespace sciray
