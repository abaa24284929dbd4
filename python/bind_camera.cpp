// Vorn_3DCamera: projection, view, targeting and movement. Scripts may subclass it like
// any node class; update, draw, RotateX and RotateY reach a script override.
#include <pybind11/pybind11.h>

#include <array>
#include <optional>
#include <string>
#include <type_traits>
#include <vector>

#include "bind_node.h"
#include "camera/camera.h"
#include "node_trampoline.h"
#include "node_views.h"

namespace vorn::py_bind {
namespace {

using Camera = Vorn_3DCamera;
using Node = Vorn_3DGameNode;

// The node trampoline plus draw, which a camera adds to the overridable operations.
// A script's draw takes no arguments, as the camera's own does.
class PyCamera : public PyNode<Camera> {
 public:
  using PyNode<Camera>::PyNode;
  void draw(double rx, double ry, double rz) override {
    {
      py::gil_scoped_acquire gil;
      if (py::function override = py::get_override(static_cast<const Camera*>(this), "draw")) {
        override();
        return;
      }
    }
    Camera::draw(rx, ry, rz);
  }
};

using CameraClass = py::class_<Camera, Node, PyCamera, std::shared_ptr<Camera>>;

std::shared_ptr<Node> optional_node(py::handle value, const char* where) {
  if (value.is_none()) return nullptr;
  if (!py::isinstance<Node>(value)) {
    throw py::type_error(std::string(where) + ": expected a Vorn_3DGameNode or None, not " +
                         std::string(py::str(py::type::handle_of(value).attr("__name__"))));
  }
  return value.cast<std::shared_ptr<Node>>();
}

// A float list of 16 numbers, or None.
std::optional<FloatList16> matrix_arg(py::handle value, const char* where) {
  if (value.is_none()) return std::nullopt;
  // Counted from the items themselves: a sequence's len() may not match what it yields.
  const auto bad = [where] { return py::type_error(std::string(where) + ": expected a list of 16 numbers or None"); };
  if (!py::isinstance<py::sequence>(value) || py::isinstance<py::str>(value)) throw bad();
  const py::list items(py::reinterpret_borrow<py::object>(value));
  if (items.size() != 16) throw bad();
  FloatList16 out{};
  for (std::size_t i = 0; i < 16; ++i) out[i] = number_arg(items[i], where, "each entry");
  return out;
}

py::dict record_to_py(const RenderTargetRecord& r) {
  py::dict d;
  d["FrameBuffer"] = r.FrameBuffer;
  d["FrameTexture"] = r.FrameTexture;
  d["Width"] = r.Width;
  d["Height"] = r.Height;
  d["FXID"] = r.FXID ? py::object(py::int_(*r.FXID)) : py::object(py::none());
  return d;
}

RenderTargetRecord record_from_py(py::handle value) {
  constexpr const char* where = "Vorn_3DCamera.RenderTargetArray";
  if (!py::isinstance<py::dict>(value)) {
    throw py::type_error(std::string(where) +
                         ": a record is a dict with FrameBuffer, FrameTexture, Width, Height and FXID");
  }
  auto d = py::reinterpret_borrow<py::dict>(value);
  auto get = [&](const char* key) -> py::object {
    if (!d.contains(key)) throw py::key_error(std::string(where) + ": the record has no \"" + key + "\"");
    return d[key];
  };
  RenderTargetRecord r;
  r.FrameBuffer = get("FrameBuffer").cast<unsigned>();
  r.FrameTexture = get("FrameTexture").cast<unsigned>();
  r.Width = get("Width").cast<int>();
  r.Height = get("Height").cast<int>();
  py::object fx = get("FXID");
  if (!fx.is_none()) r.FXID = fx.cast<int>();
  return r;
}

void bind_camera_methods(CameraClass& cls) {
  cls.def("SetCameraTargetType", &Camera::SetCameraTargetType, py::arg("targetType"),
          "Sets CameraTargetType (CAMERA_TARGET_SCENE, CAMERA_TARGET_OBJECT or\n"
          "CAMERA_TARGET_POINTLIGHT): what a render target of this camera shows.")
      .def("InitPrespective", &Camera::InitPrespective, py::arg("Fov"), py::arg("Aspect"), py::arg("ZNear"),
           py::arg("ZFar"), "Sets Fov (vertical, degrees), Aspect, Near and Far.")
      .def(
          "BuildPerspectiveMatrix", [](const Camera&) { return Camera::BuildPerspectiveMatrix(); },
          "The current GL_PROJECTION_MATRIX as a list of 16 floats (needs a GL context).")
      .def("GetProjMatrix", &Camera::GetProjMatrix, "projMatrix: 16 floats as of the last draw, or None.")
      .def("GetViewMatrix", &Camera::GetViewMatrix, "viewMatrix: 16 floats as of the last draw, or None.")
      .def(
          "BuildViewMatrix",
          [](const Camera&, const Vector3& Eye, const Vector3& Target, const Vector3& UpDir) {
            return Camera::BuildViewMatrix(Eye, Target, UpDir);
          },
          py::arg("Eye"), py::arg("Target"), py::arg("UpDir"),
          "The look-at view matrix of three Vector3 as a list of 16 floats, ready for\n"
          "glUniformMatrix4fv without transposing.")
      .def("CloneCamera", &Camera::CloneCamera,
           "A new camera at (0.0, 0.0, 0.0) below this one, with the same Fov, Aspect, Near\n"
           "and Far, looking at (0, 0, 0) and loaded into this camera's scene.")
      .def("EnableFog", &Camera::EnableFog, "EnableSceneFog = True.")
      .def("DisableFog", &Camera::DisableFog,
           "EnableSceneFog = False: the scene's fog is off while this camera renders its targets.")
      .def("Active", &Camera::Active,
           "Makes this the scene's active camera; without a scene prints \"No SceneInstance\".")
      .def(
          "LookAt",
          [](Camera& c, py::handle x, py::handle y, py::handle z) {
            c.LookAt(number_arg(x, "Vorn_3DCamera.LookAt", "targetX"), number_arg(y, "Vorn_3DCamera.LookAt", "targetY"),
                     number_arg(z, "Vorn_3DCamera.LookAt", "targetZ"));
            c.targetIntMask = static_cast<std::uint8_t>((is_py_int(x) ? 1 : 0) | (is_py_int(y) ? 2 : 0) |
                                                        (is_py_int(z) ? 4 : 0));
          },
          py::arg("targetX"), py::arg("targetY"), py::arg("targetZ"),
          "Sets the look-at point (world space). While a node is caught, the frame replaces it\n"
          "with the node's position.")
      .def("SetUpDir", &Camera::SetUpDir, py::arg("upDirX"), py::arg("upDirY"), py::arg("upDirZ"),
           "Sets the up direction (not normalised: MoveUp and MoveDown move by it times distance).")
      .def("SetRange", &Camera::SetRange, py::arg("Near"), py::arg("Far"), "Sets the clip planes.")
      .def(
          "Catch", [](Camera& c, py::handle node) { c.Catch(optional_node(node, "Vorn_3DCamera.Catch")); },
          py::arg("targetNode"),
          "Sets tagetNode: the camera looks at that node (None releases it). The node is not\n"
          "kept alive by the camera.")
      .def("GetTargetPosition", &Camera::GetTargetPosition,
           "tagetNode.GetWorldXYZ() while a node is caught, else Vector3(targetX, targetY, targetZ).")
      .def("ScreenPtTo3DPointAndDir", &Camera::ScreenPtTo3DPointAndDir, py::arg("px"), py::arg("py"),
           py::arg("inverse") = true,
           "(point, direction): the ray under window point (px, py), origin at the top left, from\n"
           "the matrices in force (true after the active camera has drawn this frame). With\n"
           "inverse and a scene, the scene's world rotation is undone. Negative coordinates give\n"
           "two zero vectors. ValueError when the matrices can't be inverted.")
      .def(
          "getScreenPosition",
          [](const Camera& c, double x, double y, double z) {
            const auto p = c.getScreenPosition(x, y, z);
            return py::make_tuple(p[0], p[1], p[2]);
          },
          py::arg("x"), py::arg("y"), py::arg("z"),
          "(x, y, depth): the window position of a world point, origin at the top left.")
      .def("SetDistance", &Camera::SetDistance, py::arg("distance"),
           "Places the camera at distance from the target, on the line from the target to the eye.")
      .def("MoveFront", &Camera::MoveFront, py::arg("distance"),
           "Dollies towards the target by distance; the target stays.")
      .def("MoveBack", &Camera::MoveBack, py::arg("distance"), "Dollies away from the target by distance.")
      .def("MoveLeft", &Camera::MoveLeft, py::arg("distance"),
           "Pans eye and target sideways by distance (towards +X when looking down -Z).")
      .def("MoveRight", &Camera::MoveRight, py::arg("distance"),
           "Pans eye and target sideways by distance (towards -X when looking down -Z, so the\n"
           "picture follows a dragging mouse).")
      .def("MoveUp", &Camera::MoveUp, py::arg("distance"), "Moves eye and target along the up direction.")
      .def("MoveDown", &Camera::MoveDown, py::arg("distance"), "Moves eye and target against the up direction.")
      .def("RotateX", &Camera::RotateX, py::arg("rx"), "Adds rx to rotateX; eye and target do not move.")
      .def("RotateY", &Camera::RotateY, py::arg("ry"), "Adds ry to rotateY; eye and target do not move.")
      .def("CreateRenderTarget", &Camera::CreateRenderTarget, py::arg("texWidth") = 0, py::arg("texHeight") = 0,
           py::arg("floatMode") = false,
           "Creates the colour target (CameraType becomes CAMERA_RENDERGARGET) and returns its\n"
           "texture. A side of 0 takes SCREEN_WIDTH / SCREEN_HEIGHT as they are now; floatMode\n"
           "gives 16-bit float channels. Each frame the camera renders what CameraTargetType\n"
           "names into it. ValueError for a negative or oversized side, AttributeError without\n"
           "a PyGameResManager.")
      .def("CreateDepthTarget", &Camera::CreateDepthTarget, py::arg("texWidth") = 0, py::arg("texHeight") = 0,
           "Creates the depth target (CameraType becomes CAMERA_DEPTH): a colour texture into\n"
           "which nodes render through Vorn_3DFX.FX_DEPTH. Returns the texture.")
      .def("GetRenderTargetTexture", &Camera::GetRenderTargetTexture,
           "The texture of the colour target, or None.")
      .def("GetRenderTargetTextureMatrix", &Camera::GetRenderTargetTextureMatrix,
           "The 16 floats that map clip space to the colour target's texture space (y\n"
           "flipped, half-texel offset), or None.")
      .def("GetDepthTargetTexture", &Camera::GetDepthTargetTexture, "The texture of the depth target, or None.")
      .def(
          "GetDepthTargetTextureSize",
          [](const Camera& c) {
            const auto [w, h] = c.GetDepthTargetTextureSize();
            return py::make_tuple(w ? py::object(py::int_(*w)) : py::object(py::none()),
                                  h ? py::object(py::int_(*h)) : py::object(py::none()));
          },
          "(Width, Height) of the depth target, or (None, None).")
      .def("GetDepthTargetTextureMatrix", &Camera::GetDepthTargetTextureMatrix,
           "The texture matrix of the depth target, or None.")
      .def(
          "ApplyFX", [](Camera& c, int fxid) { c.ApplyFX(fxid); }, py::arg("VN_3DFXID"),
          "Sets the FX forced on the nodes rendered into the target created last (FXID of\n"
          "its record). A camera without targets ignores it.")
      .def(
          "RenderObjListToRenderTarget",
          [](const std::shared_ptr<Camera>& c, py::handle objList) {
            if (py::isinstance<NodeListView>(objList)) {
              c->RenderObjListToRenderTarget(*objList.cast<const NodeListView&>().list);
              return;
            }
            constexpr const char* where = "Vorn_3DCamera.RenderObjListToRenderTarget";
            if (!py::isinstance<py::iterable>(objList) || py::isinstance<py::str>(objList)) {
              throw py::type_error(std::string(where) + ": objList must be a list of nodes, not " +
                                   std::string(py::str(py::type::handle_of(objList).attr("__name__"))));
            }
            std::vector<std::shared_ptr<Node>> nodes;
            for (py::handle item : objList) nodes.push_back(node_arg(item, where));
            c->RenderObjListToRenderTarget(nodes);
          },
          py::arg("objList"),
          "For each target: binds its frame buffer, clears colour (to transparent black),\n"
          "depth and stencil, and draws every node of objList with zero rotation, with the\n"
          "target's FX forced and restored node by node where it has one. Frame buffer 0 is\n"
          "bound after. The viewport stays the window's.")
      .def("update", &Camera::update, py::arg("delay"),
           "The node's update; then, for the active camera or one with render targets, the\n"
           "caught node's position becomes the target. AttributeError before OnLoad.")
      .def(
          "draw", [](Camera& c) { c.draw(); },
          "For the active camera or one with render targets: gluPerspective and gluLookAt on\n"
          "the GL_PROJECTION stack, projMatrix and viewMatrix filled, GL_MODELVIEW left current.\n"
          "A camera with targets then renders into them the scene's 3D objects, its point\n"
          "lights (CAMERA_TARGET_POINTLIGHT) or, for CAMERA_TARGET_OBJECT, tagetNode as a list\n"
          "of nodes (a plain node raises TypeError). Does nothing for other cameras.\n"
          "AttributeError before OnLoad.");
}

void bind_camera_fields(CameraClass& cls) {
  cls.def_readwrite("CameraType", &Camera::CameraType,
                    "CAMERA_SCENE, or the kind of the last render target created.")
      .def_readwrite("CameraTargetType", &Camera::CameraTargetType, "What a render target shows.")
      .def_property(
          "tagetNode", [](const Camera& c) { return node_to_py(c.GetCatchNode()); },
          [](Camera& c, py::handle v) { c.Catch(optional_node(v, "Vorn_3DCamera.tagetNode")); },
          "The caught node (not kept alive by the camera), or None.");
  const char* targets[3] = {"targetX", "targetY", "targetZ"};
  for (int axis = 0; axis < 3; ++axis) {
    cls.def_property(
        targets[axis],
        [axis](const Camera& c) {
          return script_number(axis == 0 ? c.targetX : axis == 1 ? c.targetY : c.targetZ,
                               c.targetIntMask & (1u << axis));
        },
        [axis](Camera& c, py::handle v) {
          (axis == 0 ? c.targetX : axis == 1 ? c.targetY : c.targetZ) = number_arg(v, "Vorn_3DCamera", "target");
          const auto bit = static_cast<std::uint8_t>(1u << axis);
          c.targetIntMask = static_cast<std::uint8_t>(is_py_int(v) ? (c.targetIntMask | bit) : (c.targetIntMask & ~bit));
        },
        "Look-at point, world space.");
  }
  cls.def_readwrite("upDirX", &Camera::upDirX, "Up direction x.")
      .def_readwrite("upDirY", &Camera::upDirY, "Up direction y.")
      .def_readwrite("upDirZ", &Camera::upDirZ, "Up direction z.")
      .def_readwrite("rotateX", &Camera::rotateX, "Angle accumulated by RotateX (bookkeeping only).")
      .def_readwrite("rotateY", &Camera::rotateY, "Angle accumulated by RotateY (bookkeeping only).")
      .def_property(
          "RenderTargetArray",
          [](const Camera& c) {
            py::dict out;
            for (const auto& [key, record] : c.RenderTargetArray) out[py::int_(key)] = record_to_py(record);
            return out;
          },
          [](Camera& c, py::handle v) {
            if (!py::isinstance<py::dict>(v)) {
              throw py::type_error("Vorn_3DCamera.RenderTargetArray: expected a dict of camera type -> record");
            }
            OrderedMap<int, RenderTargetRecord> fresh;
            for (auto [key, record] : py::reinterpret_borrow<py::dict>(v)) {
              fresh.set(key.cast<int>(), record_from_py(record));
            }
            c.RenderTargetArray = std::move(fresh);
          },
          "Camera type -> render-target record (dict with FrameBuffer, FrameTexture, Width,\n"
          "Height, FXID). A copy when read; assigning a dict replaces it.")
      .def_readwrite("Fov", &Camera::Fov, "Vertical field of view in degrees.")
      .def_readwrite("Aspect", &Camera::Aspect, "Width / height, taken from the window size at construction.")
      .def_readwrite("Near", &Camera::Near, "Near clip plane.")
      .def_readwrite("Far", &Camera::Far, "Far clip plane.");
  auto matrix_field = [&cls](const char* name, std::optional<FloatList16> Camera::*member, const char* doc) {
    cls.def_property(
        name, [member](const Camera& c) { return c.*member; },
        [member, name](Camera& c, py::handle v) {
          c.*member = matrix_arg(v, (std::string("Vorn_3DCamera.") + name).c_str());
        },
        doc);
  };
  matrix_field("viewMatrix", &Camera::viewMatrix, "View float list (16) as of the last draw, or None.");
  matrix_field("projMatrix", &Camera::projMatrix, "Projection float list (16) as of the last draw, or None.");
  matrix_field("viewProjMatrix", &Camera::viewProjMatrix, "Always None after a draw.");
  cls.def_readwrite("EnableSceneFog", &Camera::EnableSceneFog,
                    "Whether fog stays on while this camera renders its targets.");
}

}  // namespace

void bind_camera(py::module_& m) {
  CameraClass cls(m, "Vorn_3DCamera",
                  "A scene node with a projection, a look-at target and an up direction. The eye is\n"
                  "the node's world position, so a camera can hang below another node.",
                  py::dynamic_attr(), twin_type_setup());
  def_node_init<Camera, PyCamera>(cls, "Vorn_3DCamera", "__init__(self, x=0, y=0, z=0, parent=None)\n\n"
                        "Fov 45.0, Aspect SCREEN_WIDTH / SCREEN_HEIGHT as of now, Near 0.1, Far 500.0,\n"
                        "looking at (0.0, 0.0, 0.0) with up (0.0, 1.0, 0.0).");

  cls.attr("CAMERA_SCENE") = Camera::CAMERA_SCENE;
  cls.attr("CAMERA_RENDERGARGET") = Camera::CAMERA_RENDERGARGET;
  cls.attr("CAMERA_DEPTH") = Camera::CAMERA_DEPTH;
  cls.attr("CAMERA_TARGET_SCENE") = Camera::CAMERA_TARGET_SCENE;
  cls.attr("CAMERA_TARGET_OBJECT") = Camera::CAMERA_TARGET_OBJECT;
  cls.attr("CAMERA_TARGET_POINTLIGHT") = Camera::CAMERA_TARGET_POINTLIGHT;

  bind_camera_methods(cls);
  bind_camera_fields(cls);
}

}  // namespace vorn::py_bind
