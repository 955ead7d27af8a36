#!/usr/bin/env python3
"""Input that can't be served: one clear line, a status that isn't 0, and nothing half-written."""
import os
import resource
import signal
import subprocess
import time
import unittest

from host import PROGRAM, HostTest, environment, hill, plain


class BadFiles(HostTest):
    def refused(self, file, says):
        line = self.fails("render", file, "-o", "x.png", "--size", "40x30", says=[str(file), says])
        self.assertEqual(self.fails("info", file, says=[str(file), says]), line)

    def test_missing(self):
        self.refused("none.tif", "no such file")
        self.fails("render", "", says="empty name")

    def test_empty(self):
        (self.folder / "empty.tif").touch()
        self.refused("empty.tif", "empty")

    def test_not_a_raster(self):
        (self.folder / "notes.txt").write_text("hello\n")
        self.refused("notes.txt", "not a raster that can be read")
        (self.folder / "noise.tif").write_bytes(bytes(range(256)) * 16)
        self.refused("noise.tif", "not a raster that can be read")

    def test_a_folder(self):
        (self.folder / "folder").mkdir()
        self.refused("folder", "a folder")

    def test_truncated(self):
        text = (self.folder / self.grid("dem.asc", hill())).read_text()
        (self.folder / "cut.asc").write_text(text[:len(text) // 2])
        self.refused("cut.asc", "damaged or cut off")
        (self.folder / "header.asc").write_text(text[:30])
        self.refused("header.asc", "not a raster that can be read")
        data = (self.folder / self.large_grid("large", 300)).read_bytes()
        (self.folder / "large.flt").write_bytes(data[:len(data) // 3])
        self.refused("large.flt", "damaged or cut off")

    def test_no_cell(self):
        self.refused(self.grid("row.asc", plain(1, 20)), "20 x 1 samples has no cell")
        self.refused(self.grid("column.asc", plain(20, 1)), "1 x 20 samples has no cell")

    def test_no_height(self):
        self.refused(self.grid("void.asc", plain(5, 5, -9999)), "none of its 25 samples holds a height")
        self.refused(self.raw_grid("nan", [[float("nan")] * 3] * 3), "none of its 9 samples holds a height")
        self.refused(self.raw_grid("inf", [[float("inf")] * 3] * 3), "none of its 9 samples holds a height")

    def test_no_cell_of_four_heights(self):
        heights = plain(5, 5, -9999)
        heights[2][2] = heights[0][1] = 7
        self.fails("render", self.grid("lone.asc", heights), says=["lone.asc", "no cell"])
        self.assertEqual(self.host("info", "lone.asc").returncode, 0)

    def test_infinities_and_nan_are_voids(self):
        heights = hill()
        heights[3][4], heights[5][6], heights[7][8] = float("inf"), float("-inf"), float("nan")
        for grid in (self.raw_grid("raw", heights), self.grid("text.asc", heights)):
            run = self.host("info", grid)
            self.assertEqual(run.returncode, 0)
            self.assertRegex(run.stderr, r"^" + grid + r": warning: \d samples? .* infinite; taken as void\n")
            self.assertRegex(run.stdout, r"voids +3 samples")
            self.assertRegex(run.stdout, r"heights +0 to 5\d\.\d+\n")
            self.assertEqual(self.host("render", grid, "--size", "40x30").returncode, 0)


class BadOptions(HostTest):
    def refused(self, *options, says):
        grid = self.grid("dem.asc", hill())
        self.fails("render", grid, "-o", "x.png", *options, says=says)

    def test_size(self):
        for size in ("0x0", "0x100", "100x0", "-5x10", "5x-10"):
            self.refused(f"--size={size}", says=["--size", "at least 1 pixel"])
        for size in ("", "100", "axb", "10x10x10", "10.5x10", "99999999999x3", "x", "10x", " 10x10", "0x10x10"):
            self.refused(f"--size={size}", says="--size")
        self.refused("--size", "100000x100000", says=["100000 x 100000", "16384", "smaller --size"])
        self.refused("--size", "100000x10", says="16384")
        self.fails("render", "none.asc", "--size", "100000x10", says="16384")  # before anything is read
        self.refused("--size", "10x2147483647", says="16384")
        self.refused("--size", "12000x12000", "--smooth", "4", says=["4096", "--smooth"])
        self.refused("--smooth", "5", says="not between 1 and 4")

    def test_large_sizes_do_without_smoothing(self):
        grid = self.grid("dem.asc", hill())
        run = self.host("render", grid, "-o", "x.png", "--size", "16384x20")
        self.assertEqual((run.returncode, run.stderr), (0, ""))

    def test_numbers(self):
        for text in ("0", "-1", "0.00001", "100000"):
            self.refused(f"--exaggeration={text}", says=["--exaggeration", "not between 0.001 and 1000"])
        for option in ("--exaggeration", "--azimuth", "--elevation", "--nodata"):
            for text in ("abc", "nan", "inf", "-inf", "1e999", "1,5", "0x10", "5m", ""):
                self.refused(f"{option}={text}", says=option)
        self.refused("--elevation", "91", says="not between -90 and 90")
        self.refused("--exaggeration", "1,5", says="point")

    def test_light(self):
        for text in ("1", "1,2,3", "a,b", "nan,3", "1;2"):
            self.refused("--light", text, says="--light")

    def test_ramp(self):
        for text in ("", "x", "0 1 2", ";", "0 1 2 3", "0 300 0 0; 10 0 0 0", "nan 0 0 0; 1 1 1 1",
                     "0 0 0 0 10 1 1 1", "0,5 0 0 0; 10 1 1 1", "5 1 1 1; 5 2 2 2"):
            self.refused("--ramp", text, says=["--ramp", "height red green blue"])

    def test_colours(self):
        for text in ("red", "#fff", "#12345g", "#+12345", "#1234567", "123456", ""):
            for option in ("--background", "--surface"):
                self.refused(option, text, says=[option, "not a colour"])

    def test_choices(self):
        self.refused("--color", "pink", says=["'pink'", "height, plain, cutfill, wire"])
        self.refused("--color", "2", says="height, plain, cutfill, wire")
        self.refused("--mesh", "x", says="quads, strips, points")

    def test_step(self):
        for text in ("0", "-1", "1.5", "x"):
            self.refused(f"--step={text}", says="--step")
        self.refused("--step", "20", says=["20 x 20 samples", "--step"])

    def test_unknown(self):
        self.refused("--zzz", says=["--zzz", "lumbra render --help"])
        self.refused("more.asc", says="more.asc")
        self.fails("bogus", says=["bogus", "lumbra --help"])
        self.fails(says="lumbra render FILE")
        self.fails("render", says="file")
        self.fails("info", says="--gl")


class BadOutput(HostTest):
    def refused(self, output, says, **options):
        grid = self.grid("dem.asc", hill())
        return self.fails("render", grid, "-o", output, "--size", "80x60", says=says, **options)

    def test_no_folder(self):
        self.refused("none/x.png", says=["none/x.png", "no folder none"])
        self.refused("dem.asc/x.png", says="can't write dem.asc/x.png")
        self.refused("", says="empty name")

    def test_a_folder(self):
        (self.folder / "folder").mkdir()
        self.refused("folder", says="that is a folder")
        self.refused("folder/", says="that is a folder")
        self.refused("none/", says="can't write none/")

    def test_a_device_is_not_replaced(self):
        # A pipe stands for a device: the real ones of the machine are nothing to try this on.
        os.mkfifo(self.folder / "pipe")
        self.refused("pipe", says="not an ordinary file")
        self.assertTrue((self.folder / "pipe").is_fifo())

    def test_the_grid_itself_is_not_replaced(self):
        self.refused("dem.asc", says="the file that is read")
        (self.folder / "link.png").symlink_to("dem.asc")
        self.refused("link.png", says="the file that is read")
        self.grid("dem.png", hill())
        self.fails("render", "dem.png", says="the file that is read")

    @unittest.skipIf(os.geteuid() == 0, "root may write everywhere")
    def test_a_folder_without_permission(self):
        (self.folder / "locked").mkdir(mode=0o555)
        self.refused("locked/x.png", says="Permission denied")

    def test_a_full_disk(self):
        # A limit on the size of files fails the writes just as a full disk does.
        def little_room():
            signal.signal(signal.SIGXFSZ, signal.SIG_IGN)
            resource.setrlimit(resource.RLIMIT_FSIZE, (500, 500))

        self.refused("x.png", says="can't write x.png: File too large", preexec_fn=little_room)
        (self.folder / "old.png").write_text("old")
        self.refused("old.png", says="can't write old.png", preexec_fn=little_room)
        self.assertEqual((self.folder / "old.png").read_text(), "old")

    def test_a_limit_on_files_that_ends_programs(self):
        self.refused("x.png", says="can't write x.png: File too large",
                     preexec_fn=lambda: resource.setrlimit(resource.RLIMIT_FSIZE, (500, 500)))

    def test_a_user_who_ends_it_while_it_writes_finds_nothing(self):
        for ending in (signal.SIGINT, signal.SIGTERM, signal.SIGHUP):
            # So large a picture takes a while to be written.
            run = subprocess.Popen([PROGRAM, "render", self.grid("dem.asc", hill()), "-o", "x.png", "--size",
                                    "4000x4000", "--smooth", "1"], cwd=self.folder, env=environment(),
                                   stdout=subprocess.PIPE, stderr=subprocess.PIPE)
            while run.poll() is None and not list(self.folder.glob("x.png.*")):
                time.sleep(0.001)
            run.send_signal(ending)
            run.communicate(timeout=120)
            self.assertEqual(run.returncode, -ending)
            self.assertEqual(sorted(path.name for path in self.folder.iterdir()), ["dem.asc"])

    def test_standard_output_that_is_full(self):
        grid = self.grid("dem.asc", hill())
        with open("/dev/full", "wb") as full:
            run = subprocess.run([PROGRAM, "info", grid], cwd=self.folder, env=environment(), stdout=full,
                                 stderr=subprocess.PIPE, text=True, timeout=60)
        self.assertGreater(run.returncode, 0)
        self.assertEqual(run.stderr, "lumbra: can't write to standard output\n")


if __name__ == "__main__":
    unittest.main()
