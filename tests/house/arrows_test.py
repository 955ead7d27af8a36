#!/usr/bin/env python3
"""Made-up trees that break the house's rules, each in one way, and have to be found out."""
import tempfile
import unittest
from pathlib import Path

import arrows


def faults(tree):
    with tempfile.TemporaryDirectory() as folder:
        for name, text in tree.items():
            path = Path(folder) / name
            path.parent.mkdir(parents=True, exist_ok=True)
            path.write_text(text, encoding="utf-8")
        return list(arrows.check(Path(folder)))


class Arrows(unittest.TestCase):
    def good(self, name, text, **others):
        self.assertEqual(faults({name: text, **others}), [])

    def bad(self, name, text, part, **others):
        found = faults({name: text, **others})
        self.assertEqual(len(found), 1, found)
        self.assertIn(part, found[0])

    def test_downwards_is_allowed(self):
        self.good("src/frame/A.cpp", '#include "frame/A.h"\n#include "model/B.h"\n#include "platform/C.h"\n#include <vector>\n')
        self.good("src/io/A.cpp", '#include "raster/A.h"\n#include <gdal.h>\n')
        self.good("apps/lumbra/main.cpp", '#include "terrain/A.h"\n#include "io/B.h"\n')

    def test_upwards_and_sideways_are_not(self):
        self.bad("src/platform/A.cpp", '#include "model/A.h"\n', "platform may not include model/A.h")
        self.bad("src/model/A.h", '#pragma once\n  #  include "raster/A.h"\n', "A.h:2")
        self.bad("src/tin/A.h", '#include "drawing/A.h"\n', "tin may not include")
        self.bad("src/io/A.h", '#include "frame/A.h"\n', "io may not include")
        self.bad("src/terrain/A.cpp", '#include "io/A.h"\n', "terrain may not include")

    def test_workers_are_started_by_sources_and_name_scenes_by_declaration(self):
        self.good("src/drawing/A.cpp", '#include "workers/A.h"\n')
        self.good("src/workers/A.cpp", '#include "drawing/A.h"\n')
        self.bad("src/drawing/A.h", '#include "workers/A.h"\n', "drawing may not")
        self.bad("src/workers/A.h", '#include "drawing/A.h"\n', "workers may not")

    def test_public_headers_bring_in_no_library(self):
        for header in ("X11/Xlib.h", "GL/glx.h", "EGL/egl.h", "ft2build.h", "cairo.h", "geos_c.h", "proj.h", "gdal.h", "ogr_api.h"):
            self.bad("src/platform/A.h", f"#include <{header}>\n", "a public header includes " + header)
        self.good("src/platform/A.cpp", "#include <X11/Xlib.h>\n")
        self.good("src/platform/glx/A.h", "#include <X11/Xlib.h>\n")
        self.good("src/model/Geos.h", "// Internal: GEOS with owners.\n#include <geos_c.h>\n")

    def test_public_headers_bring_in_nothing_that_is_not_installed(self):
        others = {"src/model/B.h": "#pragma once\n// Internal. What two files share.\n\n",
                  "src/model/C.h": "#pragma once\n// Internally it is a list.\n\n// internal\n"}
        self.bad("src/model/A.h", '#include "model/B.h"\n', "model/B.h, which is not installed", **others)
        self.good("src/model/A.cpp", '#include "model/B.h"\n', **others)
        self.good("src/model/A.h", '#include "model/C.h"\n', **others)

    def test_the_system_stays_in_the_platform(self):
        self.good("src/platform/A.cpp", "#include <unistd.h>\n")
        self.bad("src/model/A.cpp", "#include <sys/stat.h>\n", "a system header above the platform")
        self.bad("src/frame/A.cpp", "#ifdef _WIN32\n#endif\n", "code for one system")
        self.bad("src/model/A.cpp", '#include "platform/glx/A.h"\n', "a backend's own header")

    def test_folders_are_those_of_the_house(self):
        self.bad("src/utils/A.h", "\n", "no folder of the house")

    def test_files_can_be_read(self):
        self.good("tests/model/A.cpp", "\n" * 600)
        self.bad("tests/model/A.cpp", "\n" * 601, "601 lines")


if __name__ == "__main__":
    unittest.main()
