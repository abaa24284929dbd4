"""The tile map as an editor script uses it: tables, edits and water. Materials, raised
tiles and water on screen are the tile-editor render-reference case (tests/render)."""
import pytest

import Vorn3DGameEngine as V


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
