#!/usr/bin/env python3
"""Pictures of small grids: what is where, in which colour."""
import os
import pty
import re
import resource
import subprocess
import time
import unittest

from host import BACKGROUND, PROGRAM, HostTest, Picture, environment, hill, plain

RED, GREEN, BLUE = (255, 0, 0), (0, 255, 0), (0, 0, 255)
FLAT = ("--no-light", "--no-base")


def reddish(colour):
    return colour[0] > 180 and colour[1] < 80 and colour[2] < 80


class Content(HostTest):
    def test_default_picture(self):
        grid = self.grid("dem.asc", hill())
        run = self.host("render", grid)
        self.assertEqual((run.returncode, run.stderr), (0, ""))
        self.assertIn("dem.asc -> dem.png: 1200 x 900 pixels", run.stdout)
        self.assertEqual(run.stdout.count("\n"), 1)
        self.assertEqual(sorted(p.name for p in self.folder.iterdir()), ["dem.asc", "dem.png"])
        self.assertEqual((self.folder / "dem.png").read_bytes()[16:24], b"\0\0\x04\xb0\0\0\x03\x84")

    def test_size(self):
        grid = self.grid("dem.asc", hill())
        for size in ("1x1", "3x200", "200x3", "161x121"):
            picture = self.render(grid, size=size, smooth=2)
            self.assertEqual(f"{picture.width}x{picture.height}", size)

    def test_background(self):
        grid = self.grid("dem.asc", hill())
        picture = self.render(grid)
        for x, y in ((0, 0), (159, 0), (0, 119), (159, 119)):
            self.assertEqual(picture.at(x, y), BACKGROUND)
        for smooth in (1, 3):
            picture = self.render(grid, "--background", "#123456", smooth=smooth)
            self.assertEqual(picture.at(0, 0), (0x12, 0x34, 0x56))
        self.assertEqual(picture.at(159, 119), (0x12, 0x34, 0x56))

    def test_north_is_up_seen_from_the_top(self):
        for row, column, right, down in ((0, 0, 0, 0), (0, 19, 1, 0), (19, 0, 0, 1), (19, 19, 1, 1)):
            heights = plain()
            for i in range(4):
                for j in range(4):
                    heights[row - i if row else i][column - j if column else j] = 120
            grid = self.grid("dem.asc", heights)
            ramp = "0 0 0 255; 105 0 0 255; 115 255 0 0; 200 255 0 0"
            for projection in ((), ("--orthographic",)):
                picture = self.render(grid, "--top", "--ramp", ramp, *FLAT, *projection)
                left, top, high, low, count = picture.where(reddish)
                self.assertGreater(count, 30)
                self.assertEqual((left > 80, top > 60), (right == 1, down == 1))
                self.assertEqual((high > 80, low > 60), (right == 1, down == 1))

    def test_viewer_stands_at_the_azimuth(self):
        heights = plain()
        for i in range(4):
            for j in range(20):
                heights[i][j] = 101  # the northern edge
        grid = self.grid("dem.asc", heights)
        ramp = "0 0 0 255; 100.4 0 0 255; 100.6 255 0 0; 200 255 0 0"
        middle = {}
        for azimuth in (0, 90, 180, 270):
            picture = self.render(grid, "--azimuth", azimuth, "--elevation", 60, "--ramp", ramp, *FLAT)
            left, top, right, bottom, _ = picture.where(reddish)
            middle[azimuth] = ((left + right) / 2, (top + bottom) / 2)
        self.assertLess(middle[180][1], 50)     # from the south: at the back
        self.assertGreater(middle[0][1], 70)    # from the north: in front
        self.assertGreater(middle[90][0], 100)  # from the east: on the right
        self.assertLess(middle[270][0], 60)

    def test_void_cells_are_holes(self):
        heights = plain()
        for i in range(8, 12):
            for j in range(8, 12):
                heights[i][j] = -9999
        picture = self.render(self.grid("dem.asc", heights), "--top", "--orthographic", *FLAT)
        left, top, right, bottom, count = picture.model()
        self.assertEqual(picture.at((left + right) // 2, (top + bottom) // 2), BACKGROUND)
        whole = (right - left + 1) * (bottom - top + 1)
        self.assertAlmostEqual(1 - count / whole, (5 / 19) ** 2, delta=0.015)

    def test_borders_of_voids_do_not_make_the_model_small(self):
        heights = [[-9999] * 40 for _ in range(40)]
        for i in range(12):
            for j in range(12):
                heights[i + 25][j + 3] = 100 + i
        left, top, right, bottom, _ = self.render(self.grid("dem.asc", heights), "--top", "--orthographic").model()
        self.assertGreater(bottom - top, 100)
        self.assertAlmostEqual(left + right, 159, delta=3)
        self.assertAlmostEqual(top + bottom, 119, delta=3)

    def test_orthographic_keeps_proportions(self):
        for columns, rows in ((21, 21), (31, 16), (11, 21)):
            grid = self.grid("dem.asc", plain(rows, columns))
            left, top, right, bottom, count = self.render(grid, "--top", "--orthographic", *FLAT).model()
            self.assertAlmostEqual((right - left + 1) / (bottom - top + 1), (columns - 1) / (rows - 1), delta=0.03)
            self.assertEqual(count, (right - left + 1) * (bottom - top + 1))

    def test_cells_need_not_be_square(self):
        grid = self.grid("dem.asc", plain(21, 21), header="dx 10\ndy 5\nNODATA_value -9999\n")
        text = (self.folder / grid).read_text().replace("cellsize 10\n", "")
        (self.folder / grid).write_text(text)
        left, top, right, bottom, _ = self.render(grid, "--top", "--orthographic", *FLAT).model()
        self.assertAlmostEqual((right - left + 1) / (bottom - top + 1), 2, delta=0.05)

    def test_perspective_makes_far_things_small_and_orthographic_does_not(self):
        grid = self.grid("dem.asc", plain(21, 21))
        view = ("--azimuth", 180, "--elevation", 40, *FLAT)

        def widths(picture):
            _, top, _, bottom, _ = picture.model()
            return [sum(picture.at(x, y) != BACKGROUND for x in range(160)) for y in (top + 2, bottom - 2)]

        back, front = widths(self.render(grid, *view))
        self.assertGreater(front, back * 1.15)
        back, front = widths(self.render(grid, *view, "--orthographic"))
        self.assertAlmostEqual(front, back, delta=1)

    def test_exaggeration_makes_it_higher(self):
        grid = self.grid("dem.asc", hill(top=30))

        def height(factor):
            _, top, _, bottom, _ = self.render(grid, "--orthographic", "--azimuth", 180, "--elevation", 0, "--no-base",
                                               "--exaggeration", factor).model()
            return bottom - top + 1

        self.assertAlmostEqual(height(2) / height(1), 2, delta=0.2)
        run = self.host("render", grid, "-o", "x.png", "--exaggeration", "2.5", "--size", "40x30")
        self.assertIn("heights x 2.5", run.stdout)

    def test_same_picture_far_from_the_origin(self):
        near = self.render(self.grid("near.asc", hill(), x=1000, y=1000, cell=1))
        far = self.render(self.grid("far.asc", hill(), x=5000000, y=5000000, cell=1))
        self.assertLess(near.difference(far), 0.02)


class Framing(HostTest):
    def test_fits_whole_from_everywhere(self):
        round_hill = self.grid("hill.asc", hill(top=150))
        east_west, north_south = self.grid("ew.asc", plain(6, 60)), self.grid("ns.asc", plain(60, 6))
        views = ((round_hill, (), (0, 33, 215)), (round_hill, ("--orthographic",), (0, 215)), (east_west, (), (10, 80)),
                 (north_south, ("--orthographic",), (10, 80)))
        for file, projection, azimuths in views:
            for elevation in (-90, -35, 0, 20, 90):
                for azimuth in azimuths:
                    picture = self.render(file, "--azimuth", azimuth, "--elevation", elevation, *projection,
                                          size="80x60")
                    where = (file, projection, elevation, azimuth)
                    box = picture.model()
                    self.assertIsNotNone(box, where)
                    left, top, right, bottom, _ = box
                    self.assertTrue(left > 0 and top > 0 and right < 79 and bottom < 59, (where, box))
                    if not projection:  # and fills it one way or the other
                        self.assertTrue(right - left > 56 or bottom - top > 42, (where, box))


class Look(HostTest):
    def test_every_mesh_shows(self):
        grid = self.grid("dem.asc", hill())
        quads = self.render(grid, "--mesh", "quads", "--no-base")
        strips = self.render(grid, "--mesh", "strips", "--no-base")
        points = self.render(grid, "--mesh", "points", "--no-base")
        wire = self.render(grid, "--color", "wire", "--no-base")
        self.assertLess(quads.difference(strips), 3)
        whole = quads.model()
        for sparse in (points, wire):
            box = sparse.model()
            self.assertGreater(box[4], 100)
            self.assertLess(box[4], whole[4] / 2)
            for side in range(4):
                self.assertAlmostEqual(box[side], whole[side], delta=2)

    def test_ramp(self):
        grid = self.grid("dem.asc", plain(height=50))
        view = ("--top", "--no-light", "--no-base", "--orthographic")
        middle = lambda ramp: self.render(grid, *view, "--ramp", ramp).at(80, 60)
        self.assertEqual(middle("0 0 0 0; 100 200 100 50"), (100, 50, 25))
        self.assertEqual(middle("100 200 100 50;0 0 0 0"), (100, 50, 25))
        # Its outer colours go on beyond its ends.
        self.assertEqual(middle("0 1 2 3; 50 200 100 50"), (200, 100, 50))
        self.assertEqual(middle("0 1 2 3; 20 200 100 50"), (200, 100, 50))
        self.assertEqual(middle("80 1 2 3; 90 200 100 50"), (1, 2, 3))

    def test_plain_colour_and_cut_and_fill(self):
        view = ("--top", "--no-light", "--no-base", "--orthographic")
        high = self.grid("high.asc", plain(height=50))
        low = self.grid("low.asc", plain(height=-50))
        self.assertEqual(self.render(high, *view, "--color", "plain", "--surface", "#406080").at(80, 60),
                         (0x40, 0x60, 0x80))
        above, below = (self.render(f, *view, "--color", "cutfill").at(80, 60) for f in (high, low))
        self.assertNotEqual(above, below)
        tints = self.render(high, *view, "--color", "plain", "--tints")
        self.assertGreater(len({c for _, _, c in tints.pixels() if c != BACKGROUND}), 2)

    def test_light_comes_from_its_direction(self):
        slope = lambda i, j: [[10 * (i * r + j * c) for c in range(20)] for r in range(20)]
        # Heights that grow southwards face north.
        faces = {0: self.grid("n.asc", slope(1, 0)), 180: self.grid("s.asc", [r for r in reversed(slope(1, 0))]),
                 270: self.grid("w.asc", slope(0, 1)), 90: self.grid("e.asc", [r[::-1] for r in slope(0, 1)])}
        for azimuth, file in faces.items():
            view = ("--top", "--color", "plain", "--no-base", "--exaggeration", 1)
            lit = self.render(file, *view, "--light", f"{azimuth},30").brightness()
            away = self.render(file, *view, "--light", f"{(azimuth + 180) % 360},30").brightness()
            across = self.render(file, *view, "--light", f"{(azimuth + 90) % 360},30").brightness()
            self.assertGreater(lit, across * 1.1, azimuth)
            self.assertGreater(across, away * 1.1, azimuth)

    def test_base_limits_and_axes_show(self):
        grid = self.grid("dem.asc", hill())
        side = ("--azimuth", 180, "--elevation", 0, "--orthographic")
        self.assertGreater(self.render(grid, *side).model()[4], self.render(grid, *side, "--no-base").model()[4])
        bare = self.render(grid, "--no-base", "--limits").model()
        self.assertGreater(bare[4], 0)
        self.assertGreater(self.render(grid, "--limits").difference(self.render(grid)), 0.1)
        flat = self.render(grid, "--orthographic")
        self.assertGreater(self.render(grid, "--orthographic", "--axes").difference(flat), 0.05)

    def test_smooth_softens_edges(self):
        grid = self.grid("dem.asc", plain())
        view = ("--no-light", "--no-base", "--color", "plain")
        colours = lambda smooth: len({c for _, _, c in self.render(grid, *view, smooth=smooth).pixels()})
        self.assertEqual(colours(1), 2)
        self.assertGreater(colours(3), 5)

    def test_step(self):
        grid = self.grid("dem.asc", hill(60))
        run = self.host("render", grid, "--step", "4", "--size", "40x30")
        self.assertIn("one sample in 4 of rows and columns", run.stdout)
        run = self.host("render", grid, "--size", "40x30")
        self.assertNotIn("one sample", run.stdout)
        self.assertGreater(self.render(grid).difference(self.render(grid, "--step", "8")), 0.2)

    def test_large_grid_says_its_step(self):
        grid = self.large_grid("large", 2300)
        run = self.host("render", grid, "-o", "x.png", "--size", "160x120")
        self.assertEqual((run.returncode, run.stderr), (0, ""))
        self.assertIn("one sample in 2 of rows and columns", run.stdout)
        self.assertGreater(Picture(self.folder / "x.png").model()[4], 2000)


class LargeGrid(HostTest):
    def test_6000_x_6000(self):
        grid = self.large_grid("large", 6000)
        start = time.monotonic()
        run = self.host("render", grid, "-o", "x.png", "--size", "160x120")
        self.assertEqual((run.returncode, run.stderr), (0, ""))
        step = int(re.search(r"one sample in (\d+) of rows and columns", run.stdout).group(1))
        self.assertLessEqual((6000 / step) ** 2, 5e6)
        self.assertGreater((6000 / (step - 1)) ** 2, 5e6)
        self.assertGreater(Picture(self.folder / "x.png").model()[4], 3000)
        self.assertLess(time.monotonic() - start, 60)
        mebibytes = resource.getrusage(resource.RUSAGE_CHILDREN).ru_maxrss / 1024
        self.assertLess(mebibytes, 3000)


class Files(HostTest):
    def test_default_name(self):
        (self.folder / "in.folder").mkdir()
        for name, picture in (("a.b.asc", "a.b.png"), ("in.folder/noend", "noend.png"), (".hidden", ".hidden.png")):
            self.grid(name, hill())
            run = self.host("render", name, "--size", "40x30")
            self.assertEqual((run.returncode, run.stderr), (0, ""))
            self.assertTrue((self.folder / picture).is_file(), name)

    def test_names_beyond_ascii(self):
        grid = self.grid("peña del águila.asc", hill())
        run = self.host("render", grid, "-o", "año 1/vista ñ.png", "--size", "40x30")
        self.assertIn("there is no folder año 1", run.stderr)
        (self.folder / "año 1").mkdir()
        run = self.host("render", grid, "-o", "año 1/vista ñ.png", "--size", "40x30")
        self.assertEqual((run.returncode, run.stderr), (0, ""))
        self.assertIn("peña del águila.asc -> año 1/vista ñ.png", run.stdout)
        self.assertEqual(Picture(self.folder / "año 1/vista ñ.png").width, 40)

    def test_replaces_a_picture_and_keeps_links(self):
        grid = self.grid("dem.asc", hill())
        (self.folder / "old.png").write_text("old")
        (self.folder / "link.png").symlink_to("old.png")
        run = self.host("render", grid, "-o", "link.png", "--size", "40x30")
        self.assertEqual(run.returncode, 0, run.stderr)
        self.assertTrue((self.folder / "link.png").is_symlink())
        self.assertEqual(Picture(self.folder / "old.png").height, 30)

    def test_permissions_are_those_of_any_new_file(self):
        grid = self.grid("dem.asc", hill())
        self.host("render", grid, "-o", "x.png", "--size", "40x30")
        (self.folder / "other").touch()
        self.assertEqual((self.folder / "x.png").stat().st_mode, (self.folder / "other").stat().st_mode)


class Surroundings(HostTest):
    def test_renders_without_a_display(self):
        grid = self.grid("dem.asc", hill())
        without = self.render(grid)
        for display in ("", ":4711", "nonsense", "example.invalid:0"):
            self.assertEqual(without.difference(self.render(grid, env=environment(DISPLAY=display))), 0, display)

    def test_progress_shows_on_a_terminal_only(self):
        grid = self.large_grid("large", 1500)
        ours, theirs = pty.openpty()
        with subprocess.Popen([PROGRAM, "render", grid, "-o", "x.png", "--size", "40x30"], cwd=self.folder,
                              env=environment(), stdout=subprocess.PIPE, stderr=theirs) as run:
            os.close(theirs)
            shown = b""
            try:
                while chunk := os.read(ours, 4096):
                    shown += chunk
            except OSError:  # the other end is closed
                pass
            self.assertEqual(run.stdout.read().count(b"\n"), 1)
        os.close(ours)
        self.assertEqual(run.returncode, 0)
        self.assertRegex(shown, rb"\r +\d+ %")
        self.assertTrue(shown.endswith(b"\r\x1b[K"), "the line is wiped at the end")
        run = self.host("render", grid, "-o", "x.png", "--size", "40x30")
        self.assertEqual(run.stderr, "")


if __name__ == "__main__":
    unittest.main()
