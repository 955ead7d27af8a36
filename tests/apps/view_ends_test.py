#!/usr/bin/env python3
"""How windows end: closed, destroyed, without a display, at sizes that nobody foresees."""
import ctypes
import os
import signal
import subprocess
import unittest

from host import PROGRAM, environment, hill
from files import bmp, tiff
from window import Display, WindowTest, main, wait


class Closing(WindowTest):
    def setUp(self):
        super().setUp()
        self.grid("dem.asc", hill())

    def send(self, window, destroy):
        """Asks for the window's end as a desktop does, or destroys it from outside."""
        x = ctypes.CDLL("libX11.so.6")
        x.XOpenDisplay.restype = ctypes.c_void_p
        x.XInternAtom.restype = ctypes.c_ulong
        server = ctypes.c_void_p(x.XOpenDisplay(window.display.encode()))
        if destroy:
            x.XDestroyWindow(server, ctypes.c_ulong(window.id))
        else:
            class Message(ctypes.Structure):
                _fields_ = [("kind", ctypes.c_int), ("serial", ctypes.c_ulong), ("sent", ctypes.c_int),
                            ("display", ctypes.c_void_p), ("window", ctypes.c_ulong), ("type", ctypes.c_ulong),
                            ("format", ctypes.c_int), ("data", ctypes.c_long * 5), ("room", ctypes.c_long * 24)]
            atom = lambda name: x.XInternAtom(server, name, 0)
            message = Message(33, 0, 1, server, window.id, atom(b"WM_PROTOCOLS"), 32)
            message.data[0] = atom(b"WM_DELETE_WINDOW")
            x.XSendEvent(server, ctypes.c_ulong(window.id), 0, ctypes.c_long(0), ctypes.byref(message))
        x.XSync(server, 0)
        x.XCloseDisplay(server)

    def test_by_its_key(self):
        window = self.window("dem.asc", "--size", "400x300")
        window.key("q")
        self.assertEqual((window.ends(), window.output(), window.errors()), (0, "", ""))

    def test_by_the_desktop(self):
        window = self.window("dem.asc", "--size", "400x300")
        self.send(window, destroy=False)
        self.assertEqual((window.ends(), window.errors()), (0, ""))

    def test_destroyed_from_outside(self):
        window = self.window("dem.asc", "--size", "400x300")
        self.send(window, destroy=True)
        self.assertEqual((window.ends(), window.errors()), (0, ""))

    def test_from_its_terminal_nothing_is_left_behind(self):
        temporary = self.folder / "tmp"
        temporary.mkdir()
        (self.folder / "sky.bmp").write_bytes(bmp([[(90, 120, 200)] * 64] * 32, 24))
        for ending in (signal.SIGINT, signal.SIGTERM, signal.SIGHUP):
            window = self.window("dem.asc", "--sky", "sky.bmp", "--size", "400x300", TMPDIR=str(temporary))
            self.assertEqual(len(list(temporary.iterdir())), 1)
            window.process.send_signal(ending)
            self.assertEqual((window.ends(), window.errors()), (0, ""))
            self.assertEqual(list(temporary.iterdir()), [])

    def test_in_the_middle_of_a_sketch(self):
        window = self.window("dem.asc", "--size", "400x300")
        window.key("l")
        window.click(200, 150)
        window.move(220, 160)
        self.send(window, destroy=True)
        self.assertEqual((window.ends(), window.errors()), (0, ""))

    def test_a_display_that_goes_away(self):
        for how in (signal.SIGTERM, signal.SIGKILL):
            display = Display()
            window = self.window("dem.asc", "--size", "400x300", display=display)
            window.still()
            display.end(how)
            self.assertEqual((window.ends(), window.errors()), (1, "lumbra: the display went away\n"))


class Sizes(WindowTest):
    def setUp(self):
        super().setUp()
        self.grid("dem.asc", hill())

    def test_one_pixel_and_huge_and_back(self):
        window = self.window("dem.asc", "--size", "400x300")
        before = window.still()
        for size in ((1, 1), (400, 1), (1, 300), (16000, 2), (3000, 2000), (400, 300)):
            window.resize(*size)
            pictures = len(list(self.folder.glob("dem*.png")))
            window.send("f", "o", "o", "s")
            window.prints("saved as", pictures + 1)
        self.assertLess(window.still().differ(before), 0.02 * 400 * 300)
        window.send("q")
        self.assertEqual(window.ends(), 0)

    def test_a_window_of_16000_pixels_a_side(self):
        window = self.window("dem.asc", "--size", "400x300")
        window.resize(16000, 16000)
        window.resize(400, 300)
        window.send("f")
        window.still()
        window.send("q")
        self.assertIn(window.ends(), (0, 1))
        self.assertLess(len(window.errors().splitlines()), 2)


class Refusals(WindowTest):
    def refused(self, *args, status, says, **changes):
        env = environment(**{"DISPLAY": self.display.name, "XDG_CONFIG_HOME": str(self.folder), **changes})
        self.fails("view", *args, says=says, env=env)
        self.assertEqual(self.host("view", *args, env=env).returncode, status)

    def test_no_display(self):
        self.grid("dem.asc", hill())
        self.refused("dem.asc", status=1, says="view needs a display", DISPLAY=None)
        self.refused("dem.asc", status=1, says="view needs a display", DISPLAY=":4711")

    def test_files_that_cannot_be_shown(self):
        self.refused("none.asc", status=1, says="no such file")
        (self.folder / "photo.tif").write_bytes(tiff([[(1, 2, 3)] * 4] * 4, 3))
        self.refused("photo.tif", status=2, says="--sphere")
        self.grid("dem.asc", hill())
        self.refused("dem.asc", "none.asc", status=1, says="none.asc: no such file")
        self.refused("dem.asc", "photo.tif", status=1, says="photo.tif: a picture")

    def test_options_that_make_no_sense(self):
        self.grid("dem.asc", hill())
        self.refused(status=2, says="file is required")
        self.refused("", status=2, says="empty name")
        self.refused("dem.asc", "--nothing", status=2, says="--nothing")
        self.refused("dem.asc", "--size", "400", status=2, says="--size")
        self.refused("dem.asc", "--size", "40000x300", status=2, says="at most 16384")
        self.refused("dem.asc", "--output", "x.png", status=2, says="--output")
        self.refused("a.jpg", "b.jpg", "--sphere", status=2, says="shown alone")
        self.refused("a.jpg", "--sphere", "--drape", "b.tif", status=2, says="--drape")


if __name__ == "__main__":
    main()
