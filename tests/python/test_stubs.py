"""The type stubs written at build time: the examples type-check against them, together
with the stubs' own file, and scripts that misuse the engine are rejected."""
import os
import pathlib
import subprocess
import sys

import pytest

import Vorn3DGameEngine as V

PACKAGE_ROOT = pathlib.Path(V.__file__).resolve().parents[1]
EXAMPLES = sorted((pathlib.Path(__file__).resolve().parents[2] / "examples").glob("*.py"))
HAS_STUBS = (PACKAGE_ROOT / "Vorn3DGameEngine" / "_engine.pyi").exists()
pytestmark = pytest.mark.skipif(not HAS_STUBS, reason="stubs are written when python3-mypy is installed")

# Uses the stubs must accept: the live globals, callbacks, pybind11 defaults, factories.
GOOD = """
import Vorn3DGameEngine as V
V.SCREEN_WIDTH, V.SCREEN_HEIGHT = 640, 480
scene = V.Vorn_3Dcene()
V.openGLScene = scene
box = V.openGLScene.CreateBox(size_x=2.0)
box.SetMeshColor(1.0, 0.0, 0.0)
box.SetPickDownFunction(lambda node: None)
V.glutDisplayFunc(scene.DrawScene)
width: int = V.SCREEN_WIDTH
length: float = V.Vector3(1, 2, 3).length()
"""

# Each misuse with the mypy error it must give.
WRONG = {
    "argument_type": ("import Vorn3DGameEngine as V\nV.Vorn_3Dcene().CreateBox(0.0, 0.0, 0.0, None, 'wide')\n",
                      'Argument 5 to "CreateBox" of "Vorn_3Dcene" has incompatible type "str"'),
    "unknown_operation": ("import Vorn3DGameEngine as V\nV.Vorn_3Dcene().CreatePlane().NoSuchOperation()\n",
                          '"Vorn_3DPlane" has no attribute "NoSuchOperation"'),
    "global_type": ("import Vorn3DGameEngine as V\nV.SCREEN_WIDTH = '800'\n",
                    'expression has type "str", variable has type "int"'),
    "callback": ("import Vorn3DGameEngine as V\nV.glutIdleFunc(42)\n",
                 'Argument 1 to "glutIdleFunc" has incompatible type "int"'),
    "unknown_name": ("import Vorn3DGameEngine as V\nV.Vorn_NoSuchClass()\n",
                     'Module has no attribute "Vorn_NoSuchClass"'),
}


def mypy(files):
    """Runs mypy with the build tree's stubs; returns (exit code, report)."""
    env = {**os.environ, "MYPYPATH": str(PACKAGE_ROOT)}
    result = subprocess.run([sys.executable, "-m", "mypy", "--no-incremental", "--cache-dir", os.devnull,
                             "--check-untyped-defs", "--no-error-summary", *map(str, files)],
                            capture_output=True, text=True, env=env, timeout=300)
    return result.returncode, result.stdout + result.stderr


def test_examples_and_typical_uses_pass(tmp_path):
    good = tmp_path / "good_use.py"
    good.write_text(GOOD)
    code, report = mypy([good, *EXAMPLES])
    assert code == 0, report


def test_misuse_fails(tmp_path):
    for name, (source, _) in WRONG.items():
        (tmp_path / f"{name}.py").write_text(source)
    code, report = mypy(sorted(tmp_path.glob("*.py")))
    assert code == 1, report
    for name, (_, message) in WRONG.items():
        lines = [line for line in report.splitlines() if line.startswith(f"{tmp_path / name}.py:")]
        assert any(message in line for line in lines), f"{name}: {lines}"
