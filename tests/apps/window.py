"""A window of the host program on a display of its own, moved as a user moves it, and read through X."""
import ctypes
import operator
import os
import shutil
import signal
import subprocess
import sys
import time
import unittest

from host import PROGRAM, HostTest, environment

TOOLS = ("Xvfb", "xdotool", "pdftoppm")
DEADLINE = 30


def wait(holds, what):
    """Until something holds; its value."""
    end = time.monotonic() + DEADLINE
    while True:
        value = holds()
        if value:
            return value
        if time.monotonic() > end:
            raise AssertionError("never: " + what)
        time.sleep(0.02)


class Display:
    """A display without a screen that anybody sees."""

    def __init__(self):
        reading, writing = os.pipe()
        self.server = subprocess.Popen(["Xvfb", "-displayfd", str(writing), "-screen", "0", "1280x1024x24", "-nolisten",
                                        "tcp", "-noreset"], pass_fds=[writing], stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        os.close(writing)
        with os.fdopen(reading) as number:
            self.name = ":" + number.readline().strip()

    def end(self, how=signal.SIGTERM):
        self.server.send_signal(how)
        self.server.wait()


class Image(ctypes.Structure):
    """The beginning of Xlib's XImage."""
    _fields_ = [("width", ctypes.c_int), ("height", ctypes.c_int), ("xoffset", ctypes.c_int), ("format", ctypes.c_int),
                ("data", ctypes.POINTER(ctypes.c_char)), ("byte_order", ctypes.c_int), ("unit", ctypes.c_int),
                ("bit_order", ctypes.c_int), ("pad", ctypes.c_int), ("depth", ctypes.c_int), ("line", ctypes.c_int)]


class Pixels:
    """A window's pixels, blue first, from the top."""

    def __init__(self, display, window):
        x = ctypes.CDLL("libX11.so.6")
        x.XOpenDisplay.restype = ctypes.c_void_p
        x.XGetImage.restype = ctypes.POINTER(Image)
        x.XDestroyWindow.argtypes = [ctypes.c_void_p, ctypes.c_ulong]
        server = ctypes.c_void_p(x.XOpenDisplay(display.encode()))
        geometry = subprocess.run(["xdotool", "getwindowgeometry", "--shell", str(window)], text=True, check=True,
                                  env=environment(DISPLAY=display), capture_output=True).stdout
        size = dict(line.split("=") for line in geometry.split())
        self.width, self.height = int(size["WIDTH"]), int(size["HEIGHT"])
        image = x.XGetImage(server, ctypes.c_ulong(window), 0, 0, self.width, self.height, ctypes.c_ulong(0xFFFFFFFF), 2)
        self.line = image.contents.line
        raw = ctypes.string_at(image.contents.data, self.line * self.height)
        x.XCloseDisplay(server)
        # The fourth byte of a pixel is nobody's.
        seen = int.from_bytes(b"\xff\xff\xff\0" * (len(raw) // 4), "big")
        self.data = (int.from_bytes(raw, "big") & seen).to_bytes(len(raw), "big")

    def at(self, x, y):
        first = y * self.line + 4 * x
        b, g, r = self.data[first:first + 3]
        return r, g, b

    def where(self, holds):
        """(left, top, right, bottom, count) of the pixels whose colour holds."""
        found = [(x, y) for y in range(self.height) for x in range(self.width) if holds(self.at(x, y))]
        if not found:
            return None
        xs, ys = [p[0] for p in found], [p[1] for p in found]
        return min(xs), min(ys), max(xs), max(ys), len(found)

    def differ(self, other):
        """How many pixels differ."""
        assert (self.width, self.height) == (other.width, other.height)
        if self.data == other.data:
            return 0
        return sum(map(operator.ne, memoryview(self.data).cast("I"), memoryview(other.data).cast("I")))


class Window:
    """The program with a window open."""

    def __init__(self, test, *args, display=None, **changes):
        self.test = test
        self.display = (display or test.display).name
        self.env = environment(DISPLAY=self.display, XDG_CONFIG_HOME=str(test.folder / "config"), **changes)
        self.out = open(test.folder / "out.txt", "w+")
        self.err = open(test.folder / "err.txt", "w+")
        self.process = subprocess.Popen([PROGRAM, "view", *map(str, args)], cwd=test.folder, env=self.env,
                                        stdout=self.out, stderr=self.err)
        test.addCleanup(self._clean)
        self.name = str(args[0]).split("/")[-1]
        self.id = wait(self._find, "a window; " + self.errors())
        self.says("? lists the keys")

    def _find(self):
        assert self.process.poll() is None, self.errors()
        found = self._xdotool("search", "--onlyvisible", "--name", self.name).split()
        return int(found[0]) if found else None

    def _clean(self):
        if self.process.poll() is None:
            self.process.kill()
        self.process.wait()
        self.out.close()
        self.err.close()

    def _xdotool(self, *args):
        return subprocess.run(["xdotool", *map(str, args)], env=self.env, text=True, capture_output=True,
                              timeout=DEADLINE).stdout

    def output(self):
        self.out.seek(0)
        return self.out.read()

    def errors(self):
        self.err.seek(0)
        return self.err.read()

    def title(self):
        return self._xdotool("getwindowname", self.id).strip()

    def says(self, text):
        """Waits for a title."""
        wait(lambda: text in self.title(), f"{text!r} in the title, which is {self.title()!r}")
        return self.title()

    def prints(self, text, count=1):
        """Waits for a line of standard output; all lines that hold the text."""
        lines = lambda: [line for line in self.output().splitlines() if text in line]
        wait(lambda: len(lines()) >= count, f"{text!r} printed {count} times")
        return lines()

    def pixels(self):
        return Pixels(self.display, self.id)

    def still(self):
        """The picture once it doesn't change any more."""
        last = [self.pixels()]

        def same():
            time.sleep(0.1)
            now = self.pixels()
            equal = (now.width, now.height) == (last[0].width, last[0].height) and now.differ(last[0]) == 0
            last[0] = now
            return equal
        wait(same, "a picture that stays")
        return last[0]

    def changed(self, before):
        """The picture once it has changed."""
        wait(lambda: self.pixels().differ(before) > 50, "another picture")
        return self.still()

    def key(self, *keys):
        self._xdotool("mousemove", "--window", self.id, 2, 2)
        for key in keys:
            self._xdotool("key", key)

    def keys(self, *keys):
        """Without moving the pointer, which is over the window."""
        for key in keys:
            self._xdotool("key", key)

    def send(self, *keys):
        """To the window, wherever the pointer is."""
        for key in keys:
            self._xdotool("key", "--window", self.id, key)

    def move(self, x, y):
        self._xdotool("mousemove", "--window", self.id, x, y)

    def click(self, x, y, button=1, repeat=1):
        self.move(x, y)
        self._xdotool("click", "--repeat", repeat, "--delay", 30, button)

    def drag(self, start, *places, button=1, hold=None):
        self.move(*start)
        if hold:
            self._xdotool("keydown", hold)
        self._xdotool("mousedown", button)
        for place in places:
            self.move(*place)
        self._xdotool("mouseup", button)
        if hold:
            self._xdotool("keyup", hold)

    def resize(self, width, height):
        self._xdotool("windowsize", self.id, width, height)
        wait(lambda: f"{width}x{height}" in self._xdotool("getwindowgeometry", self.id), "another size")

    def ends(self):
        """The status, once it is over."""
        return self.process.wait(DEADLINE)


class WindowTest(HostTest):
    """Tests that share a display."""

    @classmethod
    def setUpClass(cls):
        missing = [tool for tool in TOOLS if not shutil.which(tool)]
        if missing:
            raise unittest.SkipTest("not installed: " + ", ".join(missing))
        cls.display = Display()
        cls.addClassCleanup(cls.display.end)

    def window(self, *args, **changes):
        return Window(self, *args, **changes)


def main():
    """Runs the tests; a skip of all of them is told by the status that says so."""
    result = unittest.main(exit=False).result
    if not result.wasSuccessful():
        sys.exit(1)
    if result.skipped and not result.testsRun:
        print("Skipped:", result.skipped[0][1])
        sys.exit(77)
