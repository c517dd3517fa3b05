// camera_test.cpp - the viewing frame, the roll, the two projections and the
// camera's fatal checks.
#include "driver/camera.h"

#include <gtest/gtest.h>

#include <cmath>

#include "support/expect_near.h"

namespace sciray::testing {
namespace {

TEST(camera_basis, default_view_looks_down_z_with_y_up) {
  const camera_basis b = make_camera_basis(view_settings{}, "sciray");
  EXPECT_EQ(b.view_dir, vector(0, 0, -1));
  EXPECT_EQ(b.right_dir, vector(1, 0, 0));
  EXPECT_EQ(b.true_up, vector(0, 1, 0));
  EXPECT_EQ(b.screen_dist, 5.6);
}

TEST(camera_basis, second_up_vector_replaces_a_parallel_first) {
  view_settings v;
  v.up_vector_1 = direction(0, 0, 1);  // parallel to the line of sight
  v.up_vector_2 = direction(1, 0, 0);
  const camera_basis b = make_camera_basis(v, "sciray");
  EXPECT_EQ(b.up_accepted, vector(1, 0, 0));
  EXPECT_EQ(b.true_up, vector(1, 0, 0));
}

TEST(camera_basis, roll_turns_the_picture_about_the_line_of_sight) {
  view_settings v;
  v.roll_angle = 90;  // the up vector turns by -90 degrees about (0, 0, -1)
  const camera_basis b = make_camera_basis(v, "sciray");
  expect_near(b.true_up, vector(-1, 0, 0));
  expect_near(b.right_dir, vector(0, 1, 0));
  EXPECT_EQ(b.up_accepted, vector(0, 1, 0));  // the sky keeps the unrolled up
}

TEST(camera_basis, fatal_checks_name_the_program) {
  view_settings same;
  same.lookat = same.viewpoint;
  EXPECT_EXIT(make_camera_basis(same, "prog"), ::testing::ExitedWithCode(1),
              "^prog: lookat and viewpoint are the same\n$");
  view_settings ambiguous;
  ambiguous.up_vector_1 = direction(0, 0, 1);
  ambiguous.up_vector_2 = direction(0, 0, -1);
  EXPECT_EXIT(make_camera_basis(ambiguous, "prog"), ::testing::ExitedWithCode(1),
              "^prog: up_vector_1 and up_vector_2 are ambiguous\n$");
}

TEST(camera, perspective_and_orthographic_rays) {
  const camera_basis b = make_camera_basis(view_settings{}, "sciray");
  const auto perspective = make_camera(b, true), orthographic = make_camera(b, false);

  const ray centre = perspective->primary_ray(0, 0);
  EXPECT_EQ(centre.dir, vector(0, 0, -1));  // the window centre is seen along view_dir exactly
  EXPECT_EQ(centre.origin, vector(0, 0, 5.6));
  EXPECT_EQ(centre.inv_dir, vector(1, 1, -1));  // zero components give 1, not infinity
  // The window lies on the plane through the look-at point: its edge at
  // x = 5.6 is seen at 45 degrees.
  expect_near(perspective->primary_ray(5.6, 0).dir, normalise(vector(1, 0, -1)));

  const ray parallel = orthographic->primary_ray(0.5, -0.25);
  EXPECT_EQ(parallel.dir, vector(0, 0, -1));
  EXPECT_EQ(parallel.origin, vector(0.5, -0.25, 5.6));
}

}  // namespace
}  // namespace sciray::testing
