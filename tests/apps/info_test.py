#!/usr/bin/env python3
"""What the host program tells: about grids, about OpenGL, about itself."""
import re
import unittest

from host import HostTest, environment, hill


class Info(HostTest):
    def tells(self, *args):
        run = self.host("info", *args)
        self.assertEqual((run.returncode, run.stderr), (0, ""))
        return run.stdout

    def test_of_a_grid(self):
        heights = hill()
        heights[3][4] = -9999
        text = self.tells(self.grid("dem.asc", heights, x=500000.25, y=4000000, cell=2.5))
        for line in (r"samples +20 x 20 in the file", r"grid +20 x 20 samples, cells of 2\.5 x 2\.5",
                     r"coordinates +none given", r"x +500001\.5 to 500049", r"y +4000001\.25 to 4000048\.75",
                     r"heights +0 to 5\d\.\d+", r"void value +-9999", r"voids +1 samples"):
            self.assertRegex(text, r"(?m)^  " + line + "$")

    def test_nodata_is_taken_from_the_user(self):
        heights = hill()
        heights[3][4] = -77
        grid = self.grid("dem.asc", heights, header="")
        self.assertRegex(self.tells(grid), r"voids +0 samples")
        self.assertRegex(self.tells(grid, "--nodata", "-77"), r"voids +1 samples")

    def test_undeclared_voids_are_asked_for(self):
        heights = hill()
        for j in range(5):
            heights[3][j] = 32767
        run = self.host("info", self.grid("dem.asc", heights, header=""))
        self.assertEqual(run.returncode, 0)
        self.assertIn("dem.asc: warning: ", run.stderr)
        self.assertIn("--nodata 32767", run.stderr)

    def test_degrees_go_to_utm_and_it_says_so(self):
        (self.folder / "dem.prj").write_text('GEOGCS["WGS 84",DATUM["WGS_1984",SPHEROID["WGS 84",6378137,298.257223563]],'
                                             'PRIMEM["Greenwich",0],UNIT["degree",0.0174532925199433]]')
        grid = self.grid("dem.asc", hill(), x=-3.7, y=40.4, cell=0.001)
        run = self.host("info", grid)
        self.assertIn("UTM zone 30N", run.stderr)
        self.assertRegex(run.stdout, r"coordinates +WGS 84 / UTM zone 30N")
        run = self.host("info", grid, "--degrees")
        self.assertEqual(run.stderr, "")
        self.assertRegex(run.stdout, r"x +-3\.6995 to -3\.6805")

    def test_of_opengl(self):
        text = self.tells("--gl")
        self.assertRegex(text, r"(?m)^  glx .*\n +DISPLAY isn't set")
        self.assertRegex(text, r"(?m)^  egl-surfaceless ")
        self.assertRegex(text, r"(?m)^ +serves$")
        for line in (r"renderer +\S+", r"version +\d\.\d", r"largest view +\d{4,} x \d{4,}", r"depth +\d\d bits"):
            self.assertRegex(text, r"(?m)^  " + line)
        run = self.host("info", "--gl", env=environment(DISPLAY=":4711"))
        self.assertEqual(run.returncode, 0)
        self.assertIn(":4711", run.stdout)

    def test_of_both(self):
        text = self.tells("--gl", self.grid("dem.asc", hill()))
        self.assertLess(text.index("renderer"), text.index("20 x 20"))


class Help(HostTest):
    def test_of_the_program(self):
        run = self.host("--help")
        self.assertEqual((run.returncode, run.stderr), (0, ""))
        for word in ("lumbra", "render", "info", "--version"):
            self.assertIn(word, run.stdout)
        run = self.host("--version")
        self.assertEqual((run.returncode, run.stderr), (0, ""))
        self.assertRegex(run.stdout, r"^lumbra \d+\.\d+\.\d+\n$")

    def test_of_each_order(self):
        run = self.host("render", "--help")
        self.assertEqual((run.returncode, run.stderr), (0, ""))
        options = ("--output", "--size", "--smooth", "--nodata", "--degrees", "--azimuth", "--elevation", "--top",
                   "--orthographic", "--exaggeration", "--color", "--ramp", "--surface", "--background", "--tints",
                   "--light", "--no-light", "--no-base", "--limits", "--axes", "--mesh", "--step")
        for option in options:
            self.assertRegex(run.stdout, re.escape(option) + r"\b")
        self.assertIn("Usage: lumbra render", run.stdout)
        self.assertNotIn("->", run.stdout, "the parser's own way of writing a choice")
        run = self.host("info", "--help")
        self.assertEqual((run.returncode, run.stderr), (0, ""))
        self.assertIn("--gl", run.stdout)


if __name__ == "__main__":
    unittest.main()
