#!/usr/bin/env python3
"""shells.py - writes the nested-shells scene: concentric translucent
spheres, each a smooth triangle mesh coloured by a second field (the x
coordinate) through a contour table of two transparent materials, in
continuous colours or in bands. Shadow rays towards the light cross many
shells, which makes it the test of how shadows through contour blends scale.

    bench/shells.py [--shells N] [--style continuous|bands] [--width W]
                    [--height H] [--depth D] [--segments S] > shells.ren
"""
import argparse
import math


def sphere_quads(radius, segments):
    """The quads (4 corners, outward) of a sphere of `segments` around and
    segments / 2 from pole to pole, each corner a (point, normal) pair."""
    rings = segments // 2

    def corner(i, j):
        theta = math.pi * i / rings
        phi = 2 * math.pi * j / segments
        n = (math.sin(theta) * math.cos(phi), math.sin(theta) * math.sin(phi), math.cos(theta))
        return tuple(radius * c for c in n), n

    for i in range(rings):
        for j in range(segments):
            yield [corner(i, j), corner(i + 1, j), corner(i + 1, j + 1), corner(i, j + 1)]


def write_scene(shells, style, width, height, depth, segments):
    out = [
        f"# {shells} concentric translucent shells coloured by x, {style} contours",
        "render_002 {",
        f"  width {width} height {height}",
        f"  depth {depth}",
        "  atmosphere_len 0",
        "  zenith 0.3 0.4 0.7  horizon 0.8 0.8 0.85  ground 0.3 0.3 0.3",
        "}",
        "viewing_001 {",
        "  viewpoint 0.8 -3.2 1.4  lookat 0 0 0",
        "  up_vector_1 0 0 1  up_vector_2 0 1 0",
        "  extents 2.4 1.8",
        "  projection perspective",
        "}",
        "lighting_001 1 {",
        "  ambient 0.2 0.2 0.2",
        "  light 0 { on true  local true  location 2 -1 4  color 0.9 0.9 0.85  ambient 0 0 0 }",
        "}",
        "colormap_002 2 {",
        "  index 0 { diffuse 0.1 0.2 0.5  ambient 0.1 0.2 0.5  specular 0.5 0.5 0.5  shininess 40",
        "            refractive 0.8 0.85 0.9  attenuation 0.9 0.95 1  atten_len 1 }",
        "  index 1 { diffuse 0.5 0.25 0.1  ambient 0.5 0.25 0.1  specular 0.5 0.5 0.5  shininess 40",
        "            refractive 0.9 0.8 0.7  attenuation 1 0.9 0.8  atten_len 1 }",
        "}",
        # The blend runs between the first two levels; the third is never compared.
        "contour_table_001 3 {",
        "  0 -1.1",
        "  1 1.1",
        "  1 2",
        "}",
        "gr_geometry_001 {",
    ]
    for k in range(shells):
        radius = 0.3 + 0.7 * k / max(shells - 1, 1)
        for quad in sphere_quads(radius, segments):
            xyz = "  ".join(" ".join(f"{c:.6f}" for c in p) for p, _ in quad)
            norm = "  ".join(" ".join(f"{c:.6f}" for c in n) for _, n in quad)
            values = " ".join(f"{p[0]:.6f}" for p, _ in quad)
            out.append(f"  gr_poly_fill_cont 4 {{ style gr_contour_{style}")
            out.append(f"    xyz {xyz}")
            out.append(f"    norm {norm}")
            out.append(f"    values {values} }}")
    out.append("}")
    return "\n".join(out) + "\n"


def main():
    p = argparse.ArgumentParser(description=__doc__.split("\n\n")[0])
    p.add_argument("--shells", type=int, default=8)
    p.add_argument("--style", choices=["continuous", "bands"], default="continuous")
    p.add_argument("--width", type=int, default=160)
    p.add_argument("--height", type=int, default=120)
    p.add_argument("--depth", type=int, default=4)
    p.add_argument("--segments", type=int, default=24)
    a = p.parse_args()
    print(write_scene(a.shells, a.style, a.width, a.height, a.depth, a.segments), end="")


if __name__ == "__main__":
    main()
