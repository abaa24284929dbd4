// Timed actions, their two-component vector and the ActionTarget interface they act on.
//
// Lifetimes: an action refers to its target weakly. A Python ActionTarget that nothing
// else keeps alive goes away, and the action then acts as one without a target. Holding
// it strongly would make a cycle through C++ (node -> player -> action -> node) that
// Python's collector cannot see. A Python subclass of GAction placed in a player's queue
// is kept whole (its Python part alive) for as long as the queue holds it.
#include <cmath>
#include <memory>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "bind_common.h"
#include "core/action_target.h"
#include "core/actions.h"
#include "core/vector2.h"
#include "core/vector3.h"

namespace vorn::py_bind {

// The queue that a script passes to AddActions or RunAction: a sequence of actions.
// Node bindings call this too, so that Python subclasses of GAction stay whole.
std::vector<std::shared_ptr<GAction>> action_queue_arg(py::handle queue, const char* where);

namespace {

std::string type_name(py::handle value) { return py::str(py::type::handle_of(value).attr("__name__")); }

// ---------------------------------------------------------------------------------------
// ActionTarget implemented in Python.

// Converts what a Python override returned into the C++ result type.
template <class R>
R override_result(const py::object& result, const char* name) {
  if constexpr (std::is_same_v<R, bool>) {
    const int truth = PyObject_IsTrue(result.ptr());
    if (truth < 0) throw py::error_already_set();
    return truth != 0;
  } else if constexpr (std::is_same_v<R, double>) {
    return number_arg(result, (std::string("ActionTarget.") + name).c_str(), "the result");
  } else {
    static_assert(std::is_same_v<R, Vector3>);
    if (py::isinstance<Vector3>(result)) return result.cast<Vector3>();
    const std::string where = std::string("ActionTarget.") + name;
    if (PySequence_Check(result.ptr()) && !PyUnicode_Check(result.ptr()) && py::len(result) == 3) {
      py::sequence seq = py::reinterpret_borrow<py::sequence>(result);
      return Vector3(number_arg(seq[0], where.c_str(), "the result"), number_arg(seq[1], where.c_str(), "the result"),
                     number_arg(seq[2], where.c_str(), "the result"));
    }
    throw py::type_error(where + ": the result must be a Vector3, not " + type_name(result));
  }
}

class PyActionTarget : public ActionTarget {
 public:
  void SetXYZ(double x, double y, double z) override { call<void>("SetXYZ", x, y, z); }
  Vector3 GetWorldXYZ() const override { return call<Vector3>("GetWorldXYZ"); }
  double GetSX() const override { return call<double>("GetSX"); }
  double GetSY() const override { return call<double>("GetSY"); }
  void SetSXY(double sx, double sy) override { call<void>("SetSXY", sx, sy); }
  double GetAngle() const override { return call<double>("GetAngle"); }
  void SetAngle(double angle) override { call<void>("SetAngle", angle); }
  bool IsVisible() const override { return call<bool>("IsVisible"); }
  void SetVisible(bool visible) override { call<void>("SetVisible", visible); }

 private:
  template <class R, class... Args>
  R call(const char* name, Args... args) const {
    py::gil_scoped_acquire gil;
    py::function override = py::get_override(static_cast<const ActionTarget*>(this), name);
    if (!override) {
      throw py::type_error(std::string("ActionTarget.") + name + ": not implemented by this subclass");
    }
    py::object result = override(args...);
    if constexpr (!std::is_void_v<R>) return override_result<R>(result, name);
  }
};

// ---------------------------------------------------------------------------------------
// GAction and its subclasses implemented (further) in Python.

// Marks C++ objects that pybind11 built for a Python subclass.
class PythonDerivedAction {
 public:
  virtual ~PythonDerivedAction() = default;
};

template <class Base>
class PyAction : public Base, public PythonDerivedAction {
 public:
  using Base::Base;
  // The constructors below build the C++ object first and move it into the subclass.
  explicit PyAction(Base&& base) : Base(std::move(base)) {}

  void Run() override { PYBIND11_OVERRIDE(void, Base, Run, ); }
  void update(double delay) override { PYBIND11_OVERRIDE(void, Base, update, delay); }
};

// One action of a queue. A Python subclass is held together with its Python object so
// that its overrides still run when the script has dropped its own reference.
std::shared_ptr<GAction> action_arg(py::handle item, const char* where) {
  if (!py::isinstance<GAction>(item)) {
    throw py::type_error(std::string(where) + ": actions must be GAction objects, not " + type_name(item));
  }
  auto holder = item.cast<std::shared_ptr<GAction>>();
  if (!dynamic_cast<PythonDerivedAction*>(holder.get())) return holder;
  GAction* raw = holder.get();
  return std::shared_ptr<GAction>(raw, [self = py::reinterpret_borrow<py::object>(item)](GAction*) mutable {
    // After interpreter shutdown the reference is leaked rather than released.
    if (!Py_IsInitialized()) {
      (void)self.release();
      return;
    }
    py::gil_scoped_acquire gil;
    self = py::object();
  });
}

// A whole number prints as an int; other values as floats.
py::object count_object(double value) {
  if (std::isfinite(value) && value == std::floor(value) && std::fabs(value) < 9.2e18) {
    return py::int_(static_cast<long long>(value));
  }
  return py::float_(value);
}

Vector3 point_from_args(py::handle x, py::handle y, py::handle z, const char* where) {
  Vector3 v(number_arg(x, where, "x"), number_arg(y, where, "y"), number_arg(z, where, "z"));
  v.intMask = static_cast<std::uint8_t>((is_py_int(x) ? 1 : 0) | (is_py_int(y) ? 2 : 0) | (is_py_int(z) ? 4 : 0));
  return v;
}

Vector2 scale_from_args(py::handle sx, py::handle sy, const char* where) {
  Vector2 v(number_arg(sx, where, "sx"), number_arg(sy, where, "sy"));
  v.intMask = static_cast<std::uint8_t>((is_py_int(sx) ? 1 : 0) | (is_py_int(sy) ? 2 : 0));
  return v;
}

ScriptValue callable_arg(py::handle value, const char* where) {
  if (!value.is_none() && !PyCallable_Check(value.ptr())) {
    throw py::type_error(std::string(where) + ": callbackFunc must be callable or None, not " + type_name(value));
  }
  return to_script(value);
}

std::weak_ptr<ActionTarget> target_arg(py::handle value, const char* where) {
  if (value.is_none()) return {};
  if (!py::isinstance<ActionTarget>(value)) {
    throw py::type_error(std::string(where) + ": targetNode must be an ActionTarget or None, not " +
                         type_name(value));
  }
  return value.cast<std::shared_ptr<ActionTarget>>();
}

py::object target_object(const GAction& action) {
  std::shared_ptr<ActionTarget> target = action.targetNode.lock();
  if (!target) return py::none();
  return py::cast(target);
}

// ---------------------------------------------------------------------------------------

py::object vector2_component(const Vector2& v, int axis, double value) {
  if (v.is_int(axis) && std::isfinite(value) && value == std::floor(value)) {
    return py::int_(static_cast<long long>(value));
  }
  return py::float_(value);
}

void set_vector2_component(Vector2& v, int axis, double& field, py::handle value, const char* name) {
  field = number_arg(value, "Vector2", name);
  const auto bit = static_cast<std::uint8_t>(1u << axis);
  v.intMask = is_py_int(value) ? (v.intMask | bit) : (v.intMask & ~bit);
}

Vector2 vector2_times(const Vector2& v, py::handle n, const char* where) {
  if (is_py_int(n)) return v.mul_int(n.cast<long long>());
  return v * number_arg(n, where, "n");
}

void bind_vector2(py::module_& m) {
  py::class_<Vector2>(m, "Vector2",
                      "Two-component vector (the 2D scale of the scale actions). Operators build new\n"
                      "vectors. str() gives \"x,y\".")
      .def(py::init([](py::handle x, py::handle y) {
             Vector2 v(0.0, 0.0, 0);
             set_vector2_component(v, 0, v.x, x, "x");
             set_vector2_component(v, 1, v.y, y, "y");
             return v;
           }),
           py::arg("x") = 0, py::arg("y") = 0, "Vector2(x=0, y=0)")
      .def_property(
          "x", [](const Vector2& v) { return vector2_component(v, 0, v.x); },
          [](Vector2& v, py::handle value) { set_vector2_component(v, 0, v.x, value, "x"); }, "The x component.")
      .def_property(
          "y", [](const Vector2& v) { return vector2_component(v, 1, v.y); },
          [](Vector2& v, py::handle value) { set_vector2_component(v, 1, v.y, value, "y"); }, "The y component.")
      .def(
          "__add__", [](const Vector2& a, const Vector2& b) { return a + b; }, py::is_operator(),
          "Component-wise sum.")
      .def(
          "__sub__", [](const Vector2& a, const Vector2& b) { return a - b; }, py::is_operator(),
          "Component-wise difference.")
      .def(
          "__mul__", [](const Vector2& a, py::handle n) { return vector2_times(a, n, "Vector2.__mul__"); },
          py::arg("n"), "Vector2(x * n, y * n); n is a number.")
      .def(
          "__rmul__", [](const Vector2& a, py::handle n) { return vector2_times(a, n, "Vector2.__rmul__"); },
          py::arg("n"), "n * v, the same as v * n.")
      .def(
          "lerp",
          [](const Vector2& a, const Vector2& dst, py::handle progress) {
            if (is_py_int(progress)) return a + (dst - a).mul_int(progress.cast<long long>());
            return a.lerp(dst, number_arg(progress, "Vector2.lerp", "progress"));
          },
          py::arg("dst"), py::arg("progress"), "self + (dst - self) * progress.")
      .def("__copy__", [](const Vector2& v) { return v; })
      .def(
          "__deepcopy__", [](const Vector2& v, py::handle) { return v; }, py::arg("memo"))
      .def("__str__", &Vector2::str)
      .def("__repr__", [](const Vector2& v) { return "Vector2(" + v.str() + ")"; });
}

void bind_action_target(py::module_& m) {
  py::class_<ActionTarget, PyActionTarget, std::shared_ptr<ActionTarget>>(
      m, "ActionTarget",
      "What a timed action acts on. Scene nodes are ActionTargets; a script may subclass\n"
      "ActionTarget for targets of its own (call ActionTarget.__init__ and define every\n"
      "operation). Actions hold their target weakly: keep the target alive yourself.")
      .def(py::init<>(), "ActionTarget(), for subclasses.")
      .def("SetXYZ", &ActionTarget::SetXYZ, py::arg("x"), py::arg("y"), py::arg("z"), "Sets the local position.")
      .def("GetWorldXYZ", &ActionTarget::GetWorldXYZ, "The world position as a Vector3.")
      .def("GetSX", &ActionTarget::GetSX, "The x scale.")
      .def("GetSY", &ActionTarget::GetSY, "The y scale.")
      .def("SetSXY", &ActionTarget::SetSXY, py::arg("sx"), py::arg("sy"), "Sets the 2D scale.")
      .def("GetAngle", &ActionTarget::GetAngle, "The 2D angle in degrees.")
      .def("SetAngle", &ActionTarget::SetAngle, py::arg("angle"), "Sets the 2D angle in degrees.")
      .def("IsVisible", &ActionTarget::IsVisible, "Whether the target is shown.")
      .def("SetVisible", &ActionTarget::SetVisible, py::arg("visible"), "Shows or hides the target.");
}

// The duration field that every timed subclass has.
template <class Class>
void def_duration(Class& cls) {
  using T = typename Class::type;
  cls.def_readwrite("duration", &T::duration, "Seconds the action takes.");
}

void bind_gaction(py::module_& m) {
  py::class_<GAction, PyAction<GAction>, std::shared_ptr<GAction>>(
      m, "GAction",
      "Base of the timed actions. Run() starts it, update(delay) advances it by one frame's\n"
      "seconds; it acts only while running and not over. Subclasses may override Run and\n"
      "update.")
      .def(py::init<>(), "GAction(): idle, no target, runtime 0.")
      .def_readwrite("running", &GAction::running, "Whether the action advances.")
      .def_property(
          "targetNode", [](const GAction& a) { return target_object(a); },
          [](GAction& a, py::handle target) { a.SetTarget(target_arg(target, "GAction.targetNode")); },
          "The ActionTarget acted on (held weakly), or None.")
      .def_readwrite("runtime", &GAction::runtime, "Seconds run so far.")
      .def_readwrite("over", &GAction::over, "Whether the action has finished.")
      .def_property(
          "time",
          [](py::handle self) -> double {
            const auto& a = self.cast<const GAction&>();
            if (!a.time) throw py::attribute_error("'" + type_name(self) + "' object has no attribute 'time'");
            return *a.time;
          },
          [](GAction& a, py::handle value) { a.time = number_arg(value, "GAction.time", "time"); },
          "0 once Stop() has run; absent before.")
      .def(
          "SetTarget", [](GAction& a, py::handle targetNode) { a.SetTarget(target_arg(targetNode, "GAction.SetTarget")); },
          py::arg("targetNode"), "Sets targetNode (an ActionTarget or None).")
      .def("IsRunning", &GAction::IsRunning, "running.")
      .def("GetRunTime", &GAction::GetRunTime, "runtime.")
      .def("IsOver", &GAction::IsOver, "over.")
      .def("Run", &GAction::Run, "Starts the action from the beginning: running, runtime 0, not over.")
      .def("update", &GAction::update, py::arg("delay"), "Advances the action by delay seconds.")
      .def("Pause", &GAction::Pause, "Stops advancing; runtime stays.")
      .def("Resume", &GAction::Resume, "Advances again from the current runtime.")
      .def("Stop", &GAction::Stop, "Stops advancing and sets the field time to 0; runtime stays.");
}

void bind_callback_action(py::module_& m) {
  py::class_<CallBackAction, GAction, PyAction<CallBackAction>, std::shared_ptr<CallBackAction>> cls(
      m, "CallBackAction", "Waits duration seconds, then calls callbackFunc(callbackParams) once.");
  cls.def(py::init([](py::handle duration, py::handle callbackFunc, py::handle params) {
            return CallBackAction(number_arg(duration, "CallBackAction", "duration"),
                                  callable_arg(callbackFunc, "CallBackAction"), to_script(params));
          }),
          py::arg("duration"), py::arg("callbackFunc"), py::arg("params"),
          "CallBackAction(duration, callbackFunc, params); callbackFunc may be None.")
      .def_property(
          "callbackFunc", [](const CallBackAction& a) { return from_script(a.callbackFunc); },
          [](CallBackAction& a, py::handle f) { a.callbackFunc = callable_arg(f, "CallBackAction.callbackFunc"); },
          "The function called at the end, or None.")
      .def_property(
          "callbackParams", [](const CallBackAction& a) { return from_script(a.callbackParams); },
          [](CallBackAction& a, py::handle p) { a.callbackParams = to_script(p); },
          "The one argument passed to callbackFunc.");
  def_duration(cls);
}

template <class Action>
void bind_move_action(py::module_& m, const char* name, const char* doc, const char* dst_doc) {
  py::class_<Action, GAction, PyAction<Action>, std::shared_ptr<Action>> cls(m, name, doc);
  cls.def(py::init([name](py::handle duration, py::handle x, py::handle y, py::handle z) {
            Action action(number_arg(duration, name, "duration"), 0.0, 0.0, 0.0);
            action.dstPostion = point_from_args(x, y, z, name);
            return action;
          }),
          py::arg("duration"), py::arg("x"), py::arg("y"), py::arg("z"),
          (std::string(name) + "(duration, x, y, z)").c_str())
      .def_readwrite("srcPostion", &Action::srcPostion, "World position of the target at Run().")
      .def_readwrite("dstPostion", &Action::dstPostion, dst_doc);
  def_duration(cls);
}

template <class Action>
void bind_scale_action(py::module_& m, const char* name, const char* doc, const char* dst_doc) {
  py::class_<Action, GAction, PyAction<Action>, std::shared_ptr<Action>> cls(m, name, doc);
  cls.def(py::init([name](py::handle duration, py::handle sx, py::handle sy) {
            Action action(number_arg(duration, name, "duration"), 0.0, 0.0);
            action.dstScale = scale_from_args(sx, sy, name);
            return action;
          }),
          py::arg("duration"), py::arg("sx"), py::arg("sy"), (std::string(name) + "(duration, sx, sy)").c_str())
      .def_readwrite("srcScale", &Action::srcScale, "Scale (Vector2) of the target at Run().")
      .def_readwrite("dstScale", &Action::dstScale, dst_doc);
  def_duration(cls);
}

template <class Action>
void bind_rotate_action(py::module_& m, const char* name, const char* doc, const char* dst_doc) {
  py::class_<Action, GAction, PyAction<Action>, std::shared_ptr<Action>> cls(m, name, doc);
  cls.def(py::init([name](py::handle duration, py::handle angle) {
            return Action(number_arg(duration, name, "duration"), number_arg(angle, name, "angle"));
          }),
          py::arg("duration"), py::arg("angle"), (std::string(name) + "(duration, angle)").c_str())
      .def_readwrite("srcAngle", &Action::srcAngle, "2D angle of the target at Run(), in degrees.")
      .def_readwrite("dstAngle", &Action::dstAngle, dst_doc);
  def_duration(cls);
}

void bind_blink_action(py::module_& m) {
  py::class_<BlinkAction, GAction, PyAction<BlinkAction>, std::shared_ptr<BlinkAction>> cls(
      m, "BlinkAction",
      "Hides the target for half a period (delaytime) and shows it for the next half,\n"
      "blinkcount times; the count ends it, not duration. With the default blinkcount -1,\n"
      "delaytime is negative and the action ends at its first update while the target\n"
      "is visible.");
  cls.def(py::init([](py::handle duration, py::handle blinkcount) {
            return BlinkAction(number_arg(duration, "BlinkAction", "duration"),
                               number_arg(blinkcount, "BlinkAction", "blinkcount"));
          }),
          py::arg("duration"), py::arg("blinkcount") = -1,
          "BlinkAction(duration, blinkcount=-1); ZeroDivisionError for a blinkcount of 0.")
      .def_property(
          "blinkcount", [](const BlinkAction& a) { return count_object(a.blinkcount); },
          [](BlinkAction& a, py::handle v) { a.blinkcount = number_arg(v, "BlinkAction.blinkcount", "blinkcount"); },
          "Number of blinks.")
      .def_readwrite("delaytime", &BlinkAction::delaytime, "Seconds of one blink: duration / blinkcount.")
      .def_readwrite("blinkindex", &BlinkAction::blinkindex, "Blinks begun so far.");
  def_duration(cls);
}

py::object action_array_object(const ActionPlayer& player) {
  if (!player.ActionArray) return py::none();
  py::tuple out(player.ActionArray->size());
  for (std::size_t i = 0; i < player.ActionArray->size(); ++i) out[i] = py::cast((*player.ActionArray)[i]);
  return out;
}

void bind_action_player(py::module_& m) {
  py::class_<ActionPlayer, GAction, PyAction<ActionPlayer>, std::shared_ptr<ActionPlayer>>(
      m, "ActionPlayer",
      "Plays the queue ActionArray[0] on its target, one action after the other. An action\n"
      "that ends in a frame hands over in that frame; the next one's first update comes\n"
      "with the next frame.")
      .def(py::init<>(), "ActionPlayer(): no actions, ActionIndex 0.")
      .def_property(
          "ActionArray", [](const ActionPlayer& p) { return action_array_object(p); },
          [](ActionPlayer& p, py::handle value) {
            if (value.is_none()) {
              p.ActionArray.reset();
              return;
            }
            if (!PySequence_Check(value.ptr()) || PyUnicode_Check(value.ptr())) {
              throw py::type_error("ActionPlayer.ActionArray: must be a sequence of action sequences or None, not " +
                                   type_name(value));
            }
            std::vector<ActionPlayer::Queue> queues;
            // Iterating the object (not a py::sequence view) keeps each item referenced
            // while it is read: a sequence may create its items on the fly.
            for (py::handle queue : value) {
              queues.push_back(action_queue_arg(queue, "ActionPlayer.ActionArray"));
            }
            p.ActionArray = std::move(queues);
          },
          "The argument list of the last AddActions (a tuple of action lists), or None.")
      .def_readwrite("ActionIndex", &ActionPlayer::ActionIndex, "Index of the current action in ActionArray[0].")
      .def(
          "AddActions",
          [](ActionPlayer& p, const py::args& ActionArray) {
            std::vector<ActionPlayer::Queue> queues;
            queues.reserve(ActionArray.size());
            for (py::handle queue : ActionArray) queues.push_back(action_queue_arg(queue, "ActionPlayer.AddActions"));
            p.AddActions(std::move(queues));
          },
          "AddActions(*ActionArray): stores the arguments (each a sequence of actions) as\n"
          "ActionArray and targets every action at this player's target. The queue played\n"
          "is the first argument.")
      .def("CleanUp", &ActionPlayer::CleanUp, "Drops the actions: ActionArray = None.");
}

}  // namespace

std::vector<std::shared_ptr<GAction>> action_queue_arg(py::handle queue, const char* where) {
  if (py::isinstance<GAction>(queue) || !PySequence_Check(queue.ptr()) || PyUnicode_Check(queue.ptr())) {
    throw py::type_error(std::string(where) + ": an action queue must be a sequence of GAction objects, not " +
                         type_name(queue));
  }
  std::vector<std::shared_ptr<GAction>> out;
  // Through the object's iterator, which owns each item while it is converted; a
  // py::sequence view would hand out items that a generated sequence has already freed.
  for (py::handle item : queue) out.push_back(action_arg(item, where));
  return out;
}

void bind_actions(py::module_& m) {
  bind_vector2(m);
  bind_action_target(m);
  bind_gaction(m);
  bind_callback_action(m);
  bind_move_action<MoveToAction>(m, "MoveToAction", "Moves the target from its world position at Run() to dstPostion.",
                                 "Position to reach (Vector3).");
  bind_move_action<MoveByAction>(m, "MoveByAction", "Moves the target by dstPostion from its world position at Run().",
                                 "Offset to move by (Vector3).");
  bind_scale_action<ScaleToAction>(m, "ScaleToAction", "Scales the target (2D) from its scale at Run() to dstScale.",
                                   "Scale to reach (Vector2).");
  bind_scale_action<ScaleByAction>(m, "ScaleByAction", "Adds dstScale to the target's scale at Run(), over duration.",
                                   "Scale to add (Vector2).");
  bind_rotate_action<RotateToAction>(m, "RotateToAction", "Turns the target's 2D angle from its angle at Run() to dstAngle.",
                                     "Angle to reach, in degrees.");
  bind_rotate_action<RotateByAction>(m, "RotateByAction", "Turns the target's 2D angle by dstAngle from its angle at Run().",
                                     "Angle to turn by, in degrees.");
  bind_blink_action(m);
  bind_action_player(m);
}

}  // namespace vorn::py_bind
