// Vorn_3DGameNode: the class, its constructor and its operations. Fields are bound in
// bind_node_fields.cpp, the submesh interface in bind_node_submesh.cpp.
#include <cmath>
#include <type_traits>

#include "bind_node.h"
#include "core/actions.h"
#include "core/console.h"
#include "node_views.h"

namespace vorn::py_bind {
namespace {

class PyNodeScene : public NodeScene {
 public:
  int GenNewGameNodeID() override { PYBIND11_OVERRIDE_PURE(int, NodeScene, GenNewGameNodeID); }
  double Get3DTerrainY(double x, double z) override { PYBIND11_OVERRIDE_PURE(double, NodeScene, Get3DTerrainY, x, z); }
};

using Node = Vorn_3DGameNode;

// Node arguments that may be None.
std::shared_ptr<Node> optional_node(py::handle value, const char* where) {
  if (value.is_none()) return nullptr;
  return node_arg(value, where);
}

py::tuple xyz_tuple(const Node& n) {
  return py::make_tuple(script_number(n.x, n.xyzIntMask & 1), script_number(n.y, n.xyzIntMask & 2),
                        script_number(n.z, n.xyzIntMask & 4));
}

// Position writes from scripts: the engine setter, then the int bits of the arguments.
void set_axis(Node& n, int axis, py::handle value, bool relative, const char* where) {
  const double v = number_arg(value, where, "value");
  const auto bit = static_cast<std::uint8_t>(1u << axis);
  const bool wasInt = (n.xyzIntMask & bit) != 0;
  double* field = axis == 0 ? &n.x : axis == 1 ? &n.y : &n.z;
  *field = relative ? *field + v : v;
  const bool isInt = is_py_int(value) && (!relative || wasInt);
  n.xyzIntMask = static_cast<std::uint8_t>(isInt ? (n.xyzIntMask | bit) : (n.xyzIntMask & ~bit));
}

}  // namespace

py::object pick_detail_to_py(const PickDetail& d) {
  py::list corners;
  for (const auto& c : d.corners) corners.append(c);
  return make_list(d.position, corners, py::none());
}

py::tuple pick_result_to_py(const std::optional<PickDetail>& hit) {
  if (!hit) return py::make_tuple(false, py::none());
  return py::make_tuple(true, pick_detail_to_py(*hit));
}

UpdateCallback update_callback_from_py(py::handle function, const char* where) {
  UpdateCallback cb;
  if (function.is_none()) return cb;
  if (!PyCallable_Check(function.ptr())) throw py::type_error(std::string(where) + ": function must be callable or None");
  cb.source = to_script(function);
  // The callable is read from the field at each call, so the node holds one reference.
  cb.call = [](Node& n) {
    py::gil_scoped_acquire gil;
    py::object fn = from_script(n.UpdateFunction.source);
    fn(node_to_py(n));
  };
  return cb;
}

PickCallback pick_callback_from_py(py::handle function, PickCallback Node::*field, const char* where) {
  PickCallback cb;
  if (function.is_none()) return cb;
  if (!PyCallable_Check(function.ptr())) throw py::type_error(std::string(where) + ": function must be callable or None");
  cb.source = to_script(function);
  cb.call = [field](Node& n, const PickDetail& detail) {
    py::gil_scoped_acquire gil;
    py::object fn = from_script((n.*field).source);
    fn(node_to_py(n), pick_detail_to_py(detail));
  };
  return cb;
}

void bind_node_methods(NodeClass& cls) {
  // ---- Identity, loading, flags ----
  cls.def("GetNodeType", &Node::GetNodeType, "NodeType: the class label.")
      .def("GetNodeIndex", &Node::GetNodeIndex, "NodeIndex: the number the scene gave at first load, or -1.")
      .def("SetTag", &Node::SetTag, py::arg("tagName"), "Writes TagName.")
      .def("GetTag", &Node::GetTag, "TagName, or None.")
      .def(
          "OnLoad",
          [](Node& n, std::shared_ptr<NodeScene> scene) { n.OnLoad(scene); }, py::arg("sceneInstance"),
          "Stores the scene; without a tag, takes the next node number and the tag\n"
          "\"<NodeType>_<NodeIndex>\"; then loads every child.")
      .def("OnDestroy", &Node::OnDestroy,
           "Destroys the children, empties children and the variable, event and point\n"
           "tables (inner events stay) and sets instanceID to -1.")
      .def("GetSceneInstance", &Node::GetSceneInstance, "sceneInstance, or None.")
      .def("SetInstanceID", &Node::SetInstanceID, py::arg("instanceID"), "Writes instanceID.")
      .def("GetInstanceID", &Node::GetInstanceID, "instanceID.")
      .def(
          "SetUserData", [](Node& n, py::handle data) { n.SetUserData(to_script(data)); }, py::arg("userData"),
          "Writes userData (any value).")
      .def(
          "GetUserData", [](const Node& n) { return from_script(n.GetUserData()); }, "userData.")
      .def("SetVisible", &Node::SetVisible, py::arg("visible"), "Writes visible.")
      .def("IsVisible", &Node::IsVisible, "visible.")
      .def("SetFocusIn", &Node::SetFocusIn, py::arg("focusIn"), "Writes focusIn.")
      .def(
          "IsFocusIn", [](const Node& n, py::handle) { return n.focusIn; }, py::arg("focusIn"),
          "focusIn. The argument is required and ignored.")
      .def("SetBoundingBoxVisible", &Node::SetBoundingBoxVisible, py::arg("visible"), "Writes boxVisible.")
      .def("IsBoundingBoxVisible", &Node::IsBoundingBoxVisible, "boxVisible.")
      .def("SetPickTriangleVisible", &Node::SetPickTriangleVisible, py::arg("visible"), "Writes PickTriangleVisible.")
      .def("IsPickTriangleVisible", &Node::IsPickTriangleVisible, "PickTriangleVisible.")
      .def("SetAxisVisible", &Node::SetAxisVisible, py::arg("visible"), "Writes axisVisible.")
      .def("IsAxisVisible", &Node::IsAxisVisible, "axisVisible.")
      .def(
          "SetShadowMapCamera",
          [](Node& n, py::handle camera) { n.SetShadowMapCamera(optional_node(camera, "SetShadowMapCamera")); },
          py::arg("camera"), "Writes ShadowMapCamera.")
      .def("GetShadowMapCamera", &Node::GetShadowMapCamera, "ShadowMapCamera, or None.")
      .def("update", &Node::update, py::arg("delay"),
           "Once a frame: loop rotation, WorldMatrix and AxisMatrix, update_skin_animation,\n"
           "update of every child, the action player, then UpdateFunction(self).")
      .def("update_skin_animation", &Node::update_skin_animation, py::arg("delay"), "Hook; empty here.")
      .def(
          "checkColl", [](Node& n, py::handle other) { return n.checkColl(optional_node(other, "checkColl").get()); },
          py::arg("other"), "False: collisions are not implemented.")
      .def("CreateFollowCamera", &Node::CreateFollowCamera, py::arg("x"), py::arg("y"), py::arg("z"),
           "Creates (once) a camera that follows this node, places it at (x, y, z) and\n"
           "returns it. RuntimeError while the build has no camera class.");

  // ---- Hierarchy ----
  cls.def("GetParent", &Node::GetParent, "parent, or None.")
      .def(
          "SetParent", [](Node& n, py::handle node) { n.SetParent(optional_node(node, "Vorn_3DGameNode.SetParent")); },
          py::arg("node"),
          "Stores node in parent and, unless it is None, appends self to its children.\n"
          "The node stays in an earlier parent's children.")
      .def(
          "AddChild", [](Node& n, py::handle child) { n.AddChild(child_arg(child, "Vorn_3DGameNode.AddChild")); },
          py::arg("child"),
          "Appends child to children (no duplicate test; child's parent is not written).\n"
          "child may also be a Vorn_Text (a label): it is drawn right after this node, adds\n"
          "no batch, axis or pick, and children gives the text itself back.")
      .def(
          "RemoveChild",
          [](Node& n, py::handle child) {
            n.RemoveChild(py::isinstance<Node>(child) ? child.cast<Node*>() : nullptr);
          },
          py::arg("child"),
          "Takes child's subtree apart and removes child from children; prints\n"
          "\"No Find Child\" when it is not a child.")
      .def(
          "GetAllChildrens",
          [](const Node& n) {
            py::list out;
            for (const auto& c : n.GetAllChildrens()) out.append(node_to_py(c));
            return out;
          },
          "Every descendant, depth first, descendants before their parent.")
      .def("RemoveAllChild", &Node::RemoveAllChild, "Empties the whole subtree below this node.")
      .def_property(
          "Parent", &Node::GetParent,
          [](Node& n, py::handle node) { n.SetParent(optional_node(node, "Vorn_3DGameNode.Parent")); },
          "Reads through GetParent, writes through SetParent.");

  // ---- Transform ----
  const char* axes[3] = {"X", "Y", "Z"};
  for (int axis = 0; axis < 3; ++axis) {
    const std::string a = axes[axis];
    auto get = [axis](const Node& n) {
      const double v = axis == 0 ? n.x : axis == 1 ? n.y : n.z;
      return script_number(v, n.xyzIntMask & (1u << axis));
    };
    const std::string setName = "Set" + a, moveName = "Move" + a;
    cls.def(("Get" + a).c_str(), get, ("Position " + a + ".").c_str());
    cls.def(
        setName.c_str(), [axis](Node& n, py::handle v) { set_axis(n, axis, v, false, "Vorn_3DGameNode.Set"); },
        py::arg(axis == 0 ? "x" : axis == 1 ? "y" : "z"), ("Writes position " + a + ".").c_str());
    cls.def(
        moveName.c_str(), [axis](Node& n, py::handle v) { set_axis(n, axis, v, true, "Vorn_3DGameNode.Move"); },
        py::arg(axis == 0 ? "x" : axis == 1 ? "y" : "z"), ("Adds to position " + a + ".").c_str());
    cls.def_property(
        a.c_str(), get, [axis](Node& n, py::handle v) { set_axis(n, axis, v, false, "Vorn_3DGameNode.Set"); },
        ("Position " + a + " through Get" + a + " and Set" + a + ".").c_str());
  }
  auto fail_triple = [](const char* setter) {
    return [setter](Node&, py::handle) {
      throw py::type_error(std::string("Vorn_3DGameNode.") + setter +
                           "() missing 2 required positional arguments (the property is read-only in effect)");
    };
  };
  cls.def("GetXYZ", &xyz_tuple, "(x, y, z).")
      .def(
          "SetXYZ",
          [](Node& n, py::handle x, py::handle y, py::handle z) {
            set_axis(n, 0, x, false, "Vorn_3DGameNode.SetXYZ");
            set_axis(n, 1, y, false, "Vorn_3DGameNode.SetXYZ");
            set_axis(n, 2, z, false, "Vorn_3DGameNode.SetXYZ");
          },
          py::arg("x"), py::arg("y"), py::arg("z"), "Writes the position.")
      .def(
          "MoveXYZ",
          [](Node& n, py::handle x, py::handle y, py::handle z) {
            set_axis(n, 0, x, true, "Vorn_3DGameNode.MoveXYZ");
            set_axis(n, 1, y, true, "Vorn_3DGameNode.MoveXYZ");
            set_axis(n, 2, z, true, "Vorn_3DGameNode.MoveXYZ");
          },
          py::arg("x"), py::arg("y"), py::arg("z"), "Adds to the position.")
      .def_property("XYZ", &xyz_tuple, fail_triple("SetXYZ"),
                    "(x, y, z) through GetXYZ. Writing it fails with TypeError, since SetXYZ takes three values.")
      .def("GetSX", &Node::GetSX, "Scale x.")
      .def("GetSY", &Node::GetSY, "Scale y.")
      .def("GetSZ", &Node::GetSZ, "Scale z.")
      .def("SetSX", &Node::SetSX, py::arg("sx"), "Writes scale x.")
      .def("SetSY", &Node::SetSY, py::arg("sy"), "Writes scale y.")
      .def("SetSZ", &Node::SetSZ, py::arg("sz"), "Writes scale z.")
      .def("ScaleX", &Node::ScaleX, py::arg("sx"), "Adds sx to scale x (adds, does not multiply).")
      .def("ScaleY", &Node::ScaleY, py::arg("sy"), "Adds sy to scale y.")
      .def("ScaleZ", &Node::ScaleZ, py::arg("sz"), "Adds sz to scale z.")
      .def_property("SX", &Node::GetSX, &Node::SetSX, "Scale x through GetSX and SetSX.")
      .def_property("SY", &Node::GetSY, &Node::SetSY, "Scale y through GetSY and SetSY.")
      .def_property("SZ", &Node::GetSZ, &Node::SetSZ, "Scale z through GetSZ and SetSZ.")
      .def(
          "GetSXYZ", [](const Node& n) { return py::make_tuple(n.sx, n.sy, n.sz); }, "(sx, sy, sz).")
      .def("SetSXYZ", &Node::SetSXYZ, py::arg("sx"), py::arg("sy"), py::arg("sz"), "Writes the scale.")
      .def("SetScale", &Node::SetScale, py::arg("scale"), "The same scale on all three axes.")
      .def("ScaleXYZ", &Node::ScaleXYZ, py::arg("sx"), py::arg("sy"), py::arg("sz"), "Adds to the scale.")
      .def_property(
          "SXYZ", [](const Node& n) { return py::make_tuple(n.sx, n.sy, n.sz); }, fail_triple("SetSXYZ"),
          "(sx, sy, sz) through GetSXYZ. Writing it fails with TypeError.")
      .def("GetRX", &Node::GetRX, "Rotation about X in degrees.")
      .def("GetRY", &Node::GetRY, "Rotation about Y in degrees.")
      .def("GetRZ", &Node::GetRZ, "Rotation about Z in degrees.")
      .def("SetRX", &Node::SetRX, py::arg("rx"), "Writes rx (not wrapped).")
      .def("SetRY", &Node::SetRY, py::arg("ry"), "Writes ry (not wrapped).")
      .def("SetRZ", &Node::SetRZ, py::arg("rz"), "Writes rz (not wrapped).")
      .def("RotateX", &Node::RotateX, py::arg("rx"), "Adds rx degrees.")
      .def("RotateY", &Node::RotateY, py::arg("ry"), "Adds ry degrees.")
      .def("RotateZ", &Node::RotateZ, py::arg("rz"), "Adds rz degrees.")
      .def_property("RX", &Node::GetRX, &Node::SetRX, "rx through GetRX and SetRX.")
      .def_property("RY", &Node::GetRY, &Node::SetRY, "ry through GetRY and SetRY.")
      .def_property("RZ", &Node::GetRZ, &Node::SetRZ, "rz through GetRZ and SetRZ.")
      .def(
          "GetRXYZ", [](const Node& n) { return py::make_tuple(n.rx, n.ry, n.rz); }, "(rx, ry, rz).")
      .def("SetRXYZ", &Node::SetRXYZ, py::arg("rx"), py::arg("ry"), py::arg("rz"), "Writes the rotation.")
      .def("RotateXYZ", &Node::RotateXYZ, py::arg("rx"), py::arg("ry"), py::arg("rz"), "Adds to the rotation.")
      .def_property(
          "RXYZ", [](const Node& n) { return py::make_tuple(n.rx, n.ry, n.rz); }, fail_triple("SetRXYZ"),
          "(rx, ry, rz) through GetRXYZ. Writing it fails with TypeError.")
      .def("SetLoopRotateX", &Node::SetLoopRotateX, py::arg("speed"), "Degrees per unit of delay about X.")
      .def("SetLoopRotateY", &Node::SetLoopRotateY, py::arg("speed"), "Degrees per unit of delay about Y.")
      .def("SetLoopRotateZ", &Node::SetLoopRotateZ, py::arg("speed"), "Degrees per unit of delay about Z.")
      .def("StopLoopRotate", &Node::StopLoopRotate, "Sets the three loop speeds to 0.")
      .def("GetParentMatrix", &Node::GetParentMatrix,
           "The follow target's translation, else the parent's WorldMatrix, else identity.")
      .def("GetWorldMatrix", &Node::GetWorldMatrix, "WorldMatrix as of the last update.")
      .def("GetAxisMatrix", &Node::GetAxisMatrix, "AxisMatrix (WorldMatrix without the node's own scale).")
      .def("GetWorldXYZ", &Node::GetWorldXYZ,
           "World position from WorldMatrix; with standOnGround and a scene, y is the ground height.")
      .def(
          "Follow", [](Node& n, py::handle target) { n.Follow(optional_node(target, "Vorn_3DGameNode.Follow")); },
          py::arg("targetObj"), "Follows the position of targetObj; None ends the following.")
      .def("StandOnGround", &Node::StandOnGround, py::arg("standOn"),
           "Writes standOnGround; a node with a parent prints a line and changes nothing.");

  // ---- Timed actions ----
  cls.def("SetSXY", &Node::SetSXY, py::arg("sx"), py::arg("sy"), "2D scale: writes sx and sy.")
      .def("GetAngle", &Node::GetAngle, "2D angle: rz.")
      .def("SetAngle", &Node::SetAngle, py::arg("angle"), "2D angle: writes rz.")
      .def(
          "RunAction",
          [](Node& n, py::handle queue) {
            if (!py::isinstance<py::sequence>(queue) || py::isinstance<py::str>(queue)) {
              throw py::type_error("Vorn_3DGameNode.RunAction: actionqueue must be a sequence of actions");
            }
            Node::ActionQueue actions;
            for (py::handle a : queue) {
              if (!py::isinstance<GAction>(a)) {
                throw py::type_error("Vorn_3DGameNode.RunAction: actionqueue holds a " +
                                     std::string(py::str(py::type::handle_of(a).attr("__name__"))) +
                                     ", not an action");
              }
              actions.push_back(a.cast<std::shared_ptr<GAction>>());
            }
            n.RunAction(actions);
          },
          py::arg("actionqueue"),
          "Plays the actions one after the other on this node; an earlier queue is dropped.");

  // ---- Bindings and script hooks ----
  cls.def(
         "SetBindingVar", [](Node& n, const std::string& k, py::handle v) { n.SetBindingVar(k, to_script(v)); },
         py::arg("varname"), py::arg("varvalue"), "BindingVarArray[varname] = varvalue.")
      .def(
          "GetBindingVar", [](const Node& n, const std::string& k) { return from_script(n.GetBindingVar(k)); },
          py::arg("varname"), "The variable, or None after printing \"No Find Variable\".")
      .def("DelBindingVar", &Node::DelBindingVar, py::arg("varname"), "Removes the variable (KeyError if absent).")
      .def("CleanUpBindingVar", &Node::CleanUpBindingVar, "Empties BindingVarArray.")
      .def(
          "SetBindingEvent",
          [](Node& n, const std::string& e, py::handle fn, py::object code) {
            n.SetBindingEvent(e, to_script(fn), to_script(code.is_none() ? py::list() : code));
          },
          py::arg("eventName"), py::arg("functionName"), py::arg("functionCode") = py::none(),
          "BindingEventArray[eventName] = [functionName, functionCode]; functionCode defaults to [].")
      .def("DelBindingEvent", &Node::DelBindingEvent, py::arg("eventName"), "Removes the event.")
      .def("CleanUpBindingEvent", &Node::CleanUpBindingEvent, "Empties BindingEventArray.")
      .def(
          "SetInnerBindingEvent",
          [](Node& n, const std::string& e, py::handle fn, py::object code) {
            n.SetInnerBindingEvent(e, to_script(fn), to_script(code.is_none() ? py::list() : code));
          },
          py::arg("eventName"), py::arg("functionName"), py::arg("functionCode") = py::none(),
          "InnerBindingEventArray[eventName] = [functionName, functionCode].")
      .def("DelInnerBindingEvent", &Node::DelInnerBindingEvent, py::arg("eventName"), "Removes the inner event.")
      .def("CleanUpInnerBindingEvent", &Node::CleanUpInnerBindingEvent, "Empties InnerBindingEventArray.")
      .def(
          "SetBindingPoint",
          [](Node& n, const std::string& p, py::handle t, py::handle x, py::handle y) {
            n.SetBindingPoint(p, to_script(t), to_script(x), to_script(y));
          },
          py::arg("pointName"), py::arg("posType"), py::arg("x"), py::arg("y"),
          "BindingPointArray[pointName] = [posType, x, y].")
      .def("DelBindingPoint", &Node::DelBindingPoint, py::arg("pointName"), "Removes the point.")
      .def("CleanUpBindingPoint", &Node::CleanUpBindingPoint, "Empties BindingPointArray.")
      .def(
          "CallEvent",
          [](Node& n, const std::string& e, py::kwargs params) { n.CallEvent(e, to_script(params)); },
          py::arg("eventName"),
          "Calls the event's function with the named parameters as one dict. Without a\n"
          "function, the operation on_<eventName> of the node is bound into the entry and\n"
          "called; without one either, prints \"No Find Binding Event\".")
      .def(
          "CallInnerEvent",
          [](Node& n, const std::string& e, py::kwargs params) { n.CallInnerEvent(e, to_script(params)); },
          py::arg("eventName"), "CallEvent on InnerBindingEventArray (\"No Find Inner Binding Event\").")
      .def(
          "SetPickDownFunction",
          [](Node& n, py::handle f) {
            n.SetPickDownFunction(pick_callback_from_py(f, &Node::PickDownFunction, "SetPickDownFunction"));
          },
          py::arg("function"), "PickDownFunction(node, DetailInfo) is called when the node is picked.")
      .def("EnablePickDownEvent", &Node::EnablePickDownEvent, py::arg("enable"), "Writes Enable_PickDown.")
      .def(
          "SetPickUpFunction",
          [](Node& n, py::handle f) {
            n.SetPickUpFunction(pick_callback_from_py(f, &Node::PickUpFunction, "SetPickUpFunction"));
          },
          py::arg("function"), "Writes PickUpFunction.")
      .def("EnablePickUpEvent", &Node::EnablePickUpEvent, py::arg("enable"), "Writes Enable_PickUp.")
      .def(
          "SetUpdateFunction",
          [](Node& n, py::handle f) { n.SetUpdateFunction(update_callback_from_py(f, "SetUpdateFunction")); },
          py::arg("function"), "UpdateFunction(node) is called at the end of each update.");
}

void bind_node(py::module_& m) {
  py::class_<NodeScene, PyNodeScene, std::shared_ptr<NodeScene>>(
      m, "NodeScene",
      "What a node needs of its scene: GenNewGameNodeID() and Get3DTerrainY(x, z).\n"
      "Vorn_3Dcene implements it; a script may subclass it for a scene of its own.")
      .def(py::init_alias<>())
      .def("GenNewGameNodeID", &NodeScene::GenNewGameNodeID, "A fresh node number.")
      .def("Get3DTerrainY", &NodeScene::Get3DTerrainY, py::arg("x"), py::arg("z"), "Ground height at (x, z).");

  bind_node_views(m);

  NodeClass cls(m, "Vorn_3DGameNode",
                "The base of everything placed in the 3D world: hierarchy, transform,\n"
                "submeshes, vertex buffers and script bindings.\n\n"
                "Ownership: children are owned by their parent; parent, followTarget and\n"
                "sceneInstance are references that do not keep their object alive. A script\n"
                "subclass instance owned only by the engine keeps its script attributes.",
                py::dynamic_attr(), twin_type_setup());
  def_node_init<Node, PyNode<Node>>(cls, "Vorn_3DGameNode", "__init__(self, x=0, y=0, z=0, parent=None)\n\n"
                        "With a parent that is in a scene, the node is loaded at once (tag from the\n"
                        "label \"3DGameNode\") and appended to the parent's children.");

  bind_node_methods(cls);
  bind_node_fields(cls);
  bind_node_submesh(m, cls);
  bind_node_draw(cls);
  bind_node_textures(cls);
}

}  // namespace vorn::py_bind
