// The landscape classes: Vorn_3DPlane, the height grid the others build on.
#include <string>
#include <type_traits>
#include <vector>

#include "bind_node.h"
#include "landscape/plane.h"
#include "node_views.h"

namespace vorn::py_bind {
namespace {

using Plane = Vorn_3DPlane;
using PlaneClass = py::class_<Plane, Vorn_3DGameNode, PyNode<Plane>, std::shared_ptr<Plane>>;

// A script sequence of numbers (not a string) as heights.
std::vector<double> heights_arg(py::handle value, const char* where, const char* what) {
  if (!py::isinstance<py::sequence>(value) || py::isinstance<py::str>(value)) {
    throw py::type_error(std::string(where) + ": " + what + " must be a sequence of numbers, not " +
                         std::string(py::str(py::type::handle_of(value).attr("__name__"))));
  }
  std::vector<double> out;
  out.reserve(py::len(value));
  for (py::handle item : value) out.push_back(number_arg(item, where, what));
  return out;
}

py::list corners_list(const std::array<Plane::Corner, 4>& corners) {
  py::list out;
  for (const auto& c : corners) out.append(make_list(c[0], c[1], c[2]));
  return out;
}

py::object tile_detail(const TilePick& hit) { return make_list(hit.tileX, hit.tileZ, hit.position); }

// The plane's pick callback: it hands the script the plane's own detail,
// [tileX, tileZ, position], taken from the hit that fired the event.
PickCallback plane_pick_callback(py::handle function, const char* where) {
  PickCallback cb;
  if (function.is_none()) return cb;
  if (!PyCallable_Check(function.ptr())) throw py::type_error(std::string(where) + ": function must be callable or None");
  cb.source = to_script(function);
  cb.call = [](Vorn_3DGameNode& n, const PickDetail& detail) {
    py::gil_scoped_acquire gil;
    py::object fn = from_script(n.PickDownFunction.source);
    const auto* plane = dynamic_cast<const Plane*>(&n);
    if (plane && plane->LastPickTile) {
      fn(node_to_py(n), tile_detail(*plane->LastPickTile));
    } else {
      py::list corners;
      for (const auto& c : detail.corners) corners.append(c);
      fn(node_to_py(n), make_list(detail.position, corners, py::none()));
    }
  };
  return cb;
}

void bind_plane_construction(PlaneClass& cls) {
  def_node_init<Plane, PyNode<Plane>>(cls, "Vorn_3DPlane", "__init__(self, x=0, y=0, z=0, parent=None)\n\n"
                        "An empty plane; CreatePlane builds the grid. With a parent that is in a\n"
                        "scene, the node is loaded at once and appended to the parent's children.");
  cls.attr("CHECKTILE_MODE_CLICK") = Plane::CHECKTILE_MODE_CLICK;
  cls.attr("CHECKTILE_MODE_DRAG") = Plane::CHECKTILE_MODE_DRAG;
}

void bind_plane_grid(PlaneClass& cls) {
  cls.def("SetCheckTileMode", &Plane::SetCheckTileMode, py::arg("CheckTileMode"),
          "Stores CheckTile_Mode: CHECKTILE_MODE_CLICK fires the pick event on every pick,\n"
          "CHECKTILE_MODE_DRAG only when the tile under the pick changes. ValueError otherwise.")
      .def(
          "CreatePlane",
          [](Plane& p, int rows, int cows, double tilesize, bool withTexUV, py::handle heights) {
            std::optional<std::vector<double>> h;
            if (!heights.is_none()) h = heights_arg(heights, "Vorn_3DPlane.CreatePlane", "HeightArray");
            p.CreatePlane(rows, cows, tilesize, withTexUV, std::move(h));
          },
          py::arg("rows") = 1, py::arg("cows") = 1, py::arg("tilesize") = 1.0, py::arg("withTexUV") = false,
          py::arg("HeightArray") = py::none(),
          "Builds submesh \"layer_0\": a GL_QUADS grid of rows by cows tiles of tilesize,\n"
          "centred on the node, with (rows + 1) * (cows + 1) grid points row by row. The\n"
          "heights come from HeightArray (zeros without it), which also gives each inner\n"
          "point a sloped normal. ValueError for negative counts, IndexError for a\n"
          "HeightArray shorter than the grid.")
      .def(
          "GenTexCoords", [](Plane& p, int s, bool rebuild) { p.GenTexCoords(s, rebuild); }, py::arg("submeshIndex"),
          py::arg("RebuildVBO") = true,
          "Texture coordinates in tile units (the texture repeats per tile), only while the\n"
          "submesh has none; the layout gains them; with RebuildVBO the buffers are rebuilt.");
}

void bind_plane_tiles(PlaneClass& cls) {
  cls.def(
         "GetTileVertex", [](const Plane& p, std::int64_t x, std::int64_t z) { return corners_list(p.GetTileVertex(x, z)); },
         py::arg("tileX"), py::arg("tileZ"),
         "The tile's corners V1 to V4 as [x, y, z]: x and z in the world around the node's\n"
         "world position, y the stored height (the node's world y is not added).")
      .def("GetTileWorldVertex", &Plane::GetTileWorldVertex, py::arg("tileX"), py::arg("tileZ"),
           "The tile's corners V1 to V4 as Vector3 through the world matrix.")
      .def("GetTileVertexIndexList", &Plane::GetTileVertexIndexList, py::arg("tileX"), py::arg("tileZ"),
           "The tile's grid points in drawing order: V1, V2, V4, V3.")
      .def(
          "SetTileVertexY",
          [](Plane& p, std::int64_t x, std::int64_t z, py::handle y) {
            if (py::isinstance<py::sequence>(y) && !py::isinstance<py::str>(y)) {
              p.SetTileVertexY(x, z, heights_arg(y, "Vorn_3DPlane.SetTileVertexY", "y"));
            } else {
              p.SetTileVertexY(x, z, number_arg(y, "Vorn_3DPlane.SetTileVertexY", "y"));
            }
          },
          py::arg("tileX"), py::arg("tileZ"), py::arg("y"),
          "Writes heights of HeightArray: a number to all four corners, a sequence of 1 to 4\n"
          "to the first corners in the order V1, V2, V3, V4. The vertex buffer is not rebuilt.")
      .def(
          "SetTileY",
          [](Plane& p, std::int64_t x, std::int64_t z, py::handle y) {
            if (py::isinstance<py::sequence>(y) && !py::isinstance<py::str>(y)) {
              p.SetTileY(x, z, heights_arg(y, "Vorn_3DPlane.SetTileY", "y"));
            } else {
              p.SetTileY(x, z, number_arg(y, "Vorn_3DPlane.SetTileY", "y"));
            }
          },
          py::arg("tileX"), py::arg("tileZ"), py::arg("y"), "SetTileVertexY under a second name.")
      .def("GetTileVertexY", &Plane::GetTileVertexY, py::arg("tileX"), py::arg("tileZ"),
           "The four heights in corner order V1, V2, V3, V4.")
      .def("GetTileAverageY", &Plane::GetTileAverageY, py::arg("tileX"), py::arg("tileZ"), py::arg("radiusTile") = 2,
           "Mean height of the (2 * radiusTile + 1)^2 grid points around the tile's first\n"
           "corner. Points are not clipped: near the edge they wrap or raise IndexError.")
      .def(
          "CheckInHeight",
          [](Plane& p, double x, double z, bool fast) {
            const auto [inside, y] = p.CheckInHeight(x, z, fast);
            return py::make_tuple(inside, y);
          },
          py::arg("x"), py::arg("z"), py::arg("FastMode") = false,
          "(True, height) of the plane's triangles below the world point (x, z), or\n"
          "(False, 0.0) outside the grid. The far edges count as inside and read the tile\n"
          "beyond the last one. FastMode gives GetTileAverageY of the tile and prints it.");
}

void bind_plane_pick(PlaneClass& cls) {
  cls.def(
         "checkPick",
         [](const Plane& p, const Vector3& Pt, const Vector3& Dir, double /*Length*/) -> py::tuple {
           if (const auto hit = p.PickTile(Pt, Dir)) return py::make_tuple(true, tile_detail(*hit));
           return py::make_tuple(false, py::none());
         },
         py::arg("Pt"), py::arg("Dir"), py::arg("Length") = 99999.0,
         "(True, [tileX, tileZ, position]) for the first tile in row order whose triangles\n"
         "the line through Pt along Dir meets, or (False, None). The line is unbounded.")
      .def("draw_picktriangle", &Plane::draw_picktriangle,
           "The pick event of the draw: with a pick requested, tests the scene's pick ray; a\n"
           "hit (in drag mode only a new tile) selects the node, calls PickDownFunction(node,\n"
           "[tileX, tileZ, position]) and, with PickTriangleVisible, outlines the tile.")
      .def(
          "SetPickDownFunction",
          [](Plane& p, py::handle f) { p.SetPickDownFunction(plane_pick_callback(f, "Vorn_3DPlane.SetPickDownFunction")); },
          py::arg("function"), "PickDownFunction(node, [tileX, tileZ, position]) runs when a tile is picked.")
      .def_property(
          "PickDownFunction", [](const Plane& p) { return from_script(p.PickDownFunction.source); },
          [](Plane& p, py::handle f) { p.PickDownFunction = plane_pick_callback(f, "Vorn_3DPlane.PickDownFunction"); },
          "Called as PickDownFunction(node, [tileX, tileZ, position]) when a tile is picked; or None.");
}

void bind_plane_fields(PlaneClass& cls) {
  cls.def_readwrite("Cows", &Plane::Cows, "Tiles along x.")
      .def_readwrite("Rows", &Plane::Rows, "Tiles along z.")
      .def_readwrite("TileSize", &Plane::TileSize, "Edge of a tile in world units.")
      .def_property(
          "HeightArray", [](const Plane& p) { return py::cast(p.HeightArray); },
          [](Plane& p, py::handle v) { p.HeightArray = heights_arg(v, "Vorn_3DPlane.HeightArray", "HeightArray"); },
          "Height per grid point, row by row. Reading gives a copy; change heights with\n"
          "SetTileVertexY, or assign a whole new sequence.")
      .def_readwrite("CheckTile_Mode", &Plane::CheckTile_Mode, "CHECKTILE_MODE_CLICK or CHECKTILE_MODE_DRAG.")
      .def_readwrite("CurrTileX", &Plane::CurrTileX, "Column of the tile last picked in drag mode, or -1.")
      .def_readwrite("CurrTileZ", &Plane::CurrTileZ, "Row of the tile last picked in drag mode, or -1.");
}

}  // namespace

void bind_landscape(py::module_& m) {
  PlaneClass cls(m, "Vorn_3DPlane",
                 "A regular grid of Cows by Rows tiles centred on the node, with one height per\n"
                 "grid point: tile access, the height below a world point and tile picking.\n"
                 "Tile (tileX, tileZ) has its first corner at grid point tileZ * (Cows + 1) +\n"
                 "tileX; its corners V1 to V4 are that point, the next one, and the two above\n"
                 "them in the next row.",
                 py::dynamic_attr(), twin_type_setup());
  bind_plane_construction(cls);
  bind_plane_grid(cls);
  bind_plane_tiles(cls);
  bind_plane_pick(cls);
  bind_plane_fields(cls);
}

}  // namespace vorn::py_bind
