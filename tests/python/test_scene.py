"""The scene and its frame, driven as a script drives them, with pixels read back."""
import time

import pytest

import Vorn3DGameEngine as V

from conftest import W, H, lit_quad, near, pixel


def test_construction_and_accessors(scene):
    assert scene.GetScreenSize() == (W, H)
    assert [t.text for t in scene.TextArray] == ["FPS:60", "Batch:0"]
    assert scene.ActiveCamera.GetNodeType() == "3DCameara"
    scene.SetSceneFog(1.0, 2.0, 0.1, 0.2, 0.3)  # enabling and disabling: the C++ suite's
    assert scene.SceneFog == scene.GetSceneFog() == [1.0, 2.0, 0.1, 0.2, 0.3]
    with pytest.raises(ZeroDivisionError):
        scene.InitGL(W, 0)


def test_clear_colour_and_pixel_reads(scene):
    scene.SetBGColor(0.2, 0.4, 0.6)
    scene.DrawScene()
    assert near(pixel(W // 2, H // 2), (51, 102, 153), 1) and near(pixel(W - 1, H - 1), (51, 102, 153), 1)
    # The overlay texts are drawn in every render reference and by the C++ text tests.
    for outside in [(0, -2, 2**31 - 1, 2), (W - 1, 0, 2, 1), (0, H, 1, 1)]:
        with pytest.raises(ValueError, match="not inside"):
            V.ReadScreenPixels(*outside)


class Recorder(V.Vorn_3DGameNode):
    def update(self, delay):
        self.delays = getattr(self, "delays", []) + [delay]
        super().update(delay)


def test_frame_clock_and_statistics(scene):
    node = Recorder()
    node.OnLoad(scene)
    scene.ObjectArray_3D.append(node)
    del node
    scene.DrawScene()
    recorder = scene.ObjectArray_3D[0]
    assert recorder.delays == [0.0]
    reports = 0
    start = time.monotonic()
    while time.monotonic() - start < 1.3:
        before = scene.FPSTimer
        scene.DrawScene()
        reports += scene.FPSTimer < before
    # Reported twice a second, rounded to a whole number of frames per second.
    assert reports == 2
    assert scene.FPSText.text.startswith("FPS:") and scene.FPSText.text[4:].isdigit()
    assert sum(recorder.delays) == pytest.approx(time.monotonic() - start, abs=0.2)
    assert scene.BatchText.text.startswith("Batch:")


def test_fixed_time_step_gives_exact_frame_times(scene):
    node = Recorder()
    node.OnLoad(scene)
    scene.ObjectArray_3D.append(node)
    del node
    recorder = scene.ObjectArray_3D[0]
    with pytest.raises(ValueError, match="SetFixedTimeStep"):
        scene.SetFixedTimeStep(-0.1)
    with pytest.raises(ValueError):
        scene.SetFixedTimeStep(float("nan"))
    assert scene.GetFixedTimeStep() == 0.0
    scene.SetFixedTimeStep(0.25)
    for _ in range(5):
        scene.DrawScene()
    # The first frame has no step; the FPS report comes from the fixed clock too.
    assert recorder.delays == [0.0, 0.25, 0.25, 0.25, 0.25]
    assert scene.GetCurrTime() == 1.25 and scene.FPSText.text == "FPS:4"
    # Back on the wall clock, time goes on from the last frame instead of jumping.
    scene.SetFixedTimeStep(0)
    scene.DrawScene()
    assert 0.0 <= recorder.delays[-1] < 0.2 and scene.GetCurrTime() >= 1.25


def test_pick_request_is_consumed_by_the_next_frame(scene):
    scene.SetMouseXY(10, 12)
    assert scene.isCheckPickOnce() and (scene.MouseX, scene.MouseY) == (10, 12)
    scene.DrawScene()
    assert not scene.isCheckPickOnce()

    class LatePicker(V.Vorn_3DGameNode):
        def draw(self, rx=0, ry=0, rz=0):
            scene.SetMouseXY(1, 1)

    late = LatePicker()
    late.OnLoad(scene)
    scene.ObjectArray_3D.append(late)
    scene.SetMouseXY(5, 5, False)
    scene.DrawScene()
    # Asked for during the draw pass: kept for the next frame, which consumes it.
    assert scene.isCheckPickOnce()
    scene.ObjectArray_3D.clear()
    scene.DrawScene()
    assert not scene.isCheckPickOnce()


def test_child_camera_is_updated_through_its_parent_only(scene):
    calls = []

    class CountingCamera(V.Vorn_3DCamera):
        def update(self, delay):
            calls.append(delay)
            super().update(delay)

    parent = scene.Create3DGameNode(0, 0, 0)
    camera = CountingCamera(0, 0, 5, parent)
    camera.OnLoad(scene)
    scene.CameraList.append(camera)
    scene.DrawScene()
    assert len(calls) == 1


def test_a_submesh_past_65536_vertices_draws_with_wide_indices(scene):
    node = lit_quad(scene)
    s = node.CreateSubMesh("far")
    # 70,000 filler vertices (normal, position) far behind, then a half-size quad.
    corners = [(-0.5, -0.5), (0.5, -0.5), (0.5, 0.5), (-0.5, 0.5)]
    node.LoadVertex(s, [0, 0, 1, 0, 0, -50] * 70000 + [v for x, y in corners for v in (0, 0, 1, x, y, 0)])
    node.VertexDescArray[s] = V.GL_N3F_V3F
    node.PushTriangleVIndex(s, 70000, 70001, 70002)
    node.PushTriangleVIndex(s, 70000, 70002, 70003)
    node.SetSubMeshColor(0, 0.0, 0.0, 0.0, 1.0)  # the first quad is black now
    node.BuildVBO()
    node.ApplyFX(V.Vorn_3DFX.FX_DIFFUSE)
    node.SetSubMeshColor(s, 1.0, 1.0, 1.0, 1.0)
    assert node.IVBOArray[s].data == [70000, 70001, 70002, 70000, 70002, 70003]
    scene.DrawScene()
    assert all(c >= 254 for c in pixel(W // 2, H // 2))


def test_driver_callbacks(scene, capsys):
    V.MouseFunc(0, V.GLUT_DOWN, 40, 50)
    assert scene.isCheckPickOnce() and (scene.MouseX, scene.MouseY) == (40, 50)
    V.MotionFunc(50, 55)
    assert (scene.Scene_RotateH, scene.Scene_RotateV) == pytest.approx((1.0, 0.5))
    V.MouseFunc(0, V.GLUT_UP, 50, 55)
    V.KeyboardFunc(b"a", 3, 4)
    out = capsys.readouterr().out.splitlines()
    assert out[:3] == ["MouseFunc:", "MOUSE: 40 , 50", "Btn: 0 , 0"]
    assert out[3:5] == ["MotionFunc:", "MOUSE: 50 , 55"]
    assert out[-3:] == ["KeyboardFunc:", "MOUSE: 3 , 4", "KEY:b'a'"]
    # A press at row 0 loses the next step.
    V.MouseFunc(0, V.GLUT_DOWN, 10, 0)
    V.MotionFunc(20, 10)
    assert scene.Scene_RotateH == pytest.approx(1.0)
    V.ChangeSizeFunc(640, 480)
    assert (V.SCREEN_WIDTH, V.SCREEN_HEIGHT) == (640, 480)
    assert scene.GetScreenSize() == (W, H)


def test_sky_sphere_and_box_take_turns(scene, tmp_path):
    sky = V.Vorn_Image("RGB", (8, 8), (20, 200, 40))
    sky.save(str(tmp_path / "sky.png"))
    scene.SetAmbientColor(1.0, 1.0, 1.0)
    sphere = scene.LoadSkySphere(str(tmp_path / "sky.png"))
    assert scene.GetCurrSkyObject() is sphere and sphere.IsVisible()
    assert sphere not in list(scene.ObjectArray_3D)
    scene.DrawScene()
    assert near(pixel(W - 5, H - 5), (20, 200, 40))
    # The box replaces the sphere; the sphere is kept, hidden.
    faces = tmp_path / "SkyBox" / "blue"
    faces.mkdir(parents=True)
    for face in ("right", "left", "top", "bottom", "front", "back"):
        # PNG bytes under the face's .jpg name: pictures are decoded by content.
        V.Vorn_Image("RGB", (4, 4), (30, 60, 220)).save(str(faces / f"{face}.png"))
        (faces / f"{face}.png").rename(faces / f"{face}.jpg")
    box = scene.LoadSkyBox(str(faces))
    scene.DrawScene()
    assert near(pixel(W - 5, H - 5), (30, 60, 220))
    assert scene.GetCurrSkyObject() is box and box.IsVisible() and not sphere.IsVisible()
    assert scene.LoadSkySphere(str(tmp_path / "sky.png")) is sphere and not box.IsVisible()
