"""Picking and the axis gizmo, driven as a user drives them: mouse callbacks, frames.
The same click and drag on screen is the lit-picking render-reference case."""
import pytest

import Vorn3DGameEngine as V

from conftest import W, H


def xyz(v):
    return (v.x, v.y, v.z)


def tall_box(scene):
    # Taller than wide, so that the ray through its centre meets a face inside and not
    # on an edge: it enters the +z face at (0, 0.25, 0.25).
    return scene.CreateBox(0, 0, 0, None, 0.5, 1.0, 0.5)


def test_click_selects_box_and_fires_its_pick_event(scene, capsys):
    box = tall_box(scene)
    box.SetPickTriangleVisible(True)
    calls = []
    box.SetPickDownFunction(lambda node, detail: calls.append((node, detail)))

    V.MouseFunc(0, 0, W // 2, H // 2)
    scene.DrawScene()

    axis = scene.CurrObjectAxis
    assert axis.GameNode is box and axis.GetType() == "t"
    assert not scene.isCheckPickOnce()
    assert len(calls) == 1
    node, (position, corners, none) = calls[0]
    assert node is box and none is None
    assert xyz(position) == pytest.approx((0.0, 0.25, 0.25), abs=1e-4)
    assert all(abs(c.z - 0.25) < 1e-9 for c in corners)  # the triangle of the +z face
    # The scene's draw node marks that triangle.
    marked = scene.CurrDrawNode.VertexArray_Positon[0]
    assert [tuple(v) for v in marked] == [pytest.approx(xyz(c)) for c in corners]

    # The request was consumed: a further frame fires nothing.
    scene.DrawScene()
    assert len(calls) == 1


def test_click_beside_selects_nothing(scene):
    box = tall_box(scene)
    calls = []
    box.SetPickDownFunction(lambda node, detail: calls.append(detail))
    V.MouseFunc(0, 0, 20, 20)
    scene.DrawScene()
    assert scene.CurrObjectAxis.GameNode is None and calls == []
    assert box.checkPick(V.Vector3(0, 10, 10), V.Vector3(1, 0, 0)) == (False, None)


def test_gizmo_arrow_picked_and_dragged_along_x(scene, capsys):
    box = tall_box(scene)
    axis = scene.CurrObjectAxis
    V.MouseFunc(0, 0, W // 2, H // 2)
    scene.DrawScene()
    V.MouseFunc(0, 1, W // 2, H // 2)
    assert axis.GameNode is box

    # Press on the bar of the x arrow, beside the box.
    px, py = (round(c) for c in scene.GetActiveCamera().getScreenPosition(1.5, 0.0, 0.0)[:2])
    capsys.readouterr()
    V.MouseFunc(0, 0, px, py)
    scene.DrawScene()
    assert axis.PickedAxis == "x" and axis.GameNode is box
    assert "picked X\n" in capsys.readouterr().out

    # Motion with the button held: the gizmo takes the drag, the world does not turn.
    V.MotionFunc(px + 8, py + 6)
    assert axis.Dragging and scene.Scene_RotateH == 0 and scene.Scene_RotateV == 0
    assert box.X == 0  # the move waits for the draw pass
    scene.DrawScene()
    # The step's formula and direction are the C++ suite's (axis_gl_test), the arrow's
    # colours the lit-picking render reference's.
    assert box.X == pytest.approx(0.28, abs=1e-3) and (box.Y, box.Z) == (0, 0)
    assert (axis.offsetX, axis.offsetY) == (0.0, 0.0)

    # Release ends the drag; without a picked axis the gizmo refuses the next one.
    V.MouseFunc(0, 1, px + 8, py + 6)
    assert not axis.Dragging
    axis.PickedAxis = None
    assert scene.BeginDragAxis(5, 5) is False


def test_select_by_tag_and_other_types(scene):
    box = tall_box(scene)
    box.SetTag("crate")
    scene.Select3DObjectByTag("crate", "s")
    axis = scene.CurrObjectAxis
    assert axis.GameNode is box and axis.GetType() == "s"
    box.SetBoundingBoxVisible(False)
    scene.DrawScene()  # the scale shape draws; the box's own flag comes back
    assert not box.IsBoundingBoxVisible()
    axis.PickedAxis = "x"
    assert scene.BeginDragAxis(5, 0) is False  # only "t" drags
    scene.Select3DObjectByTag("nothing")
    assert axis.GameNode is None and axis.GetType() == "t"
    assert scene.CheckPickAxis(0, 0, False) is False


def test_terrain_height_through_registry(scene):
    plane = scene.CreatePlane(10, 0, 0, None, 4, 4, 1.0)  # covers x 8..12, z -2..2
    plane.HeightArray = [2.0] * 25
    other = scene.CreatePlane(10, 0, 0, None, 8, 8, 1.0)  # covers the first and more
    other.HeightArray = [5.0] * 81
    # The live registry takes what the script appends; a plain node is passed over.
    scene.ObjectArray_3DTerrain.extend([scene.Create3DGameNode(), plane, other])
    scene.DrawScene()
    assert scene.Get3DTerrainY(10.3, 0.4) == pytest.approx(2.0)
    assert scene.Get3DTerrainY(13.0, 3.0) == pytest.approx(5.0)  # only the larger one
    assert scene.Get3DTerrainY(0.0, 0.0) == 0.0
    walker = scene.Create3DGameNode(10.5, 0, 0.5)
    walker.StandOnGround(True)
    scene.DrawScene()
    assert walker.GetWorldXYZ().y == pytest.approx(2.0)

