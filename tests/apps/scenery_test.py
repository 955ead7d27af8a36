#!/usr/bin/env python3
"""Buildings, trees, breaklines and skies on small grids: what is where, in which colour."""
import json
import math
import unittest

from files import bmp
from host import BACKGROUND, HostTest, Picture, environment, hill, plain
from sphere_test import BLUE, GREEN, RED, YELLOW, panorama

X, Y, SIDE = 500005, 4000005, 190  # where the samples of a grid of 20 x 20 begin, and how far they reach
FLAT = ("--no-light", "--no-base", "--top", "--orthographic")
ROOF = (168, 92, 72)
UTM = ('PROJCS["WGS 84 / UTM zone 30N",GEOGCS["WGS 84",DATUM["WGS_1984",SPHEROID["WGS 84",6378137,298.257223563]],'
       'PRIMEM["Greenwich",0],UNIT["degree",0.0174532925199433]],PROJECTION["Transverse_Mercator"],'
       'PARAMETER["latitude_of_origin",0],PARAMETER["central_meridian",-3],PARAMETER["scale_factor",0.9996],'
       'PARAMETER["false_easting",500000],PARAMETER["false_northing",0],UNIT["metre",1]]')


def latitude(northing):
    """Where a northing of UTM lies on the central meridian, in radians (WGS 84)."""
    e2 = 0.00669437999014
    arc = lambda p: 6378137 * ((1 - e2 / 4 - 3 * e2 ** 2 / 64) * p - (3 * e2 / 8 + 3 * e2 ** 2 / 32) * math.sin(2 * p) +
                               15 * e2 ** 2 / 256 * math.sin(4 * p))
    phi = northing / 0.9996 / 6367449
    for _ in range(5):
        phi += (northing / 0.9996 - arc(phi)) / 6367449
    return phi


def rectangle(x, y, width, height, z=None):
    corners = [(x, y), (x + width, y), (x + width, y + height), (x, y + height), (x, y)]
    return [[X + a, Y + b] + ([] if z is None else [z]) for a, b in corners]


def near(colour, other, by=3):
    return max(abs(a - b) for a, b in zip(colour, other)) <= by


def roof(colour):
    return near(colour, ROOF)


def reddish(colour):
    return colour[0] > 110 and colour[1] < 90 and colour[2] < 90


def greenish(colour):
    return colour[1] > 60 and colour[0] < 60 and colour[2] < 60


class Scenery(HostTest):
    def file(self, name, features, epsg=None):
        """Features as (kind, coordinates, attributes)."""
        data = {"type": "FeatureCollection", "features": [
            {"type": "Feature", "properties": attributes, "geometry": {"type": kind, "coordinates": coordinates}}
            for kind, coordinates, attributes in features]}
        if epsg is None:  # a plane system that isn't told apart from the grid's, which has none
            data["crs"] = {"type": "name", "properties": {"name": "urn:ogc:def:crs:EPSG::25830"}}
        (self.folder / name).write_text(json.dumps(data))
        return name

    def houses(self, *outlines, **attributes):
        return self.file("houses.geojson", [("Polygon", list(rings), attributes) for rings in outlines])

    def place(self, picture, found):
        """From pixels of a picture from the top to metres from the grid's south-west corner."""
        left, top, right, bottom, _ = picture.model()
        scale = SIDE / (right - left + 1)
        return [round(v) for v in ((found[0] - left) * scale, (bottom + 1 - found[3] - 1) * scale,
                                   (found[2] + 1 - left) * scale, (bottom + 1 - found[1]) * scale)]

    def check_place(self, picture, found, expected, by=4):
        for value, wanted in zip(self.place(picture, found), expected):
            self.assertLessEqual(abs(value - wanted), by, (self.place(picture, found), expected))


class Buildings(Scenery):
    def test_a_building_stands_on_its_outline(self):
        grid = self.grid("dem.asc", plain())
        picture = self.render(grid, "--buildings", self.houses([rectangle(20, 100, 60, 40)], height=10), *FLAT,
                              size="200x200")
        self.check_place(picture, picture.where(roof), (20, 100, 80, 140))

    def test_a_court_stays_open(self):
        grid = self.grid("dem.asc", plain())
        picture = self.render(grid, "--buildings",
                              self.houses([rectangle(40, 40, 100, 100), rectangle(70, 70, 40, 40)], height=10), *FLAT,
                              size="200x200")
        found = picture.where(roof)
        self.check_place(picture, found, (40, 40, 140, 140))
        self.assertFalse(roof(picture.at((found[0] + found[2]) // 2, (found[1] + found[3]) // 2)))
        self.assertAlmostEqual(found[4] / ((found[2] - found[0] + 1) * (found[3] - found[1] + 1)), 0.84, delta=0.05)

    def height_of(self, file, *options):
        """Metres from the ground of a flat grid to the roof, seen level from the south; houses are 60 wide."""
        picture = self.render(self.grid("dem.asc", plain()), "--buildings", file, "--azimuth", 180, "--elevation", 0,
                              "--orthographic", "--no-base", "--no-light", *options, size="400x300")
        wall = picture.where(lambda c: near(c, (222, 214, 200)))
        return (wall[3] - wall[1] + 1) / (wall[2] - wall[0] + 1) * 60

    def test_heights_count_from_the_ground(self):
        outline = [rectangle(60, 60, 60, 60)]
        self.assertAlmostEqual(self.height_of(self.houses(outline, height=30)), 30, delta=1.5)
        self.assertAlmostEqual(self.height_of(self.houses(outline, height="45 m")), 45, delta=1.5)
        self.assertAlmostEqual(self.height_of(self.houses(outline, height=30), "--exaggeration", 2), 60, delta=2)
        self.assertAlmostEqual(self.height_of(self.houses(outline, height=9, eaves=20), "--height-field", "eaves"), 20,
                               delta=1.5)

    def test_heights_may_be_coordinates(self):
        self.assertAlmostEqual(self.height_of(self.houses([rectangle(60, 60, 60, 60, z=125)])), 25, delta=1.5)

    def test_a_roof_may_slope(self):
        outline = [[X + 60, Y + 60, 110], [X + 120, Y + 60, 110], [X + 120, Y + 120, 150], [X + 60, Y + 120, 150],
                   [X + 60, Y + 60, 110]]
        grid = self.grid("dem.asc", plain())
        for azimuth, shows in ((180, True), (0, False)):
            picture = self.render(grid, "--buildings", self.houses([outline]), "--azimuth", azimuth, "--elevation", 5,
                                  "--no-light", "--no-base")
            self.assertEqual(picture.where(roof) is not None, shows, azimuth)

    def test_either_direction_of_an_outline_gives_the_same_building(self):
        grid = self.grid("dem.asc", plain())
        outline, court = rectangle(40, 40, 100, 100), rectangle(60, 60, 60, 60)
        one, *others = [self.render(grid, "--buildings", self.houses(rings, height=40))
                        for rings in ([outline, court], [outline[::-1], court], [outline, court[::-1]])]
        for other in others:
            different = [1 for x, y, colour in one.pixels() if not near(colour, other.at(x, y), 12)]
            self.assertLess(len(different), 20)

    def test_walls_are_lit_from_the_side_of_the_light(self):
        grid = self.grid("dem.asc", plain())
        houses = self.houses([rectangle(60, 60, 60, 60)], height=40)
        shade = {}
        for azimuth in (0, 180):  # seen level, with the light in the north
            picture = self.render(grid, "--buildings", houses, "--azimuth", azimuth, "--elevation", 0, "--light", "0,30",
                                  "--no-base", "--orthographic")
            left, top, right, bottom, _ = picture.model()
            shade[azimuth] = sum(picture.at(80, top + 10))
        self.assertGreater(shade[0], shade[180] + 100)

    def test_buildings_keep_their_proportions(self):
        run = self.host("render", self.grid("dem.asc", plain()), "--buildings",
                        self.houses([rectangle(60, 60, 60, 60)], height=10), "-o", "x.png", "--size", "40x30")
        self.assertIn("heights x 1\n", run.stdout)

    def test_a_tall_building_is_in_the_picture(self):
        picture = self.render(self.grid("dem.asc", plain()), "--buildings",
                              self.houses([rectangle(80, 80, 30, 30)], height=300))
        _, top, _, bottom, _ = picture.model()
        self.assertTrue(0 < top and bottom < picture.height - 1)

    def test_degrees_are_brought_to_the_terrain(self):
        grid = self.grid("dem.asc", plain())
        (self.folder / "dem.prj").write_text(UTM)
        run = self.host("info", grid)
        self.assertRegex(run.stdout, "UTM zone 30N")
        # On the central meridian northings are lengths along it.
        outline = [[-3 + math.degrees((X + x - 500000) / 0.9996 / (6378137 * math.cos(latitude(Y + y)))),
                    math.degrees(latitude(Y + y))] for x, y in ((60, 60), (120, 60), (120, 120), (60, 120), (60, 60))]
        file = self.file("houses.geojson", [("Polygon", [outline], {"height": 10})], epsg=4326)
        run = self.host("render", grid, "--buildings", file, *FLAT, "--size", "200x200", "-o", "out.png")
        self.assertEqual((run.returncode, run.stderr), (0, "houses.geojson: brought to the terrain's coordinates\n"))
        picture = Picture(self.folder / "out.png")
        self.check_place(picture, picture.where(roof), (60, 60, 120, 120))

    def test_what_lies_off_the_terrain_is_left_out(self):
        grid = self.grid("dem.asc", plain())
        houses = self.houses([rectangle(60, 60, 60, 60)], [rectangle(600, 60, 60, 60)], [rectangle(180, 60, 60, 60)],
                             height=10)
        run = self.host("render", grid, "--buildings", houses, "-o", "out.png", "--size", "40x30")
        self.assertEqual((run.returncode, run.stderr),
                         (0, "houses.geojson: warning: 2 buildings off the terrain; left out\n"))
        self.fails("render", grid, "--buildings", self.houses([rectangle(600, 60, 60, 60)], height=10), "-o", "x.png",
                   says=["houses.geojson", "no building lies on the terrain"])

    def test_buildings_without_a_height(self):
        grid = self.grid("dem.asc", plain())
        outlines = [("Polygon", [rectangle(60, 60, 60, 60)], {"height": h}) for h in (10, 0, -5, None)]
        run = self.host("render", grid, "--buildings", self.file("h.geojson", outlines), "-o", "out.png", "--size",
                        "40x30")
        self.assertEqual((run.returncode, run.stderr),
                         (0, "h.geojson: warning: 3 buildings without a height; left out\n"))
        self.fails("render", grid, "--buildings", self.houses([rectangle(60, 60, 60, 60)], floors=2), "-o", "x.png",
                   says=["houses.geojson", "--height-field"])
        self.fails("render", grid, "--buildings", "houses.geojson", "--height-field", "eaves", "-o", "x.png",
                   says=["houses.geojson", "'eaves'", "it has floors"])
        self.fails("render", grid, "--height-field", "eaves", "-o", "x.png", says=["--height-field", "--buildings"])

    def test_what_holds_no_buildings(self):
        grid = self.grid("dem.asc", plain())
        points = self.file("p.geojson", [("Point", [X, Y], {})])
        self.fails("render", grid, "--buildings", points, "-o", "x.png", says=["p.geojson", "no area"])
        self.fails("render", grid, "--buildings", "none.gpkg", "-o", "x.png", says=["none.gpkg", "no such file"])
        self.fails("render", grid, "--buildings", grid, "-o", "x.png", says=[grid, "not a file of vectors"])
        self.fails("render", grid, "--buildings", "", "-o", "x.png", says="--buildings")


class Trees(Scenery):
    def wood(self, *points):
        return self.file("trees.geojson", [("Point", [X + x, Y + y], {} if h is None else {"height": h})
                                           for x, y, h in points])

    def test_a_tree_stands_on_its_point(self):
        grid = self.grid("dem.asc", plain())
        picture = self.render(grid, "--trees", self.wood((150, 40, 60)), "--color", "plain", *FLAT,
                              size="200x200")
        left, low, right, high = self.place(picture, picture.where(greenish))
        self.assertLess(abs((left + right) / 2 - 150), 4)
        self.assertLess(abs((low + high) / 2 - 40), 4)

    def size_of(self, file, *options):
        """How high a tree is, seen level from the south, on a base that is a fortieth as high as wide."""
        picture = self.render(self.grid("dem.asc", plain()), "--trees", file, "--azimuth", 180, "--elevation", 0,
                              "--orthographic", "--no-light", *options, size="400x300")
        left, top, right, bottom, _ = picture.model()
        return (bottom - top + 1) / (right - left + 1) * SIDE - SIDE / 40

    def test_trees_have_their_heights(self):
        for points, options, height in ((((100, 100, 40),), (), 40),
                                        (((100, 100, None),), ("--tree-height", 70), 70),
                                        (((100, 100, None),), (), 10),
                                        (((100, 100, None),), ("--conifers", "--tree-height", 60), 60),
                                        (((100, 100, 20), (50, 50, 60), (30, 50, 20)), (), 60)):
            # A round crown reaches a little over its height.
            self.assertAlmostEqual(self.size_of(self.wood(*points), *options), height, delta=1.5 + 0.05 * height)

    def test_conifers_are_darker(self):
        grid, wood = self.grid("dem.asc", plain()), self.wood((100, 100, 80))
        shades = []
        for options in ((), ("--conifers",)):
            picture = self.render(grid, "--trees", wood, "--color", "plain", "--no-light", "--no-base", *options)
            shades.append(max(c[1] for _, _, c in picture.pixels() if c[0] < 30 and c[2] < 30))
        self.assertGreater(shades[0], shades[1] + 100)

    def test_trees_stand_on_the_slope(self):
        grid = self.grid("dem.asc", [[5 * (19 - j) for j in range(20)] for _ in range(20)])
        west, east = (self.render(grid, "--trees", self.wood((x, 95, 30)), "--azimuth", 180, "--elevation", 0,
                                  "--orthographic", "--no-light", "--no-base", "--color", "plain").where(greenish)
                      for x in (30, 160))
        self.assertLess(west[1], east[1])
        self.assertLess(west[2], east[0])

    def test_trees_off_the_terrain(self):
        grid = self.grid("dem.asc", plain())
        run = self.host("render", grid, "--trees", self.wood((50, 50, 10), (500, 50, 10), (60, 60, -1)), "-o", "out.png",
                        "--size", "40x30")
        self.assertEqual((run.returncode, run.stderr), (0, "trees.geojson: warning: 1 tree off the terrain; left out\n"
                                                           "trees.geojson: warning: 1 tree of no height; left out\n"))
        self.fails("render", grid, "--trees", self.wood((500, 50, 10)), "-o", "x.png", says="no tree lies on the terrain")
        self.fails("render", grid, "--trees", self.houses([rectangle(0, 0, 9, 9)]), "-o", "x.png", says="no point in it")
        self.fails("render", grid, "--tree-height", 5, "-o", "x.png", says=["--tree-height", "--trees"])
        self.fails("render", grid, "--conifers", "-o", "x.png", says=["--conifers", "--trees"])
        for height in ("0", "-3", "x"):
            self.fails("render", grid, "--trees", "trees.geojson", f"--tree-height={height}", "-o", "x.png",
                       says="--tree-height")


class Breaklines(Scenery):
    def lines(self, name, points, z=None):
        if name.endswith(".txt"):
            (self.folder / name).write_text("".join(f"EDGE {X + x} {Y + y} {z}\n" for x, y in points))
            return name
        return self.file(name, [("LineString", [[X + x, Y + y] + ([] if z is None else [z]) for x, y in points], {})])

    def test_lines_lie_where_they_should(self):
        grid = self.grid("dem.asc", plain())
        for file in (self.lines("e.txt", [(30, 50), (160, 50)], 100), self.lines("e.geojson", [(30, 50), (160, 50)], 100),
                     self.lines("flat.geojson", [(30, 50), (160, 50)])):
            picture = self.render(grid, "--breaklines", file, "--color", "plain", *FLAT, size="200x200")
            self.check_place(picture, picture.where(reddish), (30, 50, 160, 50))

    def test_lines_without_heights_follow_the_terrain(self):
        grid = self.grid("dem.asc", hill())
        picture = self.render(grid, "--breaklines", self.lines("e.geojson", [(5, 95), (185, 95)]), "--azimuth", 180,
                              "--elevation", 20, "--color", "plain", "--no-light", "--no-base", size="200x150")
        _, top, _, bottom, count = picture.where(reddish)
        self.assertGreater(bottom - top, 20)
        self.assertGreater(count, 100)

    def test_what_lies_off_or_cant_be_read(self):
        grid = self.grid("dem.asc", plain())
        for name in ("far.txt", "far.geojson"):
            self.fails("render", grid, "--breaklines", self.lines(name, [(900, 0), (950, 0)], 100), "-o", "x.png",
                       says=[name, "lies on the terrain"])
        (self.folder / "bad.txt").write_text(f"EDGE {X} {Y} 100\nEDGE {X} oops 100\n")
        self.fails("render", grid, "--breaklines", "bad.txt", "-o", "x.png", says=["bad.txt", "2"])
        self.fails("render", grid, "--breaklines", "none.txt", "-o", "x.png", says="none.txt")
        self.fails("render", grid, "--breaklines", "none.shp", "-o", "x.png", says=["none.shp", "no such file"])


class Sky(Scenery):
    def test_the_sky_turns_with_the_view(self):
        grid = self.grid("dem.asc", plain())
        (self.folder / "sky.bmp").write_bytes(bmp(panorama(), 24))
        for azimuth, colours in ((180, (RED, RED)), (0, (BLUE, BLUE)), (90, (YELLOW, YELLOW)), (270, (GREEN, GREEN)),
                                 (135, (YELLOW, RED)), (225, (RED, GREEN))):
            picture = self.render(grid, "--sky", "sky.bmp", "--azimuth", azimuth, "--elevation", 5, size="200x150")
            self.assertEqual((picture.at(5, 5), picture.at(194, 5)), colours, azimuth)

    def test_up_is_up(self):
        # The upper half of the sky white, the lower one black: the horizon lies in a level picture's middle.
        (self.folder / "sky.bmp").write_bytes(bmp([[(255, 255, 255)] * 64] * 16 + [[(0, 0, 0)] * 64] * 16, 24))
        grid = self.grid("dem.asc", plain())
        for projection in ((), ("--orthographic",)):
            picture = self.render(grid, "--sky", "sky.bmp", "--elevation", 0, "--no-base", *projection)
            self.assertEqual((picture.at(3, 3), picture.at(3, 116)), ((255, 255, 255), (0, 0, 0)))
            self.assertIsNone(picture.where(lambda c: c == BACKGROUND))

    def test_no_file_is_left_behind(self):
        (self.folder / "sky.bmp").write_bytes(bmp(panorama(), 24))
        temporary = self.folder / "tmp"
        temporary.mkdir()
        run = self.host("render", self.grid("dem.asc", plain()), "--sky", "sky.bmp", "-o", "x.png", "--size", "40x30",
                        env=environment(TMPDIR=str(temporary)))
        self.assertEqual((run.returncode, run.stderr), (0, ""))
        self.assertEqual(list(temporary.iterdir()), [])

    def test_what_is_no_sky(self):
        grid = self.grid("dem.asc", plain())
        self.fails("render", grid, "--sky", "none.jpg", "-o", "x.png", says="none.jpg")
        self.fails("render", grid, "--sky", grid, "-o", "x.png", says=[grid, "not a picture"])


class Combined(Scenery):
    def test_all_of_it_together(self):
        (self.folder / "sky.bmp").write_bytes(bmp(panorama(), 24))
        houses = self.houses([rectangle(20, 20, 40, 40)], height=30)
        trees = self.file("trees.geojson", [("Point", [X + 140, Y + 60], {"height": 50})])
        (self.folder / "e.txt").write_text(f"EDGE {X + 20} {Y + 120} 101\nEDGE {X + 160} {Y + 120} 101\n")
        picture = self.render(self.grid("dem.asc", plain()), "--buildings", houses, "--trees", trees, "--breaklines",
                              "e.txt", "--sky", "sky.bmp", "--no-light", "--color", "plain", "--azimuth", 180, size="200x150")
        self.assertIsNotNone(picture.where(roof))
        self.assertIsNotNone(picture.where(greenish))
        self.assertGreater(picture.where(lambda c: 150 < c[0] < 200 and c[1] < 60 and c[2] < 60)[4], 20)
        self.assertEqual(picture.at(2, 2), RED)

    def test_a_picture_has_no_scenery(self):
        (self.folder / "p.bmp").write_bytes(bmp(panorama(), 24))
        for option in ("--drape", "--buildings", "--trees", "--breaklines", "--sky"):
            for sphere in ((), ("--sphere",)):
                self.fails("render", "p.bmp", *sphere, option, "p.bmp", "-o", "x.png", says=[option, "elevation grid"])


if __name__ == "__main__":
    unittest.main()
