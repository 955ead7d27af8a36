#!/usr/bin/env python3
"""Panoramas, seen from inside: what lies where is told by its colour."""
import math
import os
import unittest
from pathlib import Path

from files import bmp
from host import BACKGROUND, HostTest, Picture, hill

RED, GREEN, BLUE, YELLOW, WHITE, BLACK = ((255, 0, 0), (0, 255, 0), (0, 0, 255), (255, 255, 0), (255, 255, 255),
                                          (0, 0, 0))
DATA = Path(os.environ.get("LUMBRA_DATA", "")) / "pano"


def panorama(width=64, height=32, sky=4):
    """Red round the middle, green to its right, blue behind, yellow to the left; rows of sky above, of ground below."""
    quarters = (BLUE, YELLOW, RED, GREEN)
    row = [quarters[(8 * x + width) // (2 * width) % 4] for x in range(width)]
    return [[WHITE] * width] * sky + [row] * (height - 2 * sky) + [[BLACK] * width] * sky


class Panorama(HostTest):
    def write(self, name, data):
        (self.folder / name).write_bytes(data)
        return name

    def look(self, file, where, fov=60, size="80x60", *options):
        run = self.host("render", file, "--sphere", "--look", where, "--fov", fov, "--size", size, "--smooth", 1, "-o",
                        "out.png", *options)
        self.assertEqual((run.returncode, run.stderr), (0, ""), run.stderr)
        return Picture(self.folder / "out.png")

    def middle(self, *args):
        picture = self.look(*args)
        return picture.at(picture.width // 2, picture.height // 2)

    def test_azimuths_go_clockwise_from_the_middle(self):
        file = self.write("p.bmp", bmp(panorama(), 24))
        for azimuth, colour in ((0, RED), (40, RED), (50, GREEN), (90, GREEN), (180, BLUE), (-90, YELLOW), (270, YELLOW),
                                (320, RED), (720, RED)):
            self.assertEqual(self.middle(file, f"{azimuth},0"), colour, azimuth)

    def test_right_is_right_and_up_is_up(self):
        file = self.write("p.bmp", bmp(panorama(), 24))
        picture = self.look(file, "0,0", 60, "200x60")
        half = 30 / math.tan(math.radians(30))  # pixels to 45 degrees
        self.assertEqual([picture.at(int(100 + sign * (half + by)), 30) for sign in (-1, 1) for by in (-3, 3)],
                         [RED, YELLOW, RED, GREEN])
        picture = self.look(file, "0,60")
        self.assertEqual([picture.at(40, y) for y in (5, 55)], [WHITE, RED])
        picture = self.look(file, "0,-60")
        self.assertEqual([picture.at(40, y) for y in (5, 55)], [RED, BLACK])
        self.assertEqual(self.middle(file, "17,90"), WHITE)
        self.assertEqual(self.middle(file, "17,-90"), BLACK)

    def test_the_field_of_view_is_the_pictures_height(self):
        file = self.write("p.bmp", bmp(panorama(), 24))
        for fov in (30, 90, 120):
            picture = self.look(file, "45,0", fov, "200x100")
            # Rising from the horizon the sky begins at 67.5 degrees: seen in the tallest view alone.
            self.assertEqual(picture.at(100, 0) == WHITE, fov / 2 > 67.5)
        edge = 50 / math.tan(math.radians(20)) * math.tan(math.radians(7.5))
        picture = self.look(file, "0,60", 40, "100x100")
        self.assertEqual([picture.at(50, int(50 - edge + by)) for by in (-3, 3)], [WHITE, RED])

    def test_without_a_look_the_middle_is_seen(self):
        file = self.write("p.bmp", bmp(panorama(), 24))
        run = self.host("render", file, "--sphere")
        self.assertEqual((run.returncode, run.stderr), (0, ""))
        self.assertEqual(run.stdout, "p.bmp -> p.png: 1200 x 900 pixels, to azimuth 0 from the panorama's middle, "
                                     "elevation 0\n")
        self.assertEqual(Picture(self.folder / "p.png").at(600, 450), RED)

    def test_a_wide_picture_covers_a_band_about_the_horizon(self):
        file = self.write("p.bmp", bmp(panorama(64, 16, 2), 24))  # from -45 to 45 degrees
        for elevation, colour in ((0, RED), (30, RED), (40, WHITE), (48, BACKGROUND), (-30, RED), (-40, BLACK),
                                  (-48, BACKGROUND)):
            self.assertEqual(self.middle(file, f"0,{elevation}"), colour, elevation)
        self.assertEqual(self.middle(file, "0,60", 60, "80x60", "--background", "#123456"), (0x12, 0x34, 0x56))

    def test_a_tall_picture_is_a_whole_sphere(self):
        file = self.write("p.bmp", bmp(panorama(32, 32, 4), 24))
        self.assertEqual([self.middle(file, f"0,{e}") for e in (-80, -60, 60, 80)], [BLACK, RED, RED, WHITE])

    def test_the_pictures_own_heading_is_north(self):
        heading = b'<rdf:Description GPano:PoseHeadingDegrees="90.0"/>'
        file = self.write("p.bmp", bmp(panorama(), 24) + heading)
        self.assertEqual([self.middle(file, f"{a},0") for a in (90, 180, 0)], [RED, GREEN, YELLOW])
        run = self.host("render", file, "--sphere", "--size", "40x30")
        self.assertIn("to azimuth 90 from north, elevation 0", run.stdout)
        self.assertEqual(Picture(self.folder / "p.png").at(20, 15), RED)

    def cropped(self, left, width, full_width, top, height, full_height, form="attribute"):
        values = {"CroppedAreaLeftPixels": left, "CroppedAreaImageWidthPixels": width, "FullPanoWidthPixels": full_width,
                  "CroppedAreaTopPixels": top, "CroppedAreaImageHeightPixels": height,
                  "FullPanoHeightPixels": full_height}
        if form == "attribute":
            return "".join(f' GPano:{name}="{value}"' for name, value in values.items()).encode()
        return "".join(f"<GPano:{name}>{value}</GPano:{name}>" for name, value in values.items()).encode()

    def test_a_cropped_picture_lies_where_it_says(self):
        for form in ("attribute", "element"):
            # The upper half of the turn's right half: azimuth 0 to 180 and over the horizon.
            rows = [[WHITE] * 32] * 4 + [[RED] * 16 + [GREEN] * 16] * 12
            file = self.write("p.bmp", bmp(rows, 24) + self.cropped(32, 32, 64, 0, 16, 32, form))
            for where, colour in (("45,20", RED), ("135,20", GREEN), ("45,80", WHITE), ("45,-5", BACKGROUND),
                                  ("-45,20", BACKGROUND), ("-135,80", BACKGROUND)):
                self.assertEqual(self.middle(file, where), colour, (form, where))
            run = self.host("render", file, "--sphere", "--size", "40x30")
            self.assertIn("azimuth 90 ", run.stdout)

    def test_a_crop_that_makes_no_sense_is_not_taken(self):
        for crop in ((0, 0, 64, 0, 32, 32), (40, 32, 64, 0, 32, 32), (-1, 32, 64, 0, 32, 32), (0, 64, 64, 0, "x", 32),
                     (0, 64, 0, 0, 32, 32), (0, "nan", 64, 0, 32, 32)):
            file = self.write("p.bmp", bmp(panorama(), 24) + self.cropped(*crop))
            self.assertEqual([self.middle(file, w) for w in ("0,0", "90,0", "0,80")], [RED, GREEN, WHITE], crop)

    def test_one_that_opengl_cant_take_is_reduced(self):
        largest = int(self.host("info", "--gl").stdout.split("largest tile")[1].split()[0])
        wide = 2 * largest + 64
        file = self.write("p.bmp", bmp(panorama(wide, 8, 0), 24))
        run = self.host("render", file, "--sphere", "--look", "90,0", "--fov", 1, "--size", "40x1", "-o", "out.png",
                        "--smooth", 1)
        self.assertEqual(run.returncode, 0, run.stderr)
        self.assertEqual(run.stderr, f"p.bmp: larger than OpenGL takes here; shown as {largest} x "
                                     f"{round(8 * largest / wide)} pixels\n")
        self.assertEqual(Picture(self.folder / "out.png").at(20, 0), GREEN)

    def test_one_pixel_is_everywhere(self):
        file = self.write("p.bmp", bmp([[RED]], 24))
        self.assertEqual([self.middle(file, w) for w in ("0,0", "123,45", "-60,-80")], [RED] * 3)

    def test_what_cant_be_served_is_one_line(self):
        file = self.write("p.bmp", bmp(panorama(), 24))
        self.fails("render", file, "--look", "0,0", "-o", "x.png", says=["--look", "--sphere"])
        self.fails("render", file, "--fov", "50", "-o", "x.png", says=["--fov", "--sphere"])
        for look in ("", "1", "1,2,3", "a,b", "nan,0", "0;0"):
            self.fails("render", file, "--sphere", f"--look={look}", "-o", "x.png", says="--look")
        self.fails("render", file, "--sphere", "--look", "0,91", "-o", "x.png", says=["--look", "-90"])
        for fov in ("0", "171", "-5", "x"):
            self.fails("render", file, "--sphere", f"--fov={fov}", "-o", "x.png", says="--fov")
        self.fails("render", file, "--sphere", "--size", "100000x10", "-o", "x.png", says="16384")
        self.fails("render", self.grid("dem.asc", hill()), "--sphere", "-o", "x.png", says=["dem.asc", "not a picture"])
        self.fails("render", "none.jpg", "--sphere", "-o", "x.png", says="none.jpg")
        self.fails("render", file, "--sphere", "-o", "none/x.png", says="no folder")
        self.write("cut.bmp", bmp(panorama(), 24)[:50])
        self.fails("render", "cut.bmp", "--sphere", "-o", "x.png", says="cut.bmp")

    @unittest.skipUnless(DATA.is_dir(), f"{DATA} is missing (set LUMBRA_DATA to the folder that holds it)")
    def test_real_panoramas(self):
        for name in ("petra.jpg", "2294472375_24a3b8ef46_o.jpg", "snow.jpg"):
            run = self.host("render", DATA / name, "--sphere", "-o", "out.png", "--size", "160x120")
            self.assertEqual((run.returncode, run.stderr), (0, ""), name)
            colours = {c for _, _, c in Picture(self.folder / "out.png").pixels()}
            self.assertGreater(len(colours), 1000, name)
            self.assertNotIn(BACKGROUND, colours)
        run = self.host("render", DATA / "snow.jpg", "--sphere", "-o", "out.png", "--size", "160x120")
        self.assertIn("azimuth 285 from north", run.stdout)
        self.assertEqual(self.middle(DATA / "snow.jpg", "285,75"), BACKGROUND, "what the camera didn't take")


if __name__ == "__main__":
    unittest.main()
