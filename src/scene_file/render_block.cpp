// render_block.cpp - the render block: picture size, sky and cloud colours,
// atmosphere, tracer switches and limits, and the radii of line and symbol
// solids. Values out of range are corrected silently as they are stored.
#include <algorithm>
#include <string>

#include "scene_file/block_readers.h"

namespace sciray {

namespace {

int picture_side(block_input& in, const char* keyword) {
  const int pixels = in.read_int(keyword);
  if (pixels > greatest_picture_side) in.fail(std::string("Invalid ") + keyword + " " + std::to_string(pixels));
  return std::max(pixels, least_picture_side);
}

int at_least_1(int v) { return std::max(v, 1); }

double unit_range(double v) { return clamp_above_1(clamp_below_0(v)); }

}  // namespace

void read_render_block(reader_state& state) {
  block_input in(state, "render_002");
  render_settings& r = state.settings.render;
  in.expect_open("render block");
  for (std::string_view key; in.next_keyword(key);) {
    if (key == "width") r.width = picture_side(in, "width");
    else if (key == "height") r.height = picture_side(in, "height");
    else if (key == "zenith") r.zenith = in.read_triple("zenith component");
    else if (key == "horizon") r.horizon = in.read_triple("horizon component");
    else if (key == "ground") r.ground = in.read_triple("ground component");
    else if (key == "cloud_inner") r.cloud_inner = in.read_triple("cloud_inner component");
    else if (key == "cloud_outer") r.cloud_outer = in.read_triple("cloud_outer component");
    else if (key == "cloud_inner_frac") {
      // The fraction given last keeps its value; the other one gives way.
      r.cloud_inner_frac = unit_range(in.read_real("cloud_inner_frac"));
      if (r.cloud_inner_frac + r.cloud_outer_frac > 1.0) r.cloud_outer_frac = 1.0 - r.cloud_inner_frac;
    } else if (key == "cloud_outer_frac") {
      r.cloud_outer_frac = unit_range(in.read_real("cloud_outer_frac"));
      if (r.cloud_inner_frac + r.cloud_outer_frac > 1.0) r.cloud_inner_frac = 1.0 - r.cloud_outer_frac;
    } else if (key == "cloud_scale") {
      const double scale = in.read_real("cloud_scale");
      r.cloud_scale = scale > 0.0 ? scale : 0.0001;  // not a number also gives 0.0001
    } else if (key == "cloud_offset") r.cloud_offset = in.read_triple("cloud_offset component");
    else if (key == "cloud_depth") r.cloud_depth = at_least_1(in.read_int("cloud_depth"));
    else if (key == "cloud_sharpness") r.cloud_sharpness = unit_range(in.read_real("cloud_sharpness"));
    else if (key == "atmosphere") r.atmosphere = in.read_triple("atmosphere component");
    else if (key == "atmosphere_len") r.atmosphere_len = in.read_real("atmosphere_len");
    else if (key == "atmosphere_ior") r.atmosphere_ior = in.read_real("atmosphere_ior");
    else if (key == "highlights") r.highlights = in.read_truth("highlights");
    else if (key == "shadows") r.shadows = in.read_truth("shadows");
    else if (key == "depth") r.depth = at_least_1(in.read_int("depth"));
    else if (key == "pixel_size") r.pixel_size = at_least_1(in.read_int("pixel_size"));
    else if (key == "antialias") r.antialias = in.read_truth("antialias");
    else if (key == "antialias_tol") r.antialias_tol = unit_range(in.read_real("antialias_tol"));
    else if (key == "antialias_depth") r.antialias_depth = at_least_1(in.read_int("antialias_depth"));
    else if (key == "line_radius") state.settings.line_radius = clamp_below_0(in.read_real("line_radius"));
    else if (key == "symbol_radius") state.settings.symbol_radius = clamp_below_0(in.read_real("symbol_radius"));
    else in.unknown(key, "render block");
  }
}

}  // namespace sciray
