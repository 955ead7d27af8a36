#!/usr/bin/env python3
"""Pictures: drawn as themselves, told about, and converted."""
import struct
import unittest

from files import bmp, tiff
from host import HostTest, Picture, hill

RED, GREEN, BLUE, WHITE, BLACK, GREY = ((255, 0, 0), (0, 255, 0), (0, 0, 255), (255, 255, 255), (0, 0, 0),
                                        (123, 123, 123))
ROWS = [[RED, GREEN, BLUE, WHITE, BLACK], [WHITE, BLACK, RED, RED, GREEN], [BLUE, BLUE, GREEN, WHITE, RED]]


class Pictures(HostTest):
    def write(self, name, data):
        (self.folder / name).write_bytes(data)
        return name

    def done(self, *args):
        run = self.host(*args)
        self.assertEqual((run.returncode, run.stderr), (0, ""), args)
        return run.stdout

    def shown(self, file, *options):
        self.done("render", file, "-o", "out.png", *options)
        picture = Picture(self.folder / "out.png")
        return [[picture.at(x, y) for x in range(picture.width)] for y in range(picture.height)]

    def test_every_depth_of_bitmap_shows_its_colours(self):
        for bits in (4, 8, 16, 24, 32):
            self.assertEqual(self.shown(self.write("a.bmp", bmp(ROWS, bits))), ROWS, bits)
        two = [[BLACK, WHITE, WHITE] * 5, [WHITE, BLACK, BLACK] * 5]
        self.assertEqual(self.shown(self.write("b.BMP", bmp(two, 1))), two)

    def test_tiff_in_colours_and_in_greys(self):
        self.assertEqual(self.shown(self.write("a.tif", tiff(ROWS, 3))), ROWS)
        greys = [[GREY, WHITE, BLACK]] * 2
        self.assertEqual(self.shown(self.write("g.tiff", tiff(greys, 1))), greys)

    def test_a_size_is_fitted_into_and_averages(self):
        rows = [[BLACK, WHITE] * 4] * 4
        file = self.write("a.bmp", bmp(rows, 24))
        self.assertEqual(self.shown(file), rows)
        self.assertEqual(self.shown(file, "--size", "4x4"), [[(128, 128, 128)] * 4] * 2)
        self.assertEqual(self.shown(file, "--size", "100x8"), [[c for c in row for _ in "ab"] for row in rows for _ in "ab"])

    def test_conversions_keep_the_pixels(self):
        self.write("a.bmp", bmp(ROWS, 24))
        names = ["a.bmp", "b.tif", "c.bmp", "d.TIFF", "e.png"]
        for before, after in zip(names, names[1:]):
            self.assertEqual(self.done("convert", before, after), f"{before} -> {after}: 5 x 3 pixels\n")
        picture = Picture(self.folder / "e.png")
        self.assertEqual([[picture.at(x, y) for x in range(5)] for y in range(3)], ROWS)

    def test_jpeg_comes_close(self):
        rows = [[(40 + 4 * x, 200 - 3 * y, 90) for x in range(32)] for y in range(24)]
        self.write("a.bmp", bmp(rows, 24))
        self.done("convert", "a.bmp", "a.jpg")
        self.assertEqual((self.folder / "a.jpg").read_bytes()[:2], b"\xff\xd8")
        for row, shown in zip(rows, self.shown("a.jpg")):
            for colour, got in zip(row, shown):
                self.assertLess(max(abs(a - b) for a, b in zip(colour, got)), 24)

    def test_greys_stay_greys(self):
        rows = [[GREY, WHITE, BLACK]] * 2
        self.write("g.tif", tiff(rows, 1))
        self.done("convert", "g.tif", "g.bmp")
        self.assertEqual(struct.unpack("<H", (self.folder / "g.bmp").read_bytes()[28:30]), (8,))
        self.done("convert", "g.tif", "h.jpg")
        self.assertEqual(self.shown("g.bmp"), rows)
        self.assertEqual(len(self.shown("h.jpg")[0]), 3)

    def test_a_georeference_is_told_and_kept(self):
        self.write("a.tif", tiff(ROWS, 3, geo=(500000, 4600000, 2, 3)))
        self.done("convert", "a.tif", "b.tif")
        for name in ("a.tif", "b.tif"):
            told = self.done("info", name)
            self.assertRegex(told, r"pixels +5 x 3\n")
            self.assertRegex(told, r"pixel size +2 x 3\n")
            self.assertRegex(told, r"tie point +pixel 0, 0 is at 500000, 4600000\n")
        self.assertNotIn("pixel size", self.done("info", self.write("c.tif", tiff(ROWS, 3))))

    def test_info_of_a_bitmap(self):
        told = self.done("info", self.write("a.bmp", bmp(ROWS, 24)))
        self.assertRegex(told, r"format +BMP\n")
        self.assertRegex(told, r"resolution +72\.01\d* dots per inch\n")

    def test_the_user_says_what_a_file_holds(self):
        heights = [[tuple([10 * x + y] * 3) for x in range(12)] for y in range(12)]
        file = self.write("h.tif", tiff(heights, 1))
        self.assertEqual(len(self.shown(file)), 12)
        run = self.host("render", file, "--as", "terrain", "-o", "t.png", "--size", "40x30")
        self.assertEqual(run.returncode, 0, run.stderr)
        self.assertEqual(Picture(self.folder / "t.png").width, 40)
        self.fails("render", self.grid("dem.asc", hill()), "--as", "picture", "-o", "x.png", says="not a picture")
        self.fails("info", "h.tif", "--as", "map", says="picture, terrain")

    def test_what_cant_be_read_or_written_is_one_line(self):
        good = self.write("good.bmp", bmp(ROWS, 24))
        self.write("cut.bmp", bmp(ROWS, 24)[:30])
        self.write("text.jpg", b"hello")
        self.write("rle.bmp", bmp(ROWS, 8)[:30] + b"\1\0\0\0" + bmp(ROWS, 8)[34:])
        self.write("huge.bmp", bmp(ROWS, 24)[:18] + struct.pack("<ii", 2 ** 30, 2 ** 30) + bmp(ROWS, 24)[26:])
        for name in ("none.bmp", "none.jp2"):
            self.fails("info", name, says=[name, "does not exist"])
        (self.folder / "folder.bmp").mkdir()
        self.fails("info", "folder.bmp", says="folder.bmp")
        for name in ("cut.bmp", "text.jpg", "rle.bmp", "huge.bmp", "none.bmp", "none.jp2"):
            for task in (("convert", name, "x.bmp"), ("render", name, "-o", "x.png")):
                self.fails(*task, says=name)
        self.fails("convert", good, "x.gif", says=[".bmp, .tif, .jpg or .png"])
        self.fails("convert", good, good, says="it is the file that is read")
        self.fails("convert", good, "nowhere/x.bmp", says="no folder")
        self.fails("convert", good, says="output")
        self.fails("convert", self.write("wide.bmp", bmp([[RED] * 70000], 24)), "x.jpg", says="size")

    def test_damage_that_a_picture_is_shown_in_spite_of_is_told(self):
        self.write("a.bmp", bmp([[(x, 7 * y % 256, 99) for x in range(200)] for y in range(100)], 24))
        self.done("convert", "a.bmp", "a.jpg")
        data = (self.folder / "a.jpg").read_bytes()
        run = self.host("convert", self.write("cut.jpg", data[:len(data) // 2]), "b.bmp")
        self.assertEqual(run.returncode, 0, run.stderr)
        self.assertRegex(run.stderr, r"^cut\.jpg: warning: .+\n$")


if __name__ == "__main__":
    unittest.main()
