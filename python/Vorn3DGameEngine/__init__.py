"""Vorn3D: a 3D game engine with a C++ core, driven from Python.

A game script imports this package, opens a GLUT window, builds a scene through the
engine's classes and hands control to the GLUT main loop.

The module globals (SCREEN_WIDTH, SCREEN_HEIGHT, DEBUG_MODE, TICKS_PER_SEC,
ResManagerInstance, FXManagerInstance, pickDrawNode, openGLScene) live in the engine:
reading one gives the engine's current value, and assigning one, as in
``Vorn3DGameEngine.SCREEN_WIDTH = 1024``, changes it for the engine too.
"""
import sys as _sys
import types as _types

from . import _engine
from ._engine import *  # noqa: F401,F403  (the engine's classes and functions)

_GLOBAL_NAMES = tuple(_engine._global_names())


class _EngineModule(_types.ModuleType):
    """The package module, with the engine's globals as live properties."""


def _global_property(name):
    return property(
        lambda self: _engine._get_global(name),
        lambda self, value: _engine._set_global(name, value),
        doc=_engine._global_doc(name),
    )


for _name in _GLOBAL_NAMES:
    setattr(_EngineModule, _name, _global_property(_name))

__all__ = [n for n in dir(_engine) if not n.startswith("_")] + list(_GLOBAL_NAMES)

_sys.modules[__name__].__class__ = _EngineModule
