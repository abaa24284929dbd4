"""Vorn_3DCamera as scripts use it: data, movement, targeting, subclasses, misuse."""
import pytest

import Vorn3DGameEngine as V

C = V.Vorn_3DCamera


class Scene(V.NodeScene):
    """A scene of the script's own: node numbers and a flat ground."""

    def __init__(self):
        super().__init__()
        self.last = 0

    def GenNewGameNodeID(self):
        self.last += 1
        return self.last

    def Get3DTerrainY(self, x, z):
        return 0.0


def xyz(v):
    return (v.x, v.y, v.z)


def approx(t):
    return pytest.approx(t, abs=1e-9)


@pytest.fixture
def screen():
    """Sets the window size the engine believes in, and restores it."""
    saved = (V.SCREEN_WIDTH, V.SCREEN_HEIGHT)
    yield
    V.SCREEN_WIDTH, V.SCREEN_HEIGHT = saved


def test_constants_and_construction(screen):
    assert (C.CAMERA_SCENE, C.CAMERA_RENDERGARGET, C.CAMERA_DEPTH) == (1, 2, 3)
    assert (C.CAMERA_TARGET_SCENE, C.CAMERA_TARGET_OBJECT, C.CAMERA_TARGET_POINTLIGHT) == (1, 2, 3)
    V.SCREEN_WIDTH, V.SCREEN_HEIGHT = 1000, 400
    cam = C(1, 2.5, z=3)
    V.SCREEN_WIDTH = 200
    assert cam.Aspect == 2.5 and isinstance(cam, V.Vorn_3DGameNode)
    assert cam.GetNodeType() == "3DCameara" and cam.GetXYZ() == (1, 2.5, 3)
    assert (cam.Fov, cam.Near, cam.Far, cam.upDirY) == (45.0, 0.1, 500.0, 1.0)
    assert cam.viewMatrix is None and cam.RenderTargetArray == {} and cam.tagetNode is None
    V.SCREEN_HEIGHT = 0
    with pytest.raises(ZeroDivisionError):
        C()


def test_movement_and_target():
    cam = C(0, 0, 10)
    cam.LookAt(0, 0, 0)
    scene = Scene()  # the camera does not keep its scene alive
    cam.OnLoad(scene)
    cam.update(0)  # the world matrix the moves read
    cam.MoveFront(2)
    assert cam.GetXYZ() == approx((0, 0, 8))
    cam.update(0)
    cam.MoveRight(1)  # looking down -Z: the camera goes towards -X
    assert cam.GetXYZ() == approx((-1, 0, 8))
    assert xyz(cam.GetTargetPosition()) == approx((-1, 0, 0))
    assert str(C(0, 0, 0).GetTargetPosition()) == "0.0,0.0,0.0"
    cam.LookAt(1, 2, 3)
    assert str(cam.GetTargetPosition()) == "1,2,3" and cam.targetX == 1

    m = cam.BuildViewMatrix(V.Vector3(0, 0, 10), V.Vector3(0, 0, 0), V.Vector3(0, 1, 0))
    assert m == approx([1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, -10, 1])

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

    scene = Scene()
    cam.OnLoad(scene)
    cam.InitPrespective(60, 2.0, 1.0, 50.0)
    clone = cam.CloneCamera()
    assert isinstance(clone, C) and clone.parent is cam and list(cam.children) == [clone]
    assert (clone.Fov, clone.Aspect, clone.Near, clone.Far) == (60, 2.0, 1.0, 50.0)
    assert clone.GetSceneInstance() is scene and clone.GetXYZ() == (0.0, 0.0, 0.0)
    # Without an active camera nothing is drawn and nothing is needed of GL.
    cam.update(0.1)
    cam.draw()
    assert cam.GetViewMatrix() is None
    pt, d = cam.ScreenPtTo3DPointAndDir(-1, 0)
    assert (xyz(pt), xyz(d)) == ((0, 0, 0), (0, 0, 0))


def test_follow_camera_of_a_node():
    node = V.Vorn_3DGameNode(2, 0, 0)
    cam = node.CreateFollowCamera(0, 3, 5)
    assert isinstance(cam, C) and cam.tagetNode is node and cam.followTarget is node
    assert node.FollowCamera is cam and node.CreateFollowCamera(1, 1, 1) is cam


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

    scene = Scene()
    root = V.Vorn_3DGameNode()
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
    with pytest.raises(TypeError, match="Vorn_3DCamera"):
        C("a")
    with pytest.raises(TypeError, match="Vorn_3DCamera"):
        C(0, 0, 0, parent=5)
    with pytest.raises(TypeError, match="Vorn_3DCamera.Catch"):
        cam.Catch("node")
    with pytest.raises(TypeError, match="Vorn_3DCamera.LookAt"):
        cam.LookAt(1, "2", 3)
    with pytest.raises(TypeError, match="16 numbers"):
        cam.viewMatrix = [1.0, 2.0]
    with pytest.raises(TypeError):
        cam.BuildViewMatrix((0, 0, 1), V.Vector3(), V.Vector3(0, 1, 0))
    with pytest.raises(KeyError, match="FXID"):
        cam.RenderTargetArray = {2: {"FrameBuffer": 1, "FrameTexture": 2, "Width": 4, "Height": 4}}
    cam.projMatrix = list(range(16))
    assert cam.GetProjMatrix() == [float(i) for i in range(16)]
    cam.RenderTargetArray = {3: {"FrameBuffer": 1, "FrameTexture": 2, "Width": 4, "Height": 4, "FXID": None}}
    assert cam.RenderTargetArray[3]["Width"] == 4


def test_screen_ray_and_projection_with_identity_matrices(gl_context, screen):
    V.SCREEN_WIDTH, V.SCREEN_HEIGHT = gl_context
    cam = C()
    # With identity matrices the window is the square [-1, 1] at depth -1 to 1.
    pt, d = cam.ScreenPtTo3DPointAndDir(80, 60)
    assert xyz(pt) == pytest.approx((-0.5, 0.5, -1.0), abs=1e-6)
    assert xyz(d) == pytest.approx((0, 0, 1), abs=1e-6)
    x, y, depth = cam.getScreenPosition(0.5, -0.5, 0.0)
    assert (x, y, depth) == pytest.approx((240, 180, 0.5), abs=1e-6)
    assert len(cam.BuildPerspectiveMatrix()) == 16
