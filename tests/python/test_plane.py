"""Vorn_3DPlane as scripts use it: heights, tile picking, a subclass, misuse."""
import gc
import weakref

import pytest

import Vorn3DGameEngine as V


def test_heights_are_copies_changed_through_the_operations(capsys):
    plane = V.Vorn_3DPlane(10, 0, -5)
    plane.CreatePlane(6, 6, 1.0, False, [0.5 * c + r for r in range(7) for c in range(7)])
    plane.update(0.0)
    heights = plane.HeightArray
    heights[0] = 9.0
    assert plane.HeightArray[0] == 0.0
    # x from 7 to 13, z from -8 to -2; heights inside tiles are the C++ suite's (plane_test).
    assert plane.CheckInHeight(6.9, -5.0) == (False, 0.0)
    assert plane.CheckInHeight(10.2, -4.3, FastMode=True) == (True, 4.5)
    assert capsys.readouterr().out == "Tile X:3  Z:3 Y:4.50\n"
    plane.HeightArray = range(49)
    assert plane.GetTileVertexY(0, 1) == [7.0, 8.0, 14.0, 15.0]
    # Picking gives the tile's column, row and the world position.
    hit, (tile_x, tile_z, position) = plane.checkPick(V.Vector3(7.5, 100, -7.5), V.Vector3(0, -1, 0))
    assert hit and (tile_x, tile_z) == (0, 0) and position.x == pytest.approx(7.5)
    assert plane.checkPick(V.Vector3(0, 10, 0), V.Vector3(0, -1, 0)) == (False, None)


class Hill(V.Vorn_3DPlane):
    def __init__(self, parent=None):
        super().__init__(0, 0, 0, parent)
        self.updates = 0
        self.CreatePlane(2, 2, 1.0)
        self.SetTileVertexY(1, 1, 3.0)

    def update(self, delay):
        self.updates += 1
        super().update(delay)


def test_a_script_subclass_is_driven_by_its_parent_and_collected():
    root = V.Vorn_3DGameNode()
    Hill(root)
    root.update(0.1)
    hill = root.children[0]
    assert isinstance(hill, Hill) and hill.updates == 1
    assert hill.CheckInHeight(0.25, 0.25) == (True, 3.0)

    alone = Hill()
    alone.SetPickDownFunction(lambda node, info: alone)
    ref = weakref.ref(alone)
    del alone
    gc.collect()
    assert ref() is None


@pytest.mark.parametrize(
    "call, error",
    [
        (lambda p: p.CreatePlane(-1, 2), ValueError),
        (lambda p: p.CreatePlane(2, 2, 1.0, False, [0.0] * 8), IndexError),
        (lambda p: p.CreatePlane(2, 2, 1.0, False, "heights"), TypeError),
        (lambda p: p.CreatePlane(2.5, 2), TypeError),
        (lambda p: p.SetTileVertexY(0, 0, "high"), TypeError),
        (lambda p: p.SetTileVertexY(0, 0, [1.0] * 5), ValueError),
        (lambda p: p.SetTileVertexY(2, 2, [1.0, 1.0, 1.0]), IndexError),
        (lambda p: p.GetTileVertexY(0.5, 0), TypeError),
        (lambda p: p.GetTileVertex(5, 0), IndexError),
        (lambda p: p.SetCheckTileMode(3), ValueError),
        (lambda p: p.checkPick((0, 1, 0), V.Vector3(0, -1, 0)), TypeError),
        (lambda p: p.SetPickDownFunction(42), TypeError),
        (lambda p: setattr(p, "HeightArray", [1.0, "x"]), TypeError),
    ],
)
def test_misuse_raises_and_changes_nothing(call, error):
    plane = V.Vorn_3DPlane()
    plane.CreatePlane(2, 2)
    with pytest.raises(error):
        call(plane)
    assert plane.SubMeshList == ["layer_0"] and plane.HeightArray == [0.0] * 9
