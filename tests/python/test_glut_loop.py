"""The GLUT layer as a Python host drives it: callbacks, main loop and errors."""
import pytest

import Vorn3DGameEngine as V


def test_callback_exception_ends_the_main_loop_and_is_raised_again(gl_context):
    frames = []

    def display():
        frames.append(len(frames))
        if len(frames) == 3:
            raise KeyError("stop here")

    V.glutDisplayFunc(display)
    V.glutIdleFunc(display)
    try:
        with pytest.raises(KeyError, match="stop here"):
            V.glutMainLoop()
        assert frames == [0, 1, 2]
    finally:
        V.glutIdleFunc(None)
        V.glutDisplayFunc(lambda: None)


def test_leave_main_loop_returns_and_loop_can_run_again(gl_context):
    calls = []

    def idle():
        calls.append(1)
        V.glutLeaveMainLoop()

    V.glutIdleFunc(idle)
    try:
        V.glutMainLoop()
        V.glutMainLoop()
    finally:
        V.glutIdleFunc(None)
    assert len(calls) >= 2


def test_callback_registration_checks_its_argument(gl_context):
    with pytest.raises(TypeError):
        V.glutMouseFunc(42)
    V.glutMouseFunc(None)
