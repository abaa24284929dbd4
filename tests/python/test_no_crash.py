"""Misuse that once killed the interpreter: each case runs in a child process and must end
with the stated Python exception (or succeed where stated), never with a signal or exit."""
import os
import subprocess
import sys
import textwrap

import pytest

# Child preludes: no window at all, or the window, resource manager and scene a game opens.
NO_WINDOW = "import Vorn3DGameEngine as V\n"
WINDOW = NO_WINDOW + textwrap.dedent("""\
    V.glutInit()
    V.glutInitDisplayMode(V.GLUT_SINGLE | V.GLUT_RGBA | V.GLUT_DEPTH)
    V.glutInitWindowSize(320, 240)
    V.glutCreateWindow("vorn no-crash")
    V.SCREEN_WIDTH, V.SCREEN_HEIGHT = 320, 240
    V.PyGameResManager(".")
    scene = V.Vorn_3Dcene()
    scene.InitGL(320, 240)
    V.openGLScene = scene
""")

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
GL_CONTEXT = "RuntimeError without a GL context: GL-facing operations checked for a context"
GLUT_INIT = "RuntimeError before glutInit: glut calls checked for glutInit"
NODE_CYCLE = "node cycles: refused at AddChild, SetParent and children.append (node lifetime rewrite)"
SCENE_NONE = "scene fields set to None: DrawScene raises AttributeError (node lifetime rewrite)"
SUBCLASS_GC = "script subclasses under the cycle collector (node lifetime rewrite)"
GLUT_NONE = "glut callbacks set to None: refused or harmless (glut call checks)"
LIVE_LISTS = "live registries follow list semantics while they grow (list protocol of live sequences)"

# name, prelude, steps, accepted outcomes ("ok" or exception names), xfail family or None.
CASES = [
    ("self child", NO_WINDOW,
     ["n = V.Vorn_3DGameNode()", "n.AddChild(n)"], CYCLE, NODE_CYCLE),
    ("self child, then update", NO_WINDOW,
     ["n = V.Vorn_3DGameNode()", "try:\n n.AddChild(n)\nexcept (ValueError, RecursionError): pass",
      "n.update(0.1)"], ("ok",), NODE_CYCLE),
    ("self child, then GetAllChildrens", NO_WINDOW,
     ["n = V.Vorn_3DGameNode()", "try:\n n.AddChild(n)\nexcept (ValueError, RecursionError): pass",
      "n.GetAllChildrens()"], ("ok",), NODE_CYCLE),
    ("self child, then OnLoad", WINDOW,
     ["n = V.Vorn_3DGameNode()", "try:\n n.AddChild(n)\nexcept (ValueError, RecursionError): pass",
      "n.OnLoad(scene)", "n.update(0.1)"], ("ok",), NODE_CYCLE),
    ("two-node cycle by AddChild", NO_WINDOW,
     ["a, b = V.Vorn_3DGameNode(), V.Vorn_3DGameNode()", "a.AddChild(b)", "b.AddChild(a)"], CYCLE, NODE_CYCLE),
    ("two-node cycle by SetParent", NO_WINDOW,
     ["a, b = V.Vorn_3DGameNode(), V.Vorn_3DGameNode()", "b.SetParent(a)", "a.SetParent(b)"], CYCLE, NODE_CYCLE),
    ("two-node cycle by children.append", NO_WINDOW,
     ["a, b = V.Vorn_3DGameNode(), V.Vorn_3DGameNode()", "a.children.append(b)", "b.children.append(a)"],
     CYCLE, NODE_CYCLE),
    ("cycle refused, then the tree still updates", NO_WINDOW,
     ["a, b = V.Vorn_3DGameNode(), V.Vorn_3DGameNode()", "a.children.append(b)",
      "try:\n b.children.append(a)\nexcept (ValueError, RecursionError): pass",
      "a.update(0.1)", "assert len(a.GetAllChildrens()) == 1"], ("ok",), NODE_CYCLE),
    ("BatchText None, then DrawScene", WINDOW,
     ["scene.BatchText = None", "scene.DrawScene()"], ("AttributeError",), SCENE_NONE),
    ("DrawScene without a context", NO_WINDOW,
     ["s = V.Vorn_3Dcene()", "s.DrawScene()"], ("RuntimeError",), GL_CONTEXT),
    ("node draw without a context", NO_WINDOW,
     ["n = V.Vorn_3DGameNode()", "n.draw()"], ("RuntimeError",), GL_CONTEXT),
    ("text draw without a context", NO_WINDOW,
     ["t = V.Vorn_Text(1.0, 2.0, 'hi')", "t.draw()"], ("RuntimeError",), GL_CONTEXT),
    ("ReadScreenPixels before glutInit", NO_WINDOW,
     ["V.ReadScreenPixels(0, 0, 1, 1)"], ("RuntimeError",), GLUT_INIT),
    ("SaveScreenshot before glutInit", NO_WINDOW,
     ["V.SaveScreenshot('shot.png')"], ("RuntimeError",), GLUT_INIT),
] + [
    (f"{call} before glutInit", NO_WINDOW, [f"V.{call}"], ("RuntimeError",), GLUT_INIT)
    for call in ["glutGet(V.GLUT_WINDOW_WIDTH)", "glutPostRedisplay()", "glutCreateWindow('w')",
                 "glutDisplayFunc(print)", "glutIdleFunc(print)", "glutReshapeWindow(10, 10)",
                 "glutShowWindow()", "glutHideWindow()", "glutMainLoopEvent()", "glutMainLoop()"]
] + [
    ("glutDisplayFunc(None), then an event pass", WINDOW,
     ["V.glutDisplayFunc(None)", "V.glutMainLoopEvent()"], ("ok", "TypeError", "ValueError", "RuntimeError"),
     GLUT_NONE),
    ("iterating TextArray while creating texts", WINDOW,
     ["scene.Create2DText(0.0, 0.0, 'first')",
      "seen = 0\nfor t in scene.TextArray:\n seen += 1\n if seen > 50: break\n scene.Create2DText(1.0, 1.0, 'more')",
      "assert seen == 51, seen"], ("ok",), LIVE_LISTS),
    ("script subclass made in a loop under constant collection", NO_WINDOW,
     ["import gc",
      "class Mine(V.Vorn_3DGameNode):\n def __init__(self, *a):\n  super().__init__(*a)\n  self.me = self",
      "gc.set_threshold(1)",
      "root = V.Vorn_3DGameNode()\nfor i in range(1500):\n m = Mine()\n root.AddChild(m) if i % 3 == 0 else None\n"
      " m.update(0.1)",
      "root.update(0.1)"], ("ok",), SUBCLASS_GC),
    ("script subclass in a scene under constant collection", WINDOW,
     ["import gc",
      "class Mine(V.Vorn_3DGameNode):\n def update(self, d):\n  super().update(d)\n  self.seen = self",
      "gc.set_threshold(1)",
      "for i in range(300):\n m = Mine()\n m.OnLoad(scene)\n scene.ObjectArray_3D.append(m)\n scene.DrawScene()"],
     ("ok",), SUBCLASS_GC),
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


def _param(name, prelude, steps, accepted, family):
    return pytest.param(prelude, steps, accepted, id=name)


@pytest.mark.parametrize("prelude,steps,accepted", [_param(*case) for case in CASES])
def test_misuse_raises_instead_of_crashing(prelude, steps, accepted, tmp_path):
    status, outcome, stderr = run_case(prelude, steps, tmp_path)
    assert status == 0, f"the interpreter died (status {status}); last output {outcome!r}\n{stderr[-800:]}"
    got = "ok" if outcome == "ok" else outcome.split()[1] if outcome.startswith("raised") else outcome
    assert got in accepted, f"expected one of {accepted}, got {outcome!r}"
