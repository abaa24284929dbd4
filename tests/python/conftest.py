"""Shared fixtures: one GLUT window per test process for tests that need OpenGL."""
import os

import pytest

import Vorn3DGameEngine as V

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
        V.glutInitWindowSize(320, 240)
        _window = V.glutCreateWindow("vorn pytest")
    return (320, 240)
