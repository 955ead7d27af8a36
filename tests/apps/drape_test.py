#!/usr/bin/env python3
"""Pictures draped over small grids: each colour where it belongs, and no edge of the picture's own."""
import math
import os
import unittest
from pathlib import Path

from files import bmp, tiff
from host import BACKGROUND, HostTest, Picture, environment, hill, plain
from scenery_test import SIDE, UTM, X, Y, latitude, near

RED, GREEN, BLUE, YELLOW, WHITE = (255, 0, 0), (0, 255, 0), (0, 0, 255), (255, 255, 0), (255, 255, 255)
MAP = ("--top", "--orthographic", "--no-light", "--no-base")
SURFACE = (0x40, 0x80, 0xC0)
PLAIN = ("--color", "plain", "--surface", "#4080c0")
DATA = Path(os.environ.get("LUMBRA_DATA", "")) / "dem"


def quarters(side=190):
    """North-west red, north-east green, south-west blue, south-east yellow."""
    half = side // 2
    return [[RED] * half + [GREEN] * half] * half + [[BLUE] * half + [YELLOW] * half] * half


class Drape(HostTest):
    def write(self, name, data):
        (self.folder / name).write_bytes(data)
        return name

    def ortho(self, rows=None, west=X, north=Y + SIDE, width=SIDE, height=SIDE, **system):
        """A picture in place; west and north of its outer corner."""
        rows = rows or quarters()
        return self.write("ortho.tif", tiff(rows, 3, geo=(west, north, width / len(rows[0]), height / len(rows)),
                                            **system))

    def seen(self, *options, size="200x200", says=None):
        """The map of the flat grid with the picture, and the colour at metres from its south-west corner."""
        run = self.host("render", self.grid("dem.asc", plain()), "--drape", "ortho.tif", "-o", "out.png", "--size", size,
                        "--smooth", 1, *MAP, *options)
        self.assertEqual(run.returncode, 0, run.stderr)
        if says:
            self.assertIn(says, run.stderr)
        picture = Picture(self.folder / "out.png")
        left, top, right, bottom, _ = picture.model()
        return lambda x, y: picture.at(int(left + x * (right - left + 1) / SIDE),
                                       int(bottom + 1 - y * (bottom - top + 1) / SIDE))

    def check(self, at, *expected):
        for x, y, colour in expected:
            self.assertTrue(near(at(x, y), colour, 8), (x, y, at(x, y), colour))

    def test_each_quarter_lies_where_it_should(self):
        self.ortho()
        at = self.seen()
        middle = SIDE / 2
        for dx, dy, colour in ((-1, 1, RED), (1, 1, GREEN), (-1, -1, BLUE), (1, -1, YELLOW)):
            for by in (6, 40, 90):
                self.check(at, (middle + dx * by, middle + dy * by, colour))

    def test_a_picture_covers_its_own_part_alone(self):
        self.ortho(west=X + 33, north=Y + 141, width=88, height=104)
        at = self.seen(*PLAIN)
        self.check(at, (40, 134, RED), (114, 134, GREEN), (40, 44, BLUE), (114, 44, YELLOW), (74, 92, RED), (80, 86, YELLOW))
        for x, y in ((28, 90), (126, 90), (77, 146), (77, 32), (28, 146), (126, 32), (5, 5), (185, 185)):
            self.check(at, (x, y, SURFACE))

    def test_round_a_picture_nothing_is_white(self):
        self.ortho([[(90, 20, 60)] * 11] * 13, west=X + 33.3, north=Y + 141.7, width=88, height=104)
        for options in (PLAIN, ("--ramp", "0 200 0 0; 99 200 0 0; 101 64 128 192; 200 64 128 192"), ()):
            picture = self.render(self.grid("dem.asc", plain()), "--drape", "ortho.tif", *MAP, *options, size="200x200")
            self.assertIsNone(picture.where(lambda c: min(c) > 215 and c != BACKGROUND), options)

    def test_the_rest_of_the_cells_has_the_ramps_colours(self):
        slope = [[10 * (19 - i)] * 20 for i in range(20)]
        self.ortho([[(90, 20, 60)] * 11] * 13, west=X + 33.3, north=Y + 141.7, width=88, height=104)
        grid = self.grid("dem.asc", slope)
        bare = self.render(grid, *MAP, size="200x200")
        draped = self.render(grid, "--drape", "ortho.tif", *MAP, size="200x200")
        image = draped.where(lambda c: near(c, (90, 20, 60), 30))
        for y in range(200):
            for x in range(200):
                if not (image[0] - 1 <= x <= image[2] + 1 and image[1] - 1 <= y <= image[3] + 1):
                    # OpenGL compresses textures by blocks of 4 x 4, and the image's colour stands beside.
                    self.assertTrue(near(bare.at(x, y), draped.at(x, y), 32), (x, y, bare.at(x, y), draped.at(x, y)))

    def test_degrees_are_brought_to_the_terrain(self):
        self.grid("dem.asc", plain())
        (self.folder / "dem.prj").write_text(UTM)
        south, north = (math.degrees(latitude(Y + y)) for y in (0, SIDE))
        degree = math.radians(1) * 6378137 * math.cos(latitude(Y + SIDE / 2)) * 0.9996 / math.sqrt(
            1 - 0.00669437999014 * math.sin(latitude(Y + SIDE / 2)) ** 2)
        west, east = (-3 + (X - 500000 + x) / degree for x in (0, SIDE))
        self.write("ortho.tif", tiff(quarters(), 3, geo=(west, north, (east - west) / SIDE, (north - south) / SIDE),
                                     epsg=4326))
        at = self.seen(says="ortho.tif: brought from WGS 84 to the terrain's coordinates")
        self.check(at, (20, 170, RED), (90, 100, RED), (100, 100, GREEN), (170, 170, GREEN), (90, 90, BLUE),
                   (170, 20, YELLOW), (100, 90, YELLOW))

    def test_a_world_file_places_any_picture(self):
        self.write("photo.bmp", bmp(quarters(40), 24))
        (self.folder / "photo.wld").write_text(f"{SIDE / 40}\n0\n0\n{-SIDE / 40}\n{X + SIDE / 80}\n{Y + SIDE - SIDE / 80}\n")
        picture = self.render(self.grid("dem.asc", plain()), "--drape", "photo.bmp", *MAP, size="200x200")
        self.assertEqual([picture.at(x, y) for x, y in ((50, 50), (150, 50), (50, 150), (150, 150))],
                         [RED, GREEN, BLUE, YELLOW])

    def test_greys_and_one_pixel(self):
        self.write("ortho.tif", tiff([[(128,)]], 1, geo=(X - 10, Y + SIDE + 10, SIDE + 20, SIDE + 20)))
        at = self.seen()
        self.check(at, *[(x, y, (128, 128, 128)) for x in (5, 95, 185) for y in (5, 95, 185)])

    def test_a_fine_picture_is_averaged_not_thinned(self):
        self.ortho([[(0, 0, 0), WHITE] * 1000] * 4, height=SIDE)
        at = self.seen(size="60x60")
        for x in range(15, 180, 15):
            self.assertTrue(near(at(x, 95), (128, 128, 128), 30), at(x, 95))

    def test_light_falls_on_it(self):
        self.ortho([[(200, 200, 200)] * 10] * 10)
        picture = self.render(self.grid("dem.asc", hill()), "--drape", "ortho.tif", "--top", "--orthographic", "--no-base",
                              size="200x200")
        shades = {c[0] for _, _, c in picture.pixels() if c != BACKGROUND}
        self.assertGreater(max(shades) - min(shades), 60)
        greys = [c for _, _, c in picture.pixels() if c != BACKGROUND and max(c) - min(c) > 6]
        self.assertEqual(greys, [], "lit, but of its own colour")

    def test_views_from_all_sides_agree(self):
        self.ortho()
        grid = self.grid("dem.asc", plain())
        for azimuth, far, right in ((180, (RED, GREEN), (GREEN, YELLOW)), (0, (YELLOW, BLUE), (BLUE, RED)),
                                    (90, (BLUE, RED), (RED, GREEN)), (270, (GREEN, YELLOW), (YELLOW, BLUE))):
            picture = self.render(grid, "--drape", "ortho.tif", "--azimuth", azimuth, "--elevation", 50, "--no-light",
                                  "--no-base", size="200x150")
            left, top, right_edge, bottom, _ = picture.model()
            width = right_edge - left
            at = lambda u, v: picture.at(int(left + u * width), int(top + v * (bottom - top)))
            self.assertEqual((at(0.4, 0.2), at(0.6, 0.2)), far, azimuth)
            self.assertEqual((at(0.7, 0.2), at(0.8, 0.8)), right, azimuth)

    def test_what_cant_be_draped_is_one_line(self):
        grid = self.grid("dem.asc", plain())
        self.ortho(west=X + 5000)
        line = self.fails("render", grid, "--drape", "ortho.tif", "-o", "x.png", says=["ortho.tif", "off the terrain"])
        self.assertIn("505005", line)
        self.write("bare.tif", tiff(quarters(), 3))
        self.fails("render", grid, "--drape", "bare.tif", "-o", "x.png", says=["bare.tif", "no georeference"])
        self.fails("render", grid, "--drape", "none.tif", "-o", "x.png", says=["none.tif", "no such file"])
        self.fails("render", grid, "--drape", grid, "-o", "x.png", says=[grid, "8 bits"])
        self.write("text.tif", b"hello")
        self.fails("render", grid, "--drape", "text.tif", "-o", "x.png", says=["text.tif", "not a raster"])
        self.ortho()
        data = (self.folder / "ortho.tif").read_bytes()
        self.write("cut.tif", data[:len(data) // 2])
        self.fails("render", grid, "--drape", "cut.tif", "-o", "x.png", says="cut.tif")
        self.fails("render", grid, "--drape", "", "-o", "x.png", says="--drape")

    def test_no_file_is_left_behind(self):
        self.ortho()
        temporary = self.folder / "tmp"
        temporary.mkdir()
        grid = self.grid("dem.asc", plain())
        run = self.host("render", grid, "--drape", "ortho.tif", "-o", "x.png", "--size", "40x30",
                        env=environment(TMPDIR=str(temporary)))
        self.assertEqual((run.returncode, run.stderr), (0, ""))
        self.assertEqual(list(temporary.iterdir()), [])
        self.fails("render", grid, "--drape", "ortho.tif", "-o", "y.png", says="TMPDIR",
                   env=environment(TMPDIR=str(self.folder / "nowhere")))

    @unittest.skipUnless(DATA.is_dir(), f"{DATA} is missing (set LUMBRA_DATA to the folder that holds it)")
    def test_real_pairs(self):
        for grid, image in (("rmnp-dem.tif", "rmnp-rgb.tif"), ("srtm_41_19.tif", "3320D_2010_315_RGB_LATLNG.tif")):
            run = self.host("render", DATA / grid, "--drape", DATA / image, "-o", "out.png", "--size", "320x240")
            self.assertEqual(run.returncode, 0, run.stderr)
            self.assertIn(f"{image}: brought from WGS 84 to the terrain's coordinates", run.stderr)
        self.fails("render", DATA / "srtm_41_19.tif", "--drape", DATA / "rmnp-rgb.tif", "-o", "x.png",
                   says=["rmnp-rgb.tif", "off the terrain"])


if __name__ == "__main__":
    unittest.main()
