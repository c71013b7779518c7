"""The figures of zulcalc against a second calculation, written from the formulas in another language.

Reads the sample halls, their models and random halls with a reader of its own, computes every figure point by point
without any of the shortcuts of the kernel, and compares with the JSON of the program.
Usage: figures_test.py PROGRAM_FOLDER [NUMBER OF RANDOM HALLS]
"""

import json
import math
import pathlib
import random
import struct
import subprocess
import sys
import tempfile
import unittest

FOLDER = pathlib.Path(sys.argv[1])
SAMPLES = FOLDER / "Beispiele"
RANDOM_HALLS = int(sys.argv[2]) if len(sys.argv) > 2 else 4
SIGMA_SURFACE = 5.669e-8
SIGMA_OPERATIVE = 5.6687e-08


# Typed data files, as nested lists.


def parse_items(data, pos=0, nested=False):
    items = []
    while pos < len(data):
        tag = data[pos]
        pos += 1
        if tag == 0xA1:
            children, pos = parse_items(data, pos + 4, True)
            items.append(children)
        elif tag == 0xA2:
            assert nested
            return items, pos
        elif tag == 0xA3:
            items.append(struct.unpack_from("<i", data, pos)[0])
            pos += 4
        elif tag == 0xA4:
            items.append(struct.unpack_from("<d", data, pos)[0])
            pos += 8
        elif tag == 0xA5:
            items.append(data[pos + 1:pos + 1 + data[pos]].decode("cp1252"))
            pos += 1 + data[pos]
        elif tag == 0xA6:
            length = data[pos]
            items.append(("header", data[pos + 1:pos + 1 + length]))
            pos += 1 + length + 4
        elif tag == 0xA7:
            length = struct.unpack_from("<i", data, pos)[0]
            items.append(data[pos + 4:pos + 4 + length].decode("cp1252"))
            pos += 4 + length
        else:
            raise ValueError(f"no tag: {tag:#x} at {pos - 1}")
    return items, pos


class Model:
    def __init__(self, path):
        header, info, grid = parse_items(path.read_bytes())[0]
        assert header == ("header", b"IE/GIM")
        self.radiant_part, self.power = info[4], info[5]
        self.rz = grid[0]
        self.layers = [(layer[0], layer[1], layer[2:]) for layer in grid[1:]]

    def cell(self, ix, iy, iz):
        rx, _, values = self.layers[iz]
        return values[iy * (2 * rx + 1) + ix + rx]

    def value(self, x, y, z):
        if z < 0 or z >= self.rz:
            return 0.0
        iz, y = int(z), abs(y)
        iy = int(y)
        for layer in (iz, iz + 1):
            rx, ry, _ = self.layers[layer]
            if not (iy < ry and int(abs(x)) < rx):
                return 0.0
        ix = math.floor(x)
        dx, dy, dz = x - ix, y - iy, z - iz
        along_z = []
        for layer in (iz, iz + 1):
            along_y = [self.cell(ix, row, layer) * (1 - dx) + self.cell(ix + 1, row, layer) * dx
                       for row in (iy, iy + 1)]
            along_z.append(along_y[0] * (1 - dy) + along_y[1] * dy)
        return along_z[0] * (1 - dz) + along_z[1] * dz


class Construction:
    def __init__(self, k, alpha, outside):
        self.k, self.alpha, self.outside = k, alpha, outside

    def update(self, air, outside):
        ratio = min(self.k / self.alpha, 1)
        self.t = air - ratio * (air - outside)
        self.q = ((self.t + 273.15) ** 4 - (air + 273.15) ** 4) * SIGMA_SURFACE


def cross(a, b):
    return (a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0])


def dot(a, b):
    return sum(u * v for u, v in zip(a, b))


def rectangle_flux(px, py, pz, w, h, q):
    d = max(pz, 0.01)

    def corner(a, b):
        return math.atan(a * b / (d * math.sqrt(a * a + b * b + d * d)))

    x1, x2, y1, y2 = -px, w - px, -py, h - py
    return q / (2 * math.pi) * (corner(x2, y2) - corner(x1, y2) - corner(x2, y1) + corner(x1, y1))


class Hole:
    def __init__(self, record):
        self.size, self.pos, self.rotation = record[0:2], record[2:4], record[4]
        own = len(record) < 9 or record[8] & 1
        self.construction = Construction(*record[5:8])
        self.own_outside = own
        self.description = record[9] if len(record) > 9 else ""

    def outside(self, surface):
        return self.construction.outside if self.own_outside else surface.construction.outside

    def areas(self, z):
        """Area above and below the height z, by clipping the polygon edge by edge."""
        c, s = math.cos(self.rotation), math.sin(self.rotation)
        corners = []
        for u, v in ((-1, -1), (1, -1), (1, 1), (-1, 1)):
            x, y = u * self.size[0] / 2, v * self.size[1] / 2
            corners.append((x * c - y * s + self.pos[0], x * s + y * c + self.pos[1]))
        kept = []
        for (x0, y0), (x1, y1) in zip(corners, corners[1:] + corners[:1]):
            if y0 >= z:
                kept.append((x0, y0))
            if (y0 > z) != (y1 > z) and y0 != y1:
                t = (z - y0) / (y1 - y0)
                kept.append((x0 + t * (x1 - x0), z))
        upper = 0.0
        if len(kept) > 2:
            upper = abs(sum(a[0] * b[1] - b[0] * a[1] for a, b in zip(kept, kept[1:] + kept[:1]))) / 2
        return upper, self.size[0] * self.size[1] - upper


class Surface:
    def __init__(self, record, holes, construction):
        self.width, self.height = record[0:2]
        self.origin, self.u, self.v = record[2:5], record[5:8], record[8:11]
        self.construction = construction
        self.holes = [Hole(hole) for hole in holes]

    def transmission(self, z):
        k, outside = self.construction.k, self.construction.outside
        upper = self.width * min(max(self.height - z, 0), self.height)
        lower = self.width * min(max(z, 0), self.height)
        parts = []
        for hole in self.holes:
            above, below = hole.areas(z)
            upper -= above
            lower -= below
            parts.append((hole.construction.k, hole.outside(self), above, below))
        parts.append((k, outside, max(upper, 0), max(lower, 0)))
        return (sum(p[0] * p[3] * p[1] for p in parts), sum(p[0] * p[2] * p[1] for p in parts),
                sum(p[0] * p[3] for p in parts), sum(p[0] * p[2] for p in parts))

    def radiation(self, p):
        """The axes of the samples are orthonormal: local coordinates are scalar products."""
        offset = [a - b for a, b in zip(p, self.origin)]
        x, y, z = dot(offset, self.u), dot(offset, self.v), dot(offset, cross(self.u, self.v))
        q = self.construction.q
        total = rectangle_flux(x, y, abs(z), self.width, self.height, q)
        for hole in self.holes:
            c, s = math.cos(hole.rotation), math.sin(hole.rotation)
            dx, dy = x - hole.pos[0], y - hole.pos[1]
            hx, hy = dx * c + dy * s + hole.size[0] / 2, -dx * s + dy * c + hole.size[1] / 2
            total += rectangle_flux(hx, hy, abs(z), hole.size[0], hole.size[1], hole.construction.q - q)
        return total


class Hall:
    def __init__(self, path, models):
        room, conclusion = parse_items(path.read_bytes())[0]
        box, emitters, data, surfaces, airheaters, article, zones = room
        self.low, self.high = box[0:3], box[3:6]
        self.constructions = [Construction(*data[i:i + 3]) for i in (0, 3, 6)]
        (self.air_change, self.in_temp, self.days, self.week_days, self.day_hours, self.mean_out, self.run_temp,
         self.reduced_temp, reserved, self.regulation, self.price, self.gain, self.result_temp, self.fuel,
         self.design_out, self.work_class, self.position) = data[9:]
        assert reserved == 33.4
        self.surfaces = [Surface(surfaces[2 * i], surfaces[2 * i + 1], self.constructions[min(i, 2)])
                         for i in range(len(surfaces) // 2)]
        self.emitters = []
        for name, x, y, z, rotation, tilt, power in emitters:
            model = models.setdefault(name, Model(FOLDER / "Modely" / f"{name}.gim")) if name else None
            self.emitters.append((model, (x, y, z), rotation, tilt, power))

    def irradiation(self, p):
        total = 0.0
        for model, pos, rotation, tilt, power in self.emitters:
            if model is None:
                continue
            x, y, z = (a - b for a, b in zip(p, pos))
            c, s = math.cos(rotation), math.sin(rotation)
            x, y = x * c + y * s, -x * s + y * c
            c, s = math.cos(tilt), math.sin(tilt)
            y, z = y * c + z * s, -y * s + z * c
            total += model.value(x, y, -z) * (power / model.power)
        return total

    def sizes(self):
        return [abs(b - a) for a, b in zip(self.low, self.high)]

    def ventilation(self):
        floor, wall = self.surfaces[0], self.surfaces[2]
        return self.air_change * floor.width * floor.height * wall.height * 1.28 * 1010.0 / 3600

    def transmission(self, z):
        floor = self.surfaces[0]
        heights = [0 if z <= 0 else floor.height, 0] + [z] * 4
        return [sum(column) for column in zip(*(s.transmission(h) for s, h in zip(self.surfaces, heights)))]

    def max_air_temp(self):
        radiant = [(e[0].radiant_part, e[4], e[1][2]) for e in self.emitters if e[0]]
        below = sum(part * power for part, power, _ in radiant)
        above = sum((1 - part) * power for part, power, _ in radiant)
        moment = sum(part * power * z for part, power, z in radiant)
        height = self.surfaces[2].height
        split = moment / below if below else height
        a, b, c, d = self.transmission(split)
        qv = self.ventilation()
        upper = (above + b) / d if d else 0
        t = (qv * self.in_temp + below + self.gain + a) / (c + qv) if c + qv else upper
        if upper < t:
            total = c + d + qv
            t = (qv * self.in_temp + below + self.gain + above + a + b) / total if total else 0
            split = height
        return t - (split * 0.5 - 1.5) * 0.3 if t else t

    def loss(self):
        _, b, _, d = self.transmission(0)
        qv = self.ventilation()
        return max((d + qv) * self.run_temp - (qv * self.in_temp + b), 0)

    def heat_value(self):
        return {1: 33.4, 2: 43.13}.get(self.fuel, 0)

    def annual_fuel(self):
        coldest = min([self.in_temp] + [c.outside for c in self.constructions])
        span = self.run_temp - coldest
        running = (self.run_temp - self.mean_out) / span if span else 0
        resting = (self.reduced_temp - self.mean_out) / span if span else 0
        week = self.week_days / 7
        hours = running * week * self.day_hours + ((24 - self.day_hours) * week + (1 - week) * 24) * resting
        amount = self.regulation * 0.65 * self.days * self.loss() * hours * 0.0036 / self.heat_value()
        return amount, amount * self.price

    def max_fuel(self):
        return sum(e[0].power for e in self.emitters if e[0]) * 3600 / 0.9 / self.heat_value() * 1e-6

    def update_surfaces(self, air):
        for surface in self.surfaces:
            surface.construction.update(air, surface.construction.outside)
            for hole in surface.holes:
                hole.construction.update(air, hole.outside(surface))


def operative(intensity, air):
    radiant = (intensity / SIGMA_OPERATIVE + (air + 273.15) ** 4.0) ** 0.25 - 273.15
    return ((air + radiant) * 0.5 + air) * 0.5


def classify(v, low, high, tol):
    return 0 if low <= v <= high else 1 if low - tol <= v <= high + tol else 2


# Random halls: what a file may hold, not what an architect would draw.


def real(value):
    return b"\xa4" + struct.pack("<d", value)


def integer(value):
    return b"\xa3" + struct.pack("<i", value)


def string(text):
    return b"\xa5" + bytes([len(text)]) + text.encode("cp1252")


def long_string(text):
    return b"\xa7" + struct.pack("<i", len(text)) + text.encode("cp1252")


def section(*items):
    return b"\xa1\0\0\0\0" + b"".join(items) + b"\xa2"


def reals(*values):
    return b"".join(map(real, values))


def random_emitter(rng, name, length, width, height):
    return section(string(name), reals(rng.uniform(-3, length + 3), rng.uniform(-3, width + 3),
                                       rng.uniform(1, height + 1),
                                       rng.choice([0, math.pi / 2, -math.pi / 2, math.pi, rng.uniform(-4, 4)]),
                                       rng.choice([0, 0, rng.uniform(-1.5, 1.5)]), rng.uniform(0, 40000)))


def random_hole(rng, width, height):
    fields = reals(rng.uniform(0.2, width), rng.uniform(0.2, height), rng.uniform(0, width), rng.uniform(0, height),
                   rng.choice([0, rng.uniform(-3, 3)]), rng.uniform(0, 9), 8, rng.uniform(-20, 20))
    if rng.random() < 0.8:  # else an old file's opening
        fields += integer(rng.choice([0, 1, 2, 3])) + string("Fenster")
    return section(fields)


def random_data(rng):
    fields = b""
    for _ in range(3):
        fields += reals(rng.choice([0, rng.uniform(0, 5), rng.uniform(5, 10)]), 8, rng.uniform(-20, 15))
    fields += reals(rng.choice([0, rng.uniform(0, 3)]), rng.uniform(-20, 10))
    fields += integer(rng.randint(0, 365)) + integer(rng.randint(0, 7))
    fields += reals(rng.uniform(0, 24), rng.uniform(-5, 15), rng.uniform(10, 25), rng.uniform(0, 15), 33.4,
                    rng.uniform(0, 1.1), rng.uniform(0, 2), rng.choice([0, rng.uniform(0, 1e5)]), rng.uniform(10, 25))
    fields += integer(rng.choice([1, 2])) + real(rng.uniform(-20, 0))
    return section(fields, integer(rng.randint(0, 6)), integer(rng.choice([1, 2, 3])))


def random_hall(rng):
    length, width, height = rng.uniform(3, 60), rng.uniform(3, 30), rng.uniform(3, 15)
    names = [path.stem for path in sorted((FOLDER / "Modely").glob("*.gim"))]
    emitters = [random_emitter(rng, rng.choice(names + [""]), length, width, height) for _ in range(rng.randint(1, 6))]
    emitters.append(section(string(names[0]), reals(length / 2, width / 2, height, 0, 0, 15000)))
    frames = [(length, width, 0, 0, 0, 1, 0, 0, 0, 1, 0), (length, width, 0, 0, height, 1, 0, 0, 0, 1, 0),
              (length, height, length, 0, 0, -1, 0, 0, 0, 0, 1), (width, height, length, width, 0, 0, -1, 0, 0, 0, 1),
              (length, height, 0, width, 0, 1, 0, 0, 0, 0, 1), (width, height, 0, 0, 0, 0, 1, 0, 0, 0, 1)]
    surfaces = b""
    for frame in frames:
        holes = [random_hole(rng, frame[0], frame[1]) for _ in range(rng.randint(0, 3))]
        surfaces += section(reals(*frame)) + section(*holes)
    article = section(integer(1), integer(0), string("Entwurf"), string(""))
    conclusion = section(string("Schluss"), long_string(""), string(""), integer(20260101))
    return section(section(reals(0, 0, 0, length, width, height)), section(*emitters), random_data(rng),
                   section(surfaces), section(), article, section()) + conclusion


class FiguresTest(unittest.TestCase):
    models = {}

    def run_program(self, path, *options):
        command = [FOLDER / "zulcalc", "--json", "-", *options, path]
        return json.loads(subprocess.run(command, capture_output=True, check=True).stdout)

    def assert_close(self, got, want, what, scale=1.0):
        self.assertLessEqual(abs(got - want), 1e-9 * max(abs(want), scale), f"{what}: {got} for {want}")

    def compare(self, path, *options, height=0.0, air=None, limits=(None, None), coarse=False, points=()):
        hall = Hall(path, self.models)
        out = self.run_program(path, *options, *(o for p in points for o in ("--point", ",".join(map(str, p)))))
        info = out["info"]
        length, width, tall = hall.sizes()
        air_temp = hall.max_air_temp() if air is None else air
        hall.update_surfaces(air_temp)
        fuel, cost = hall.annual_fuel()
        want = {
            "height": height, "maxAirTemp": hall.max_air_temp(), "airTemp": air_temp, "loss": hall.loss(),
            "emittPower": sum(e[4] for e in hall.emitters if e[0]), "airhtPower": 0,
            "area": length * width, "volume": length * width * tall,
            "yearFuel": fuel, "yearCost": cost, "maxFuel": hall.max_fuel(),
        }
        for surface, got in zip(hall.surfaces, out["surfaces"], strict=True):
            self.assert_close(got["tSurf"], surface.construction.t, "tSurf")
            self.assert_close(got["qSurf"], surface.construction.q, "qSurf")
            for hole, pair in zip(surface.holes, got["holes"], strict=True):
                self.assert_close(pair[0], hole.construction.t, "tSurf of an opening")
                self.assert_close(pair[1], hole.construction.q, "qSurf of an opening")

        columns, step = 169, length / 168
        rows = int(width / step) + 1
        self.assertEqual((out["columns"], out["rows"], out["step"]), (columns, rows, step))
        samples = [[hall.irradiation((i * step + hall.low[0], (rows - j - 1) * step + hall.low[1], height))
                    for j in range(rows)] for i in range(columns)]
        flat = [v for column in samples for v in column]
        mean = sum(flat) / len(flat)
        want["minInte"], want["maxInte"], want["meanInte"], want["sumInte"] = min(flat), max(flat), mean, sum(flat)
        want["spread"] = math.sqrt((sum(v * v for v in flat) - mean * sum(flat)) / (len(flat) - 1)) / mean
        for key, value in want.items():
            self.assert_close(info[key], value, key)
        self.assertEqual(info["fuelUnit"], {1: "m^3^", 2: "kg"}[hall.fuel])

        low = min(flat) if limits[0] is None else limits[0]
        high = max(flat) if limits[1] is None else limits[1]
        colors = 3 if coarse else 12
        factor = (colors - 2) / (high - low)
        hist = [0] * colors
        for v in flat:
            hist[min(max(math.ceil((v - low) * factor), 0), colors - 1)] += 1
        self.assert_close(out["map"]["lo"], low, "lo")
        self.assert_close(out["map"]["hi"], high, "hi")
        self.assert_same_counts(out["map"]["hist"], hist)
        self.assertEqual(len(out["map"]["scale"]), colors + 1)

        self.compare_hygiene(hall, out["hygiene"], air_temp, columns, rows, width)
        for p, got in zip(points, out["points"], strict=True):
            self.compare_point(hall, got, p, air_temp)

    def assert_same_counts(self, got, want):
        """The two calculations may differ in the last bit, so a point on a border may change sides."""
        self.assertEqual(sum(got), sum(want))
        self.assertLessEqual(max(abs(a - b) for a, b in zip(got, want, strict=True)), 3, f"{got} for {want}")

    def judged(self, hall, x, y, air_temp):
        head = 1.1 if hall.position == 2 else 1.7

        def operative_at(z):
            return operative(hall.irradiation((x, y, z)), (z - 1.5) * 0.3 + air_temp)

        head_temp = operative_at(head)
        head_inte = hall.irradiation((x, y, head)) + hall.surfaces[1].radiation((x, y, head))
        return head_temp, head_temp - operative_at(0.15), head_inte

    def bands(self, hall):
        low, high = {1: (20, 24), 2: (18, 22), 3: (14, 18), 4: (10, 14), 5: (10, 14)}.get(hall.work_class, (10, 24))
        return (low, high, 2.0), (-9.0, 3.0, 1.0), (-math.inf, 200.0, 50.0)

    def compare_hygiene(self, hall, got, air_temp, columns, rows, width):
        step = width / (rows - 1)
        counts = [[0] * 3 for _ in range(3)]
        passed = 0
        for i in range(columns):
            for j in range(rows):
                x, y = i * step + hall.low[0], (rows - j - 1) * step + hall.low[1]
                values = self.judged(hall, x, y, air_temp)
                classes = [classify(v, *band) for v, band in zip(values, self.bands(hall))]
                passed += classes == [0, 0, 0]
                for count, found in zip(counts, classes):
                    count[found] += 1
        self.assertEqual(got["pixels"], columns * rows)
        self.assertLessEqual(abs(got["passed"] - passed), 3)
        for name, count in zip(("headTemp", "diffTemp", "headInte"), counts):
            self.assert_same_counts(got["maps"][name]["hist"], count)

    def compare_point(self, hall, got, p, air_temp):
        self.assertEqual(got["p"], list(p))
        intensity = hall.irradiation(p)
        self.assert_close(got["irradiation"], intensity, "irradiation")
        self.assert_close(got["operative"], operative(intensity, (p[2] - 1.5) * 0.3 + air_temp), "operative")
        values = self.judged(hall, p[0], p[1], air_temp)
        for key, value in zip(("headTemp", "diffTemp", "headInte"), values):
            self.assert_close(got[key], value, key)
        self.assertEqual(got["class"], [classify(v, *b) for v, b in zip(values, self.bands(hall))])

    def test_the_workshop_comes_out_as_calculated(self):
        self.compare(SAMPLES / "Werkstatt.sc1", points=[(3.3, 4.4, 1.0), (10, 6, 0.0), (-1, 20, 1.5)])

    def test_height_air_temperature_and_limits_are_obeyed(self):
        self.compare(SAMPLES / "Werkstatt.sc1", "--height", "1.2", "--air-temp", "17.5", "--min", "20", "--max",
                     "90", "--coarse-scale", height=1.2, air=17.5, limits=(20, 90), coarse=True)

    def test_the_production_hall_comes_out_as_calculated(self):
        self.compare(SAMPLES / "Produktionshalle.sc1", points=[(30, 15, 1.7), (59.9, 0.1, 2.5)])

    def test_random_halls_come_out_as_calculated(self):
        for number in range(RANDOM_HALLS):
            rng = random.Random(number)
            with self.subTest(number=number), tempfile.TemporaryDirectory() as folder:
                path = pathlib.Path(folder) / "halle.sc1"
                path.write_bytes(random_hall(rng))
                height, air = rng.uniform(0, 2), rng.uniform(-5, 30)
                points = [(rng.uniform(0, 60), rng.uniform(0, 30), rng.uniform(0, 2)) for _ in range(3)]
                self.compare(path, "--height", repr(height), "--air-temp", repr(air), height=height, air=air,
                             points=points)


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
