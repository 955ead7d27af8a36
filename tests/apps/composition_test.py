#!/usr/bin/env python3
"""Several models in one picture."""
import unittest

from host import BACKGROUND, HostTest, Picture, hill, plain
from files import tiff

PLAN = ("--top", "--orthographic", "--no-base", "--no-light", "--exaggeration", 1)


class Composition(HostTest):
    def setUp(self):
        super().setUp()
        self.grid("west.asc", plain(20, 20, 10))
        self.grid("east.asc", plain(20, 20, 90), x=500200)
        self.grid("north.asc", plain(20, 20, 50), y=4000400)

    def wide(self, picture):
        left, top, right, bottom, _ = picture.model()
        return (right - left + 1) / (bottom - top + 1)

    def test_a_reference_and_a_link_stand_in_their_places(self):
        for option in ("--reference", "--link"):
            picture = self.render("west.asc", option, "east.asc", *PLAN)
            self.assertAlmostEqual(self.wide(picture), 390 / 190, delta=0.1)
            middle = picture.height // 2
            west, east = picture.at(picture.width // 4, middle), picture.at(3 * picture.width // 4, middle)
            self.assertNotIn(BACKGROUND, (west, east))
            self.assertNotEqual(west, east, "one ramp for all heights")

    def test_both_may_be_repeated(self):
        picture = self.render("west.asc", "--reference", "east.asc", "--link", "north.asc", "--link", "west.asc", *PLAN)
        self.assertAlmostEqual(self.wide(picture), 390 / 590, delta=0.05)

    def test_the_frame_is_fitted_to_all_whichever_is_the_first(self):
        one = self.render("west.asc", "--link", "east.asc", *PLAN)
        other = self.render("east.asc", "--link", "west.asc", *PLAN)
        self.assertLess(one.difference(other), 1.0)

    def test_in_perspective_with_a_base_nothing_leaves_the_picture(self):
        picture = self.render("west.asc", "--reference", "east.asc", "--link", "north.asc")
        left, top, right, bottom, _ = picture.model()
        self.assertGreater(min(left, top, picture.width - 1 - right, picture.height - 1 - bottom), 0)

    def test_another_system_is_brought_to_the_first_ones(self):
        utm = ('PROJCS["z{0}",GEOGCS["e",DATUM["European_Terrestrial_Reference_System_1989",SPHEROID["GRS 1980",6378137,'
               '298.257222101]],PRIMEM["Greenwich",0],UNIT["degree",0.0174532925199433]],PROJECTION["Transverse_Mercator"],'
               'PARAMETER["latitude_of_origin",0],PARAMETER["central_meridian",{1}],PARAMETER["scale_factor",0.9996],'
               'PARAMETER["false_easting",500000],PARAMETER["false_northing",0],UNIT["metre",1]]')
        # On the border of two zones, at 0 east and 40 north, both see a place as far from their middles.
        for name, zone, middle, x in (("z30", 30, -3, 756099), ("z31", 31, 3, 243900)):
            self.grid(name + ".asc", hill(), x=x - 100, y=4432069 - 100)
            (self.folder / (name + ".prj")).write_text(utm.format(zone, middle))
        run = self.host("render", "z30.asc", "--reference", "z31.asc", "-o", "out.png", "--size", "160x120", "--smooth", 1,
                        *PLAN)
        self.assertEqual(run.returncode, 0, run.stderr)
        self.assertRegex(run.stderr, r"^z31\.asc: from z31 to z30: resampled to .*\n$")
        together = Picture(self.folder / "out.png")
        self.assertAlmostEqual(self.wide(together), 1.0, delta=0.1, msg="both lie on one place")
        self.assertLess(together.difference(self.render("z30.asc", *PLAN)), 12.0)

    def test_a_model_without_a_system_is_taken_as_being_in_the_first_ones(self):
        (self.folder / "west.prj").write_text('LOCAL_CS["survey",UNIT["metre",1]]')
        run = self.host("render", "west.asc", "--link", "east.asc", "-o", "out.png", "--size", "80x60")
        self.assertEqual(run.returncode, 0, run.stderr)
        self.assertIn("east.asc: no coordinate system given; taken as the terrain's", run.stderr)
        run = self.host("render", "east.asc", "--link", "west.asc", "-o", "out.png", "--size", "80x60")
        self.assertEqual(run.returncode, 0, run.stderr)
        self.assertIn("west.asc: the terrain gives no coordinate system; coordinates taken as they are", run.stderr)

    def test_a_model_far_away_is_told(self):
        self.grid("far.asc", plain(), x=900000)
        run = self.host("render", "west.asc", "--reference", "far.asc", "-o", "out.png", "--size", "80x60")
        self.assertEqual(run.returncode, 0)
        self.assertIn("far.asc: warning: it lies so far", run.stderr)

    def test_bad_models_are_refused_in_one_line(self):
        (self.folder / "photo.tif").write_bytes(tiff([[(1, 2, 3)] * 4] * 4, 3))
        (self.folder / "empty.asc").touch()
        for option in ("--reference", "--link"):
            for name, says in (("none.asc", "no such file"), ("empty.asc", "empty"), ("photo.tif", "--drape")):
                self.fails("render", "west.asc", option, name, "-o", "x.png", says=[name, says])
            line = self.fails("render", "west.asc", option, "", "-o", "x.png", says="empty name")
            self.assertIn(option, line)
            self.fails("render", "photo.tif", option, "west.asc", "-o", "x.png", says=[option, "a picture"])
        self.fails("render", "west.asc", "--link", self.grid("small.asc", plain(3, 3)), "--step", 5, "-o", "x.png",
                   says="smaller --step")


if __name__ == "__main__":
    unittest.main()
