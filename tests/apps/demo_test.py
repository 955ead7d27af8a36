#!/usr/bin/env python3
"""What the demonstration makes and draws."""
import subprocess
import sys
import unittest
from pathlib import Path

from host import BACKGROUND, HostTest, Picture

TOOL = Path(__file__).resolve().parents[2] / "tools" / "make-survey"


class Demonstration(HostTest):
    def test_the_survey_can_be_drawn(self):
        made = subprocess.run([sys.executable, TOOL, self.folder / "survey"], capture_output=True, text=True, timeout=300)
        self.assertEqual((made.returncode, made.stdout, made.stderr), (0, "", ""))
        for name, *options in (("terrain.asc", "--drape", "survey/ortho.tif"),
                               ("village.asc", "--drape", "survey/village.tif", "--buildings", "survey/houses.geojson",
                                "--trees", "survey/trees.geojson", "--breaklines", "survey/road.txt", "--sky",
                                "survey/sky.bmp"),
                               ("panorama.bmp", "--sphere", "--look", "20,12")):
            run = self.host("render", f"survey/{name}", *options, "-o", "out.png", "--size", "160x120")
            self.assertEqual((run.returncode, run.stderr), (0, ""), name)
            picture = Picture(self.folder / "out.png")
            self.assertGreater(len({c for _, _, c in picture.pixels()}), 1000, name)
            self.assertEqual(picture.at(0, 0) == BACKGROUND, name == "terrain.asc", "sky behind all but the first")

    def test_it_tells_how_it_is_used(self):
        asked = subprocess.run([sys.executable, TOOL], capture_output=True, text=True, timeout=60)
        self.assertEqual(asked.returncode, 1)
        self.assertIn("tools/make-survey FOLDER", asked.stderr)


if __name__ == "__main__":
    unittest.main()
