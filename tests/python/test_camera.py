"""Vorn_3DCamera as scripts use it: construction, script scenes, subclasses, misuse."""
import pytest

import Vorn3DGameEngine as V
from conftest import ScriptScene

C = V.Vorn_3DCamera


def xyz(v):
    return (v.x, v.y, v.z)


@pytest.fixture
def screen():
    """Restores the window size the engine believes in."""
    saved = (V.SCREEN_WIDTH, V.SCREEN_HEIGHT)
    yield
    V.SCREEN_WIDTH, V.SCREEN_HEIGHT = saved


def test_construction_reads_the_window_globals_once(screen):
    assert (C.CAMERA_SCENE, C.CAMERA_RENDERGARGET, C.CAMERA_DEPTH) == (1, 2, 3)
    V.SCREEN_WIDTH, V.SCREEN_HEIGHT = 1000, 400
    cam = C(1, 2.5, z=3)
    V.SCREEN_WIDTH = 200
    assert cam.Aspect == 2.5 and isinstance(cam, V.Vorn_3DGameNode)
    assert cam.GetNodeType() == "3DCameara" and cam.GetXYZ() == (1, 2.5, 3)
    assert cam.viewMatrix is None and cam.RenderTargetArray == {} and cam.tagetNode is None
    V.SCREEN_HEIGHT = 0
    with pytest.raises(ZeroDivisionError):
        C()


def test_target_prints_script_numbers_and_follows_a_caught_node():
    cam = C(0, 0, 10)
    assert str(cam.GetTargetPosition()) == "0.0,0.0,0.0"
    cam.LookAt(1, 2, 3)
    assert str(cam.GetTargetPosition()) == "1,2,3" and cam.targetX == 1
    node = V.Vorn_3DGameNode(4, 5, 6)
    node.update(0)
    cam.Catch(node)
    assert cam.tagetNode is node and xyz(cam.GetTargetPosition()) == (4, 5, 6)
    cam.tagetNode = None
    assert xyz(cam.GetTargetPosition()) == (1, 2, 3)


def test_scene_operations(capsys):
    cam = C(0, 10, 10)
    cam.Active()
    assert capsys.readouterr().out == "No SceneInstance\n"
    with pytest.raises(AttributeError, match="OnLoad"):
        cam.update(0.1)
    with pytest.raises(AttributeError):
        cam.draw()

    scene = ScriptScene()  # the camera does not keep its scene alive
    cam.OnLoad(scene)
    cam.InitPrespective(60, 2.0, 1.0, 50.0)
    clone = cam.CloneCamera()
    assert isinstance(clone, C) and clone.parent is cam and list(cam.children) == [clone]
    assert (clone.Fov, clone.Aspect, clone.Near, clone.Far) == (60, 2.0, 1.0, 50.0)
    assert clone.GetSceneInstance() is scene
    # Without an active camera nothing is drawn and nothing is needed of GL.
    cam.update(0.1)
    cam.draw()
    assert cam.GetViewMatrix() is None


def test_script_subclass_overrides_reach_the_engine():
    class Orbit(C):
        def __init__(self, *args):
            super().__init__(*args)
            self.updates = 0
            self.turned = 0

        def update(self, delay):
            super().update(delay)
            self.updates += 1

        def RotateY(self, ry):
            self.turned += ry

    scene, root = ScriptScene(), V.Vorn_3DGameNode()  # the node does not keep its scene alive
    root.OnLoad(scene)
    cam = Orbit(0, 0, 5, root)
    assert cam.GetNodeType() == "3DCameara" and root.children[0] is cam
    root.update(0.5)
    assert cam.updates == 1
    cam.RotateY(15)
    assert cam.turned == 15 and cam.rotateY == 0
    # The engine keeps the script object whole while it holds the camera.
    clone = cam.CloneCamera()
    del cam
    assert root.children[0].updates == 1 and type(clone) is C


def test_misuse_raises():
    cam = C()
    for call, error, text in [
        (lambda: C("a"), TypeError, "Vorn_3DCamera"),
        (lambda: C(0, 0, 0, parent=5), TypeError, "Vorn_3DCamera"),
        (lambda: cam.Catch("node"), TypeError, "Vorn_3DCamera.Catch"),
        (lambda: cam.LookAt(1, "2", 3), TypeError, "Vorn_3DCamera.LookAt"),
        (lambda: setattr(cam, "viewMatrix", [1.0, 2.0]), TypeError, "16 numbers"),
        (lambda: cam.BuildViewMatrix((0, 0, 1), V.Vector3(), V.Vector3(0, 1, 0)), TypeError, ""),
        (lambda: setattr(cam, "RenderTargetArray", {2: {"FrameBuffer": 1, "FrameTexture": 2,
                                                        "Width": 4, "Height": 4}}), KeyError, "FXID"),
    ]:
        with pytest.raises(error, match=text):
            call()
    cam.projMatrix = list(range(16))
    assert cam.GetProjMatrix() == [float(i) for i in range(16)]
    cam.RenderTargetArray = {3: {"FrameBuffer": 1, "FrameTexture": 2, "Width": 4, "Height": 4, "FXID": None}}
    assert cam.RenderTargetArray[3]["Width"] == 4
