"""Renders one case of cases.json and compares the picture with its reference.

    python3 render_test.py CASE --build BUILD_DIR

The case's program (an example script or the native demonstration) runs in a child
process with a fixed frame step, draws a fixed number of frames and saves the last one.
A pixel differs when one of its channels is further than the case's channel_threshold
from the reference; the test fails when more than max_differing_pixels differ, or when
the sizes differ. On failure the picture and a difference map (differing pixels white)
are left in BUILD_DIR/tests/render/out. With UPDATE_REFERENCES=1 in the environment the
picture becomes the new reference instead.
"""
import argparse
import json
import os
import shutil
import struct
import subprocess
import sys
import tempfile
import zlib
from typing import Dict, List, NamedTuple

HERE = os.path.dirname(os.path.abspath(__file__))
ROOT = os.path.normpath(os.path.join(HERE, "..", ".."))
CHILD_TIMEOUT = 120


class Picture(NamedTuple):
    """An 8-bit RGB picture, rows from the top, three bytes a pixel."""

    width: int
    height: int
    rgb: bytes


def _paeth(a: int, b: int, c: int) -> int:
    p = a + b - c
    pa, pb, pc = abs(p - a), abs(p - b), abs(p - c)
    if pa <= pb and pa <= pc:
        return a
    return b if pb <= pc else c


def read_png(path: str) -> Picture:
    """Decodes an 8-bit, non-interlaced RGB or RGBA PNG (what the engine's screenshot
    writes); alpha is dropped. ValueError for anything else."""
    with open(path, "rb") as f:
        data = f.read()
    if data[:8] != b"\x89PNG\r\n\x1a\n":
        raise ValueError("%s: not a PNG file" % path)
    pos, header, idat = 8, b"", []
    while pos + 8 <= len(data):
        length, kind = struct.unpack(">I4s", data[pos:pos + 8])
        body = data[pos + 8:pos + 8 + length]
        if kind == b"IHDR":
            header = body
        elif kind == b"IDAT":
            idat.append(body)
        elif kind == b"IEND":
            break
        pos += 12 + length
    width, height, depth, colour, _, _, interlace = struct.unpack(">IIBBBBB", header[:13])
    if depth != 8 or colour not in (2, 6) or interlace:
        raise ValueError("%s: only 8-bit non-interlaced RGB(A) is read" % path)
    bpp = 3 if colour == 2 else 4
    stride = width * bpp
    raw = zlib.decompress(b"".join(idat))
    rows: List[bytearray] = []
    prev = bytearray(stride)
    for y in range(height):
        start = y * (stride + 1)
        kind = raw[start]
        row = bytearray(raw[start + 1:start + 1 + stride])
        if kind == 1:
            for i in range(bpp, stride):
                row[i] = (row[i] + row[i - bpp]) & 0xFF
        elif kind == 2:
            row = bytearray((r + p) & 0xFF for r, p in zip(row, prev))
        elif kind == 3:
            for i in range(stride):
                left = row[i - bpp] if i >= bpp else 0
                row[i] = (row[i] + ((left + prev[i]) >> 1)) & 0xFF
        elif kind == 4:
            for i in range(stride):
                left = row[i - bpp] if i >= bpp else 0
                upper_left = prev[i - bpp] if i >= bpp else 0
                row[i] = (row[i] + _paeth(left, prev[i], upper_left)) & 0xFF
        elif kind != 0:
            raise ValueError("%s: unknown row filter %d" % (path, kind))
        rows.append(row)
        prev = row
    pixels = b"".join(bytes(r) for r in rows)
    if bpp == 4:
        pixels = bytes(b for i, b in enumerate(pixels) if i % 4 != 3)
    return Picture(width, height, pixels)


def write_png(path: str, picture: Picture) -> None:
    """Writes an 8-bit RGB PNG with no row filters."""
    stride = picture.width * 3
    raw = b"".join(b"\x00" + picture.rgb[y * stride:(y + 1) * stride] for y in range(picture.height))

    def chunk(kind: bytes, body: bytes) -> bytes:
        return struct.pack(">I", len(body)) + kind + body + struct.pack(">I", zlib.crc32(kind + body) & 0xFFFFFFFF)

    header = struct.pack(">IIBBBBB", picture.width, picture.height, 8, 2, 0, 0, 0)
    with open(path, "wb") as f:
        f.write(b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", header) + chunk(b"IDAT", zlib.compress(raw, 6)) + chunk(b"IEND", b""))


class Difference(NamedTuple):
    """How far a picture is from its reference."""

    differing: int
    largest: int
    mask: bytes


def compare(got: Picture, want: Picture, threshold: int) -> Difference:
    """Counts the pixels with a channel further than threshold from the reference."""
    differing, largest = 0, 0
    mask = bytearray(len(got.rgb))
    for i in range(0, len(got.rgb), 3):
        d = max(abs(got.rgb[i] - want.rgb[i]), abs(got.rgb[i + 1] - want.rgb[i + 1]),
                abs(got.rgb[i + 2] - want.rgb[i + 2]))
        if d > largest:
            largest = d
        if d > threshold:
            differing += 1
            mask[i:i + 3] = b"\xff\xff\xff"
    return Difference(differing, largest, bytes(mask))


def command_of(case: Dict, build: str, screenshot: str, workdir: str) -> List[str]:
    """The child's command line: an example script, or the native demonstration with the
    resources our asset tool writes."""
    common = ["--frames", str(case["frames"]), "--fixed-step", str(case["fixed_step"]), "--screenshot", screenshot]
    tool = os.path.join(build, "tools", "make_demo_assets")
    if case["program"] == "demo":
        subprocess.run([tool, os.path.join(workdir, "Resources")], check=True, stdout=subprocess.DEVNULL,
                       timeout=CHILD_TIMEOUT)
        return [os.path.join(build, "engine", "vorn-demo")] + common
    script = os.path.join(ROOT, "examples", case["program"])
    extra = list(case.get("args", []))
    if case.get("resources"):
        # Files the script writes go to the working folder, which is removed afterwards.
        extra += ["--resources", os.path.join(workdir, "Resources")]
    if case.get("asset_tool"):
        extra += ["--tool", tool]
    return [sys.executable, script] + extra + common


def render(case: Dict, build: str, screenshot: str) -> None:
    """Runs the case's program in a child process in a fresh working folder."""
    with tempfile.TemporaryDirectory(prefix="vorn_render_") as workdir:
        env = dict(os.environ)
        env["PYTHONPATH"] = os.path.join(build, "python")
        cmd = command_of(case, build, screenshot, workdir)
        done = subprocess.run(cmd, cwd=workdir, env=env, stdout=subprocess.PIPE, stderr=subprocess.STDOUT,
                              timeout=CHILD_TIMEOUT)
        if done.returncode != 0 or not os.path.exists(screenshot):
            tail = done.stdout.decode("utf-8", "replace").splitlines()[-30:]
            raise RuntimeError("%s ended with %d:\n%s" % (" ".join(cmd), done.returncode, "\n".join(tail)))


def run(name: str, build: str) -> int:
    with open(os.path.join(HERE, "cases.json")) as f:
        cases = json.load(f)
    case = cases[name]
    reference = os.path.join(HERE, "references", name + ".png")
    out_dir = os.path.join(build, "tests", "render", "out")
    os.makedirs(out_dir, exist_ok=True)
    screenshot = os.path.join(out_dir, name + ".png")
    if os.path.exists(screenshot):
        os.remove(screenshot)
    render(case, build, screenshot)

    if os.environ.get("UPDATE_REFERENCES") == "1":
        os.makedirs(os.path.dirname(reference), exist_ok=True)
        shutil.copyfile(screenshot, reference)
        print("%s: reference written to %s" % (name, reference))
        return 0
    if not os.path.exists(reference):
        print("%s: no reference %s (UPDATE_REFERENCES=1 writes it)" % (name, reference))
        return 1
    got, want = read_png(screenshot), read_png(reference)
    if (got.width, got.height) != (want.width, want.height):
        print("%s: size %dx%d, reference %dx%d" % (name, got.width, got.height, want.width, want.height))
        return 1
    threshold, allowed = case["channel_threshold"], case["max_differing_pixels"]
    diff = compare(got, want, threshold)
    print("%s: %d pixels differ by more than %d (allowed %d); largest channel difference %d"
          % (name, diff.differing, threshold, allowed, diff.largest))
    if diff.differing > allowed:
        mask_path = os.path.join(out_dir, name + ".diff.png")
        write_png(mask_path, Picture(got.width, got.height, diff.mask))
        print("picture: %s\ndifferences: %s" % (screenshot, mask_path))
        return 1
    return 0


def main(argv: List[str]) -> int:
    parser = argparse.ArgumentParser(description=(__doc__ or "").splitlines()[0])
    parser.add_argument("case", help="a name of cases.json")
    parser.add_argument("--build", required=True, help="the build folder (programs, Python package)")
    args = parser.parse_args(argv)
    return run(args.case, os.path.abspath(args.build))


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
