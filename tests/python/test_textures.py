"""Submesh textures and 2D shapes as scripts use them, with the real scene and pixels read back."""
import os

import pytest

import Vorn3DGameEngine as V

W, H = 320, 240
RED, GREEN, BLUE, WHITE = (255, 0, 0), (0, 255, 0), (0, 0, 255), (255, 255, 255)


def quadrants(path, size=8, colours=(RED, GREEN, BLUE, WHITE)):
    """A PNG in four quadrants: top left, top right, bottom left, bottom right."""
    im = V.Vorn_Image("RGB", (size, size))
    for y in range(size):
        for x in range(size):
            im.putpixel((x, y), colours[(2 if y >= size // 2 else 0) + (1 if x >= size // 2 else 0)])
    im.save(str(path))
    return str(path)


def write_resources(root):
    """Pictures the resource index must know before the manager is made."""
    (root / "a").mkdir()
    (root / "b").mkdir()
    quadrants(root / "a" / "twice.png")
    quadrants(root / "b" / "twice.png", colours=(GREEN,) * 4)
    for i, name in enumerate(["right", "left", "top", "bottom", "front", "back"]):
        for sky in ("day", "half"):
            if sky == "half" and name == "back":
                continue
            (root / "SkyBox" / sky).mkdir(parents=True, exist_ok=True)
            # The image library reads by content: a PNG under a ".jpg" name loads.
            png = quadrants(root / "SkyBox" / sky / (name + ".png"), 4, ((i * 40, 0, 0),) * 4)
            os.rename(png, png[:-4] + ".jpg")


@pytest.fixture
def scene(gl_context, tmp_path):
    saved = (V.SCREEN_WIDTH, V.SCREEN_HEIGHT)
    V.SCREEN_WIDTH, V.SCREEN_HEIGHT = W, H
    write_resources(tmp_path)
    V.PyGameResManager(str(tmp_path))
    s = V.Vorn_3Dcene()
    s.InitGL(W, H)
    yield s
    V.SCREEN_WIDTH, V.SCREEN_HEIGHT = saved


def near(got, want, tol=3):
    return all(abs(a - b) <= tol for a, b in zip(got, want))


def pixel(x, y):
    return tuple(V.ReadScreenPixels(x, y, 1, 1))


def test_2d_image_fills_the_window_upright_and_rectangles_lie_on_top(scene, tmp_path, capsys):
    image = scene.Create2DImage(0, 0, W, H, quadrants(tmp_path / "q.png"))
    rect = scene.Create2DRect(200, 150, 60, 40, 1.0, 0.5, 0.0)
    assert list(scene.Get2DObjectArray()) == [image, rect]
    assert scene.Quey2DObjectByTag(image.GetTag()) is image
    assert image.is2DMode and rect.is2DMode
    assert image.GetSubMeshTextureInfo(0, 0)[3:6] == ["RGB", 8, 8]
    capsys.readouterr()

    scene.DrawScene()
    # Each 2D submesh has no alpha mode: the draw prints its index.
    assert capsys.readouterr().out.count("0\n") >= 2
    assert near(pixel(200, 40), GREEN)  # top right (the overlay texts sit at the top left)
    assert near(pixel(60, 200), BLUE)
    assert near(pixel(280, 220), WHITE)
    assert near(pixel(100, 100), RED)
    assert near(pixel(201, 151), (255, 128, 0))
    assert near(pixel(258, 188), (255, 128, 0))
    assert near(pixel(262, 170), WHITE)

    # Without a file the image has no texture.
    bare = scene.Create2DImage(0, 0, 10, 10)
    assert bare.TextureArray == {0: []}


def test_texture_records_file_search_and_misuse(scene, tmp_path, capsys):
    node = scene.Create3DGameNode()
    s = node.CreateSubMesh("a", True)
    node.LoadSubMeshTextureFromImage(s, 0, bytearray(12), "RGB", 2, 2)
    node.LoadSubMeshTextureFromImage(s, 1, memoryview(bytes(range(16))), "RGBA", 2, 2, False, 2.5)
    assert node.GetSubMeshTextureInfo(s, 1) == [1, 0, bytes(range(16)), "RGBA", 2, 2, False, False, 2.5]
    assert node.GetSubMeshTextureInfo(s, 3) is None
    node.SetSubMeshTextureDensity(s, 0, 4.0)
    assert [r[8] for r in node.TextureArray[s]] == [4.0, 2.5]
    with pytest.raises(TypeError):
        node.LoadSubMeshTextureFromImage(s, 0, 12, "RGB", 2, 2)
    with pytest.raises(ValueError):
        node.LoadSubMeshTextureFromImage(s, 0, bytes(5), "RGB", 2, 2)
    with pytest.raises(KeyError):
        node.LoadSubMeshTextureFromImage(7, 0, None, "RGB", 2, 2)
    with pytest.raises(KeyError):
        node.GetSubMeshTextureInfo(7, 0)

    capsys.readouterr()
    node.LoadSubMeshTextureFromFile(s, 2, "nowhere.png")
    assert capsys.readouterr().out == "Can't find texture: nowhere.png\n"
    node.LoadSubMeshTextureFromFile(s, 2, "twice.png")
    assert capsys.readouterr().out == "twice.png  has  2  same image.\n"
    # The first match (folder a): its bottom-left quadrant is the first pixel of the rows.
    assert node.GetSubMeshTextureInfo(s, 2)[2][:3] == bytes(BLUE)


def test_cube_map_faces_and_a_lost_face(scene, tmp_path, capsys):
    sky = scene.Create3DGameNode()
    s = sky.CreateSubMesh("sky", True)
    assert sky.LoadSubMeshCubeMapTextureFromFile(s, "SkyBox/day") is True
    record = sky.GetSubMeshTextureInfo(s, 0)
    assert record[2:] == [None, "CUBE", 4, 4, True, False, 1.0]
    assert V.ResManagerInstance.GetDynamicTexture(record[1])[:3] == [4, 4, "CUBE"]

    capsys.readouterr()
    assert sky.LoadSubMeshCubeMapTextureFromFile(s, "SkyBox/half") is False
    out = capsys.readouterr().out
    assert out.startswith("SkyBox Texture  ") and out.endswith("back.jpg  Lost !\n")
    assert len(sky.TextureArray[s]) == 1


def test_bump_map_is_written_and_attached(scene, tmp_path, monkeypatch):
    monkeypatch.chdir(tmp_path)
    node = scene.Create3DGameNode()
    s = node.CreateSubMesh("quad", True)
    node.PushQuadVertex_Postion(s, 0, 0, 0, 1, 0, 0, 1, 1, 0, 0, 1, 0)
    node.PushQuadVertex_Normal(s, 0, 0, 1, 0, 0, 1, 0, 0, 1, 0, 0, 1)
    node.PushQuadVertex_UV(s, 0, 0, 1, 0, 1, 1, 0, 1)
    node.PushQuadVIndex(s, 0, 1, 2, 3)
    node.SetSubMeshShapeType(s, V.GL_QUADS)
    node.LoadSubMeshTextureFromImage(s, 0, bytes([90]) * 48, "RGB", 4, 4)
    node.MakeSubMeshBump(s)
    assert (tmp_path / "bump.png").exists()
    bump = node.GetSubMeshTextureInfo(s, 1)
    assert bump[3:8] == ["RGB", 4, 4, False, False]
    # Rows 1 and 2 inside: a flat picture packs the negated z normal as (127, 127, 0).
    assert bump[2][15:18] == bytes([127, 127, 0])
    node.MakeSubMeshBump(s)
    assert len(node.TextureArray[s]) == 2
