"""Running the host program as a user does, on grids made here, and reading the pictures that it writes."""
import array
import os
import struct
import subprocess
import sys
import tempfile
import unittest
import zlib
from pathlib import Path

PROGRAM = os.environ.get("LUMBRA_PROGRAM", "")
BACKGROUND = (0xE0, 0xF1, 0xFE)


def environment(**changes):
    """The caller's environment without a display; a change to None takes a variable away."""
    env = dict(os.environ)
    env.pop("DISPLAY", None)
    env.pop("WAYLAND_DISPLAY", None)
    env.update({k: v for k, v in changes.items() if v is not None})
    for name in [k for k, v in changes.items() if v is None]:
        env.pop(name, None)
    return env


class Picture:
    """A PNG of 8-bit red, green and blue."""

    def __init__(self, path):
        data = Path(path).read_bytes()
        assert data[:8] == b"\x89PNG\r\n\x1a\n", "not a PNG"
        pos, packed, ended = 8, b"", False
        while pos < len(data):
            size, kind = struct.unpack(">I4s", data[pos:pos + 8])
            body = data[pos + 8:pos + 8 + size]
            assert zlib.crc32(kind + body) == struct.unpack(">I", data[pos + 8 + size:pos + 12 + size])[0]
            if kind == b"IHDR":
                self.width, self.height, depth, colour, _, _, interlaced = struct.unpack(">IIBBBBB", body)
                assert (depth, colour, interlaced) == (8, 2, 0)
            elif kind == b"IDAT":
                packed += body
            ended = kind == b"IEND"
            pos += 12 + size
        assert ended, "cut off"
        self.rows = self._unfilter(zlib.decompress(packed))

    def _unfilter(self, raw):
        line, before, rows = 3 * self.width, bytes(3 * self.width), []
        assert len(raw) == (line + 1) * self.height
        for y in range(self.height):
            start = y * (line + 1)
            row = bytearray(raw[start + 1:start + 1 + line])
            predict = (None, self._left, self._up, self._average, self._paeth)[raw[start]]
            if predict:
                for i in range(line):
                    a, c = (row[i - 3], before[i - 3]) if i >= 3 else (0, 0)
                    row[i] = (row[i] + predict(a, before[i], c)) & 255
            before = bytes(row)
            rows.append(before)
        return rows

    @staticmethod
    def _left(a, b, c):
        return a

    @staticmethod
    def _up(a, b, c):
        return b

    @staticmethod
    def _average(a, b, c):
        return (a + b) // 2

    @staticmethod
    def _paeth(a, b, c):
        p = a + b - c
        return min((abs(p - a), 0, a), (abs(p - b), 1, b), (abs(p - c), 2, c))[2]

    def at(self, x, y):
        return tuple(self.rows[y][3 * x:3 * x + 3])

    def pixels(self):
        for y in range(self.height):
            for x in range(self.width):
                yield x, y, self.at(x, y)

    def where(self, holds):
        """(left, top, right, bottom, count) of the pixels whose colour holds."""
        found = [(x, y) for x, y, colour in self.pixels() if holds(colour)]
        if not found:
            return None
        xs, ys = [p[0] for p in found], [p[1] for p in found]
        return min(xs), min(ys), max(xs), max(ys), len(found)

    def model(self, background=BACKGROUND):
        return self.where(lambda colour: colour != background)

    def brightness(self, background=BACKGROUND):
        """The mean of what isn't background."""
        values = [sum(colour) for _, _, colour in self.pixels() if colour != background]
        return sum(values) / max(1, len(values))

    def difference(self, other):
        """Mean difference of a channel."""
        assert (self.width, self.height) == (other.width, other.height)
        total = sum(abs(a - b) for r, s in zip(self.rows, other.rows) for a, b in zip(r, s))
        return total / (3 * self.width * self.height)


class HostTest(unittest.TestCase):
    """A folder for each test, where the program runs."""

    def setUp(self):
        self.assertTrue(os.access(PROGRAM, os.X_OK), "LUMBRA_PROGRAM names no program")
        folder = tempfile.TemporaryDirectory(prefix="lumbra-")
        self.addCleanup(folder.cleanup)
        self.folder = Path(folder.name)

    def host(self, *args, env=None, **options):
        return subprocess.run([PROGRAM, *map(str, args)], cwd=self.folder, env=env or environment(), text=True,
                              encoding="utf-8", capture_output=True, timeout=120, **options)

    def grid(self, name, heights, x=500000, y=4000000, cell=10, header="NODATA_value -9999\n"):
        """An ASCII grid; rows of heights from the north."""
        rows = "".join(" ".join(map(str, row)) + "\n" for row in heights)
        (self.folder / name).write_text(f"ncols {len(heights[0])}\nnrows {len(heights)}\nxllcorner {x}\n"
                                        f"yllcorner {y}\ncellsize {cell}\n{header}{rows}")
        return name

    def raw_grid(self, name, heights):
        """A grid of 32-bit float heights, cells of 1."""
        with open(self.folder / (name + ".flt"), "wb") as file:
            for row in heights:
                file.write(array.array("f", row).tobytes())
        (self.folder / (name + ".hdr")).write_text(
            f"ncols {len(heights[0])}\nnrows {len(heights)}\nxllcorner 500000\nyllcorner 4000000\ncellsize 1\n"
            f"NODATA_value -9999\nbyteorder {'LSBFIRST' if sys.byteorder == 'little' else 'MSBFIRST'}\n")
        return name + ".flt"

    def large_grid(self, name, side):
        """A slope with waves."""
        return self.raw_grid(name, [array.array("f", (50 + (j % 600) / 10 + j / 100 for j in range(side)))] * side)

    def render(self, file, *args, size="160x120", smooth=1, env=None):
        """The picture of a run that has to succeed in silence."""
        run = self.host("render", file, "-o", "out.png", "--size", size, "--smooth", smooth, *args, env=env)
        self.assertEqual((run.returncode, run.stderr), (0, ""), args)
        return Picture(self.folder / "out.png")

    def fails(self, *args, says=(), leaves=None, **options):
        """A run that ends with one clear line on standard error, and nothing written."""
        before = sorted(self.folder.rglob("*")) if leaves is None else leaves
        run = self.host(*args, **options)
        self.assertGreater(run.returncode, 0, f"{args}: {run.stdout}{run.stderr}")
        self.assertEqual(run.stdout, "", args)
        lines = run.stderr.splitlines()
        self.assertEqual(len(lines), 1, f"{args}: {run.stderr}")
        self.assertTrue(lines[0].startswith("lumbra: "), lines[0])
        for part in [says] if isinstance(says, str) else says:
            self.assertIn(part, lines[0], args)
        self.assertEqual(sorted(self.folder.rglob("*")), before, args)
        return lines[0]


def plain(rows=20, columns=20, height=100):
    return [[height] * columns for _ in range(rows)]


def hill(side=20, top=60):
    """A hill in the middle of a plain."""
    middle = (side - 1) / 2
    return [[round(max(0, top - 8 * ((i - middle) ** 2 + (j - middle) ** 2) ** 0.5), 3) for j in range(side)]
            for i in range(side)]
