"""Vorn_3DTerrain as scripts use it: height and blend files, the scene's terrain factory
and loader, the ground height and malformed files. The layers on screen are the
terrain render-reference case (tests/render)."""
import struct
import subprocess
import sys

import Vorn3DGameEngine as V


def height_file(path, cows, rows, heights):
    path.write_bytes(struct.pack("<ii", cows, rows) + struct.pack(f"<{len(heights)}f", *heights))
    return str(path)


def blend_record(path, names, densities):
    data = b"".join(name.encode().ljust(64, b"\0") for name in names) + struct.pack("<5f", *densities)
    path.write_bytes(data)
    return str(path)


def flat_tga(path, rgb, size=4):
    """An uncompressed 24-bit TGA of one colour."""
    b, g, r = rgb[2], rgb[1], rgb[0]
    path.write_bytes(struct.pack("<BBBHHBHHHHBB", 0, 0, 2, 0, 0, 0, 0, 0, size, size, 24, 0)
                     + bytes((b, g, r)) * (size * size))
    return str(path)


def test_height_files_give_the_grid_and_the_ground_height(scene, tmp_path):
    heights = [0.5 * c + 0.25 * r for r in range(3) for c in range(4)]
    terrain = scene.CreateTerrain(10, 0, -4)
    assert terrain.NodeType == "3DTerrain" and isinstance(terrain, V.Vorn_3DPlane)
    assert list(scene.Get3DTerrainArray()) == [terrain]
    assert (terrain.Cows, terrain.Rows, terrain.TileSize) == (128, 128, 1.0)
    assert scene.CreateTerrain(parent=terrain).GetParent() is terrain
    assert len(scene.Get3DTerrainArray()) == 1  # a child is driven by its parent

    # The file forms and the height between grid points are the C++ suite's
    # (terrain_files_test, plane_test); here the keywords and the registry's answer.
    terrain.LoadHeightFile(height_file(tmp_path / "hill.hei", 3, 2, heights), tilesize=2.0)
    assert (terrain.Cows, terrain.Rows, terrain.TileSize, terrain.HeightArray) == (3, 2, 2.0, heights)
    terrain.update(0.0)
    # The grid spans x 7..13 and z -6..-2 around the node: (9, -4) is grid point (1, 1).
    assert scene.Get3DTerrainY(9.0, -4.0) == 0.75 and scene.Get3DTerrainY(6.9, -4.0) == 0.0
    (tmp_path / "hill.txt").write_text("3,2," + ",".join(repr(h) for h in heights) + "\n")
    terrain.LoadHeightFile(str(tmp_path / "hill.txt"), "r", 2.0)
    assert terrain.HeightArray == heights


def test_load_terrain_reads_both_files_into_the_first_terrain(scene, tmp_path, capsys):
    flat_tga(tmp_path / "vale.ter_Blend1.tga", (0, 0, 255))
    flat_tga(tmp_path / "grass.tga", (0, 255, 0))
    height_file(tmp_path / "vale.hei", 2, 2, [float(i) for i in range(9)])
    blend_record(tmp_path / "vale.ter", ["grass.tga", "", "", "", ""], [4.0, 2.0, 3.0, 1.0, 1.0])
    V.ResManagerInstance.FoundAllResFile(str(tmp_path))  # layer names are found through the index
    first = scene.LoadTerrain(str(tmp_path / "vale"))
    assert list(scene.Get3DTerrainArray()) == [first]
    assert (first.Cows, first.Rows) == (2, 2)
    assert first.GetSubMeshTextureInfo(0, 0)[3:6] == ["RGBA", 4, 4]
    assert first.GetSubMeshTextureInfo(0, 1)[8] == 4.0
    assert first.SubMeshFX[0] == V.FXManagerInstance.GetShader(V.Vorn_3DFX.FX_TERRAIN)
    assert capsys.readouterr().out.count("Can't find texture: \n") == 4
    # A second call loads into the same terrain.
    height_file(tmp_path / "vale.hei", 1, 1, [5.0, 5.0, 5.0, 5.0])
    assert scene.LoadTerrain(str(tmp_path / "vale")) is first
    assert first.HeightArray == [5.0] * 4 and len(scene.Get3DTerrainArray()) == 1


def test_script_subclass_keeps_python_semantics(tmp_path):
    class Dune(V.Vorn_3DTerrain):
        def update(self, delay):
            self.updates = getattr(self, "updates", 0) + 1

    dune = Dune(1, 2, 3)
    dune.note = "mine"
    dune.LoadHeightFile(height_file(tmp_path / "d.hei", 1, 1, [0, 1, 2, 3]))
    dune.update(0.1)
    assert (dune.note, dune.updates, dune.HeightArray) == ("mine", 1, [0.0, 1.0, 2.0, 3.0])
    assert "readflag: str = 'rb', tilesize: float = 1.0" in V.Vorn_3DTerrain.LoadHeightFile.__doc__
    assert "readflag: str = 'rb'" in V.Vorn_3DTerrain.LoadBlendFile.__doc__


# (name, file name, bytes, call, exception type, message after the operation's name and
# the quoted path). Each case runs in a child interpreter: a crash fails that case only.
H_OP, B_OP = "Vorn_3DTerrain.LoadHeightFile: ", "Vorn_3DTerrain.LoadBlendFile: "
BAD_FILES = [
    ("truncated", "cut.hei", struct.pack("<ii9f", 2, 2, *[1.0] * 9)[:-1], "LoadHeightFile(f)", "ValueError",
     "a grid of 2 by 2 tiles needs 9 heights, the file holds 8"),
    ("huge claim", "huge.hei", struct.pack("<iif", 2**31 - 1, 2**31 - 1, 0.0), "LoadHeightFile(f)", "ValueError",
     "a grid of 2147483647 by 2147483647 tiles needs 4611686018427387904 heights, the file holds 1"),
    ("negative", "neg.hei", struct.pack("<ii", 1, -1), "LoadHeightFile(f)", "ValueError",
     "a grid of 1 by -1 tiles has a negative tile count"),
    ("not numeric", "w.txt", b"1,1,0,0,cliff,0", "LoadHeightFile(f, 'r')", "ValueError",
     "field 4 (height 2) is not a number: 'cliff'"),
    ("short blend", "s.ter", b"\0" * 339, "LoadBlendFile(f)", "ValueError",
     "a blend record is 340 bytes, the file has 339"),
    ("missing", None, None, "LoadHeightFile(f)", "FileNotFoundError", "no such file: "),
    ("missing blend", None, None, "LoadBlendFile(f, 'r')", "FileNotFoundError", "no such file: "),
]

CHILD = """
import Vorn3DGameEngine as V
t = V.Vorn_3DTerrain()
t.LoadHeightFile({good!r})
before = (t.Cows, t.Rows, t.HeightArray, t.GetSubMeshTextureInfo(0, 0))
f = {path!r}
try:
    t.{call}
except Exception as e:
    print(type(e).__name__, e)
else:
    print("no exception")
print((t.Cows, t.Rows, t.HeightArray, t.GetSubMeshTextureInfo(0, 0)) == before)
"""


def test_malformed_files_raise_and_leave_the_terrain_as_it_was(tmp_path):
    good = height_file(tmp_path / "good.hei", 1, 1, [1.0, 2.0, 3.0, 4.0])
    failures = []
    for name, file_name, data, call, kind, message in BAD_FILES:
        path = tmp_path / (file_name or "absent")
        if data is not None:
            path.write_bytes(data)
        result = subprocess.run([sys.executable, "-c", CHILD.format(good=good, path=str(path), call=call)],
                                capture_output=True, text=True, timeout=60)
        op = H_OP if "Height" in call else B_OP
        expected = f"{kind} {op}" + (f"{message}{str(path)!r}" if data is None else f"{str(path)!r}: {message}")
        if result.returncode != 0 or result.stdout.splitlines() != [expected, "True"]:
            failures.append(f"{name}: exit {result.returncode}, {result.stdout!r}, {result.stderr[-300:]!r}")
    assert not failures, "\n".join(failures)
