// screen_window.h - the rectangle of the image plane the picture covers.
#pragma once

namespace sciray {

struct screen_window {
  double width = 0.0, height = 0.0;  // view units
  int columns = 1, rows = 1;         // pixels
  double pixel_width = 0.0, pixel_height = 0.0;

  // Screen point of the centre of pixel (x, y); (0, 0) is the lower left pixel.
  double centre_x(int x) const { return (x + 0.5) * pixel_width - 0.5 * width; }
  double centre_y(int y) const { return (y + 0.5) * pixel_height - 0.5 * height; }
  // Screen coordinates of the pixel edges (column c's left edge, row r's lower edge).
  double edge_x(int c) const { return c * pixel_width - 0.5 * width; }
  double edge_y(int r) const { return r * pixel_height - 0.5 * height; }
};

// Widens the view extents in one direction to the picture's aspect and
// builds the window for a picture of `columns` by `rows` pixels.
screen_window make_screen_window(double view_width, double view_height, int columns, int rows);

}  // namespace sciray
