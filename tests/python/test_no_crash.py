"""Misuse that once killed the interpreter: each case runs in a child process and must end
with the stated Python exception (or succeed where stated), never with a signal or exit."""
import os
import subprocess
import sys
import textwrap

import pytest

from conftest import window_prelude

# Child preludes: no window at all, or the window, resource manager and scene a game opens.
NO_WINDOW = "import Vorn3DGameEngine as V\n"
WINDOW = window_prelude()

# Runs the case's steps in order; prints the outcome of the step that raised, or "ok".
RUNNER = textwrap.dedent("""\
    import sys
    for step in STEPS:
        try:
            exec(step, globals())
        except BaseException as e:
            print("raised", type(e).__name__, "at", repr(step), flush=True)
            sys.exit(0)
    print("ok", flush=True)
""")

CYCLE = ("ValueError", "RecursionError")

# name, prelude, steps, accepted outcomes ("ok" or exception names).
CASES = [
    ("self child", NO_WINDOW,
     ["n = V.Vorn_3DGameNode()", "n.AddChild(n)"], CYCLE),
    ("self child refused, then the node updates, lists and loads", WINDOW,
     ["n = V.Vorn_3DGameNode()", "try:\n n.AddChild(n)\nexcept (ValueError, RecursionError): pass",
      "n.update(0.1)", "n.GetAllChildrens()", "n.OnLoad(scene)", "n.update(0.1)"], ("ok",)),
    ("two-node cycle by AddChild", NO_WINDOW,
     ["a, b = V.Vorn_3DGameNode(), V.Vorn_3DGameNode()", "a.AddChild(b)", "b.AddChild(a)"], CYCLE),
    ("two-node cycle by SetParent", NO_WINDOW,
     ["a, b = V.Vorn_3DGameNode(), V.Vorn_3DGameNode()", "b.SetParent(a)", "a.SetParent(b)"], CYCLE),
    ("two-node cycle by children.append", NO_WINDOW,
     ["a, b = V.Vorn_3DGameNode(), V.Vorn_3DGameNode()", "a.children.append(b)", "b.children.append(a)"],
     CYCLE),
    ("cycle refused, then the tree still updates", NO_WINDOW,
     ["a, b = V.Vorn_3DGameNode(), V.Vorn_3DGameNode()", "a.children.append(b)",
      "try:\n b.children.append(a)\nexcept (ValueError, RecursionError): pass",
      "a.update(0.1)", "assert len(a.GetAllChildrens()) == 1"], ("ok",)),
    # The exact messages of GL and GLUT misuse are checked in test_gl_safety.py.
    ("glutDisplayFunc(None), then an event pass", WINDOW,
     ["V.glutDisplayFunc(None)", "V.glutMainLoopEvent()"], ("ok", "TypeError", "ValueError", "RuntimeError")),
    ("script subclass made in a loop under constant collection", NO_WINDOW,
     ["import gc",
      # State set before the base is built, and a cycle through the script object.
      "class Mine(V.Vorn_3DGameNode):\n def __init__(self, i):\n  self.before = [i]\n  super().__init__(i, 0, 0)\n"
      "  self.me = self",
      "gc.set_threshold(1)",
      "root = V.Vorn_3DGameNode()\nfor i in range(1500):\n m = Mine(i)\n root.AddChild(m) if i % 3 == 0 else None\n"
      " m.update(0.1)",
      "root.update(0.1)", "assert [c.before for c in root.children[:3]] == [[0], [3], [6]]"], ("ok",)),
    ("script subclass in a scene under constant collection", WINDOW,
     ["import gc",
      "class Mine(V.Vorn_3DGameNode):\n def update(self, d):\n  super().update(d)\n  self.seen = self",
      "gc.set_threshold(1)",
      "for i in range(300):\n m = Mine()\n m.OnLoad(scene)\n scene.ObjectArray_3D.append(m)\n scene.DrawScene()"],
     ("ok",)),
]


def run_case(prelude, steps, tmp_path):
    """Runs the steps in a child; returns (exit status, outcome line, stderr)."""
    needs_window = prelude is WINDOW
    if needs_window and not os.environ.get("DISPLAY"):
        if os.environ.get("VORN_REQUIRE_GL"):
            pytest.fail("no DISPLAY although VORN_REQUIRE_GL is set")
        pytest.skip("no display for an OpenGL context")
    script = prelude + f"STEPS = {steps!r}\n" + RUNNER
    env = dict(os.environ, SDL_AUDIODRIVER="dummy", PYTHONPATH=os.pathsep.join(
        os.path.abspath(p) for p in os.environ.get("PYTHONPATH", "").split(os.pathsep) if p))
    if not needs_window:
        env.pop("DISPLAY", None)  # not even freeglut may open one behind the script's back
    done = subprocess.run([sys.executable, "-c", script], cwd=tmp_path, env=env,
                          capture_output=True, text=True, timeout=60)
    lines = done.stdout.strip().splitlines()
    return done.returncode, (lines[-1] if lines else ""), done.stderr


def _param(name, prelude, steps, accepted):
    return pytest.param(prelude, steps, accepted, id=name)


@pytest.mark.parametrize("prelude,steps,accepted", [_param(*case) for case in CASES])
def test_misuse_raises_instead_of_crashing(prelude, steps, accepted, tmp_path):
    status, outcome, stderr = run_case(prelude, steps, tmp_path)
    assert status == 0, f"the interpreter died (status {status}); last output {outcome!r}\n{stderr[-800:]}"
    got = "ok" if outcome == "ok" else outcome.split()[1] if outcome.startswith("raised") else outcome
    assert got in accepted, f"expected one of {accepted}, got {outcome!r}"
