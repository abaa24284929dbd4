"""GLB models as scripts load them: files written here (JSON and BIN chunk), a plain
and a skinned triangle with an image and an action, drawn and animated on screen. The
reader's lines, arrays and broken files are checked by its C++ tests."""
import json
import struct
import zlib

import Vorn3DGameEngine as V
from conftest import W, H, pixel


def png(width, height, rgba):
    """A PNG of one colour (8-bit RGBA)."""
    def chunk(kind, data):
        return struct.pack(">I", len(data)) + kind + data + struct.pack(">I", zlib.crc32(kind + data))
    rows = b"".join(b"\0" + bytes(rgba) * width for _ in range(height))
    return (b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", struct.pack(">IIBBBBB", width, height, 8, 6, 0, 0, 0))
            + chunk(b"IDAT", zlib.compress(rows)) + chunk(b"IEND", b""))


class Glb:
    def __init__(self):
        self.doc = {"asset": {"version": "2.0"}, "scenes": [{"nodes": [0]}], "nodes": [],
                    "bufferViews": [], "accessors": []}
        self.bin = b""

    def data(self, raw):
        at = len(self.bin)
        self.bin += raw + b"\0" * (-len(raw) % 4)
        self.doc["bufferViews"].append({"buffer": 0, "byteOffset": at, "byteLength": len(raw)})
        return len(self.doc["bufferViews"]) - 1

    def accessor(self, fmt, values, count, kind, component):
        view = self.data(struct.pack("<%d%s" % (len(values), fmt), *values))
        self.doc["accessors"].append({"bufferView": view, "count": count, "type": kind,
                                      "componentType": component})
        return len(self.doc["accessors"]) - 1

    def write(self, path):
        text = json.dumps(self.doc).encode()
        text += b" " * (-len(text) % 4)
        body = struct.pack("<I4s", len(text), b"JSON") + text + struct.pack("<I4s", len(self.bin), b"BIN\0") + self.bin
        path.write_bytes(b"glTF" + struct.pack("<II", 2, 12 + len(body)) + body)
        return str(path)


def triangle(skin=False, image=False):
    """A triangle around the origin facing +z; with a skin, all of it follows joint 0
    (node 1), which the action "walk" moves two units along x in one second and holds there."""
    g = Glb()
    attrs = {"POSITION": g.accessor("f", [-1, -1, 0, 1, -1, 0, 0, 1, 0], 3, "VEC3", 5126),
             "NORMAL": g.accessor("f", [0, 0, 1] * 3, 3, "VEC3", 5126),
             "TEXCOORD_0": g.accessor("f", [0, 0, 1, 0, 0, 1], 3, "VEC2", 5126)}
    prim = {"attributes": attrs, "indices": g.accessor("H", [0, 1, 2], 3, "SCALAR", 5123)}
    g.doc["nodes"].append({"mesh": 0})
    if image:
        picture = png(2, 2, [255, 255, 255, 255])
        view = g.data(picture)
        g.doc["bufferViews"][view]["byteLength"] += 8  # counted from the BIN chunk header
        g.doc.update(images=[{"bufferView": view}], samplers=[{}], textures=[{"source": 0, "sampler": 0}],
                     materials=[{"extensions": {"KHR_materials_pbrSpecularGlossiness":
                                                {"diffuseTexture": {"index": 0}}}}])
        prim["material"] = 0
    if skin:
        attrs["JOINTS_0"] = g.accessor("B", [0, 0, 0, 0] * 3, 3, "VEC4", 5121)
        attrs["WEIGHTS_0"] = g.accessor("f", [1, 0, 0, 0] * 3, 3, "VEC4", 5126)
        identity = [1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1]
        g.doc["nodes"][0]["skin"] = 0
        g.doc["nodes"] += [{"name": "root", "children": [2]}, {"name": "tip", "translation": [0, 1, 0]}]
        g.doc["skins"] = [{"joints": [1, 2], "inverseBindMatrices": g.accessor("f", identity * 2, 2, "MAT4", 5126)}]
        times = g.accessor("f", [0, 1, 2], 3, "SCALAR", 5126)
        outputs = [g.accessor("f", [0, 0, 0, 2, 0, 0, 2, 0, 0], 3, "VEC3", 5126),
                   g.accessor("f", [0, 0, 0, 1] * 3, 3, "VEC4", 5126),
                   g.accessor("f", [1, 1, 1] * 3, 3, "VEC3", 5126),
                   g.accessor("f", [0, 1, 0] * 3, 3, "VEC3", 5126)]
        targets = [(1, "translation", 0), (1, "rotation", 1), (1, "scale", 2),
                   (2, "translation", 3), (2, "rotation", 1), (2, "scale", 2)]
        g.doc["animations"] = [{"name": "walk",
                                "channels": [{"sampler": s, "target": {"node": n, "path": p}}
                                             for n, p, s in targets],
                                "samplers": [{"input": times, "output": o} for o in outputs]}]
    g.doc["meshes"] = [{"primitives": [prim]}]
    return g


def view(scene):
    scene.SetBGColor(0.0, 0.0, 0.0)
    scene.SetAmbientColor(1.0, 1.0, 1.0)
    camera = scene.GetActiveCamera()
    camera.SetXYZ(0, 0, 5)
    camera.LookAt(0, 0, 0)


def lit(p):
    return sum(p) > 300


def test_plain_triangle(scene, tmp_path, capsys):
    view(scene)
    path = triangle(image=True).write(tmp_path / "tri.glb")
    mesh = scene.CreateMeshFromFile(meshFile=path)
    # Console lines and arrays are checked by the reader's C++ tests; here the script's view.
    assert (mesh.MeshFile, mesh.SubMeshList, mesh.SubMesh_Dict, mesh.ActionDict) == (path, ["submesh_0"], {}, {})
    scene.DrawScene()
    assert lit(pixel(W // 2, H // 2))


def test_skinned_triangle_plays_its_action(scene, tmp_path, capsys):
    view(scene)
    path = triangle(skin=True, image=True).write(tmp_path / "skin.glb")
    mesh = scene.CreateMeshFromFile(meshFile=path)
    assert mesh.withSkin and isinstance(mesh.SubMesh_Dict[0], V.Vorn_SkinSubMeshAni_GLB)
    assert mesh.GetActionName(0) == "walk"
    capsys.readouterr()
    mesh.PlayAction(0)
    assert "Duration:2.0000" in capsys.readouterr().out
    scene.DrawScene()
    assert lit(pixel(W // 2, H // 2))
    mesh.CurrAnimation_CurrTime = 1.0  # the second key: two units to the right
    scene.DrawScene()
    assert not lit(pixel(W // 2 - 20, H // 2)) and lit(pixel(W // 2 + 116, H // 2))
