"""The scene's full-screen modes as scripts use them: VR split, deferred-light and
ambient-occlusion previews. The example script runs as render-reference cases (VR, bloom,
inset) and is type-checked with the others (test_stubs.py).

The post pass's blur is checked by the C++ suite (fullscreen_gl_test). The picture
checks need the modes' own 800 by 600 layout, so they run in a child
interpreter with a window of that size (which also keeps a crash to one case)."""
import json
import os
import subprocess
import sys
import textwrap

import pytest

import Vorn3DGameEngine as V
from conftest import window_prelude

FX3 = V.Vorn_3DFX

CHILD_HEAD = window_prelude(800, 600) + """
import json, sys
W, H = 800, 600
V.glutMainLoopEvent()
scene.SetBGColor(0.0, 0.0, 0.0)
scene.SetAmbientColor(1.0, 1.0, 1.0)
scene.SetSunLight(0, 0, -1, 1, 1, 1)
scene.DisableFog()
scene.FPSText.SetColor(0.0, 1.0, 0.0)
out = {}

def frames(n=3):
    for _ in range(n):
        scene.DrawScene()
        V.glutMainLoopEvent()
    data = V.ReadScreenPixels(0, 0, W, H)
    return lambda x, y: tuple(data[(y * W + x) * 3:(y * W + x) * 3 + 3])

def fps_drawn(px):
    # The FPS overlay is green here: look for its pixels at the top left.
    return any(px(x, y)[1] > 200 and px(x, y)[0] < 60 and px(x, y)[2] < 60
               for x in range(2, 60) for y in range(2, 18))

def quad(z=0.0, half=1.0):
    node = scene.Create3DGameNode(0, 0, 0)
    s = node.CreateSubMesh("quad")
    node.PushQuadVertex_Postion(s, -half, -half, z, half, -half, z, half, half, z, -half, half, z)
    node.PushQuadVertex_Normal(s, *([0, 0, 1] * 4))
    node.PushTriangleVIndex(s, 0, 1, 2)
    node.PushTriangleVIndex(s, 0, 2, 3)
    node.BuildVBO()
    node.ApplyFX(V.Vorn_3DFX.FX_DIFFUSE)
    node.SetMeshColor(1.0, 1.0, 1.0, 1.0)
    return node

camera = scene.GetActiveCamera()
camera.SetXYZ(0, 0, 5)
camera.LookAt(0, 0, 0)
"""


def run_child(tmp_path, body):
    """Runs body after CHILD_HEAD in a child interpreter (cwd tmp_path); returns `out`."""
    script = CHILD_HEAD + textwrap.dedent(body) + "\nprint('RESULT', json.dumps(out))\n"
    proc = subprocess.run([sys.executable, "-c", script], cwd=tmp_path, capture_output=True, text=True,
                          timeout=240, env=os.environ.copy())
    lines = [l for l in proc.stdout.splitlines() if l.startswith("RESULT ")]
    assert proc.returncode == 0 and lines, proc.stderr[-3000:]
    return json.loads(lines[-1][len("RESULT "):])


def grey(c, tol=2):
    return max(c) - min(c) <= tol


# ---- In-process: fields, maps, labels, re-calls and misuse ----

def _label(node):
    (label,) = [c for c in node.children if isinstance(c, V.Vorn_Text)]
    return label


def test_deferred_preview_builds_cameras_tiles_labels_and_adds_only_the_result_again(scene):
    res = V.ResManagerInstance
    active = scene.GetActiveCamera()
    textures, kids = len(res.DynamicTextureDict), len(active.children)
    scene.OpenDeferLight()

    cams = scene.DeferLightCamera
    assert list(cams) == [FX3.FX_XYZ, FX3.FX_NORMAL, FX3.FX_DIFFUSE, None]
    assert scene.DeferLightCamera[None] is cams[None] and scene.IsDeferLightMode()
    for fx, cam in cams.items():
        assert cam.GetParent() is active and cam.EnableSceneFog is False
        assert cam.RenderTargetArray[V.Vorn_3DCamera.CAMERA_RENDERGARGET]["FXID"] == fx
    assert len(res.DynamicTextureDict) == textures + 4 and len(active.children) == kids + 4

    tiles = [n for n in scene.ObjectArray_2D if n.GetTag() == "DeferLight_Light"]
    assert [_label(t).text for t in tiles] == ["XYZ", "Normal", "Diffuse", "Original"]
    first = _label(tiles[0])
    assert (first.x, first.y, first.r, first.g, first.b) == (200, 180, 1.0, 0.0, 0.0)
    assert first.borderMode and first.alignMode == V.Vorn_Text.FT_ALIGN_RIGHT
    # The label is the child itself, the same object each time, and a live list item.
    assert tiles[0].children[0] is first and first in tiles[0].children
    result = scene.Quey2DObjectByTag("DeferLight")
    assert (_label(result).text, _label(result).x, _label(result).y) == ("DeferLight", 800, 380)
    channels = [r[0] for r in result.TextureArray[0]]
    targets = [r[1] for r in result.TextureArray[0]]
    assert channels == [0, 1, 2, 3]
    assert targets == [cams[k].GetRenderTargetTexture() for k in (FX3.FX_XYZ, FX3.FX_NORMAL, FX3.FX_DIFFUSE, None)]

    count2d = len(scene.ObjectArray_2D)
    scene.OpenDeferLight()
    assert len(scene.ObjectArray_2D) == count2d + 1 and len(scene.DeferLightCamera) == 4
    assert len(res.DynamicTextureDict) == textures + 4 and len(active.children) == kids + 4


def test_ssao_preview_kernel_noise_and_recall(scene):
    res = V.ResManagerInstance
    scene.OpenSSAO()
    assert list(scene.SSAOCamera) == [FX3.FX_XYZ, FX3.FX_DEPTH, FX3.FX_NORMAL_VIEW_INVERSE, FX3.FX_DIFFUSE, None]
    tiles = [n for n in scene.ObjectArray_2D if n.GetTag() == "SSAO_Light"]
    assert [_label(t).text for t in tiles] == ["XYZ", "Depth", "Normal_View_Inverse", "Diffuse", "Original"]
    # The fifth tile starts the second row.
    assert (_label(tiles[4]).x, _label(tiles[4]).y) == (200, 380)

    # The kernel's shape and seeding are the C++ suite's (SSAOKernel); here its list.
    kernel = scene.SSAOKernelList
    assert len(kernel) == 192 and scene.SSAOKernelRadius == 1.0

    result = scene.Quey2DObjectByTag("SSAO")
    records = result.TextureArray[0]
    assert [r[0] for r in records] == [0, 1, 2, 3]
    noise = records[2][1]
    assert res.DynamicTextureDict[noise] == [10, 10, "RGB", 24]
    assert records[0][1] == scene.SSAOCamera[FX3.FX_XYZ].GetRenderTargetTexture()
    assert records[3][1] == scene.SSAOCamera[None].GetRenderTargetTexture()

    textures, count2d = len(res.DynamicTextureDict), len(scene.ObjectArray_2D)
    scene.OpenSSAO()
    # Again: one result image and one noise texture; no camera or target.
    assert len(scene.ObjectArray_2D) == count2d + 1 and len(res.DynamicTextureDict) == textures + 1
    assert len(scene.SSAOCamera) == 5 and scene.SSAOKernelList != kernel


def test_vr_mode_fields_and_its_failures(scene, tmp_path, monkeypatch):
    monkeypatch.chdir(tmp_path)
    active = scene.GetActiveCamera()
    # Refused before anything is made: no openGLScene, no InitGL.
    V.openGLScene = None
    with pytest.raises(AttributeError, match="openGLScene"):
        scene.OpenVRMode()
    fresh = V.Vorn_3Dcene()
    V.openGLScene = fresh
    with pytest.raises(RuntimeError, match="InitGL"):
        fresh.OpenVRMode()
    assert len(fresh.ObjectArray_2D) == 0 and fresh.VRLeftCamera is None
    V.openGLScene = scene
    assert len(scene.ObjectArray_2D) == 0 and len(active.children) == 0

    scene.OpenVRMode("cardboard", 60, 0.5, 100)
    left, right = scene.VRLeftCamera, scene.VRRightCamera
    for cam in (left, right):
        assert cam.GetParent() is active and (cam.X, cam.Y, cam.Z) == (0.1, 0.0, -1.0)
        assert (cam.Fov, cam.Near, cam.Far) == (60, 0.5, 100) and cam.Aspect == pytest.approx(160 / 240)
    assert [n for n in scene.ObjectArray_2D] == [scene.VRLeftEyeImage, scene.VRRightEyeImage]
    assert scene.VRLogoImage is None
    # Without the logo the VR frame fails and says which file it wanted.
    with pytest.raises(AttributeError, match="ico/vorn.png"):
        scene.DrawScene()

    os.makedirs("ico")
    V.Vorn_Image("RGB", (4, 4)).save(os.path.join("ico", "vorn.png"))
    scene.OpenVRMode()
    assert scene.VRLogoImage.GetTag() == "VR_Logo" and len(scene.ObjectArray_2D) == 5
    scene.DrawScene()


def test_text_children_are_the_texts_themselves(scene):
    image = scene.Create2DImage(0, 0, 10, 10)
    label = V.Vorn_Text(5, 5, "hi")
    label.note = "kept"
    image.AddChild(label)
    image.children.append(V.Vorn_Text(1, 1, "two"))
    assert image.children[0] is label and image.children[0].note == "kept"
    assert [c.text for c in image.children] == ["hi", "two"]
    image.children.remove(label)
    assert [c.text for c in image.children] == ["two"]
    with pytest.raises(TypeError, match="Vorn_Text"):
        image.AddChild(3)
    scene.DrawScene()


# ---- Pictures, in an 800 by 600 child (the VR split is a render-reference case) ----

def test_deferred_preview_tiles_and_lit_result(tmp_path):
    out = run_child(tmp_path, """
        quad(z=0.5)
        scene.OpenDeferLight()
        px = frames()
        out["tiles"] = [px(100, 100), px(300, 100), px(500, 100), px(700, 100)]
        out["dark"] = px(400, 400)
        out["fps_dark"] = fps_drawn(px)
        scene.CreatePointLight(0.5, 0.5, 1.0, None, 5.0, 1.0, 1.0, 1.0)
        px = frames()
        out["lit_tiles"] = [px(500, 100), px(700, 100)]
        out["lit"] = px(400, 400)
        out["fps"] = fps_drawn(px)
    """)
    xyz, normal, diffuse, original = out["tiles"]
    assert xyz[0] <= 3 and xyz[1] <= 3 and abs(xyz[2] - 128) <= 3, out
    assert normal[:2] == [0, 0] and normal[2] >= 250, out
    assert grey(diffuse) and diffuse[0] > 150 and grey(original) and original[0] > 150, out
    assert out["dark"] == [0, 0, 0], out
    # original * diffuse * (1 - 0.866 / 5) of a white light at 0.866 from the quad centre.
    lit_diffuse, lit_original = out["lit_tiles"]
    want = 255 * (lit_original[0] / 255) * (lit_diffuse[0] / 255) * (1 - 0.75 ** 0.5 / 5)
    assert grey(out["lit"], 3) and abs(out["lit"][0] - want) <= 8, out
    assert out["fps"] and out["fps_dark"]


def test_ssao_result_is_grey_and_darker_in_a_crease(tmp_path):
    out = run_child(tmp_path, """
        # A wall facing the camera and a box standing against it: the wall is darker
        # where it meets the box's sides.
        wall = scene.CreateBox(0, 0, -0.5, None, 20.0, 20.0, 1.0)
        block = scene.CreateBox(0, 0, 0.5, None, 1.0, 1.0, 1.0)
        for n in (wall, block):
            n.SetMeshColor(1.0, 1.0, 1.0, 1.0)
        scene.OpenSSAO()
        px = frames()
        # The result shows the window at half size in (200, 200)-(600, 500); its label
        # sits at the top of the lower half.
        region = [px(x, y) for x in range(204, 600, 8) for y in list(range(204, 370, 8)) + list(range(400, 500, 8))]
        out["grey"] = [c for c in region if max(c) - min(c) > 1]
        out["row"] = [px(x, 350)[0] for x in range(204, 600, 4)]
        out["fps"] = fps_drawn(px)
    """)
    assert not out["grey"], out["grey"]
    row = out["row"]
    # Open wall at both ends; the crease around the block's outline is darker.
    assert min(row) < min(row[0], row[-1]) - 40, row
    assert out["fps"]
