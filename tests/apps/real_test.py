#!/usr/bin/env python3
"""Real elevation files."""
import os
import sys
import unittest
from pathlib import Path

from host import BACKGROUND, HostTest, Picture

DATA = Path(os.environ.get("LUMBRA_DATA", "")) / "dem"
ABSENT = 77  # what tells the runner that the test was skipped
ELEVATION = ("095b_dem_90m.asc", "N00E010.hgt", "SainteHelens.dem", "dom1_32_356_5699_1_nw_2020.tif",
             "elev_vinschgau.tif", "hugo_site_filled.asc", "rmnp-dem.tif", "smalldem.tif", "srtm_41_19.tif",
             "srtmgl3_rocky_mountains.asc")
PICTURES = ("3320D_2010_315_RGB_LATLNG.tif", "rmnp-rgb.tif")


class RealFiles(HostTest):
    def drawn(self, name, *options):
        run = self.host("render", DATA / name, "-o", "out.png", "--size", "160x120", "--smooth", "1", *options)
        self.assertEqual(run.returncode, 0, run.stderr)
        for line in run.stderr.splitlines():
            self.assertTrue(line.startswith(f"{DATA / name}: "), line)
        return Picture(self.folder / "out.png")

    def test_every_elevation_file_renders(self):
        for name in ELEVATION:
            with self.subTest(name):
                picture = self.drawn(name)
                left, top, right, bottom, count = picture.model()
                self.assertTrue(left > 0 and top > 0 and right < 159 and bottom < 119)
                self.assertTrue(right - left > 110 or bottom - top > 80)
                self.assertGreater(count, 3000)
                self.assertGreater(len({c for _, _, c in picture.pixels()}), 500, "relief has many shades")

    def test_pictures_render_as_themselves(self):
        for name in PICTURES:
            run = self.host("render", DATA / name, "-o", "out.png")
            self.assertEqual((run.returncode, run.stderr), (0, ""), name)
            picture = Picture(self.folder / "out.png")
            self.assertIn(f"{picture.width} x {picture.height}", self.host("info", DATA / name).stdout)
            self.fails("render", DATA / name, "--as", "terrain", "-o", "x.png", says=[name, "not an elevation grid"])

    def test_every_picture_is_drawn_or_refused_in_one_line(self):
        refused = set()
        for path in sorted(p for kind in ("tiff", "bmp", "jpeg", "jp2") for p in (DATA.parent / kind).iterdir()):
            if path.suffix in (".tfw", ".wld"):
                continue
            run = self.host("render", path, "--as", "picture", "-o", "out.png", "--size", "60x60")
            if run.returncode != 0:
                self.assertEqual((run.returncode, run.stdout, len(run.stderr.splitlines())), (1, "", 1), run.stderr)
                refused.add(path.name)
        self.assertEqual(refused & {"RGB.byte.tif", "pal1.bmp", "rgb16.bmp", "rgb32.bmp", "autzen.jpg", "bogota.jp2",
                                    "p0_01.j2k", "BigTIFFMotorola.tif", "fax4.tiff"}, set())
        self.assertLessEqual({"pal4rle.bmp", "badwidth.bmp", "monkey12.jpg", "broken1.jp2"}, refused)

    def test_voids_are_holes(self):
        # The site is an island in a rectangle of voids: the share of what is drawn is that of valid samples.
        text = self.host("info", DATA / "hugo_site_filled.asc").stdout
        self.assertRegex(text, r"voids +2028 samples")
        drawn = self.drawn("hugo_site_filled.asc", "--top", "--orthographic", "--no-base", "--limits")
        bare = self.drawn("hugo_site_filled.asc", "--top", "--orthographic", "--no-base")
        left, top, right, bottom, _ = drawn.model()
        share = drawn.model()[4] / ((right - left + 1) * (bottom - top + 1))
        self.assertAlmostEqual(share, 1 - 2028 / (76 * 55), delta=0.06)
        self.assertEqual(bare.at(3, 3), BACKGROUND)

    def test_nodata_of_the_user(self):
        run = self.host("info", DATA / "hugo_site_filled.asc")
        self.assertIn("--nodata -9999", run.stderr)
        run = self.host("info", DATA / "hugo_site_filled.asc", "--nodata", "-9999")
        self.assertEqual(run.stderr, "")


if __name__ == "__main__":
    if not DATA.is_dir():
        print(f"Skipped: {DATA} is missing (set LUMBRA_DATA to the folder that holds it)")
        sys.exit(ABSENT)
    unittest.main()
