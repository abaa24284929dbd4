"""Node drawing as scripts use it: effects with their undo by keyword, and script
overrides reached from the engine's draw walk. The draw node and the pictures are the
C++ suite's (node_draw_gl_test)."""
import pytest

import Vorn3DGameEngine as V
from conftest import ScriptScene

FX = V.Vorn_3DFX


@pytest.fixture(scope="module")
def fx(gl_context, tmp_path_factory):
    V.PyGameResManager(str(tmp_path_factory.mktemp("res")))
    return V.FXManagerInstance


def quad(node, indexed=True):
    s = node.CreateSubMesh("quad")
    node.PushQuadVertex_Postion(s, 0, 0, 0, 1, 0, 0, 1, 1, 0, 0, 1, 0)
    node.PushQuadVertex_Normal(s, 0, 0, 1, 0, 0, 1, 0, 0, 1, 0, 0, 1)
    if indexed:
        node.PushTriangleVIndex(s, 0, 1, 2)
        node.PushTriangleVIndex(s, 0, 2, 3)
    else:
        node.SetSubMeshShapeType(s, V.GL_QUADS)
    node.BuildVBO()
    return s


def test_apply_fx_by_keyword_and_unknown_programs(fx, capsys):
    root = V.Vorn_3DGameNode()
    child = V.Vorn_3DGameNode(parent=root)
    for n in (root, child):
        quad(n)
    color, diffuse = fx.GetShader(FX.FX_COLOR), fx.GetShader(FX.FX_DIFFUSE)
    root.ApplySubMeshFX(0, FX.FX_COLOR)
    assert "VSCode" in capsys.readouterr().out
    root.ApplyFX(FX.FX_DIFFUSE, True)
    assert root.SubMeshFX == child.SubMeshFX == {0: diffuse}
    root.RecoverFX(IncludeChildren=True)
    assert (root.SubMeshFX, child.SubMeshFX) == ({0: color}, {})
    root.ApplySubMeshFX(0, 399)  # no program: nothing changes
    assert "399" in capsys.readouterr().out and root.SubMeshFX == {0: color}


def test_engine_draw_walk_reaches_script_overrides(fx, capsys):
    calls = []

    class Probe(V.Vorn_3DGameNode):
        def draw(self, rx=0, ry=0, rz=0):
            calls.append(("draw", rx, ry, rz))
            super().draw(rx, ry, rz)

        def prepare_uniform_for_shader(self, submeshIndex):
            calls.append(("uniforms", submeshIndex, self.GetShader()))

    scene = ScriptScene()
    root = V.Vorn_3DGameNode()
    root.OnLoad(scene)
    probe = Probe(parent=root)
    quad(probe)
    quad(probe, indexed=False)
    probe.ApplyFX(FX.FX_DIFFUSE)
    capsys.readouterr()
    root.update(0)

    root.draw(10, 0, 0)  # children draw with no rotation
    program = fx.GetShader(FX.FX_DIFFUSE)
    assert calls == [("draw", 0, 0, 0), ("uniforms", 0, program), ("uniforms", 1, program)]
    assert probe.GetShader() is None

    calls.clear()
    root.SetVisible(False)
    root.draw()
    assert calls == []
