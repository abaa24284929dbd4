// The node's fields, readable and writable by name. Containers that scripts change in
// place (children, the binding tables) are live views; bulk data is read as a copy and
// replaced whole on assignment (bind_node_submesh.cpp).
#include "bind_node.h"
#include "core/actions.h"
#include "node_views.h"

namespace vorn::py_bind {
namespace {

using Node = Vorn_3DGameNode;

struct VarConv {
  static py::object to_py(const ScriptValue& v) { return from_script(v); }
  static ScriptValue from_py(py::handle v, const std::string&) { return to_script(v); }
};

struct EventConv {
  static py::object to_py(const EventEntry& e) {
    py::list out;
    out.append(from_script(e.function));
    if (e.builtin) {
      out.append(e.paramNames ? py::object(py::cast(*e.paramNames)) : py::object(py::none()));
      out.append(py::list());
    } else {
      for (const auto& v : e.rest) out.append(from_script(v));
    }
    return out;
  }
  static EventEntry from_py(py::handle v, const std::string& where) {
    if (!py::isinstance<py::sequence>(v) || py::isinstance<py::str>(v) || py::len(v) == 0) {
      throw py::type_error(where + ": an event entry is a sequence whose entry 0 is the function or None");
    }
    EventEntry e;
    bool first = true;
    for (py::handle item : v) {
      if (first) {
        e.function = to_script(item);
        first = false;
      } else {
        e.rest.push_back(to_script(item));
      }
    }
    return e;
  }
};

struct PointConv {
  static py::object to_py(const BindingPoint& p) {
    return make_list(from_script(p.posType), from_script(p.x), from_script(p.y));
  }
  static BindingPoint from_py(py::handle v, const std::string& where) {
    if (!py::isinstance<py::sequence>(v) || py::isinstance<py::str>(v) || py::len(v) != 3) {
      throw py::type_error(where + ": a binding point is [posType, x, y]");
    }
    py::sequence s = py::reinterpret_borrow<py::sequence>(v);
    return BindingPoint{to_script(s[0]), to_script(s[1]), to_script(s[2])};
  }
};

using VarView = TableView<ScriptValue, VarConv>;
using EventView = TableView<EventEntry, EventConv>;
using PointView = TableView<BindingPoint, PointConv>;

template <class View, class Map>
View table_view(Node& n, Map Node::*table) {
  return View{std::shared_ptr<void>(n.shared_from_this()), &(n.*table)};
}

std::shared_ptr<Node> optional_node(py::handle value, const char* where) {
  if (value.is_none()) return nullptr;
  return node_arg(value, where);
}

// A plain field of a simple type.
template <class T>
void field(NodeClass& cls, const char* name, T Node::*member, const char* doc) {
  cls.def_readwrite(name, member, doc);
}

// A field of a class type read as a copy (def_readwrite would hand out a live reference).
template <class T>
void copied_field(NodeClass& cls, const char* name, T Node::*member, const char* doc) {
  cls.def_property(
      name, [member](const Node& n) { return n.*member; }, [member](Node& n, const T& v) { n.*member = v; }, doc);
}

// A non-owning node reference.
void weak_node_field(NodeClass& cls, const char* name, std::weak_ptr<Node> Node::*member, const char* doc) {
  cls.def_property(
      name, [member](const Node& n) { return node_to_py((n.*member).lock()); },
      [member, name](Node& n, py::handle v) { n.*member = optional_node(v, name); }, doc);
}

void owned_node_field(NodeClass& cls, const char* name, NodeRef Node::*member, const char* doc) {
  cls.def_property(
      name, [member](const Node& n) { return node_to_py(n.*member); },
      [member, name](Node& n, py::handle v) { n.*member = optional_node(v, name); }, doc);
}

template <class View, class Value, class Conv>
void table_field(NodeClass& cls, const char* name, const char* getter, OrderedMap<std::string, Value> Node::*member,
                 const char* doc) {
  cls.def_property(
      name, [member](Node& n) { return table_view<View>(n, member); },
      [member, name](Node& n, py::handle v) { assign_table<Value, Conv>(n.*member, v, name); }, doc);
  cls.def(
      getter, [member](Node& n) { return table_view<View>(n, member); }, doc);
}

template <class Conv, class Value, class Getter>
void table_get(NodeClass& cls, const char* name, Getter getter, const char* argName, const char* doc) {
  cls.def(
      name,
      [getter](const Node& n, const std::string& key) -> py::object {
        const std::optional<Value> found = (n.*getter)(key);
        return found ? Conv::to_py(*found) : py::object(py::none());
      },
      py::arg(argName), doc);
}

}  // namespace

void bind_node_views(py::module_& m) {
  bind_node_list_view(m, "NodeList");
  bind_table_view<ScriptValue, VarConv>(m, "BindingVarTable", "A node's live variable table (name -> value).");
  bind_table_view<EventEntry, EventConv>(m, "BindingEventTable",
                                         "A node's live event table (name -> [function, ...]).");
  bind_table_view<BindingPoint, PointConv>(m, "BindingPointTable",
                                           "A node's live point table (name -> [posType, x, y]).");
}

void bind_node_fields(NodeClass& cls) {
  field(cls, "NodeType", &Node::NodeType, "Class label, e.g. \"3DGameNode\".");
  field(cls, "NodeIndex", &Node::NodeIndex, "Number handed out by the scene at first load; -1 before.");
  field(cls, "TagName", &Node::TagName, "Name for look-up by tag, or None.");
  cls.def_property(
      "sceneInstance", [](const Node& n) { return n.sceneInstance.lock(); },
      [](Node& n, std::shared_ptr<NodeScene> scene) { n.sceneInstance = scene; },
      "The owning scene (not kept alive by the node), or None.");
  weak_node_field(cls, "parent", &Node::parent, "Parent node (not kept alive by the child), or None.");
  cls.def_property(
      "children",
      [](Node& n) { return NodeListView{std::shared_ptr<void>(n.shared_from_this()), &n.children}; },
      [](Node& n, py::handle v) { assign_node_list(n.children, v, "Vorn_3DGameNode.children"); },
      "Owned children in order: a live list (append, remove, ... reach the engine).");

  table_field<VarView, ScriptValue, VarConv>(cls, "BindingVarArray", "GetBindingVarArray", &Node::BindingVarArray,
                                             "Script variables: a live table.");
  table_field<EventView, EventEntry, EventConv>(cls, "BindingEventArray", "GetBindingEventArray",
                                                &Node::BindingEventArray, "Script events: a live table.");
  table_field<PointView, BindingPoint, PointConv>(cls, "BindingPointArray", "GetBindingPointArray",
                                                  &Node::BindingPointArray, "Anchor points: a live table.");
  table_field<EventView, EventEntry, EventConv>(cls, "InnerBindingEventArray", "GetInnerBindingEventArray",
                                                &Node::InnerBindingEventArray,
                                                "Inner events (Load, Update, Render, Destroy, PickDown, PickUp).");
  table_get<EventConv, EventEntry>(cls, "GetBindingEvent", &Node::GetBindingEvent, "eventName",
                                   "The event entry, or None after printing \"No Find Binding Event\".");
  table_get<EventConv, EventEntry>(cls, "GetInnerBindingEvent", &Node::GetInnerBindingEvent, "eventName",
                                   "The inner event entry, or None after printing \"No Find Inner Binding Event\".");
  table_get<PointConv, BindingPoint>(cls, "GetBindingPoint", &Node::GetBindingPoint, "pointName",
                                     "[posType, x, y], or None after printing \"No Find Binding Point\".");

  cls.def_property(
      "PickDownFunction", [](const Node& n) { return from_script(n.PickDownFunction.source); },
      [](Node& n, py::handle f) { n.PickDownFunction = pick_callback_from_py(f, &Node::PickDownFunction, "PickDownFunction"); },
      "Called as PickDownFunction(node, DetailInfo) when the node is picked; or None.");
  field(cls, "Enable_PickDown", &Node::Enable_PickDown, "Whether PickDownFunction is called.");
  cls.def_property(
      "PickUpFunction", [](const Node& n) { return from_script(n.PickUpFunction.source); },
      [](Node& n, py::handle f) { n.PickUpFunction = pick_callback_from_py(f, &Node::PickUpFunction, "PickUpFunction"); },
      "Pick-up callback, or None.");
  field(cls, "Enable_PickUp", &Node::Enable_PickUp, "Whether PickUpFunction is called.");
  cls.def_property(
      "UpdateFunction", [](const Node& n) { return from_script(n.UpdateFunction.source); },
      [](Node& n, py::handle f) { n.UpdateFunction = update_callback_from_py(f, "UpdateFunction"); },
      "Called as UpdateFunction(node) at the end of update; or None.");
  field(cls, "is2DMode", &Node::is2DMode, "Set by the 2D shape operations.");

  const char* xyz[3] = {"x", "y", "z"};
  for (int axis = 0; axis < 3; ++axis) {
    cls.def_property(
        xyz[axis],
        [axis](const Node& n) {
          return script_number(axis == 0 ? n.x : axis == 1 ? n.y : n.z, n.xyzIntMask & (1u << axis));
        },
        [axis](Node& n, py::handle v) {
          (axis == 0 ? n.x : axis == 1 ? n.y : n.z) = number_arg(v, "Vorn_3DGameNode", "position");
          const auto bit = static_cast<std::uint8_t>(1u << axis);
          n.xyzIntMask = static_cast<std::uint8_t>(is_py_int(v) ? (n.xyzIntMask | bit) : (n.xyzIntMask & ~bit));
        },
        "Local position.");
  }
  field(cls, "sx", &Node::sx, "Local scale x.");
  field(cls, "sy", &Node::sy, "Local scale y.");
  field(cls, "sz", &Node::sz, "Local scale z.");
  field(cls, "rx", &Node::rx, "Local rotation about X in degrees.");
  field(cls, "ry", &Node::ry, "Local rotation about Y in degrees.");
  field(cls, "rz", &Node::rz, "Local rotation about Z in degrees.");
  field(cls, "rx_speed", &Node::rx_speed, "Loop rotation about X, degrees per unit of delay.");
  field(cls, "ry_speed", &Node::ry_speed, "Loop rotation about Y, degrees per unit of delay.");
  field(cls, "rz_speed", &Node::rz_speed, "Loop rotation about Z, degrees per unit of delay.");
  copied_field(cls, "WorldMatrix", &Node::WorldMatrix, "World matrix, recomputed by update (a copy when read).");
  copied_field(cls, "AxisMatrix", &Node::AxisMatrix, "WorldMatrix without the node's own scale (a copy when read).");
  weak_node_field(cls, "followTarget", &Node::followTarget, "Node whose position is followed, or None.");
  field(cls, "instanceID", &Node::instanceID, "Slot given by the owner; -1 when none.");
  field(cls, "visible", &Node::visible, "Gate of draw.");
  cls.def_property(
      "ActionPlayer", [](const Node& n) { return n.ActionPlayer; },
      [](Node& n, std::shared_ptr<vorn::ActionPlayer> player) { n.ActionPlayer = std::move(player); },
      "The player of RunAction, or None before the first RunAction.");
  field(cls, "TargetFrameBuffer", &Node::TargetFrameBuffer, "GL framebuffer drawn into, or None.");
  field(cls, "TargetFrameBuffer_IsPostFXMode", &Node::TargetFrameBuffer_IsPostFXMode, "Render-target mode.");
  field(cls, "TargetFrameWidth", &Node::TargetFrameWidth, "Render-target width.");
  field(cls, "TargetFrameHeight", &Node::TargetFrameHeight, "Render-target height.");
  field(cls, "withNormal", &Node::withNormal, "Node-wide vertex content flag.");
  field(cls, "withTexUV", &Node::withTexUV, "Texture coordinates in the last CreateSubMesh.");
  field(cls, "withSkin", &Node::withSkin, "Skinning in the last CreateSubMesh.");
  field(cls, "CurrSubMeshFX", &Node::CurrSubMeshFX, "Program bound during this node's draw, or None.");
  field(cls, "MeshFile", &Node::MeshFile, "Source file of a loaded mesh.");
  field(cls, "clicked", &Node::clicked, "Picked state kept for the script.");
  field(cls, "boxMin", &Node::boxMin, "Local bounding box minimum (rebuilt by BuildVBO).");
  field(cls, "boxMax", &Node::boxMax, "Local bounding box maximum (rebuilt by BuildVBO).");
  field(cls, "boxVisible", &Node::boxVisible, "Bounding box debug drawing.");
  field(cls, "axisVisible", &Node::axisVisible, "Axis debug drawing.");
  field(cls, "focusIn", &Node::focusIn, "Focus flag for the script.");
  cls.def_property(
      "userData", [](const Node& n) { return from_script(n.userData); },
      [](Node& n, py::handle v) { n.userData = to_script(v); }, "Free value of the script.");
  field(cls, "standOnGround", &Node::standOnGround, "GetWorldXYZ reports the ground height.");
  owned_node_field(cls, "FollowCamera", &Node::FollowCamera, "Camera made by CreateFollowCamera, or None.");
  owned_node_field(cls, "ShadowMapCamera", &Node::ShadowMapCamera, "Source of the shadow uniforms, or None.");
  field(cls, "PickTriangleVisible", &Node::PickTriangleVisible, "Picked-triangle debug drawing.");
}

}  // namespace vorn::py_bind
