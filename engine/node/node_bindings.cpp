// The four binding tables and the script events raised through them.
#include "core/console.h"
#include "core/errors.h"
#include "node/game_node.h"

namespace vorn {
namespace {

EventEntry script_entry(ScriptValue functionName, ScriptValue functionCode) {
  EventEntry entry;
  entry.function = std::move(functionName);
  entry.rest.push_back(std::move(functionCode));
  return entry;
}

template <class V>
std::optional<V> lookup(const OrderedMap<std::string, V>& table, const std::string& key, const char* missing) {
  if (const V* found = table.find(key)) return *found;
  console::print(missing);
  return std::nullopt;
}

}  // namespace

void Vorn_3DGameNode::SetBindingVar(const std::string& varname, ScriptValue varvalue) {
  BindingVarArray.set(varname, std::move(varvalue));
}

ScriptValue Vorn_3DGameNode::GetBindingVar(const std::string& varname) const {
  return lookup(BindingVarArray, varname, "No Find Variable").value_or(ScriptValue{});
}

void Vorn_3DGameNode::DelBindingVar(const std::string& varname) { BindingVarArray.erase(varname); }

void Vorn_3DGameNode::SetBindingEvent(const std::string& eventName, ScriptValue functionName,
                                      ScriptValue functionCode) {
  BindingEventArray.set(eventName, script_entry(std::move(functionName), std::move(functionCode)));
}

std::optional<EventEntry> Vorn_3DGameNode::GetBindingEvent(const std::string& eventName) const {
  return lookup(BindingEventArray, eventName, "No Find Binding Event");
}

void Vorn_3DGameNode::DelBindingEvent(const std::string& eventName) { BindingEventArray.erase(eventName); }

void Vorn_3DGameNode::SetInnerBindingEvent(const std::string& eventName, ScriptValue functionName,
                                           ScriptValue functionCode) {
  InnerBindingEventArray.set(eventName, script_entry(std::move(functionName), std::move(functionCode)));
}

std::optional<EventEntry> Vorn_3DGameNode::GetInnerBindingEvent(const std::string& eventName) const {
  return lookup(InnerBindingEventArray, eventName, "No Find Inner Binding Event");
}

void Vorn_3DGameNode::DelInnerBindingEvent(const std::string& eventName) { InnerBindingEventArray.erase(eventName); }

void Vorn_3DGameNode::SetBindingPoint(const std::string& pointName, ScriptValue posType, ScriptValue px,
                                      ScriptValue py) {
  BindingPointArray.set(pointName, BindingPoint{std::move(posType), std::move(px), std::move(py)});
}

std::optional<BindingPoint> Vorn_3DGameNode::GetBindingPoint(const std::string& pointName) const {
  return lookup(BindingPointArray, pointName, "No Find Binding Point");
}

void Vorn_3DGameNode::DelBindingPoint(const std::string& pointName) { BindingPointArray.erase(pointName); }

void Vorn_3DGameNode::CallEvent(const std::string& eventName, const ScriptValue& params) {
  CallEventIn(BindingEventArray, eventName, params, "No Find Binding Event");
}

void Vorn_3DGameNode::CallInnerEvent(const std::string& eventName, const ScriptValue& params) {
  CallEventIn(InnerBindingEventArray, eventName, params, "No Find Inner Binding Event");
}

void Vorn_3DGameNode::CallEventIn(OrderedMap<std::string, EventEntry>& table, const std::string& eventName,
                                  const ScriptValue& params, const char* missing) {
  if (const EventEntry* entry = table.find(eventName); entry && !entry->function.is_none()) {
    // A copy: the call may change the table.
    ScriptValue function = entry->function;
    function.call({params});
    return;
  }
  ScriptValue operation = FindEventOperation("on_" + eventName);
  if (operation.is_none()) {
    console::print(missing);
    return;
  }
  // Bound by name at the first call; the entry has to exist for that.
  EventEntry* entry = table.find(eventName);
  if (!entry) throw KeyError(eventName);
  entry->function = operation;
  operation.call({params});
}

}  // namespace vorn
