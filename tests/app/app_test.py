#!/usr/bin/env python3
"""Runs the program zelcv as a user would: app_test.py PROGRAM EXPORTS_DEF VARIANT [LAUNCHER...]"""
import base64
import html.parser
import json
import math
import os
import random
import re
import statistics
import struct
import subprocess
import sys
import tempfile
import unittest
import zlib
from unittest import mock

PROGRAM, EXPORTS_DEF = map(os.path.abspath, sys.argv[1:3])
VARIANT, *LAUNCHER = sys.argv[3:]
BLOBS = os.path.join(os.path.dirname(os.path.abspath(__file__)), "../../app/cascades/bright-blobs.txt")
CHANNELS = {0: 1, 2: 3, 3: 1, 4: 2, 6: 4}
# 16 x 8 pixels in colour, the left half (200, 40, 40) and the right half (40, 40, 200); 8 x 8 pixels of gray 60.
COLOUR_JPEG = base64.b64decode("""
/9j/4AAQSkZJRgABAQAAAQABAAD/2wBDAA0JCgsKCA0LCgsODg0PEyAVExISEyccHhcgLikxMC4pLSwzOko+MzZGNywtQFdBRkxOUlNSMj5aYV
pQYEpRUk//2wBDAQ4ODhMREyYVFSZPNS01T09PT09PT09PT09PT09PT09PT09PT09PT09PT09PT09PT09PT09PT09PT09PT09PT0//wAARCAAI
ABADASIAAhEBAxEB/8QAFQABAQAAAAAAAAAAAAAAAAAAAAX/xAAUEAEAAAAAAAAAAAAAAAAAAAAA/8QAFQEBAQAAAAAAAAAAAAAAAAAABAX/xA
AZEQACAwEAAAAAAAAAAAAAAAAABUKBwUP/2gAMAwEAAhEDEQA/AIyaB6PpWlNxC8P/2Q==""")
GRAY_JPEG = base64.b64decode("""
/9j/4AAQSkZJRgABAQAAAQABAAD/2wBDABsSFBcUERsXFhceHBsgKEIrKCUlKFE6PTBCYFVlZF9VXVtqeJmBanGQc1tdhbWGkJ6jq62rZ4C8yb
qmx5moq6T/wAALCAAIAAgBAREA/8QAFAABAAAAAAAAAAAAAAAAAAAABf/EABQQAQAAAAAAAAAAAAAAAAAAAAD/2gAIAQEAAD8ALf/Z""")


def png(width, height, kind, rows, depth=8, extra=b""):
    """A PNG file of rows of raw bytes; `kind` is PNG's colour type."""
    def chunk(name, data):
        return struct.pack(">I", len(data)) + name + data + struct.pack(">I", zlib.crc32(name + data))
    header = struct.pack(">IIBBBBB", width, height, depth, kind, 0, 0, 0)
    pixels = zlib.compress(b"".join(b"\0" + bytes(row) for row in rows))
    return b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", header) + extra + chunk(b"IDAT", pixels) + chunk(b"IEND", b"")


def gray_png(rows):
    return png(len(rows[0]), len(rows), 0, rows)


def read_png(path, undo_filters=True):
    """Returns width, height, channels and the rows of an 8-bit PNG file, after checking that it is whole."""
    with open(path, "rb") as file:
        data = file.read()
    assert data[:8] == b"\x89PNG\r\n\x1a\n", path
    at, packed = 8, b""
    while at < len(data):
        (length,), name = struct.unpack(">I", data[at:at + 4]), data[at + 4:at + 8]
        body = data[at + 8:at + 8 + length]
        assert struct.unpack(">I", data[at + 8 + length:at + 12 + length])[0] == zlib.crc32(name + body), path
        at += 12 + length
        if name == b"IHDR":
            width, height, depth, kind = struct.unpack(">IIBB", body[:10])
        packed += body if name == b"IDAT" else b""
    assert name == b"IEND" and depth == 8, path
    channels, raw, rows = CHANNELS[kind], zlib.decompress(packed), []
    assert len(raw) == height * (width * channels + 1), path
    if not undo_filters:
        return width, height, channels, raw
    before = bytearray(width * channels)
    for y in range(height):
        start = y * (width * channels + 1)
        rule, row = raw[start], bytearray(raw[start + 1:start + 1 + width * channels])
        for i in range(len(row)) if rule else ():
            left, up, corner = (row[i - channels], before[i], before[i - channels]) if i >= channels else (0, before[i], 0)
            nearest = min((abs(up - corner), 0, left), (abs(left - corner), 1, up), (abs(left + up - 2 * corner), 2, corner))
            row[i] = (row[i] + (0, left, up, (left + up) // 2, nearest[2])[rule]) & 255
        rows.append(row)
        before = row
    return width, height, channels, [list(row) for row in rows]


class Page(html.parser.HTMLParser):
    """What stands where on the gallery's page."""
    def __init__(self, text):
        super().__init__()
        self.open, self.wrong = [], []    # elements that are open; tags that do not match
        self.ids, self.links = [], []     # identifiers; what each link within the page leads to, and its function or "nav"
        self.folded, self.headings = set(), set()  # identifiers that are seen after a click; those of headings
        self.shown = {}                   # the functions below each figure
        self.feed(text)
        self.close()

    def handle_starttag(self, tag, attributes):
        attributes, inside = dict(attributes), [name for name, _ in self.open]
        if tag == "summary" and inside[-1] != "details" or inside[-1:] == ["details"] and tag not in ("summary", "div"):
            self.wrong.append((self.getpos(), tag))
        if "id" in attributes:
            self.ids.append(attributes["id"])
            if "details" in inside:
                self.folded.add(attributes["id"])
            if tag in ("h2", "h3"):
                self.headings.add(attributes["id"])
        if attributes.get("href", "").startswith("#"):
            self.links.append([attributes["href"][1:], "nav" if "nav" in inside else ""])
        if tag not in ("meta", "img", "rect", "line"):
            self.open.append((tag, attributes.get("id")))

    def handle_endtag(self, tag):
        if tag not in ("rect", "line") and self.open.pop()[0] != tag:
            self.wrong.append((self.getpos(), tag))

    def handle_data(self, data):
        if self.open and self.open[-1][0] == "code":
            figures = [name for tag, name in self.open if tag == "figure"]
            if figures:
                self.shown.setdefault(figures[0], set()).add(data)
            elif "a" in [tag for tag, _ in self.open]:
                self.links[-1][1] = data


class Program(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = folder.name

    def path(self, name, content=None):
        path = os.path.join(self.folder, name)
        if content is not None:
            with open(path, "wb") as file:
                file.write(content)
        return path

    def run_program(self, *arguments):
        return subprocess.run([*LAUNCHER, PROGRAM, *arguments], cwd=self.folder, capture_output=True, text=True, check=False)

    def succeed(self, *arguments):
        result = self.run_program(*arguments)
        self.assertEqual((0, ""), (result.returncode, result.stderr), arguments)
        return result.stdout

    def picture(self, *arguments):
        """Runs a command that writes a picture, and reads that."""
        self.succeed(*arguments, "-o", "out.png")
        return read_png(self.path("out.png"))

    def test_every_command_on_the_own_scene(self):
        for arguments, width, channels in [
                (["edges"], 640, 1), (["edges", "--aperture", "5"], 640, 1), (["edges", "--low", "20"], 640, 1),
                (["colour-gradient"], 640, 1), (["gray-morph"], 640, 1), (["reconstruct", "--op", "fill-holes"], 640, 1),
                (["gradient"], 3 * 640 + 12, 1), (["gradient", "--scharr"], 3 * 640 + 12, 1), (["diff"], 640, 3),
                (["filter", "--row", "1,4,6,4,1"], 640, 3), (["filter", "--row", "-1,0,1", "--signed"], 640, 3),
                (["filter", "--row", "0.5,2.25,0.5", "--float"], 640, 3), (["average"], 640, 1), (["compare"], 640, 3),
                (["smooth"], 640, 3), (["smooth", "--kind", "box", "--size", "5"], 640, 3),
                (["smooth", "--kind", "laplacian"], 640, 1), (["corners"], 640, 3), (["corners", "--strength"], 640, 1),
                (["corners", "--vectors", "--window", "5"], 640, 3),
                (["rank", "--op", "range", "--width", "3"], 640, 3),
                (["morph", "--op", "gradient", "--shape", "cross"], 640, 3),
                (["localdev", "--window", "9"], 640, 1), (["cascade", "--stages", BLOBS], 640, 3)]:
            with self.subTest(arguments):
                *shape, rows = self.picture(*arguments)
                self.assertEqual([width, 480, channels], shape)
                self.assertTrue(arguments[0] == "edges" or len(set().union(*rows)) > 3)
        self.assertEqual(["out.png"], os.listdir(self.folder))

    def test_tiny_pictures(self):
        for width, height in [(1, 1), (1, 9), (9, 1), (2, 3)]:
            self.path("tiny.png", gray_png([[7 * x + 3 * y for x in range(width)] for y in range(height)]))
            for arguments, wide in [(["edges"], width), (["gradient", "--aperture", "5"], 3 * width + 12),
                                    (["filter", "--row", ",".join(["1"] * 10001), "--border", "reflect"], width),
                                    (["filter", "--row", "1,1", "--border", "wrap"], width),
                                    (["smooth", "--sigma", "3", "--border", "reflect"], width),
                                    (["smooth", "--kind", "laplacian", "--size", "5"], width),
                                    (["corners", "--strength", "--scharr"], width),
                                    (["rank", "--op", "max", "--width", "10000"], width),
                                    (["morph", "--op", "close", "--size", "255"], width),
                                    (["localdev", "--window", "1"], width), (["average"], width)]:
                with self.subTest((width, height, arguments[0])):
                    self.assertEqual((wide, height, 1), self.picture(arguments[0], "tiny.png", *arguments[1:])[:3])

    def test_formats(self):
        palette = struct.pack(">I", 6) + b"PLTE" + bytes([10, 20, 30, 40, 50, 60])
        palette += struct.pack(">I", zlib.crc32(palette[4:]))
        for name, content, wanted in [
                ("palette", png(2, 1, 3, [[0, 1]], extra=palette), [10, 20, 30, 40, 50, 60]),
                ("gray, 16 bits", png(2, 1, 0, [[10, 10, 200, 200]], depth=16), [10, 200]),
                ("gray, 1 bit", png(2, 1, 0, [[0x40]], depth=1), [0, 255]),
                ("gray with alpha", png(2, 1, 4, [[80, 255, 80, 0]]), [80, 255]),
                ("colour with alpha", png(1, 1, 6, [[1, 2, 3, 255]]), [1, 2, 3])]:
            with self.subTest(name):
                self.path("in.any", content)
                self.assertEqual(wanted, self.picture("filter", "in.any", "--row", "1")[3][0])
        for content, size, wanted in [(COLOUR_JPEG, (16, 8, 3), [200, 40, 40]), (GRAY_JPEG, (8, 8, 1), [60])]:
            self.path("in.png", content)  # the name does not count
            *got, rows = self.picture("filter", "in.png", "--row", "1")
            self.assertEqual(size, tuple(got))
            for value, near in zip(rows[0], wanted):
                self.assertLess(abs(value - near), 8)

    def test_filter_equals_its_definition(self):
        numbers = random.Random(1)
        width, height, row, column, anchor, value = 5, 4, [1, 3, 0, 2], [2, 0, 1, 1, 5], 3, 9
        outside = {"replicate": lambda i, n: min(max(i, 0), n - 1), "wrap": lambda i, n: i % n,
                   "reflect": lambda i, n: abs((i + n - 1) % (2 * n - 2) - (n - 1)),
                   "reflect-edge": lambda i, n: min(i % (2 * n), 2 * n - 1 - i % (2 * n)),
                   "constant": lambda i, n: i if 0 <= i < n else None}
        for channels, kind in [(1, 0), (3, 2)]:
            src = [[[numbers.randrange(4) for _ in range(channels)] for _ in range(width)] for _ in range(height)]
            self.path("in.png", png(width, height, kind, [sum(line, []) for line in src]))
            for border, place in outside.items():
                def pixel(x, y, c, place=place, src=src):
                    x, y = place(x, width), place(y, height)
                    return value if x is None or y is None else src[y][x][c]
                wanted = [[sum(a * b * pixel(x - anchor + i, y - anchor + j, c)
                               for i, a in enumerate(row) for j, b in enumerate(column))
                           for x in range(width) for c in range(channels)] for y in range(height)]
                wanted = [[min(number, 255) for number in line] for line in wanted]
                for mode in [], ["--float"]:
                    with self.subTest((channels, border, mode)):
                        self.assertEqual(wanted, self.picture(
                            "filter", "in.png", "--row", ",".join(map(str, row)), "--column", ",".join(map(str, column)),
                            "--divisor", "1", "--anchor", str(anchor), "--border", border, "--value", str(value), *mode)[3])

    def test_morph_equals_its_definition(self):
        numbers = random.Random(3)
        mask = [".#.1", "#..0", "..##"]
        self.path("mask.txt", "\n".join(mask).encode())
        self.path("mask.png", gray_png([[7 * (c in "#1") for c in row] for row in mask]))
        own = [(i - 2, j - 1) for j, row in enumerate(mask) for i, c in enumerate(row) if c in "#1"]
        square = [(i - 1, j - 1) for j in range(3) for i in range(3)]
        around = [(0, 0), (1, 0), (-1, 0), (0, 1), (0, -1)]
        wide = [(i - 2, j - 2) for j in range(5) for i in range(5) if 1 <= i <= 3 or 1 <= j <= 3]

        for channels, kind in [(1, 0), (3, 2)]:
            src = [[numbers.randrange(256) for _ in range(9 * channels)] for _ in range(7)]
            self.path("in.png", png(9, 7, kind, src))

            def step(rows, pick, places, c=channels):
                return [[pick(rows[min(max(y + j, 0), 6)][min(max(x // c + i, 0), 8) * c + x % c] for i, j in places)
                         for x in range(9 * c)] for y in range(7)]

            def less(first, second):
                return [[max(0, a - b) for a, b in zip(*rows)] for rows in zip(first, second)]
            for shape, places in [(["--shape", "mask.txt"], own), (["--shape", "mask.png"], own),
                                  (["--shape", "rect", "--size", "3"], square), (["--shape", "cross", "--size", "3"], around),
                                  (["--shape", "diamond", "--size", "3"], around), ([], wide)]:
                # The file's middle is (2, 1), turned (1, 1).
                turned = [(-i, -j) for i, j in places]
                dilated, eroded = step(src, max, places), step(src, min, places)
                opened, closed = step(eroded, max, turned), step(dilated, min, turned)
                for name, wanted in [("dilate", dilated), ("erode", eroded), ("open", opened), ("close", closed),
                                     ("tophat", less(src, opened)), ("blackhat", less(closed, src)),
                                     ("gradient", less(dilated, eroded))]:
                    with self.subTest((channels, shape, name)):
                        self.assertEqual(wanted, self.picture("morph", "in.png", "--op", name, *shape)[3])

    def test_rank_equals_its_definition(self):
        numbers = random.Random(4)
        width, height, across, down, x0, y0 = 7, 6, 4, 3, 3, 0
        for channels, kind in [(1, 0), (3, 2)]:
            src = [[[numbers.randrange(256) for _ in range(channels)] for _ in range(width)] for _ in range(height)]
            self.path("in.png", png(width, height, kind, [sum(line, []) for line in src]))
            values = [[[src[min(max(y - y0 + j, 0), height - 1)][min(max(x - x0 + i, 0), width - 1)][c]
                        for i in range(across) for j in range(down)] for x in range(width) for c in range(channels)]
                      for y in range(height)]
            for operation, take in ("min", min), ("max", max), ("range", lambda all: max(all) - min(all)):
                for mode in [], ["--float"]:
                    with self.subTest((channels, operation, mode)):
                        self.assertEqual([[take(window) for window in line] for line in values], self.picture(
                            "rank", "in.png", "--op", operation, "--width", str(across), "--height", str(down),
                            "--anchor-x", str(x0), "--anchor-y", str(y0), *mode)[3])

    def test_divisors(self):
        self.path("flat.png", gray_png([[200] * 8] * 8))
        for arguments, wanted in [(["--row", "1,4,6,4,1"], 200), (["--row", ",".join(["7"] * 1001)], 200),
                                  (["--row", "30000,30000", "--column", "1"], 200), (["--row", "-1", "--column", "1"], 200),
                                  (["--row", "1,2,1", "--divisor", "32"], 100), (["--row", "1", "--divisor", "-2"], 0),
                                  (["--row", "-1,0,1"], 0), (["--row", "-1,0,1", "--signed"], 128)]:
            with self.subTest(arguments):
                value = self.picture("filter", "flat.png", *arguments)[3][4][4]
                self.assertIn(value, (wanted, wanted - 1))  # the library cuts, and its reciprocal may lie below

    def test_edges_are_where_they_must_be(self):
        # A bright square: Canny marks a closed line, one pixel wide, on the first of the two pixels along each side.
        self.path("square.png", gray_png([[200 * (10 <= x < 30 and 8 <= y < 24) for x in range(40)] for y in range(32)]))
        for aperture in "3", "5":
            edges = self.picture("edges", "square.png", "--aperture", aperture)[3]
            found = {(x, y) for y in range(32) for x in range(40) if edges[y][x]}
            self.assertEqual({255, 0}, {value for row in edges for value in row})
            for y in range(12, 20):
                self.assertEqual([9, 29], [x for x in range(40) if (x, y) in found])
            for x in range(14, 26):
                self.assertEqual([7, 23], [y for y in range(32) if (x, y) in found])
            self.assertFalse([p for p in found if not (8 <= p[0] <= 30 and 6 <= p[1] <= 24)])

    def test_smoothing(self):
        self.path("dot.png", png(9, 9, 2, [[90 * (x // 3 == 4 and y == 4) * (x % 3) for x in range(27)] for y in range(9)]))
        for arguments, wanted in [(["--kind", "box"], [0, 10, 10, 10, 0]), (["--kind", "box", "--size", "5"], [3] * 5),
                                  (["--sigma", "0.5", "--size", "3"], [0, 8, 56, 8, 0])]:
            rows = self.picture("smooth", "dot.png", *arguments)[3]
            self.assertEqual([wanted, [0] * 5], [rows[4][3 * 2 + channel:3 * 7:3] for channel in (1, 0)], arguments)
        rows = self.picture("smooth", "dot.png", "--kind", "laplacian")[3]
        self.assertEqual([[255, 128, 255], [128, 0, 128], [255, 128, 255]], [rows[y][3:6] for y in (3, 4, 5)])

    def test_corners_are_where_they_must_be(self):
        self.path("square.png", gray_png([[200 * (10 <= x < 30 and 8 <= y < 24) for x in range(40)] for y in range(32)]))
        rows = self.picture("corners", "square.png", "--distance", "5")[3]
        marked = {(x, y) for y in range(32) for x in range(40) if len(set(rows[y][3 * x:3 * x + 3])) > 1}
        near = [(x, y) for x in (10, 29) for y in (8, 23)]  # marks are frames of 9 by 9 pixels around a corner
        self.assertTrue(all(any(max(abs(x - i), abs(y - j)) <= 6 for i, j in near) for x, y in marked), marked)
        self.assertTrue(all(any(max(abs(x - i), abs(y - j)) <= 6 for x, y in marked) for i, j in near), marked)
        strength = self.picture("corners", "square.png", "--strength")[3]
        self.assertEqual((255, 0, 0), (strength[8][10], strength[8][20], strength[16][20]))

    def test_gradient_and_difference(self):
        self.path("step.png", gray_png([[20] * 8 + [220] * 8] * 8))
        row = self.picture("gradient", "step.png")[3][4]
        self.assertEqual((128, 255, 128), (row[3], row[8], row[12]))  # brighter to the right
        self.assertEqual({128}, set(row[22:38]))                      # nothing downwards
        self.assertEqual((0, 255), (row[44 + 2], row[44 + 8]))
        self.path("other.png", gray_png([[25] * 8 + [200] * 8] * 8))
        self.assertEqual([5] * 8 + [20] * 8, self.picture("diff", "step.png", "other.png")[3][0])
        self.assertEqual([50] * 8 + [200] * 8, self.picture("diff", "step.png", "other.png", "--gain", "10")[3][0])
        self.path("colour.png", png(16, 8, 2, [[20] * 48] * 8))
        self.assertEqual((16, 8, 1), self.picture("diff", "step.png", "colour.png")[:3])

    def test_gray_morphology(self):
        self.path("spot.png", gray_png([[100] * 7 + [200] + [100] * 7] * 3))
        row = self.picture("gray-morph", "spot.png", "--size", "5", "--depth", "40")[3][1]
        self.assertEqual([100] * 5 + [160, 190, 200, 190, 160] + [100] * 5, row)
        self.assertEqual(116, self.picture("gray-morph", "spot.png", "--op", "erode", "--depth", "255")[3][1][7])
        self.assertEqual([200] * 5, self.picture("gray-morph", "spot.png", "--size", "5", "--depth", "0")[3][1][5:10])

    def test_reconstruction(self):
        wall = [50] + [200] * 7 + [50]
        ring = [[50] * 9, wall] + [[50, 200] + [90] * 5 + [200, 50]] * 4 + [wall, [50] * 9]
        ring[3] = [50, 200, 90, 90, 120, 90, 90, 200, 50]
        self.path("ring.png", gray_png(ring))
        full = [[50] * 9] + [wall] * 6 + [[50] * 9]
        self.assertEqual(full, self.picture("reconstruct", "ring.png", "--op", "fill-holes")[3])
        cleared = self.picture("reconstruct", "ring.png", "--op", "clear-border")[3]
        self.assertEqual((0, 150, 40, 70), (cleared[0][0], cleared[1][4], cleared[3][3], cleared[3][4]))
        domes = self.picture("reconstruct", "ring.png", "--op", "h-domes", "--height", "51")[3]
        self.assertEqual((0, 255, 0, 150), (domes[0][0], domes[1][4], domes[3][3], domes[3][4]))
        self.path("link.png", gray_png([[9, 9, 9, 9], [9, 200, 200, 9], [200, 0, 200, 9], [9, 200, 9, 9]]))
        holes = [self.picture("reconstruct", "link.png", "--op", "fill-holes", "--neighbours", n)[3][2][1] for n in "48"]
        self.assertEqual([200, 9], holes)

    def test_colour_gradient(self):
        self.path("red.png", png(8, 4, 2, [[10, 40, 60] * 4 + [100, 40, 60] * 4] * 4))
        for norm, value in [("inf", 90), ("l1", 30), ("l2", 52)]:
            row = self.picture("colour-gradient", "red.png", "--norm", norm)[3][2]
            self.assertEqual([0, 0, 0, value, value, 0, 0, 0], row)

    def frames(self, count, width, height):
        """Writes frames of random pixels; returns their names and rows."""
        numbers = random.Random(7)
        frames = [[[numbers.randrange(256) for _ in range(width)] for _ in range(height)] for _ in range(count)]
        for i, rows in enumerate(frames):
            self.path(f"frame{i}.png", gray_png(rows))
        return [f"frame{i}.png" for i in range(count)], frames

    def test_average(self):
        names, frames = self.frames(5, 37, 3)
        mask = [[(x + y) % 3 * 9 for x in range(37)] for y in range(3)]
        self.path("mask.png", gray_png(mask))
        for options, masked, alpha in [([], False, None), (["--mask", "mask.png"], True, None),
                                       (["--weight", "0.25", "--mask", "mask.png"], True, 0.25),
                                       (["--weight", "1"], False, 1)]:
            with self.subTest(options):
                moments = [[[0, 0] for _ in range(37)] for _ in range(3)]
                for i, frame in enumerate(frames):
                    part = 1 / (i + 1) if alpha is None or i == 0 else alpha
                    for y, row in enumerate(frame):
                        for x, value in enumerate(row):
                            mean, square = moments[y][x]
                            moments[y][x] = [mean + (value - mean) * part, square + (value * value - square) * part]
                moments = [[m if not masked or mask[y][x] else [0, 0] for x, m in enumerate(row)]
                           for y, row in enumerate(moments)]
                told = self.succeed("average", *names, *options, "-o", "out.png", "--deviation", "deviation.png")
                white = float(told.split()[-1])
                deviations = [max(s - m * m, 0) ** 0.5 for row in moments for m, s in row]
                if alpha != 1:
                    self.assertLessEqual(sum(d > 1.001 * white for d in deviations), 2)
                for name, scale, wanted in [("out.png", 1, [m for row in moments for m, _ in row]),
                                            ("deviation.png", 255 / white, deviations)]:
                    got = sum(read_png(self.path(name))[3], [])
                    for value, true in zip(got, wanted):
                        self.assertLess(abs(value - min(255, true * scale)), 0.6)
        self.succeed("average", "-o", "own.png", "--deviation", "own_deviation.png")
        self.assertEqual((640, 480, 1), read_png(self.path("own.png"))[:3])

    def test_local_deviation(self):
        (name, *_), ((*frame,), *_) = self.frames(1, 11, 9)
        for window in 1, 3, 9:
            white = float(self.succeed("localdev", name, "--window", str(window), "-o", "out.png").split()[-1])
            half, got = window // 2, read_png(self.path("out.png"))[3]
            for y in range(9):
                for x in range(11):
                    under = [frame[min(max(y + j, 0), 8)][min(max(x + i, 0), 10)]
                             for j in range(-half, half + 1) for i in range(-half, half + 1)]
                    wanted = min(255, statistics.pstdev(under) * 255 / white)
                    self.assertLess(abs(got[y][x] - wanted), 0.6, (window, x, y))

    def numbers(self, width, height, channels):
        """Writes two pictures and a mask that leaves most rows out; returns the values under the mask, with their places."""
        numbers = random.Random(5)
        pictures = [[[[numbers.randrange(90, 250) for _ in range(channels)] for _ in range(width)] for _ in range(height)]
                    for _ in range(2)]
        mask = [[y > height - 9 and (x + y) % 3 for x in range(width)] for y in range(height)]
        for name, rows in zip(["a.png", "b.png"], pictures):
            self.path(name, png(width, height, 0 if channels == 1 else 2, [sum(row, []) for row in rows]))
        self.path("mask.png", gray_png(mask))
        return pictures, [(x, y) for y in range(height) for x in range(width) if mask[y][x]]

    def near(self, wanted, got):
        # The root of squares is summed in single precision.
        self.assertLess(abs(wanted - got), 1e-5 * abs(wanted) + 1e-12, (wanted, got))

    def test_stats(self):
        # Large enough for several threads, which leave the whole mask to one of them.
        for channels, options in [(1, []), (3, []), (3, ["--channel", "2"])]:
            for masked in [], ["--mask", "mask.png"]:
                (rows, _), inside = self.numbers(150, 120, channels)
                places = inside if masked else [(x, y) for y in range(120) for x in range(150)]
                with mock.patch.dict(os.environ, OMP_NUM_THREADS="4"):
                    text = self.succeed("stats", "a.png", *options, *masked)
                    told = json.loads(self.succeed("stats", "a.png", "--json", *options, *masked))
                self.assertEqual((150, 120, len(places)), (told["width"], told["height"], told["pixels"]))
                wanted = [("gray", 0)] if channels == 1 else [("red", 0), ("green", 1), ("blue", 2)][1 if options else 0:][
                    :1 if options else 3]
                self.assertEqual([name for name, _ in wanted], [entry["channel"] for entry in told["channels"]])
                for entry, (_, c) in zip(told["channels"], wanted):
                    values = [rows[y][x][c] for x, y in places]
                    self.near(statistics.fmean(values), entry["mean"])
                    self.near(statistics.pstdev(values), entry["deviation"])
                    self.assertEqual((max(values), sum(values)), (entry["inf"], entry["l1"]))
                    self.near(sum(v * v for v in values) ** 0.5, entry["l2"])
                    for name, value in ("minimum", min(values)), ("maximum", max(values)):
                        x, y = next(place for place, v in zip(places, values) if v == value)
                        self.assertEqual({"value": value, "x": x, "y": y}, entry[name])
                    self.assertIn(f"{entry['mean']:.8g}", text)
                    self.assertIn(f"{entry['minimum']['x']},{entry['minimum']['y']}", text)

    def test_compare(self):
        for channels in 1, 3:
            for masked in [], ["--mask", "mask.png"]:
                (a, b), inside = self.numbers(150, 120, channels)
                places = inside if masked else [(x, y) for y in range(120) for x in range(150)]
                lines = self.succeed("compare", "a.png", "b.png", *masked, "-o", "out.png").splitlines()
                self.assertEqual(channels + 1, len(lines))
                differences = [[abs(a[y][x][c] - b[y][x][c]) for x, y in places] for c in range(channels)]
                for c, difference in enumerate(differences):
                    second = [b[y][x][c] for x, y in places]
                    norms = [max(difference), sum(difference), sum(d * d for d in difference) ** 0.5]
                    ratios = [n / m for n, m in zip(norms, [max(second), sum(second), sum(v * v for v in second) ** 0.5])]
                    psnr = 20 * math.log10(255 * len(places) ** 0.5 / norms[2])
                    name, *got = lines[c + 1].split()
                    self.assertEqual((["gray"] if channels == 1 else ["red", "green", "blue"])[c], name)
                    for want, text in zip([*norms, *ratios, psnr], got, strict=True):
                        self.assertLess(abs(want - float(text)), 1e-4 * want)
                largest, shown = max(map(max, differences)), read_png(self.path("out.png"))[3]
                outside = sum(map(sum, shown))
                for c, difference in enumerate(differences):
                    for (x, y), value in zip(places, difference):
                        self.assertLess(abs(shown[y][channels * x + c] - 255 * value / largest), 0.51)
                        outside -= shown[y][channels * x + c]
                self.assertEqual(0, outside)
        self.path("black.png", gray_png([[0] * 150] * 120))
        self.assertEqual("gray 0 0 0 - - - inf", " ".join(self.succeed("compare", "black.png", "black.png").split()[-8:]))

    def found(self, *arguments):
        lines = self.succeed("cascade", *arguments, "-o", "out.png").splitlines()
        self.assertEqual(["x", "y", "width", "height", "hits"], lines[0].split())
        return [tuple(map(int, line.split())) for line in lines[1:]]

    def test_cascade(self):
        # Discs of three sizes on a dark ground, and nothing where the ground is bright, too.
        discs = [(40, 50, 12), (120, 45, 20), (220, 90, 45)]
        rows = [[200 if any((x - a) ** 2 + (y - b) ** 2 <= r * r for a, b, r in discs) else 60 for x in range(300)]
                for y in range(160)]
        self.path("discs.png", gray_png(rows))
        self.path("bright.png", gray_png([[min(255, 2 * value) for value in row] for row in [[200] * 300] * 160]))
        found = self.found("discs.png", "--stages", BLOBS)
        self.assertEqual(len(discs), len(found))
        for (a, b, r), (x, y, width, height, _) in zip(discs, sorted(found)):
            self.assertLess(max(abs(x + width / 2 - a), abs(y + height / 2 - b)), r / 4)
            self.assertLess(abs(width / r - 20 / 7), 0.6)
        self.assertEqual([], self.found("bright.png", "--stages", BLOBS))
        frame = read_png(self.path("out.png"))
        self.assertEqual((300, 160, 3), frame[:3])
        (x, y, width, height, _), = self.found("--stages", BLOBS)  # the lamp of the lighthouse
        self.assertTrue(x < 82 and 114 < x + width < 130 and y < 76 and 102 < y + height < 120, (x, y, width, height))
        self.path("tiny.png", gray_png([[9]]))
        self.assertEqual([], self.found("tiny.png", "--stages", BLOBS))

    def test_cascade_equals_its_definition(self):
        text = ["window 4 3 # a comment", "contrast 60", "", "stage 1.5", "feature -0.1 2 -0.5", "rect 0 0 2 3 1",
                "rect 1 1 3 2 -1.5", "feature 0.2 0.25 1", "rect 3 0 1 1 1", "rect 0 0 4 3 -1", "stage 0",
                "feature 1.75 0 -1", "rect 0 0 4 3 1"]
        self.path("own.txt", "\n".join(text).encode())
        outcomes = set()
        for name, frame in zip(*self.frames(60, 4, 3)):
            def mean(left, top, width, height, frame=frame):
                return statistics.mean(frame[top + j][left + i] for j in range(height) for i in range(width))
            deviation = statistics.pstdev(sum(frame, []))
            first = 2 if mean(0, 0, 2, 3) - 1.5 * mean(1, 1, 3, 2) < -0.1 * deviation else -0.5
            second = 0.25 if mean(3, 0, 1, 1) - mean(0, 0, 4, 3) < 0.2 * deviation else 1
            outcome = deviation >= 60, first + second >= 1.5, mean(0, 0, 4, 3) < 1.75 * deviation
            outcomes.add(outcome)
            self.assertEqual([(0, 0, 4, 3, 1)] if all(outcome) else [],
                             self.found(name, "--stages", "own.txt", "--hits", "1"), name)
        self.assertIn((True,) * 3, outcomes)
        self.assertLess(5, len(outcomes))

    def test_broken_cascades(self):
        feature = "window 9 9\nstage 1\nfeature 0 0 1\n"
        self.path("good.png", gray_png([[1, 2, 3]] * 3))
        for text, line, message in [
                ("", 0, "before the first stage"), ("stage 1", 1, "window"), ("window 9", 1, "window WIDTH HEIGHT"),
                ("window 9 1", 1, "2 to 256"), ("window 9 9\nwindow 9 9", 2, "twice"), ("window 9 9.5", 1, "argument 2"),
                ("window 9 9\n\nstages 1", 3, "statements are"), ("window 9 9\nstage nan", 2, "argument 1"),
                ("window 9 9\nfeature 0 0 1", 2, "before the first stage"), ("window 9 9\nstage 1\nstage 1", 3, "no feature"),
                ("window 9 9\nstage 1\nrect 0 0 1 1 1", 3, "before the first feature"), (feature, 3, "no rect"),
                (feature + "feature 0 0 1", 4, "no rect"), (feature + "rect 0 0 1 1", 4, "expected: rect"),
                (feature + "rect 0 0 1 1 1e99", 4, "not a number"), (feature + "rect 5 0 5 1 1", 4, "out of the window"),
                (feature + "rect 2147483647 0 2147483647 1 1", 4, "out of the window"),
                (feature + "rect -1 0 1 1 1", 4, "out of the window"), ("\0\xff\n" * 9, 1, "window")]:
            with self.subTest(text):
                self.path("broken.txt", text.encode("latin-1"))
                result = self.run_program("cascade", "good.png", "--stages", "broken.txt", "-o", "new.png")
                self.assertEqual((1, ""), (result.returncode, result.stdout))
                self.assertRegex(result.stderr, rf"\Azelcv: broken.txt: line {line}: [^\n]+\n\Z")
                self.assertIn(message, result.stderr)
                self.assertFalse(os.path.exists(self.path("new.png")))

    def test_nonsense(self):
        good = gray_png([[random.Random(2).randrange(256) for _ in range(90)]] * 50)
        files = {"good.png": good, "small.png": gray_png([[1, 2]]), "black.png": gray_png([[0] * 90] * 50),
                 "text.png": b"This is no picture.\n" * 9, "empty.png": b"",
                 "cut.png": good[:len(good) // 2], "cut.jpg": COLOUR_JPEG[:-20], "head.jpg": COLOUR_JPEG[:60],
                 "zero.png": png(0, 4, 0, [[]] * 4), "huge.png": png(900000, 900000, 0, [[0]]),
                 "large.png": png(32000, 32000, 2, [[0]])}
        for name, content in files.items():
            self.path(name, content)
        for name, content in [("mask.txt", b"##.\n#.\n"), ("odd.txt", b"#.\n#x\n"), ("high.txt", b"#\n" * 256)]:
            self.path(name, content)
            files[name] = content
        os.mkdir(self.path("folder"))
        out = ["-o", "out.png"]
        row = ["--row", "1,2,1"]
        for arguments, status, message in [
                (["edges", "none.png", *out], 1, "none.png: No such file"),
                (["edges", "folder", *out], 1, "folder: Is a dir"),
                (["edges", "text.png", *out], 1, "text.png: neither a PNG nor a JPEG"),
                (["edges", "empty.png", *out], 1, "empty.png: the file is empty"),
                (["gradient", "cut.png", *out], 1, "cut.png: bad PNG"),
                (["gradient", "cut.jpg", *out], 1, "cut.jpg: bad JPEG"),
                (["gradient", "head.jpg", *out], 1, "head.jpg: bad JPEG"), (["edges", "zero.png", *out], 1, "zero.png: "),
                (["edges", "huge.png", *out], 1, "900000 x 900000 is too large"),
                (["edges", "large.png", *out], 1, "32000 x 32000 is too large"),
                (["diff", "good.png", "small.png", *out], 1, "good.png is 90 x 50, small.png is 2 x 1"),
                (["diff", "good.png", *out], 2, "two pictures"), (["diff", "--gain", "nan", *out], 2, "--gain"),
                (["compare", "good.png", *out], 2, "two pictures"),
                (["compare", "good.png", "small.png", *out], 1, "good.png is 90 x 50, small.png is 2 x 1"),
                (["compare", "--mask", "small.png", *out], 1, "mask small.png is 2 x 1, not 640 x 480"),
                (["stats", "none.png"], 1, "none.png: No such file"), (["stats", "text.png"], 1, "text.png: neither"),
                (["stats", "good.png", "--channel", "2"], 1, "no channel 2"), (["stats", "--channel", "0"], 2, "--channel"),
                *[([command, *(["good.png"] * pictures), "--mask", "black.png", *to], 1, "mask black.png is black all over")
                  for command, pictures, to in [("stats", 1, []), ("compare", 2, out), ("average", 2, out)]],
                (["average", "good.png", "small.png", *out], 1, "good.png is 90 x 50, small.png is 2 x 1"),
                (["average", "good.png", "none.png", *out], 1, "none.png: No such file"),
                (["average", "good.png", "--mask", "small.png", *out], 1, "mask small.png is 2 x 1, not 90 x 50"),
                *[(["average", "good.png", "--weight", weight, *out], 2, "--weight") for weight in ("1.5", "nan")],
                (["average", "good.png", "--deviation", "no/out.png", *out], 1, "no/out.png: No such"),
                *[(["localdev", "good.png", "--window", window, *out], status, message) for window, status, message in [
                    ("0", 2, "--window"), ("-3", 2, "--window"), ("4", 1, "odd"), ("51", 1, "larger than the picture"),
                    ("99999999999", 2, "--window")]],
                (["localdev", "good.png", *out], 2, "--window is required"),
                (["cascade", "good.png", *out], 2, "--stages is required"),
                (["cascade", "good.png", "--stages", "none.txt", *out], 1, "none.txt: No such file"),
                (["cascade", "good.png", "--stages", "folder", *out], 1, "folder: Is a dir"),
                (["cascade", "good.png", "--stages", BLOBS, "--scale", "1", *out], 2, "--scale"),
                (["cascade", "good.png", "--stages", BLOBS, "--scale", "nan", *out], 2, "--scale"),
                (["cascade", "good.png", "--stages", BLOBS, "--hits", "0", *out], 2, "--hits"),
                (["edges", "good.png", "-o", "no/out.png"], 1, "no/out.png: No such"),
                (["edges", "good.png", "-o", "folder"], 1, "folder: this is a folder"),
                (["edges", "good.png", "-o", "/dev/full"], 1, "/dev/full: No space"),
                (["edges", "good.png"], 2, "--output is required"), ([], 2, "subcommand is required"),
                (["paint"], 2, "paint"),
                (["edges", "--low", "9", "--high", "3", *out], 1, "0 <= low <= high"),
                (["edges", "--low", "-1", *out], 1, "low"),
                (["edges", "--low", "nan", *out], 1, "low"), (["edges", "--low", "x", *out], 2, "--low"),
                (["edges", "--aperture", "4", *out], 2, "--aperture"),
                (["gradient", "--aperture", "5", "--scharr", *out], 1, "Scharr"),
                (["smooth", "--kind", "blur", *out], 2, "--kind"),
                (["smooth", "--kind", "box", "--size", "7", *out], 1, "3 or 5"),
                (["smooth", "--size", "4", *out], 1, "odd"), (["smooth", "--sigma", "nan", *out], 2, "--sigma"),
                (["smooth", "--sigma", "900", *out], 1, "too many"), (["smooth", "--border", "none", *out], 2, "--border"),
                (["smooth", "--kind", "box", "--sigma", "1", *out], 2, "--sigma"),
                (["corners", "--aperture", "5", "--scharr", *out], 1, "Scharr"),
                (["corners", "--window", "4", *out], 2, "--window"), (["corners", "--count", "0", *out], 2, "--count"),
                (["corners", "--strength", "--vectors", *out], 2, "two different"),
                (["filter", *out], 2, "--row is required"), (["filter", "--row", "1,x", *out], 2, "--row: 'x'"),
                (["filter", "--row", "1,,1", *out], 2, "--row: ''"), (["filter", "--row", "0.5", *out], 2, "--float"),
                (["filter", "--row", "1", "--column", "40000", *out], 2, "--column: '40000'"),
                (["filter", *row, "--divisor", "0", *out], 1, "divisor must not be 0"),
                (["filter", *row, "--divisor", "1.5", *out], 2, "integer"),
                (["filter", *row, "--anchor", "3", *out], 1, "anchor 3"),
                (["filter", *row, "--border", "none", *out], 2, "--border"),
                (["filter", *row, "--value", "256", *out], 2, "--value"),
                (["filter", "--row", ",".join(["32767"] * 300), *out], 1, "32 bits"),
                *[(["rank", "good.png", *what, *out], status, message) for what, status, message in [
                    (["--op", "mean", "--width", "3"], 2, "--op"), (["--op", "min"], 2, "--width is required"),
                    (["--op", "min", "--width", "0"], 2, "--width"), (["--op", "max", "--width", "10001"], 2, "--width"),
                    (["--op", "max", "--width", "5", "--anchor-x", "5"], 1, "--anchor-x 5 lies outside"),
                    (["--op", "max", "--width", "5", "--height", "2", "--anchor-y", "2"], 1, "--anchor-y 2 lies outside")]],
                (["reconstruct", *out], 2, "--op is required"), (["reconstruct", "--op", "dig", *out], 2, "--op"),
                (["reconstruct", "--op", "h-domes", "--height", "0", *out], 2, "--height"),
                (["gray-morph", "--depth", "nan", *out], 2, "--depth"), (["gray-morph", "--size", "0", *out], 2, "--size"),
                (["colour-gradient", "--norm", "l3", *out], 2, "--norm"),
                *[(["morph", "good.png", "--shape", name, *out], 1, message) for name, message in [
                    ("mask.txt", "mask.txt: line 2: has 2 characters, not 3"), ("odd.txt", "odd.txt: line 2: neither"),
                    ("high.txt", "1 x 256: at most 255 x 255"), ("empty.png", "empty.png: the file is empty"),
                    ("text.png", "line 1: neither a picture nor"), ("cut.png", "cut.png: bad PNG"),
                    ("disc", "disc: No such file"), ("folder", "folder: Is a dir")]],
                (["morph", "--op", "paint", *out], 2, "--op"), (["morph", "--size", "0", *out], 2, "--size"),
                (["morph", "--size", "256", *out], 2, "--size"), (["morph", "none.png", *out], 1, "none.png: No such file"),
                (["morph", "--shape", "good.png", "--size", "3", *out], 2, "--size"),
                (["gallery"], 2, "PLACES is required"), (["gallery", "good.png"], 1, "good.png: "),
                (["gallery", "none.png", "new"], 1, "none"),
                (["gallery", "folder", "--threads", "0"], 1, "--threads 0: ")]:
            with self.subTest(arguments):
                self.path("out.png", b"before")
                result = self.run_program(*arguments)
                self.assertEqual(status, result.returncode, result.stderr)
                self.assertRegex(result.stderr, r"\Azelcv: [^\n]+\n\Z")
                self.assertIn(message, result.stderr)
                self.assertEqual("", result.stdout)
                with open(self.path("out.png"), "rb") as file:
                    self.assertEqual(b"before", file.read())
        self.assertEqual(sorted([*files, "folder", "out.png"]), sorted(os.listdir(self.folder)))
        self.assertEqual([], os.listdir(self.path("folder")))

    def test_info(self):
        facts = dict(re.split(r"  +", line, maxsplit=1) for line in self.succeed("info").splitlines())
        self.assertEqual(VARIANT, facts["variant"])
        self.assertEqual("x86-64-v3" == VARIANT, "glibc-hwcaps" in facts["library"])
        self.assertEqual(f"{len(exports())} of {len(exports())} listed functions", facts["exports"])

    def test_gallery(self):
        self.path("tiny.png", gray_png([[9]]))
        for picture in [], ["tiny.png"]:
            with self.subTest(picture):
                self.assertIn("page/index.html", self.succeed("gallery", *picture, "page"))
                with open(self.path("page/index.html"), encoding="utf-8") as file:
                    page = file.read()
                self.assertEqual([], [name for name in exports() if f"<code>{name}</code>" not in page])
                if picture:
                    self.assertIn("<td>9 ± 0</td><td>-119 ± 0</td><td>2313 ± 0</td><td>0.035294 ± 0</td>", page)
                    self.assertIn("<td>9</td><td>119</td><td>2313</td><td>0.0352941</td>", page)  # a norm
                pictures = set(re.findall(r'(?:src|href)="([^#"]+)"', page))
                self.assertEqual({*pictures, "index.html"}, set(os.listdir(self.path("page"))))
                for name, width, height in re.findall(r'src="([^"]+)".*? width="(\d+)" height="(\d+)"', page):
                    self.assertEqual((int(width), int(height)), read_png(self.path("page/" + name), False)[:2])
                self.assertNotRegex(page, r"<script[^>]|https?://")
                self.check_structure(page)

    def check_structure(self, text):
        page = Page(text)
        self.assertEqual(([], []), (page.wrong, page.open))
        self.assertEqual(len(page.ids), len(set(page.ids)))
        self.assertEqual(set(), {target for target, _ in page.links} - set(page.ids))
        self.assertEqual(page.headings, {target for target, where in page.links if where == "nav"})
        self.assertEqual(set(), page.headings & page.folded)
        # A function leads to a figure that shows it, and all do; what opens on a click is opened by a link into it.
        listed = [(target, name) for target, name in page.links if name.startswith("zel")]
        self.assertEqual({*exports()} - {"zelcvGetLibVersion"}, {name for _, name in listed})
        self.assertEqual([], [(target, name) for target, name in listed if not re.search("GetBufferSize|GetSize", name)
                              and name not in page.shown.get(target, ())])
        self.assertTrue(page.folded & {target for target, _ in page.links})
        self.assertRegex(text, r'(?s)<script>.*closest\("details"\).*"click".*reveal\(link\).*reveal\(location\).*</script>')


def exports():
    with open(EXPORTS_DEF, encoding="ascii") as file:
        return [line.split("=")[0].strip() for line in file if line[0].isalpha()]


unittest.main(argv=sys.argv[:1])
