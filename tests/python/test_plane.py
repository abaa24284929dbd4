"""Vorn_3DPlane as scripts use it: the grid, heights, tile picking, subclasses, misuse."""
import gc
import weakref

import pytest

import Vorn3DGameEngine as V


def make_plane(rows=2, cows=2, tilesize=2.0, heights=None, x=0, y=0, z=0):
    plane = V.Vorn_3DPlane(x, y, z)
    plane.CreatePlane(rows, cows, tilesize, False, heights)
    plane.update(0.0)
    return plane


def test_two_by_two_tiles_are_nine_points_in_row_order():
    plane = make_plane()
    assert plane.GetNodeType() == "3DPlane"
    assert (plane.Rows, plane.Cows, plane.TileSize) == (2, 2, 2.0)
    assert plane.VertexArray_Positon[0] == [[-2.0 + 2.0 * (i % 3), 0.0, -2.0 + 2.0 * (i // 3)] for i in range(9)]
    assert plane.VIndexArray[0][:4] == plane.GetTileVertexIndexList(0, 0) == [0, 1, 4, 3]
    assert plane.SubMeshShapeType[0] == V.GL_QUADS
    # Heights read as a copy; operations and whole assignment change them.
    heights = plane.HeightArray
    heights[0] = 5.0
    assert plane.HeightArray == [0.0] * 9
    plane.SetTileVertexY(1, 1, [1.0, 2.0, 3.0])
    assert plane.GetTileVertexY(1, 1) == [1.0, 2.0, 3.0, 0.0]
    plane.SetTileY(0, 0, 4)
    assert plane.HeightArray[:5] == [4.0, 4.0, 0.0, 4.0, 4.0]
    plane.HeightArray = range(9)
    assert plane.GetTileVertexY(0, 1) == [3.0, 4.0, 6.0, 7.0]


def test_sloped_heights_and_the_height_below_a_point(capsys):
    # y = 0.5 per column + 1 per row.
    heights = [0.5 * c + r for r in range(7) for c in range(7)]
    plane = make_plane(6, 6, 1.0, heights, x=10, z=-5)
    normal = plane.VertexArray_Normal[0][8]
    length = (0.25 + 1.0 + 1.0) ** 0.5
    assert normal == pytest.approx([-0.5 / length, 1.0 / length, -1.0 / length])
    assert plane.VertexArray_Normal[0][3] == [0.0, 1.0, 0.0]

    # A ramp is one plane: the height below any inner point follows it.
    assert plane.CheckInHeight(10.25, -4.5) == (True, pytest.approx(0.5 * 3.25 + 3.5))
    assert plane.CheckInHeight(6.9, -5.0) == (False, 0.0)
    # The far edge x = 13 is inside; the last row there reads past the grid.
    assert plane.CheckInHeight(13.0, -7.5) == (True, pytest.approx(3.0 + 0.5))
    with pytest.raises(IndexError):
        plane.CheckInHeight(13.0, -2.5)
    assert plane.CheckInHeight(10.2, -4.3, FastMode=True) == (True, 4.5)
    assert capsys.readouterr().out == "Tile X:3  Z:3 Y:4.50\n"


def test_tile_average_wraps_at_the_edges():
    plane = make_plane(3, 3, 1.0, [2.0**i for i in range(16)])
    assert plane.GetTileAverageY(1, 1, radiusTile=0) == 32.0
    # Points -5, -4, -3 and -1 around tile (0, 0) wrap to the end of the grid.
    assert plane.GetTileAverageY(0, 0, 1) == (2048 + 4096 + 8192 + 32768 + 1 + 2 + 8 + 16 + 32) / 9
    with pytest.raises(IndexError):
        plane.GetTileAverageY(3, 3, 1)
    with pytest.raises(IndexError):
        plane.GetTileAverageY(2, 2)


def test_check_pick_gives_tile_column_row_and_position():
    plane = make_plane(x=1)
    plane.SetRY(90)
    plane.update(0.0)
    # Turned a quarter about y, local (x, z) lands on world (1 + z, -x).
    hit, detail = plane.checkPick(V.Vector3(2.5, 10, 1.5), V.Vector3(0, -1, 0))
    assert hit is True
    tile_x, tile_z, position = detail
    assert (tile_x, tile_z) == (0, 1)
    assert (position.x, position.z) == pytest.approx((2.5, 1.5))
    corners = plane.GetTileWorldVertex(0, 1)
    assert (corners[0].x, corners[0].z) == pytest.approx((1.0, 2.0))
    assert plane.checkPick(V.Vector3(9, 10, 0), V.Vector3(0, -1, 0), 5.0) == (False, None)
    plane.SetCheckTileMode(V.Vorn_3DPlane.CHECKTILE_MODE_DRAG)
    assert plane.CheckTile_Mode == V.Vorn_3DPlane.CHECKTILE_MODE_DRAG
    assert (plane.CurrTileX, plane.CurrTileZ) == (-1, -1)


class Hill(V.Vorn_3DPlane):
    """A script's own plane: raises its middle and counts its updates."""

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
    hill = Hill(root)
    assert root.children == [hill] and isinstance(hill, V.Vorn_3DPlane)
    del hill
    root.update(0.1)
    hill = root.children[0]
    assert hill.updates == 1
    assert hill.GetTileVertexY(1, 1) == [3.0] * 4
    assert hill.CheckInHeight(0.25, 0.25) == (True, 3.0)

    # A plane whose callback refers back to itself is freed like any Python object.
    alone = Hill()
    alone.SetPickDownFunction(lambda node, info: alone)
    ref = weakref.ref(alone)
    del alone
    gc.collect()
    assert ref() is None


def test_misuse_raises():
    plane = V.Vorn_3DPlane()
    with pytest.raises(ValueError):
        plane.CreatePlane(-1, 2)
    with pytest.raises(IndexError):
        plane.CreatePlane(2, 2, 1.0, False, [0.0] * 8)
    with pytest.raises(TypeError):
        plane.CreatePlane(2, 2, 1.0, False, "heights")
    with pytest.raises(TypeError):
        plane.CreatePlane(2.5, 2)
    assert plane.SubMeshList == [] and plane.HeightArray == []

    plane.CreatePlane(2, 2)
    with pytest.raises(TypeError):
        plane.SetTileVertexY(0, 0, "high")
    with pytest.raises(TypeError):
        plane.GetTileVertexY(0.5, 0)
    with pytest.raises(ValueError):
        plane.SetTileVertexY(0, 0, [1.0] * 5)
    with pytest.raises(IndexError):
        plane.SetTileVertexY(2, 2, [1.0, 1.0, 1.0])
    assert plane.HeightArray == [0.0] * 9
    with pytest.raises(IndexError):
        plane.GetTileVertex(5, 0)
    with pytest.raises(ValueError):
        plane.SetCheckTileMode(3)
    with pytest.raises(TypeError):
        plane.checkPick((0, 1, 0), V.Vector3(0, -1, 0))
    with pytest.raises(TypeError):
        plane.SetPickDownFunction(42)
    with pytest.raises(TypeError):
        plane.HeightArray = [1.0, "x"]
