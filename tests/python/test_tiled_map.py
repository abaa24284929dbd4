"""The tile map as an editor script uses it: tables, edits, water and the picture. The
example editor is a render-reference case (tests/render)."""
import pytest

import Vorn3DGameEngine as V
from conftest import W, H, look, near, pixel

PLAIN, WATER = (200, 40, 40), (30, 60, 230)


@pytest.fixture
def resources(tmp_path):
    """Solid-colour materials in "mat": red ground, blue water."""
    folder = tmp_path / "mat"
    folder.mkdir()
    for name, colour in {"plain.png": PLAIN, "slope.png": (40, 200, 40), "bottom.png": (90, 90, 90),
                         "water.png": WATER, "blend.png": (128, 128, 128)}.items():
        V.Vorn_Image("RGB", (4, 4), colour).save(str(folder / name))
    return tmp_path


def test_factory_tables_edits_and_water(scene):
    # The edits' tables, ramps, water fill and shore search are the C++ suite's
    # (tiled_map_edit_test, tiled_map_water_test); here their values as a script gets them.
    m = scene.CreateTiledMap(rows=7, cows=7, tilesize=3.0)
    assert isinstance(m, V.Vorn_3DTiledMap) and m in scene.Get3DTerrainArray()
    assert m.TileSize == 1.0 and m.NodeType == "3DTiledMap"
    assert list(m.LayerDict) == [0] and len(m.InitTileVIndexList) == 9
    m.UpTile(2, 3)
    assert m.GetTileMask(1, 2, 3) == 1 and m.LayerTileIndexDict[1] == {23: [0, 0]}
    assert m.GetTileWall(1, 2, 3) == [0] * 9 and m.GetTileHeight(2, 3) == 1
    assert m.SlopeTile(2, 2, 1, 0) is False and m.SlopeTile(1, 3, 1, 0) is True
    m.DownTile(2, 3)
    with pytest.raises(IndexError):
        m.UpTile(0, 7)
    with pytest.raises(ValueError):
        m.SlopeTile(0, 0, 1, 1)
    with pytest.raises(RuntimeError, match="CreateBlendTeture"):
        m.SetBlendData(0, 1, 1)
    m.note = "kept"  # script state stays with the node
    assert scene.Get3DTerrainArray()[0].note == "kept"

    # A walled basin of 3 by 3 tiles.
    for z in range(7):
        for x in range(7):
            if not (2 <= x <= 4 and 2 <= z <= 4):
                m.UpTile(x, z)
    records = m.ResearchWaterTiles(0, 3, 3)
    assert records[0] == [3, 0, 3] and len(records) == 9
    m.FillWater(3, 3)
    assert len(m.VertexArray_Positon[m.GetSubMeshIndex("water")]) == 36
    assert m.ResearchTileNearestLand(0, 2, 3) == [0, 3]
    assert m.RecursionResearchTileNearestLandLength(0, 0, 2, 3, 1, 0) == 2
    assert m.GetWaterTileNearestLand(1, 1) is None
    # Open to the last row: IndexError and no water.
    open_map = scene.CreateTiledMap(rows=4, cows=4)
    with pytest.raises(IndexError):
        open_map.FillWater(1, 1)
    assert open_map.SubMeshList == ["layer_0"]


def test_picture_plain_material_and_water(scene):
    look(scene, eye=(0, 12, 0.001), sun=(0, -1, 0))
    m = scene.CreateTiledMap(rows=9, cows=9)
    m.SetTileMapMaterials("mat")
    scene.DrawScene()
    mid = pixel(W // 2, H // 2)
    assert mid[0] > 120 and mid[1] < 90 and mid[2] < 90, mid

    # A walled basin left of the centre, then water in it: only the basin changes.
    for z in range(2, 7):
        for x in range(0, 5):
            if x in (0, 4) or z in (2, 6):
                m.UpTile(x, z)
    m.ReBuildTiledMap()
    scene.DrawScene()
    before = V.ReadScreenPixels(0, 0, W, H)
    m.FillWater(2, 4)
    m.ReBuildTiledMap()
    scene.DrawScene()
    after = V.ReadScreenPixels(0, 0, W, H)

    def at(data, x, y):
        i = ((H - 1 - y) * W + x) * 3
        return tuple(data[i:i + 3])

    # Tile (2, 4) is left of the centre tile (4, 4) by two tiles.
    cx, cy = W // 2, H // 2
    tile = at(after, cx, cy)
    changed = [(x, y) for y in range(0, H, 4) for x in range(0, W, 4)
               if not near(at(before, x, y), at(after, x, y), 6)]
    assert changed, "the water changed nothing"
    xs = [x for x, _ in changed]
    assert max(xs) < cx, "water drawn outside the basin (right half)"
    assert near(tile, at(before, cx, cy), 6)
