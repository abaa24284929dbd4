// Vorn_3DTiledMap: the editable tile map. Its tables are read as copies (dicts of
// lists); scripts change them through the edit operations.
#include <string>
#include <vector>

#include "bind_node.h"
#include "landscape/tiled_map.h"
#include "node_views.h"

namespace vorn::py_bind {
namespace {

using Map = Vorn_3DTiledMap;
using MapClass = py::class_<Map, Vorn_3DPlane, PyNode<Map>, std::shared_ptr<Map>>;

template <class V>
py::dict layer_lists(const OrderedMap<int, std::vector<V>>& table) {
  py::dict out;
  for (const auto& [layer, values] : table) out[py::int_(layer)] = py::cast(values);
  return out;
}

py::list faces_to_py(const tiles::FaceList<Vector3>& faces) {
  py::list out;
  for (const auto& face : faces) out.append(py::cast(std::vector<Vector3>(face.begin(), face.end())));
  return out;
}

py::list uvs_to_py(const tiles::FaceList<tiles::UV>& faces) {
  py::list out;
  for (const auto& face : faces) {
    py::list f;
    for (const auto& uv : face) f.append(make_list(uv[0], uv[1]));
    out.append(f);
  }
  return out;
}

py::list quads_to_py(const tiles::QuadList& quads) {
  py::list out;
  for (const auto& q : quads) out.append(make_list(q[0], q[1], q[2], q[3]));
  return out;
}

py::tuple model_to_py(const tiles::TileModel& m) {
  return py::make_tuple(faces_to_py(m.vertices), faces_to_py(m.normals), uvs_to_py(m.uvs));
}

// A script's nine faces of four Vector3, or TypeError.
tiles::FaceList<Vector3> faces_arg(py::handle value, const char* what) {
  tiles::FaceList<Vector3> out;
  const std::string where = std::string("Vorn_3DTiledMap.CheckComboTileVertex: ") + what;
  if (!py::isinstance<py::list>(value) || py::len(value) != tiles::kFaceCount) {
    throw py::type_error(where + " must be a list of 9 faces");
  }
  for (int f = 0; f < tiles::kFaceCount; ++f) {
    py::handle face = value.cast<py::list>()[f];
    if (!py::isinstance<py::list>(face) || py::len(face) != 4) throw py::type_error(where + ": each face is a list of 4");
    for (int k = 0; k < 4; ++k) out[f][k] = face.cast<py::list>()[k].cast<Vector3>();
  }
  return out;
}

tiles::QuadList quads_arg(py::handle value) {
  tiles::QuadList out;
  if (!py::isinstance<py::list>(value) || py::len(value) != tiles::kFaceCount) {
    throw py::type_error("Vorn_3DTiledMap.CheckComboTileVertex: TileVIndexList must be a list of 9 quads");
  }
  for (int f = 0; f < tiles::kFaceCount; ++f) {
    const auto q = value.cast<py::list>()[f].cast<std::vector<int>>();
    if (q.size() != 4) throw py::type_error("Vorn_3DTiledMap.CheckComboTileVertex: each quad has 4 indices");
    for (int k = 0; k < 4; ++k) out[f][k] = q[k];
  }
  return out;
}

// Writes the changed faces back into the script's own lists.
void faces_back(py::handle value, const tiles::FaceList<Vector3>& faces) {
  for (int f = 0; f < tiles::kFaceCount; ++f) {
    py::list face = value.cast<py::list>()[f].cast<py::list>();
    for (int k = 0; k < 4; ++k) face[k] = py::cast(faces[f][k]);
  }
}

void bind_construction(MapClass& cls) {
  def_node_init<Map, PyNode<Map>>(cls, "Vorn_3DTiledMap", "__init__(self, x=0, y=0, z=0, parent=None)\n\n"
                                  "An empty tile map; CreateTiledMap builds the grid and the tables.");
  cls.attr("TILEDMAP_TEXTURE_PLAIN") = Map::TILEDMAP_TEXTURE_PLAIN;
  cls.attr("TILEDMAP_TEXTURE_SLOPE") = Map::TILEDMAP_TEXTURE_SLOPE;
  cls.attr("TILEDMAP_TEXTURE_HOLLOW") = Map::TILEDMAP_TEXTURE_HOLLOW;
  cls.attr("TILEDMAP_TEXTURE_BOTTOM") = Map::TILEDMAP_TEXTURE_BOTTOM;
  cls.attr("TILEDMAP_TEXTURE_SIZE") = Map::TILEDMAP_TEXTURE_SIZE;
  const char* faces[] = {"TILE_FACE_BASE_FRONT",   "TILE_FACE_BASE_RIGHT",   "TILE_FACE_BASE_BACK",
                         "TILE_FACE_BASE_LEFT",    "TILE_FACE_MIDDLE_FRONT", "TILE_FACE_MIDDLE_RIGHT",
                         "TILE_FACE_MIDDLE_BACK",  "TILE_FACE_MIDDLE_LEFT",  "TILE_FACE_TOP"};
  for (int f = 0; f < 9; ++f) cls.attr(faces[f]) = f;
  cls.attr("TILE_FACE_VERTEX_LEFTBOTTOM") = 0;
  cls.attr("TILE_FACE_VERTEX_RIGHTBOTTOM") = 1;
  cls.attr("TILE_FACE_VERTEX_RIGHTTOP") = 2;
  cls.attr("TILE_FACE_VERTEX_LEFTTOP") = 3;

  cls.def("CreateTiledMap", &Map::CreateTiledMap, py::arg("rows") = 20, py::arg("cows") = 20, py::arg("tilesize") = 1.0,
          "Builds the grid (layer 0, tiles of 1.0 whatever tilesize says) and the tables:\n"
          "LayerDict[0] holds every tile, every ground quad has mask 1.")
      .def("GetTileMask", &Map::GetTileMask, py::arg("layerIndex"), py::arg("tileX"), py::arg("tileZ"),
           "The tile's mask on a layer: 0 none, 1 block, 2 trimmed block, 3 ramp. 0 outside\n"
           "the grid or on a layer that does not exist.")
      .def(
          "GenTexCoords", [](Map& m, int s, bool rebuild) { m.GenTexCoords(s, rebuild); }, py::arg("submeshIndex"),
          py::arg("RebuildVBO") = true,
          "Grid texture coordinates in tile units for the grid (submesh 0) while it has none;\n"
          "layer submeshes carry their blocks' own coordinates.");
}

void bind_materials(MapClass& cls) {
  cls.def("SetTileMapMaterials", &Map::SetTileMapMaterials, py::arg("materialDir"),
          "Loads plain, slope, bottom, water and blend (\".jpg\", else \".png\") from materialDir\n"
          "below the resource root onto keys 0 to 4, gives every submesh the set and FX_TILEDMAP.\n"
          "A missing file prints \"TiledMap Texture <name> Lost !\", an unreadable one\n"
          "\"TiledMap Texture <name> Unreadable !\"; the others still load.")
      .def("LoadCustomTexture", &Map::LoadCustomTexture, py::arg("imageFileName"), py::arg("index") = 0,
           "One more texture at key index + 5. A missing file prints \"TiledMap Custom Texture\n"
           "<name> Lost !\"; ValueError for a file that does not decode.")
      .def("CreateBlendTeture", &Map::CreateBlendTeture, py::arg("size") = 128,
           "A black size by size RGB blend map at key 4 (channel 4 of every submesh).\n"
           "ValueError for a size below 1 or past the driver's largest texture.")
      .def("SetBlendData", &Map::SetBlendData, py::arg("index"), py::arg("x"), py::arg("z"), py::arg("radius") = 0.5,
           py::arg("add") = 128,
           "Paints channel index (0, 1, 2) of the blend map at tile coordinates (x, z) with a\n"
           "round soft brush of radius tiles: add at the centre, nothing at the rim, each byte\n"
           "clamped to 0..255 (a negative add erases). Uploads the rows it changed.\n"
           "RuntimeError before CreateBlendTeture.")
      .def("SetTextureDensity", &Map::SetTextureDensity, py::arg("density"),
           "Stores TiledMapTextureScale and gives it to every texture of every submesh.")
      .def("ReBuildLayerMaterial", &Map::ReBuildLayerMaterial,
           "Every submesh gets the whole material set, each texture on the channel of its key.")
      .def("ReBuildTiledMap", &Map::ReBuildTiledMap, "BuildVBO, then ReBuildLayerMaterial.");
}

void bind_geometry(MapClass& cls) {
  cls.def(
         "GetInitTileVertexDataModel",
         [](const Map& m, int layerIndex) { return model_to_py(tiles::GetInitTileVertexDataModel(layerIndex, m.TileSize)); },
         py::arg("layerIndex"),
         "(TileVertexList, TileNormalList, TileUVList) of a block of that layer's direction:\n"
         "nine faces of four entries each, local to the tile's origin.")
      .def("RefreshLayerWall", &Map::RefreshLayerWall, py::arg("layerIndex"),
           "Recomputes every tile's wall record on the layer from its neighbours' masks.")
      .def(
          "GetTileWall", [](const Map& m, int layer, std::int64_t x, std::int64_t z) { return py::cast(m.GetTileWall(layer, x, z)); },
          py::arg("layerIndex"), py::arg("tileX"), py::arg("tileZ"),
          "The tile's wall record: neighbour masks front, right, back, left, twice, then 0.")
      .def(
          "CheckComboTileVertex",
          [](const Map& m, int layer, py::handle vertices, py::handle normals, py::handle quads, int front, int right,
             int back, int left) {
            auto v = faces_arg(vertices, "TileVertexList");
            auto n = faces_arg(normals, "TileNormalList");
            auto q = quads_arg(quads);
            tiles::CheckComboTileVertex(layer, v, n, q, front, right, back, left, m.TileSize);
            faces_back(vertices, v);
            py::list ql = quads.cast<py::list>();
            for (int f = 0; f < tiles::kFaceCount; ++f) ql[f] = make_list(q[f][0], q[f][1], q[f][2], q[f][3]);
          },
          py::arg("LayerIndex"), py::arg("TileVertexList"), py::arg("TileNormalList"), py::arg("TileVIndexList"),
          py::arg("wall_front"), py::arg("wall_right"), py::arg("wall_back"), py::arg("wall_left"),
          "Melts a block into its neighbours: changes the lists it is given.")
      .def("ReBuildLayerTiles", &Map::ReBuildLayerTiles, py::arg("LayerIndex"),
           "Regenerates a layer's walls, index list and full blocks; layer 0 is left alone.")
      .def("TrimTile", &Map::TrimTile, py::arg("LayerIndex"), py::arg("tileX"), py::arg("tileZ"),
           "Gives the block of the layer under a raised tile its full height, walls only (mask 2).");
}

void bind_editing(MapClass& cls) {
  cls.def("UpTile", &Map::UpTile, py::arg("tileX"), py::arg("tileZ"), py::arg("ReBuild") = false,
          "Raises the tile one layer. On a lowered tile this undoes the last lowering. IndexError\n"
          "past the map (negative indices wrap), before anything changes. With ReBuild the\n"
          "buffers are rebuilt at once, else on ReBuildTiledMap.")
      .def("DownTile", &Map::DownTile, py::arg("tileX"), py::arg("tileZ"), py::arg("ReBuild") = false,
           "Lowers the tile one layer; the mirror of UpTile.")
      .def("SlopeTile", &Map::SlopeTile, py::arg("tileX"), py::arg("tileZ"), py::arg("moveX"), py::arg("moveZ"),
           py::arg("ReBuild") = false,
           "A ramp on the tile toward the neighbour at (tileX + moveX, tileZ + moveZ) when that\n"
           "neighbour is one level higher (from the grid or above) or one lower (from the grid\n"
           "or below). Nothing otherwise, or when the tile's block is a ramp already. True when\n"
           "a ramp was built; DownTile (or UpTile below the grid) takes it away.")
      .def("MakeSlope", &Map::MakeSlope, py::arg("tileX"), py::arg("tileZ"),
           "SlopeTile toward (-1, 0), (1, 0), (0, -1), (0, 1) in turn.")
      .def("DropLayer0Tile", &Map::DropLayer0Tile, py::arg("tileX"), py::arg("tileZ"), py::arg("hollowMode") = false,
           "Takes the tile's quad out of the grid's index list (mask 0 on layer 0); in\n"
           "hollowMode the grid points around it get upright normals.");
}

void bind_water(MapClass& cls) {
  const auto records = [](const std::vector<Map::WaterTile>& tiles) {
    py::list out;
    for (const auto& t : tiles) out.append(make_list(t[0], t[1], t[2]));
    return out;
  };
  cls.def("GetTileHeight", &Map::GetTileHeight, py::arg("tileX"), py::arg("tileZ"),
          "The lowest layer holding the tile; 999 if none does. The tile index tileZ * Cows +\n"
          "tileX follows the sequence rule: IndexError past the last row.")
      .def("GetTileDistance", &Map::GetTileDistance, py::arg("tileX1"), py::arg("tileZ1"), py::arg("tileX2"),
           py::arg("tileZ2"), "The Euclidean distance in tiles.")
      .def("GetWaterTileAvgHeight", &Map::GetWaterTileAvgHeight, py::arg("tileX"), py::arg("tileZ"),
           "Mean GetTileHeight of the tile and its eight neighbours.")
      .def(
          "ResearchWaterTiles",
          [records](const Map& m, int height, std::int64_t x, std::int64_t z) {
            return records(m.ResearchWaterTiles(height, x, z));
          },
          py::arg("height"), py::arg("tileX"), py::arg("tileZ"),
          "Records [x, height, z] of the start and of eight walks that stop at the bank;\n"
          "tiles reached twice appear twice.")
      .def(
          "RecursionResearchWaterTiles",
          [records](const Map& m, int height, std::int64_t x, std::int64_t z, int mx, int mz) {
            return records(m.RecursionResearchWaterTiles(height, x, z, mx, mz));
          },
          py::arg("height"), py::arg("tileX"), py::arg("tileZ"), py::arg("moveX"), py::arg("moveZ"),
          "One walk: a straight line, or a diagonal with straight walks from each of its tiles.")
      .def("FillWater", &Map::FillWater, py::arg("tileX"), py::arg("tileZ"),
           "Floods what the walks from the tile reach with the map's one translucent \"water\"\n"
           "submesh (refilled in place on a second call). A failure (a basin open to the last\n"
           "row) raises IndexError and changes nothing. Call ReBuildTiledMap to draw it.")
      .def(
          "ResearchTileNearestLand",
          [](const Map& m, int height, std::int64_t x, std::int64_t z) { return py::cast(m.ResearchTileNearestLand(height, x, z)); },
          py::arg("height"), py::arg("tileX"), py::arg("tileZ"),
          "[x, z] one step past the nearest tile above height along eight walks; on a tie the\n"
          "direction listed first (left, right, front, back, diagonals) wins.")
      .def(
          "RecursionResearchTileNearestLand",
          [](const Map& m, int height, std::int64_t x, std::int64_t z, std::int64_t nx, std::int64_t nz, int mx, int mz) {
            return py::cast(m.RecursionResearchTileNearestLand(height, x, z, nx, nz, mx, mz));
          },
          py::arg("height"), py::arg("tileX"), py::arg("tileZ"), py::arg("nextTileX"), py::arg("nextileZ"),
          py::arg("moveX"), py::arg("moveZ"), "One walk of the shore search from (nextTileX, nextileZ).")
      .def("RecursionResearchTileNearestLandLength", &Map::RecursionResearchTileNearestLandLength, py::arg("length"),
           py::arg("height"), py::arg("tileX"), py::arg("tileZ"), py::arg("moveX"), py::arg("moveZ"),
           "The steps of one walk to the bank, added to length.")
      .def("GetWaterTileNearestLand", &Map::GetWaterTileNearestLand, py::arg("tileX"), py::arg("tileZ"),
           "Accepts its arguments and does nothing.");
}

void bind_fields(MapClass& cls) {
  cls.def_property_readonly("LayerDict", [](const Map& m) { return layer_lists(m.LayerDict); },
                            "{layer: [one entry per tile, 0 or more where the layer holds the tile, else -1]} (a copy).")
      .def_property_readonly("LayerTileMaskArray", [](const Map& m) { return layer_lists(m.LayerTileMaskArray); },
                             "{layer: [mask per tile]} (a copy).")
      .def_property_readonly("LayerTileWallArray", [](const Map& m) { return layer_lists(m.LayerTileWallArray); },
                             "{layer: [nine-entry wall record per tile]} (a copy).")
      .def_property_readonly(
          "LayerTileIndexDict",
          [](const Map& m) {
            py::dict out;
            for (const auto& [layer, blocks] : m.LayerTileIndexDict) {
              py::dict d;
              for (const auto& [tile, where] : blocks) d[py::int_(tile)] = make_list(where[0], where[1]);
              out[py::int_(layer)] = d;
            }
            return out;
          },
          "{layer: {tile index: [currVertexIndex, currQuadIndex]}} (a copy).")
      .def_property_readonly(
          "TiledMapTextureDict",
          [](const Map& m) {
            py::dict out;
            for (const auto& [key, id] : m.TiledMapTextureDict) out[py::int_(key)] = id;
            return out;
          },
          "{material key: GL texture id} (a copy); key 4 is the blend map once made.")
      .def_property_readonly(
          "InitTileVertexList",
          [](const Map& m) {
            py::dict out;
            for (const auto& [dir, model] : m.InitTileModel) out[py::int_(dir)] = faces_to_py(model.vertices);
            return out;
          },
          "{1: faces, -1: faces} of the block model's positions.")
      .def_property_readonly(
          "InitTileNormalList",
          [](const Map& m) {
            py::dict out;
            for (const auto& [dir, model] : m.InitTileModel) out[py::int_(dir)] = faces_to_py(model.normals);
            return out;
          },
          "{1: faces, -1: faces} of the block model's normals.")
      .def_property_readonly(
          "InitTileUVList",
          [](const Map& m) {
            py::dict out;
            for (const auto& [dir, model] : m.InitTileModel) out[py::int_(dir)] = uvs_to_py(model.uvs);
            return out;
          },
          "{1: faces, -1: faces} of the block model's texture coordinates.")
      .def_property_readonly("InitTileVIndexList", [](const Map& m) { return quads_to_py(m.InitTileVIndexList); },
                             "The nine index quads of a block.")
      .def_property_readonly("TileWaterHeightArray", [](const Map& m) { return py::cast(m.TileWaterHeightArray); },
                             "Per tile the level of the water over it; 999 where there is none (a copy).")
      .def_property_readonly("TileRoadTypeArray", [](const Map& m) { return py::cast(m.TileRoadTypeArray); },
                             "Per tile its road type; 0 no road (a copy).")
      .def_readwrite("TiledMapTextureScale", &Map::TiledMapTextureScale, "Texture density of every submesh.")
      .def_property_readonly("CurrTexDir", [](const Map& m) { return m.CurrTexDir; },
                             "Folder of the material set, or None.")
      .def_property_readonly(
          "BlendTexturePixelArray",
          [](const Map& m) -> py::object {
            if (m.BlendTexturePixelArray.empty()) return py::none();
            return py::bytes(reinterpret_cast<const char*>(m.BlendTexturePixelArray.data()),
                             m.BlendTexturePixelArray.size());
          },
          "The blend map's RGB bytes, row by row (a copy), or None before CreateBlendTeture.")
      .def_property_readonly("BlendTextureID", [](const Map& m) { return m.BlendTextureID; },
                             "GL texture id of the blend map, or None.");
}

}  // namespace

void bind_tiled_map(py::module_& m) {
  MapClass cls(m, "Vorn_3DTiledMap",
               "A grid (layer 0) that an editor raises, lowers and slopes tile by tile. Every other\n"
               "layer is one submesh \"layer_<n>\" of bevelled blocks, one layer per unit of height;\n"
               "neighbouring blocks melt into one surface. Raising a lowered tile, or lowering a\n"
               "raised one, undoes the edit. A painted blend map mixes the materials, and\n"
               "FillWater floods a basin.",
               py::dynamic_attr(), twin_type_setup());
  bind_construction(cls);
  bind_materials(cls);
  bind_geometry(cls);
  bind_editing(cls);
  bind_water(cls);
  bind_fields(cls);
}

}  // namespace vorn::py_bind
