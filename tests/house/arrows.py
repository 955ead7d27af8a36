#!/usr/bin/env python3
"""Reads every #include of the sources and prints those that break the order of the folders, that bring the window
system or another library into a public header, or a system header above the platform; and files too long to read.

    tests/house/arrows.py [ROOT]        exit status 1 when something was printed
"""
import re
import sys
from pathlib import Path

# What each folder of src/ may include beside itself.
LOWER = {
    "platform": [],
    "model": ["platform"],
    "raster": ["platform", "model"],
    "frame": ["platform", "model", "raster"],
    "terrain": ["platform", "model", "raster", "frame"],
    "tin": ["platform", "model", "raster", "frame", "terrain"],
    "drawing": ["platform", "model", "raster", "frame"],
    "sphere": ["platform", "model", "raster", "frame"],
    "workers": ["platform", "model", "raster", "frame", "terrain", "tin", "drawing", "sphere"],
    "io": ["platform", "model", "raster"],
}
CORE = [folder for folder in LOWER if folder != "io"]
# Workers stand beside the scenes: a scene's sources start them.
SCENES = {"frame", "terrain", "tin", "drawing", "sphere"}

LIBRARIES = re.compile(r"^(X11/|GL/glx|EGL/|ft2build|freetype|FT_|fontconfig/|cairo|geos|proj|gdal|ogr|cpl_|Eigen/|libqhull|"
                       r"iconv|cups/|SimpleIni|tiff|jpeglib|openjpeg|png)")
SYSTEM = re.compile(r"^(sys/|linux/|arpa/|netinet/|unistd\.h|fcntl\.h|pthread\.h|dlfcn\.h|dirent\.h|semaphore\.h|"
                    r"signal\.h|csignal|sched\.h|poll\.h|pwd\.h|termios\.h|windows\.h)")
# The same as in cmake/LumbraPackage.cmake, which leaves these headers out of the package.
INTERNAL = re.compile(r"\b[Ii]nternal\b")
INCLUDE = re.compile(r'^\s*#\s*include\s*([<"])([^>"]+)[>"]')
SYSTEM_IFDEF = re.compile(r"^\s*#\s*(if|ifdef|ifndef|elif)\b.*\b(_WIN32|WIN32|_MSC_VER|__linux__|__unix__|__APPLE__)\b")
LONGEST = 600


def internal(path, text):
    """Headers that are not installed say so in the remark at their top, or live in a backend's folder."""
    return path.parent.name in ("glx", "egl") or INTERNAL.search(text.split("\n\n", 1)[0]) is not None


def faults_of_include(root, path, folder, header, public):
    target = header.split("/")[0] if "/" in header else None
    if target in LOWER and target != folder:
        allowed = list(LOWER[folder]) if folder in LOWER else CORE + ["io"]
        if folder in SCENES and path.suffix == ".cpp":
            allowed.append("workers")
        if folder == "workers" and path.suffix == ".h":
            allowed = [f for f in allowed if f not in SCENES]
        if target not in allowed:
            yield f"{folder} may not include {header}"
        if target == "platform" and header.startswith(("platform/glx/", "platform/egl/")) and folder != "platform":
            yield f"a backend's own header: {header}"
    if public and LIBRARIES.match(header):
        yield f"a public header includes {header}"
    included = root / "src" / header
    if public and included.is_file() and internal(included, included.read_text(encoding="utf-8")):
        yield f"a public header includes {header}, which is not installed"
    if folder in LOWER and folder != "platform" and SYSTEM.match(header):
        yield f"a system header above the platform: {header}"


def check(root):
    for top in ("src", "apps", "examples", "tests", "bench"):
        for path in sorted((root / top).rglob("*")):
            if path.suffix not in (".h", ".cpp"):
                continue
            relative = path.relative_to(root)
            text = path.read_text(encoding="utf-8")
            lines = text.splitlines()
            if len(lines) > LONGEST:
                yield f"{relative}: {len(lines)} lines, more than {LONGEST}"
            if top in ("tests", "bench"):
                continue
            folder = relative.parts[1] if top == "src" else top
            if top == "src" and len(relative.parts) > 2 and folder not in LOWER:
                yield f"{relative}: {folder} is no folder of the house"
                continue
            public = top == "src" and path.suffix == ".h" and not internal(path, text)
            for number, line in enumerate(lines, 1):
                found = INCLUDE.match(line)
                if found:
                    for fault in faults_of_include(root, path, folder, found[2], public):
                        yield f"{relative}:{number}: {fault}"
                elif top == "src" and folder != "platform" and SYSTEM_IFDEF.match(line):
                    yield f"{relative}:{number}: code for one system above the platform"


if __name__ == "__main__":
    here = Path(sys.argv[1]) if len(sys.argv) > 1 else Path(__file__).resolve().parents[2]
    faults = list(check(here))
    print("\n".join(faults), end="\n" if faults else "")
    sys.exit(1 if faults else 0)
