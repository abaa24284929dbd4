"""Shared fixtures and helpers: one GLUT window per test process, a scene of that size,
a scene of the script's own, a child interpreter's window, the view, and pixel reading."""
import os
import struct
import textwrap
import zlib

import pytest

import Vorn3DGameEngine as V

W, H = 320, 240
# Under the address sanitizer (preloaded into the interpreter) freed memory is held in
# quarantine and address space is reserved up front: memory figures mean nothing there.
SANITIZED = "libasan" in os.environ.get("LD_PRELOAD", "")
needs_plain_memory = pytest.mark.skipif(SANITIZED, reason="memory figures under the address sanitizer")
_window = None


@pytest.fixture(scope="session")
def gl_context():
    """Opens the process's one GLUT window (Xvfb under scripts/test) and returns its size."""
    global _window
    if _window is None:
        if not os.environ.get("DISPLAY"):
            if os.environ.get("VORN_REQUIRE_GL"):
                pytest.fail("no DISPLAY although VORN_REQUIRE_GL is set")
            pytest.skip("no display for an OpenGL context")
        V.glutInit()
        V.glutInitDisplayMode(V.GLUT_SINGLE | V.GLUT_RGBA | V.GLUT_DEPTH)
        V.glutInitWindowSize(W, H)
        _window = V.glutCreateWindow("vorn pytest")
    return (W, H)


@pytest.fixture
def resources(tmp_path):
    """The resource folder the scene's manager indexes; override it to write files first."""
    return tmp_path


@pytest.fixture
def scene(gl_context, resources):
    """A real scene of the window's size, also the global the driver callbacks use."""
    saved = (V.SCREEN_WIDTH, V.SCREEN_HEIGHT, V.openGLScene)
    V.SCREEN_WIDTH, V.SCREEN_HEIGHT = W, H
    V.PyGameResManager(str(resources))
    s = V.Vorn_3Dcene()
    s.InitGL(W, H)
    V.openGLScene = s
    V._engine._reset_driver_input()
    yield s
    V._engine._reset_driver_input()
    V.SCREEN_WIDTH, V.SCREEN_HEIGHT, V.openGLScene = saved


class ScriptScene(V.NodeScene):
    """A scene of the script's own: node numbers and flat ground at the given height."""

    def __init__(self, ground=0.0):
        super().__init__()
        self.last, self.ground = 0, ground

    def GenNewGameNodeID(self):
        self.last += 1
        return self.last

    def Get3DTerrainY(self, x, z):
        return self.ground


def pixel(x, y):
    return tuple(V.ReadScreenPixels(x, y, 1, 1))


def near(got, want, tol=3):
    return all(abs(a - b) <= tol for a, b in zip(got, want))


def window_prelude(width=320, height=240):
    """Lines for a child interpreter: the window, resource manager (the working folder)
    and scene that a game opens, as `V` and `scene`."""
    return textwrap.dedent(f"""\
        import os
        import Vorn3DGameEngine as V
        V.glutInit()
        V.glutInitDisplayMode(V.GLUT_SINGLE | V.GLUT_RGBA | V.GLUT_DEPTH)
        V.glutInitWindowSize({width}, {height})
        V.glutCreateWindow("vorn child")
        V.SCREEN_WIDTH, V.SCREEN_HEIGHT = {width}, {height}
        V.PyGameResManager(os.getcwd())
        scene = V.Vorn_3Dcene()
        scene.InitGL({width}, {height})
        V.openGLScene = scene
        """)


def look(scene, eye=(0, 0, 5), at=(0, 0, 0), sun=None):
    """Black background, full ambient light (and a white sun along `sun`); the camera at
    `eye` looking at `at`."""
    scene.SetBGColor(0.0, 0.0, 0.0)
    scene.SetAmbientColor(1.0, 1.0, 1.0)
    if sun:
        scene.SetSunLight(*sun, 1, 1, 1)
    camera = scene.GetActiveCamera()
    camera.SetXYZ(*eye)
    camera.LookAt(*at)


def png_bytes(width, height, colour):
    """A PNG of one colour: RGB or RGBA by the colour's length."""
    def chunk(kind, data):
        return struct.pack(">I", len(data)) + kind + data + struct.pack(">I", zlib.crc32(kind + data))
    rows = b"".join(b"\0" + bytes(colour) * width for _ in range(height))
    header = struct.pack(">IIBBBBB", width, height, 8, 6 if len(colour) == 4 else 2, 0, 0, 0)
    return (b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", header) + chunk(b"IDAT", zlib.compress(rows))
            + chunk(b"IEND", b""))


def lit_quad(scene):
    """A white 2 by 2 quad at the origin facing +z, in full light, seen from z = 5."""
    look(scene, sun=(0, 0, -1))
    node = scene.Create3DGameNode(0, 0, 0)
    s = node.CreateSubMesh("quad")
    node.PushQuadVertex_Postion(s, -1, -1, 0, 1, -1, 0, 1, 1, 0, -1, 1, 0)
    node.PushQuadVertex_Normal(s, *([0, 0, 1] * 4))
    node.PushTriangleVIndex(s, 0, 1, 2)
    node.PushTriangleVIndex(s, 0, 2, 3)
    node.BuildVBO()
    node.ApplyFX(V.Vorn_3DFX.FX_DIFFUSE)
    node.SetMeshColor(1.0, 1.0, 1.0, 1.0)
    return node
