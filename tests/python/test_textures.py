"""Submesh textures and 2D shapes as scripts use them, with the real scene and pixels read back.
The file search and its console lines are the C++ suite's (node_textures_test)."""
import pytest

import Vorn3DGameEngine as V
from conftest import W, H, near, pixel

RED, GREEN, BLUE, WHITE = (255, 0, 0), (0, 255, 0), (0, 0, 255), (255, 255, 255)


def quadrants(path, size=8, colours=(RED, GREEN, BLUE, WHITE)):
    """A PNG in four quadrants: top left, top right, bottom left, bottom right."""
    im = V.Vorn_Image("RGB", (size, size))
    for y in range(size):
        for x in range(size):
            im.putpixel((x, y), colours[(2 if y >= size // 2 else 0) + (1 if x >= size // 2 else 0)])
    im.save(str(path))
    return str(path)


def test_2d_image_and_rectangle_in_the_registry_and_on_screen(scene, tmp_path):
    image = scene.Create2DImage(0, 0, W, H, quadrants(tmp_path / "q.png"))
    rect = scene.Create2DRect(200, 150, 60, 40, 1.0, 0.5, 0.0)
    assert list(scene.Get2DObjectArray()) == [image, rect]
    assert scene.Quey2DObjectByTag(image.GetTag()) is image
    assert image.is2DMode and rect.is2DMode
    assert image.GetSubMeshTextureInfo(0, 0)[3:6] == ["RGB", 8, 8]

    scene.DrawScene()
    # Orientation and edges are the C++ suite's (node_textures_gl_test); here the
    # registry's order: the rectangle lies on the picture's white quadrant.
    assert near(pixel(280, 220), WHITE) and near(pixel(201, 151), (255, 128, 0))

    # Without a file the image has no texture.
    bare = scene.Create2DImage(0, 0, 10, 10)
    assert bare.TextureArray == {0: []}


def test_texture_records_from_script_buffers_and_misuse(scene):
    node = scene.Create3DGameNode()
    s = node.CreateSubMesh("a", True)
    node.LoadSubMeshTextureFromImage(s, 0, bytearray(12), "RGB", 2, 2)
    node.LoadSubMeshTextureFromImage(s, 1, memoryview(bytes(range(16))), "RGBA", 2, 2, False, 2.5)
    assert node.GetSubMeshTextureInfo(s, 1) == [1, 0, bytes(range(16)), "RGBA", 2, 2, False, False, 2.5]
    assert node.GetSubMeshTextureInfo(s, 3) is None
    for call, error in [
        (lambda: node.LoadSubMeshTextureFromImage(s, 0, 12, "RGB", 2, 2), TypeError),
        (lambda: node.LoadSubMeshTextureFromImage(s, 0, bytes(5), "RGB", 2, 2), ValueError),
        (lambda: node.LoadSubMeshTextureFromImage(7, 0, None, "RGB", 2, 2), KeyError),
        (lambda: node.GetSubMeshTextureInfo(7, 0), KeyError),
    ]:
        with pytest.raises(error):
            call()

