// corner_mark.cpp - the 12 size classes and the glyphs, scaled to each class.
#include "driver/corner_mark.h"

namespace sciray {

namespace {

struct size_class {
  int min_width, width, height, margin;
};

constexpr size_class classes[12] = {
    {100, 15, 5, 2},   {215, 18, 6, 3},   {256, 22, 8, 4},   {304, 26, 9, 4},
    {362, 31, 11, 5},  {431, 37, 13, 6},  {512, 44, 16, 8},  {609, 52, 19, 9},
    {724, 62, 22, 11}, {861, 73, 26, 13}, {1024, 87, 31, 15}, {1218, 104, 38, 19},
};

// "SR" on a 9 x 7 design grid: a one-cell plate border around two 3 x 5 letters.
constexpr const char* design[7] = {
    ".........",
    ".###.##..",
    ".#...#.#.",
    ".###.##..",
    "...#.#.#.",
    ".###.#.#.",
    ".........",
};
constexpr int design_width = 9, design_height = 7;
constexpr std::uint16_t ink = 255, plate = 64;

}  // namespace

corner_mark make_corner_mark(int picture_width) {
  corner_mark mark;
  const size_class* chosen = nullptr;
  for (const size_class& c : classes)
    if (c.min_width <= picture_width) chosen = &c;
  if (!chosen) return mark;

  mark.width = chosen->width;
  mark.height = chosen->height;
  mark.margin = chosen->margin;
  mark.samples.resize(static_cast<std::size_t>(mark.width) * mark.height);
  for (int k = 0; k < mark.height; ++k) {
    const int from_top = mark.height - 1 - k;  // rows are stored bottom first
    const char* line = design[from_top * design_height / mark.height];
    for (int x = 0; x < mark.width; ++x)
      mark.samples[static_cast<std::size_t>(k) * mark.width + x] = line[x * design_width / mark.width] == '#' ? ink : plate;
  }
  return mark;
}

}  // namespace sciray
