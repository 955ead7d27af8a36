#!/usr/bin/env python3
"""What a user sees in a window, and what it tells and writes."""
import subprocess
import unittest

from host import BACKGROUND, Picture, hill, plain
from window import WindowTest, main

PLAN = ("--top", "--orthographic", "--no-base", "--exaggeration", 1, "--size", "400x300")
METRE = 0.94 * 300 / 190  # pixels, where a grid of 20 x 20 samples fills such a window


def place(x, y):
    """The pixel of a terrain point in the plan."""
    return 200 + (x - 500100) * METRE, 150 - (y - 4000100) * METRE


def height(heights, x, y):
    """Bilinear, between samples in the middle of their cells."""
    column, row = (x - 500005) / 10, (4000195 - y) / 10
    j, i = min(int(column), 18), min(int(row), 18)
    u, v = column - j, row - i
    return ((heights[i][j] * (1 - u) + heights[i][j + 1] * u) * (1 - v) +
            (heights[i + 1][j] * (1 - u) + heights[i + 1][j + 1] * u) * v)


def model(pixels):
    return pixels.where(lambda colour: colour != BACKGROUND)


def middle(box):
    return (box[0] + box[2]) / 2, (box[1] + box[3]) / 2


def red(colour):
    return colour[0] > 180 and colour[1] < 60 and colour[2] < 60


class Moving(WindowTest):
    def setUp(self):
        super().setUp()
        self.grid("dem.asc", hill())

    def test_it_opens_fitted_with_its_name(self):
        window = self.window("dem.asc", "--size", "400x300")
        self.assertTrue(window.title().startswith("dem.asc"))
        picture = window.still()
        self.assertEqual((picture.width, picture.height), (400, 300))
        left, top, right, bottom, count = model(picture)
        self.assertGreater(min(left, top, 399 - right, 299 - bottom), 3)
        self.assertGreater(count, 0.2 * 400 * 300)

    def test_it_opens_as_it_is_rendered(self):
        window = self.window("dem.asc", "--size", "400x300")
        drawn = self.render("dem.asc", size="400x300")
        seen = window.still()
        different = sum(max(map(abs, (a - b for a, b in zip(seen.at(x, y), colour)))) > 8 for x, y, colour in drawn.pixels())
        self.assertLess(different, 0.01 * 400 * 300)

    def test_a_drag_turns_the_model_and_back(self):
        window = self.window("dem.asc", "--size", "400x300")
        before = window.still()
        window.drag((20, 20), (60, 20), (100, 30), (120, 40))
        turned = window.changed(before)
        self.assertGreater(turned.differ(before), 0.05 * 400 * 300)
        window.drag((120, 40), (100, 30), (20, 20))
        self.assertLess(window.changed(turned).differ(before), 0.01 * 400 * 300)

    def test_a_turn_leaves_in_its_place_what_is_under_the_pointer(self):
        self.grid("dem.asc", plain())
        window = self.window("dem.asc", "--size", "400x300")
        before = window.still()
        window.click(230, 170)
        before = window.still()
        window.drag((230, 170), (260, 170), (300, 190))
        window.changed(before)
        window.click(230, 170)
        first, then = (line.split() for line in window.prints("500", 2))
        for a, b in zip(first[:2], then[:2]):
            self.assertAlmostEqual(float(a), float(b), delta=2)

    def test_no_drag_turns_it_over(self):
        window = self.window("dem.asc", "--size", "400x300", "--color", "plain", "--elevation", 60)
        before = window.still()
        window.drag((200, 150), (200, 250), (200, 290))
        top = window.changed(before)
        window.drag((200, 150), (200, 250), (200, 290))
        self.assertEqual(window.still().differ(top), 0, "straight down is the end")

    def test_a_shift_drag_and_the_middle_button_take_the_point_along(self):
        for options in (PLAN, ("--size", "400x300")):
            window = self.window("dem.asc", *options)
            before = window.still()
            window.click(200, 150)
            told = window.prints("500")[-1].split()
            before = window.still()
            window.drag((210, 160), (215, 160), (230, 150), hold="shift")
            moved = window.changed(before)
            window.click(220, 140)
            again = window.prints("500", 2)[-1].split()
            for a, b in zip(told[:2], again[:2]):
                self.assertAlmostEqual(float(a), float(b), delta=2)
            window.drag((230, 150), (215, 160), (210, 160), button=2)
            self.assertLess(window.changed(moved).differ(before), 0.03 * 400 * 300)
            window.keys("q")
            window.ends()

    def test_the_wheel_nears_what_is_under_the_pointer(self):
        for options in (PLAN, ("--size", "400x300")):
            window = self.window("dem.asc", *options)
            before = window.still()
            window.click(190, 140)
            told = window.prints("500")[-1].split()
            far = window.still()
            window.click(190, 140, button=4, repeat=5)
            near = window.changed(far)
            self.assertGreater(model(near)[4], 1.5 * model(before)[4])
            window.click(190, 140)
            again = window.prints("500", 2)[-1].split()
            for a, b in zip(told[:2], again[:2]):
                self.assertAlmostEqual(float(a), float(b), delta=1.5, msg="what was under the pointer still is")
            window.click(190, 140, button=5, repeat=5)
            self.assertLess(window.changed(near).differ(far), 0.04 * 400 * 300)
            window.keys("q")
            window.ends()

    def test_a_double_click_brings_the_point_to_the_middle(self):
        for options in (PLAN, ("--size", "400x300")):
            window = self.window("dem.asc", *options)
            before = window.still()
            window.click(230, 170, repeat=2)
            window.changed(before)
            window.click(200, 150)
            clicked, in_the_middle = (line.split() for line in window.prints("500", 2))
            for a, b in zip(clicked[:2], in_the_middle[:2]):
                self.assertAlmostEqual(float(a), float(b), delta=1.5)
            window.keys("q")
            window.ends()

    def test_f_fits_and_home_brings_the_beginning_back(self):
        for options in (PLAN, ("--size", "400x300")):
            window = self.window("dem.asc", *options)
            before = window.still()
            window.drag((200, 150), (260, 150), (290, 160))
            window.click(100, 100, button=4, repeat=6)
            lost = window.changed(before)
            window.key("f")
            left, top, right, bottom, _ = model(window.changed(lost))
            self.assertGreater(min(left, top, 399 - right, 299 - bottom), 3)
            self.assertTrue(right - left > 280 or bottom - top > 200)
            window.key("Home")
            window.move(10, 10)
            for _ in range(3):
                window.key("f")
            self.assertLess(window.still().differ(before), 0.02 * 400 * 300, "however often")
            window.keys("q")
            window.ends()

    def test_o_goes_to_orthographic_and_back(self):
        window = self.window("dem.asc", "--size", "400x300")
        before = window.still()
        window.key("o")
        window.says("orthographic")
        flat = window.changed(before)
        left, top, right, bottom, _ = model(flat)
        self.assertGreater(min(left, top, 399 - right, 299 - bottom), 3)
        window.key("o")
        window.says("perspective")
        self.assertEqual(window.changed(flat).differ(before), 0)
        for _ in range(4):
            window.key("o")
        self.assertEqual(window.still().differ(before), 0)

    def test_plus_and_minus_change_the_heights(self):
        window = self.window("dem.asc", "--size", "400x300", "--exaggeration", 1)
        before = window.still()
        window.key("plus")
        window.says("heights x 1.5")
        higher = window.changed(before)
        window.key("KP_Add")
        window.says("heights x 2")
        window.changed(higher)
        window.key("minus", "KP_Subtract")
        window.says("heights x 1")
        self.assertLess(window.still().differ(before), 0.01 * 400 * 300)

    def test_arrows_turn_and_with_shift_move(self):
        window = self.window("dem.asc", *PLAN)
        before = window.still()
        window.key("Right")
        turned = window.changed(before)
        window.key("Left")
        self.assertLess(window.changed(turned).differ(before), 0.01 * 400 * 300)
        was = middle(model(before))
        window.key("shift+Right")
        now = middle(model(window.changed(before)))
        self.assertAlmostEqual(now[0] - was[0], 20, delta=1)
        self.assertAlmostEqual(now[1], was[1], delta=1)

    def test_references_can_be_hidden(self):
        self.grid("east.asc", plain(20, 20, 30), x=500200)
        window = self.window("dem.asc", "--reference", "east.asc", *PLAN)
        both = window.still()
        window.key("r")
        one = window.changed(both)
        self.assertLess(model(one)[4], 0.6 * model(both)[4])
        window.key("r")
        self.assertEqual(window.changed(one).differ(both), 0)

    def test_further_files_stand_beside_the_first(self):
        self.grid("east.asc", plain(20, 20, 30), x=500200)
        window = self.window("dem.asc", "east.asc", *PLAN)
        left, top, right, bottom, _ = model(window.still())
        self.assertAlmostEqual((right - left) / (bottom - top), 390 / 190, delta=0.1)

    def test_nothing_is_drawn_when_nothing_changes(self):
        window = self.window("dem.asc", "--size", "400x300")
        window.still()
        before = self.ticks(window)
        for x in range(100, 300, 10):
            window.move(x, 100)
        self.assertLess(self.ticks(window) - before, 10)

    def ticks(self, window):
        """Hundredths of a second of work."""
        with open(f"/proc/{window.process.pid}/stat") as file:
            fields = file.read().rsplit(")", 1)[1].split()
        return int(fields[11]) + int(fields[12])


class Measuring(WindowTest):
    def test_a_click_tells_the_coordinates_of_the_file(self):
        heights = hill()
        self.grid("dem.asc", heights)
        window = self.window("dem.asc", *PLAN)
        for count, (x, y) in enumerate(((500100, 4000100), (500060, 4000140), (500160, 4000030)), 1):
            window.click(*map(round, place(x, y)))
            told = window.prints("500", count)[-1].split()
            self.assertAlmostEqual(float(told[0]), x, delta=1.5)
            self.assertAlmostEqual(float(told[1]), y, delta=1.5)
            self.assertAlmostEqual(float(told[2]), height(heights, float(told[0]), float(told[1])), delta=0.02)
            self.assertIn(" ".join(told[:3]), window.title())
        self.assertEqual(len(told[0].split(".")[1]), 3)

    def test_it_does_in_perspective_and_exaggerated_too(self):
        heights = hill()
        self.grid("dem.asc", heights)
        window = self.window("dem.asc", "--size", "400x300", "--exaggeration", 2)
        for count, pixel in enumerate(((200, 150), (180, 120), (230, 180)), 1):
            window.click(*pixel)
            x, y, z = map(float, window.prints("500", count)[-1].split()[:3])
            self.assertAlmostEqual(z, height(heights, x, y), delta=0.02)

    def test_the_cell_is_told_and_shown(self):
        self.grid("dem.asc", hill())
        window = self.window("dem.asc", *PLAN)
        before = window.still()
        x, y = 500043, 4000121
        window.click(*map(round, place(x, y)))
        line = window.prints("500")[-1]
        self.assertIn(f" row {int((4000195 - y) / 10)} column {int((x - 500005) / 10)}", line)
        shown = window.changed(before).where(red)
        self.assertIsNotNone(shown)
        for found, wanted in zip(middle(shown), place(500040, 4000120)):
            self.assertAlmostEqual(found, wanted, delta=3)
        window.click(5, 5)
        window.says("nothing there")
        self.assertIsNone(window.still().where(red))

    def test_a_hole_is_no_cell(self):
        # A table seen from the south, with a sample missing in its last row: through the gap one sees the table's side.
        heights = [[50] * 20 for _ in range(20)]
        heights[0][0], heights[19][10] = 0, -9999
        self.grid("dem.asc", heights)
        window = self.window("dem.asc", "--azimuth", 180, "--elevation", 30, "--orthographic", "--exaggeration", 1,
                             "--size", "400x300")
        for count, y in enumerate(range(190, 240, 5), 1):
            window.click(207, y)
            places = [line.split() for line in window.prints("500", count)]
        self.assertTrue(any(float(place[2]) < 40 for place in places), "the side was met")
        self.assertFalse([place for place in places if place[3:5] == ["row", "18"]])

    def test_a_click_on_nothing_says_so(self):
        self.grid("dem.asc", hill())
        window = self.window("dem.asc", *PLAN)
        window.click(10, 10)
        window.says("nothing there")
        self.assertEqual(window.output(), "")

    def test_a_sketch_tells_its_length(self):
        # As high as it is far east: a metre of the plan is 1.414 of slope.
        self.grid("dem.asc", [[10 * j for j in range(20)]] * 20)
        window = self.window("dem.asc", *PLAN)
        before = window.still()
        window.key("l")
        window.says("sketch")
        window.click(110, 150)
        window.says("length 0.000 in plan")
        window.move(210, 150)
        window.says("length 67.")
        rubber = window.changed(before)
        window.move(290, 150)
        window.says("length 121.")
        window.click(290, 150)
        window.move(290, 60)
        window.says("length 181.9")
        window.click(290, 60)
        window.move(150, 100)
        window.keys("BackSpace")
        window.move(290, 240)
        window.says("length 181.9")
        window.click(290, 240)
        window.keys("Return")
        line = window.prints("length")[-1].split()
        plan, slope = float(line[1]), float(line[4])
        self.assertAlmostEqual(plan, (180 + 90) / METRE, delta=1.5)
        self.assertAlmostEqual(slope, 180 * 2 ** 0.5 / METRE + 90 / METRE, delta=2)
        self.assertIn("length", window.title())
        drawn = window.still()
        self.assertGreater(drawn.differ(before), 300, "the line stays")
        self.assertGreater(drawn.differ(rubber), 0)
        window.drag((30, 30), (60, 30), (30, 30))
        self.assertGreater(window.still().differ(before), 300, "on new frames too")
        window.keys("Escape")
        self.assertEqual(window.changed(drawn).differ(before), 0, "nothing is left of it")

    def test_a_double_click_ends_a_sketch(self):
        self.grid("dem.asc", plain())
        window = self.window("dem.asc", *PLAN)
        before = window.still()
        window.key("l")
        window.click(110, 150)
        window.click(250, 150, repeat=2)
        line = window.prints("length")[-1].split()
        self.assertAlmostEqual(float(line[1]), 140 / METRE, delta=1.5)
        self.assertEqual(line[1], line[4], "a plain has no slope")
        with_line = window.changed(before)
        window.move(300, 250)
        self.assertEqual(window.still().differ(with_line), 0, "no point follows any more")


class Writing(WindowTest):
    def test_a_picture_is_what_the_window_shows(self):
        self.grid("dem.asc", hill())
        window = self.window("dem.asc", "--size", "401x300")
        window.key("s")
        window.says("saved as dem.png")
        seen, saved = window.still(), Picture(self.folder / "dem.png")
        self.assertEqual((saved.width, saved.height), (401, 300))
        self.assertTrue(all(seen.at(x, y) == colour for x, y, colour in saved.pixels()))

    def test_files_that_are_there_stay(self):
        self.grid("dem.asc", hill())
        (self.folder / "dem.png").write_text("mine")
        (self.folder / "dem-1.pdf").write_text("mine")
        window = self.window("dem.asc", "--size", "400x300")
        window.key("s")
        window.says("dem-1.png")
        window.key("p")
        window.says("dem.pdf")
        window.key("p")
        window.says("dem-2.pdf")
        self.assertEqual((self.folder / "dem.png").read_text(), "mine")
        self.assertEqual((self.folder / "dem-1.pdf").read_text(), "mine")

    def test_a_page_shows_the_whole_window_at_the_printers_resolution(self):
        self.grid("dem.asc", hill())
        for width, height, paper in ((400, 300, (842, 632)), (300, 400, (632, 842))):
            window = self.window("dem.asc", "--size", f"{width}x{height}")
            window.key("p")
            window.says("printed to")
            file = window.title().split()[-1]
            seen = window.still()
            subprocess.run(["pdftoppm", "-r", "72", "-singlefile", file, "page"], cwd=self.folder, check=True)
            listed = subprocess.run(["pdfimages", "-list", file], cwd=self.folder, check=True, text=True,
                                    capture_output=True).stdout.splitlines()[2].split()
            self.assertEqual(listed[12:14], ["300", "300"], "pixels an inch")
            page = self.ppm("page.ppm")
            self.assertEqual(page[:2], paper)
            at = lambda x, y: tuple(page[2][3 * (y * page[0] + x):3 * (y * page[0] + x) + 3])
            scale = paper[0] / width  # the page is the picture
            wrong = 0
            for y in range(5, height - 5, 3):
                for x in range(5, width - 5, 3):
                    there = at(int((x + 0.5) * scale), int((y + 0.5) * scale))
                    wrong += max(abs(a - b) for a, b in zip(there, seen.at(x, y))) > 40
            self.assertLess(wrong, 0.03 * width * height / 9)
            for x, y in ((1, 1), (paper[0] - 3, paper[1] - 3)):
                self.assertEqual(at(x, y), seen.at(1, 1), "the background reaches to the corners")
            window.keys("q")
            window.ends()

    def ppm(self, name):
        data = (self.folder / name).read_bytes()
        kind, width, height, _ = data.split(maxsplit=4)[:4]
        self.assertEqual(kind, b"P6")
        size = 3 * int(width) * int(height)
        return int(width), int(height), data[-size:]

    def test_the_keys_are_listed(self):
        self.grid("dem.asc", hill())
        window = self.window("dem.asc", "--size", "400x300")
        for count, key in enumerate(("question", "h", "F1"), 1):
            window.key(key)
            window.prints("this list", count)


class Remembering(WindowTest):
    def test_the_next_window_is_as_the_last_one_was_left(self):
        self.grid("dem.asc", hill())
        window = self.window("dem.asc", "--size", "400x300", "--background", "#ff8000", "--exaggeration", 1)
        window.key("o")
        window.says("orthographic")
        window.key("b")
        window.key("plus", "plus")
        window.says("heights x 2")
        window.resize(420, 310)
        window.key("f")
        last = window.still()
        window.key("q")
        self.assertEqual(window.ends(), 0)
        again = self.window("dem.asc")
        first = again.still()
        self.assertEqual((first.width, first.height), (420, 310))
        self.assertEqual(first.at(1, 1), (255, 128, 0))
        self.assertLess(first.differ(last), 0.01 * 420 * 310)

    def test_settings_that_make_no_sense_are_passed_over(self):
        self.grid("dem.asc", hill())
        folder = self.folder / "config" / "lumbra"
        folder.mkdir(parents=True)
        (folder / "perfil.ini").write_text("[View]\nModoRelleno=77\nQuad=3\nColorFondo=-1\n[Window]\nWidth=-5\n"
                                           "Height=999999\nExaggeration=1,5e999\n")
        window = self.window("dem.asc")
        picture = window.still()
        self.assertEqual((picture.width, picture.height), (1000, 750))
        self.assertEqual(picture.at(1, 1), (255, 255, 255))


class Panoramas(WindowTest):
    def test_a_drag_looks_round(self):
        from files import bmp
        colours = ((255, 0, 0), (0, 255, 0), (0, 0, 255), (255, 255, 0))
        (self.folder / "round.bmp").write_bytes(bmp([[colours[x // 16] for x in range(64)]] * 32, 24))
        window = self.window("round.bmp", "--sphere", "--size", "300x300", "--fov", 60)
        before = window.still()
        self.assertEqual(before.at(140, 150), (0, 255, 0))
        self.assertEqual(before.at(160, 150), (0, 0, 255))
        window.drag((150, 150), (100, 150), (50, 150))
        after = window.changed(before)
        self.assertEqual(after.at(30, 150), (0, 255, 0), "it goes along with the pointer")
        self.assertEqual(after.at(140, 150), (0, 0, 255))
        window.key("Home")
        self.assertEqual(window.changed(after).differ(before), 0)
        window.key("l", "o", "plus", "b")
        window.click(150, 150)
        self.assertEqual(window.still().differ(before), 0, "what is for terrains does nothing")


if __name__ == "__main__":
    main()
