// The solid primitives and the point light. Each is a node class that scripts may
// subclass, bound like Vorn_3DGameNode: trampoline, script attributes, the
// (x=0, y=0, z=0, parent=None) constructor that hangs the node under its parent.
#include <climits>
#include <memory>
#include <string>
#include <type_traits>

#include "bind_common.h"
#include "bind_node.h"
#include "node_trampoline.h"
#include "node_views.h"
#include "shapes/solids.h"

namespace vorn::py_bind {
namespace {

template <class T, class Base>
using SolidClass = py::class_<T, Base, PyNode<T>, std::shared_ptr<T>>;

// A step count: a Python int that fits an int.
int steps_arg(py::handle value, const std::string& where, const char* what) {
  if (!is_py_int(value)) {
    throw py::type_error(where + ": " + what + " must be an int, not " +
                         std::string(py::str(py::type::handle_of(value).attr("__name__"))));
  }
  int overflow = 0;
  const long long v = PyLong_AsLongLongAndOverflow(value.ptr(), &overflow);
  if (overflow != 0 || v < INT_MIN || v > INT_MAX) throw py::value_error(where + ": " + what + " is out of range");
  return static_cast<int>(v);
}

double num(py::handle value, const std::string& where, const char* what) {
  return number_arg(value, where.c_str(), what);
}

// The class with its constructor, written like Vorn_3DGameNode's: the position
// remembers which coordinates came as ints.
template <class T, class Base>
SolidClass<T, Base> node_class(py::module_& m, const char* name, const char* doc) {
  SolidClass<T, Base> cls(m, name, doc, py::dynamic_attr(), twin_type_setup());
  const std::string where = name;
  def_node_init<T, PyNode<T>>(cls, name, "__init__(self, x=0, y=0, z=0, parent=None)\n\n"
                        "The node's constructor, then the class's own fields and label. Makes no\n"
                        "geometry: call the creating operation.");
  return cls;
}

// GenTexCoords(submeshIndex, RebuildVBO=True) of the classes that generate coordinates.
template <class Cls>
void gen_tex_coords(Cls& cls, const char* doc) {
  using T = typename Cls::type;
  cls.def(
      "GenTexCoords", [](T& n, int submeshIndex, bool RebuildVBO) { n.GenTexCoords(submeshIndex, RebuildVBO); },
      py::arg("submeshIndex"), py::arg("RebuildVBO") = true, doc);
}

py::object pick_result(const std::optional<PickDetail>& hit) {
  if (!hit) return py::make_tuple(false, py::none());
  py::list corners;
  for (const Vector3& c : hit->corners) corners.append(c);
  return py::make_tuple(true, make_list(hit->position, corners, py::none()));
}

const Vector3& vector_arg(py::handle value, const char* what) {
  if (!py::isinstance<Vector3>(value)) {
    throw py::type_error(std::string("Vorn_3DBox.checkPick: ") + what + " must be a Vector3, not " +
                         std::string(py::str(py::type::handle_of(value).attr("__name__"))));
  }
  return value.cast<const Vector3&>();
}

void bind_box(py::module_& m) {
  auto cls = node_class<Vorn_3DBox, Vorn_3DGameNode>(
      m, "Vorn_3DBox",
      "An axis-aligned box centred on the node: six flat quads with their own vertices\n"
      "(faces +z, -z, +y, -y, +x, -x) and no index buffer. NodeType \"3DBox\".");
  const std::string where = "Vorn_3DBox.CreateBox";
  cls.def(
         "CreateBox",
         [where](Vorn_3DBox& n, py::handle size_x, py::handle size_y, py::handle size_z) {
           n.CreateBox(num(size_x, where, "size_x"), num(size_y, where, "size_y"), num(size_z, where, "size_z"));
         },
         py::arg("size_x") = 1.0, py::arg("size_y") = 1.0, py::arg("size_z") = 1.0,
         "Replaces the geometry by the box: submesh 0, GL_QUADS, 24 vertices with flat\n"
         "normals, no indices; then BuildVBO().")
      .def(
          "checkPick",
          [](const Vorn_3DBox& n, py::handle Pt, py::handle Dir, py::handle Length) {
            return pick_result(n.checkBoxPick(vector_arg(Pt, "Pt"), vector_arg(Dir, "Dir"),
                                              num(Length, "Vorn_3DBox.checkPick", "Length")));
          },
          py::arg("Pt"), py::arg("Dir"), py::arg("Length") = 99999.0,
          "The ray (Pt, Dir) against the exact box from its sizes and WorldMatrix, face by\n"
          "face: (True, [position, [V1, V2, V3], None]) for the first triangle hit, else\n"
          "(False, None). Needs no submesh data.");
  gen_tex_coords(cls,
                 "Unless the submesh has coordinates already: one quad of coordinates per face,\n"
                 "(0, 1), (1, 1), (1, 0), (0, 0) on the first, fourth and sixth face and\n"
                 "(0, 1), (0, 0), (1, 0), (1, 1) on the others. Then the layout gains them\n"
                 "(GL_N3F_V3F becomes GL_T2F_N3F_V3F) and, with RebuildVBO, BuildVBO().");
  cls.def_readwrite("cubeMapTexID", &Vorn_3DBox::cubeMapTexID, "GL cube map texture, or None.")
      .def_readwrite("cubeMapWidth", &Vorn_3DBox::cubeMapWidth, "Width of the cube map faces.")
      .def_readwrite("cubeMapHeight", &Vorn_3DBox::cubeMapHeight, "Height of the cube map faces.")
      .def_property(
          "cubeMapData",
          [](const Vorn_3DBox& n) -> py::object {
            if (!n.cubeMapData) return py::none();
            return py::bytes(reinterpret_cast<const char*>(n.cubeMapData->data()), n.cubeMapData->size());
          },
          [](Vorn_3DBox& n, py::handle data) {
            if (data.is_none()) {
              n.cubeMapData.reset();
              return;
            }
            if (!py::isinstance<py::bytes>(data)) throw py::type_error("Vorn_3DBox.cubeMapData: bytes or None expected");
            const std::string raw = data.cast<std::string>();
            n.cubeMapData = std::make_shared<const std::vector<std::uint8_t>>(raw.begin(), raw.end());
          },
          "Cube map pixels (bytes), or None.")
      .def_readwrite("size_x", &Vorn_3DBox::size_x, "As given to the creating operation.")
      .def_readwrite("size_y", &Vorn_3DBox::size_y, "As given to the creating operation.")
      .def_readwrite("size_z", &Vorn_3DBox::size_z, "As given to the creating operation.");
}

void bind_circle(py::module_& m) {
  auto cls = node_class<Vorn_3DCircle, Vorn_3DGameNode>(
      m, "Vorn_3DCircle", "A flat disc in the node's x-z plane, facing +y. NodeType \"3DCircle\".");
  const std::string where = "Vorn_3DCircle.CreateCircle";
  cls.def(
      "CreateCircle",
      [where](Vorn_3DCircle& n, py::handle radius, py::handle statckZ) {
        n.CreateCircle(num(radius, where, "radius"), steps_arg(statckZ, where, "statckZ"));
      },
      py::arg("radius") = 0.5, py::arg("statckZ") = 30,
      "Replaces the geometry by the disc: the centre, then statckZ + 1 rim vertices (the\n"
      "seam twice), normal (0, 1, 0), a fan of statckZ triangles; then BuildVBO().\n"
      "ZeroDivisionError for statckZ 0.");
  gen_tex_coords(cls,
                 "Unless the submesh has coordinates already: (0.5, 0.0) for the centre and\n"
                 "(k / statckZ, 1.0) along the rim. Then the layout gains them and, with\n"
                 "RebuildVBO, BuildVBO().");
  cls.def_readwrite("statckZ", &Vorn_3DCircle::statckZ, "As given to the creating operation.");
}

void bind_sphere_family(py::module_& m) {
  auto sphere = node_class<Vorn_3DSphere, Vorn_3DGameNode>(
      m, "Vorn_3DSphere",
      "A latitude-longitude sphere centred on the node, the south pole first; seam and\n"
      "pole rows are duplicated. NodeType \"3DSphere\".");
  const std::string where = "Vorn_3DSphere.CreateSphere";
  sphere.def(
      "CreateSphere",
      [where](Vorn_3DSphere& n, py::handle radius, py::handle statckZ, py::handle statckY) {
        n.CreateSphere(num(radius, where, "radius"), steps_arg(statckZ, where, "statckZ"),
                       steps_arg(statckY, where, "statckY"));
      },
      py::arg("radius") = 0.5, py::arg("statckZ") = 30, py::arg("statckY") = 30,
      "Replaces the geometry by the sphere: (statckY + 1) * (statckZ + 1) vertices, row\n"
      "by row from the south pole, normals equal to the positions (length radius), two\n"
      "triangles per cell; then BuildVBO(). ZeroDivisionError for a step count of 0.");
  gen_tex_coords(sphere,
                 "Unless the submesh has coordinates already: u = column / statckZ,\n"
                 "v = row / statckY in vertex order. Then the layout gains them and, with\n"
                 "RebuildVBO, BuildVBO().");
  sphere.def_readwrite("statckZ", &Vorn_3DSphere::statckZ, "As given to the creating operation.")
      .def_readwrite("statckY", &Vorn_3DSphere::statckY, "As given to the creating operation.")
      .def_readwrite("radius", &Vorn_3DSphere::radius, "As given to the creating operation.");

  auto light = node_class<Vorn_3DPointLight, Vorn_3DSphere>(
      m, "Vorn_3DPointLight",
      "A positioned light. Its colour is its submesh colour (white until SetMeshColor),\n"
      "its reach LightRange; the scene's point light list feeds both to every shaded\n"
      "submesh. Its marker sphere is never drawn. NodeType \"3DPointLight\".");
  light
      .def(
          "CreatePointLight",
          [](Vorn_3DPointLight& n, py::handle range) {
            n.CreatePointLight(num(range, "Vorn_3DPointLight.CreatePointLight", "range"));
          },
          py::arg("range"), "Stores range in LightRange, then CreateSphere(0.1, 10, 10).")
      .def("GetLightRange", &Vorn_3DPointLight::GetLightRange, "LightRange.")
      .def(
          "draw", [](Vorn_3DPointLight& n, double rx, double ry, double rz) { n.draw(rx, ry, rz); },
          py::arg("rx") = 0, py::arg("ry") = 0, py::arg("rz") = 0, "Draws nothing: a light has no visible body.")
      .def_readwrite("LightRange", &Vorn_3DPointLight::LightRange, "Reach of the light.");
}

void bind_round_solids(py::module_& m) {
  auto conus = node_class<Vorn_3DConus, Vorn_3DGameNode>(
      m, "Vorn_3DConus", "A cone along the node's y axis, centred on it, apex up. NodeType \"3DConus\".");
  conus.def(
      "CreateConus",
      [](Vorn_3DConus& n, py::handle radius, py::handle height, py::handle statckZ) {
        const std::string where = "Vorn_3DConus.CreateConus";
        n.CreateConus(num(radius, where, "radius"), num(height, where, "height"), steps_arg(statckZ, where, "statckZ"));
      },
      py::arg("radius") = 0.5, py::arg("height") = 1.0, py::arg("statckZ") = 30,
      "Replaces the geometry: submesh 0 the side, a fan from the apex (statckZ + 1 rim\n"
      "vertices, then one apex vertex per triangle), submesh 1 the base, a fan facing\n"
      "-y. Unit normals. Then BuildVBO(). ZeroDivisionError for statckZ 0.");
  conus.def_readwrite("statckZ", &Vorn_3DConus::statckZ, "As given to the creating operation.");

  auto cylinder = node_class<Vorn_3DCylinder, Vorn_3DGameNode>(
      m, "Vorn_3DCylinder", "A closed cylinder along the node's y axis, centred on it. NodeType \"3DCylinder\".");
  cylinder.def(
      "CreateCylinder",
      [](Vorn_3DCylinder& n, py::handle radius, py::handle height, py::handle statckR) {
        const std::string where = "Vorn_3DCylinder.CreateCylinder";
        n.CreateCylinder(num(radius, where, "radius"), num(height, where, "height"),
                         steps_arg(statckR, where, "statckR"));
      },
      py::arg("radius") = 0.5, py::arg("height") = 1.0, py::arg("statckR") = 30,
      "Replaces the geometry: submesh 0 the top cap, 1 the bottom cap, 2 the side band\n"
      "(two rings, lower first). Unit normals. Then BuildVBO(). ZeroDivisionError for\n"
      "statckR 0.");
  cylinder.def_readwrite("statckR", &Vorn_3DCylinder::statckR, "As given to the creating operation.");

  auto torus = node_class<Vorn_3DTorus, Vorn_3DGameNode>(
      m, "Vorn_3DTorus",
      "A ring around the node's y axis: hole radius radius_in, outer radius radius_out,\n"
      "height tall (an elliptic cross-section). NodeType \"3DTorus\".");
  torus.def(
      "CreateTorus",
      [](Vorn_3DTorus& n, py::handle radius_in, py::handle radius_out, py::handle height, py::handle statckR,
         py::handle statckZ) {
        const std::string where = "Vorn_3DTorus.CreateTorus";
        n.CreateTorus(num(radius_in, where, "radius_in"), num(radius_out, where, "radius_out"),
                      num(height, where, "height"), steps_arg(statckR, where, "statckR"),
                      steps_arg(statckZ, where, "statckZ"));
      },
      py::arg("radius_in") = 0.5, py::arg("radius_out") = 1.0, py::arg("height") = 1.0, py::arg("statckR") = 30,
      py::arg("statckZ") = 10,
      "Replaces the geometry by one grid: statckZ + 1 rows around the cross-section of\n"
      "statckR + 1 vertices around the axis, unit normals, two triangles per cell. Then\n"
      "BuildVBO(). ZeroDivisionError for a step count of 0.");
  torus.def_readwrite("statckR", &Vorn_3DTorus::statckR, "As given to the creating operation.").def_readwrite("statckZ", &Vorn_3DTorus::statckZ, "As given to the creating operation.");

  auto tube = node_class<Vorn_3DTube, Vorn_3DGameNode>(
      m, "Vorn_3DTube", "A thick-walled pipe along the node's y axis, centred on it. NodeType \"3DTube\".");
  tube.def(
      "CreateTube",
      [](Vorn_3DTube& n, py::handle radius_in, py::handle radius_out, py::handle height, py::handle statckR) {
        const std::string where = "Vorn_3DTube.CreateTube";
        n.CreateTube(num(radius_in, where, "radius_in"), num(radius_out, where, "radius_out"),
                     num(height, where, "height"), steps_arg(statckR, where, "statckR"));
      },
      py::arg("radius_in") = 0.5, py::arg("radius_out") = 1.0, py::arg("height") = 1.0, py::arg("statckR") = 30,
      "Replaces the geometry: submesh 0 the top ring, 1 the bottom ring, 2 the outer\n"
      "and then the inner wall. Unit normals. Then BuildVBO(). ZeroDivisionError for\n"
      "statckR 0.");
  tube.def_readwrite("statckR", &Vorn_3DTube::statckR, "As given to the creating operation.");

  auto capsule = node_class<Vorn_3DCapsule, Vorn_3DGameNode>(
      m, "Vorn_3DCapsule",
      "Two half spheres joined by a band, along the node's y axis and centred on it.\n"
      "NodeType \"3DCapsule\".");
  capsule.def(
      "CreateCapsule",
      [](Vorn_3DCapsule& n, py::handle radius, py::handle height, py::handle statckR) {
        const std::string where = "Vorn_3DCapsule.CreateCapsule";
        n.CreateCapsule(num(radius, where, "radius"), num(height, where, "height"),
                        steps_arg(statckR, where, "statckR"));
      },
      py::arg("radius") = 0.5, py::arg("height") = 2.0, py::arg("statckR") = 30,
      "Replaces the geometry: submesh 0 the upper half sphere (centre at height / 2),\n"
      "1 the lower one, 2 the band between them; statckR steps around and statckR // 2\n"
      "from equator to pole; normals of length radius as on the sphere. Then\n"
      "BuildVBO(). ZeroDivisionError for statckR 0 or 1.");
  capsule.def_readwrite("statckR", &Vorn_3DCapsule::statckR, "As given to the creating operation.");
}

}  // namespace

void bind_shapes_solids(py::module_& m) {
  bind_box(m);
  bind_circle(m);
  bind_sphere_family(m);
  bind_round_solids(m);
}

}  // namespace vorn::py_bind
