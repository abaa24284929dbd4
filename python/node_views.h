#pragma once
// Live views of engine containers for scripts: a node list (a node's children, a
// scene's registries; see list_view.h) and a string-keyed table (the binding tables).
// A view keeps its owner alive and reads and writes the engine's own container, so
// `node.children.append` or `node.BindingVarArray["hp"] = 3` reaches the engine.
#include <pybind11/pybind11.h>

#include <algorithm>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "bind_common.h"
#include "core/console.h"
#include "core/ordered_map.h"
#include "list_view.h"
#include "node/game_node.h"
#include "node/node_list.h"
#include "node_trampoline.h"

namespace vorn::py_bind {

// A node from a script value; TypeError naming the place for anything else.
inline std::shared_ptr<Vorn_3DGameNode> node_arg(py::handle value, const std::string& where) {
  if (!value.is_none() && py::isinstance<Vorn_3DGameNode>(value)) {
    return value.cast<std::shared_ptr<Vorn_3DGameNode>>();
  }
  throw py::type_error(where + ": expected a Vorn_3DGameNode, not " +
                       std::string(py::str(py::type::handle_of(value).attr("__name__"))));
}

// What may enter a list of nodes: a node, or a Vorn_Text, which enters in its carrier
// node (overlay/text_child.h) and reads back as the text.
inline std::shared_ptr<Vorn_3DGameNode> child_arg(py::handle value, const std::string& where) {
  if (!value.is_none() && py::isinstance<Vorn_Text>(value)) {
    return Vorn_TextChild::Of(value.cast<std::shared_ptr<Vorn_Text>>());
  }
  if (!value.is_none() && py::isinstance<Vorn_3DGameNode>(value)) {
    return value.cast<std::shared_ptr<Vorn_3DGameNode>>();
  }
  throw py::type_error(where + ": expected a Vorn_3DGameNode or a Vorn_Text, not " +
                       std::string(py::str(py::type::handle_of(value).attr("__name__"))));
}

struct NodeConv {
  static constexpr const char* items = "nodes";
  static py::object to_py(const NodeList::Ptr& node) { return node_to_py(node); }
  static NodeList::Ptr from_py(py::handle value, const std::string& where) { return child_arg(value, where); }
};

// A node list reached through an owner object.
using NodeListView = ListView<NodeList, NodeConv>;

// Replaces the list's content with the nodes of a script sequence.
inline void assign_node_list(NodeList& list, py::handle value, const std::string& where) {
  assign_list<NodeList, NodeConv>(list, value, where);
}

// Binds the node list view once; `name` is its Python class name.
inline void bind_node_list_view(py::module_& m, const char* name) {
  bind_list_view<NodeList, NodeConv>(
      m, name,
      "A live list of nodes held by the engine: it behaves as a Python list, and changes\n"
      "made through it reach the engine at once. Only nodes can be stored (TypeError).");
}

// A string-keyed engine table seen as a dict. Conv gives to_py(const Value&) and
// from_py(py::handle, where) -> Value.
template <class Value, class Conv>
struct TableView {
  std::shared_ptr<void> owner;
  OrderedMap<std::string, Value>* table;
};

template <class Value, class Conv>
void assign_table(OrderedMap<std::string, Value>& table, py::handle value, const std::string& where) {
  if (!py::isinstance<py::dict>(value)) {
    if (py::isinstance<TableView<Value, Conv>>(value)) {
      const auto& other = value.cast<const TableView<Value, Conv>&>();
      if (other.table == &table) return;
      table = *other.table;
      return;
    }
    throw py::type_error(where + ": expected a dict");
  }
  OrderedMap<std::string, Value> fresh;
  for (auto item : py::reinterpret_borrow<py::dict>(value)) {
    if (!py::isinstance<py::str>(item.first)) throw py::type_error(where + ": keys are names (str)");
    fresh.set(py::cast<std::string>(item.first), Conv::from_py(item.second, where));
  }
  table = std::move(fresh);
}

template <class Value, class Conv>
void bind_table_view(py::module_& m, const char* name, const char* doc) {
  using V = TableView<Value, Conv>;
  auto missing = [](const std::string& key) { return py::key_error(console::py_repr_str(key)); };
  py::class_<V>(m, name, doc)
      .def("__len__", [](const V& v) { return v.table->size(); })
      .def("__contains__", [](const V& v, py::handle key) {
        return py::isinstance<py::str>(key) && v.table->contains(key.cast<std::string>());
      })
      .def(
          "__getitem__",
          [missing](const V& v, const std::string& key) {
            const Value* found = v.table->find(key);
            if (!found) throw missing(key);
            return Conv::to_py(*found);
          },
          py::arg("key"))
      .def(
          "__setitem__",
          [name](V& v, const std::string& key, py::handle value) {
            v.table->set(key, Conv::from_py(value, std::string(name) + "[key] = value"));
          },
          py::arg("key"), py::arg("value"))
      .def(
          "__delitem__",
          [missing](V& v, const std::string& key) {
            if (!v.table->discard(key)) throw missing(key);
          },
          py::arg("key"))
      .def("__iter__", [](const V& v) { return py::iter(py::cast(v.table->keys())); })
      .def("keys", [](const V& v) { return v.table->keys(); }, "The names, in insertion order.")
      .def("values",
           [](const V& v) {
             py::list out;
             for (const auto& [k, value] : *v.table) out.append(Conv::to_py(value));
             return out;
           },
           "The values, in insertion order.")
      .def("items",
           [](const V& v) {
             py::list out;
             for (const auto& [k, value] : *v.table) out.append(py::make_tuple(k, Conv::to_py(value)));
             return out;
           },
           "(name, value) pairs, in insertion order.")
      .def(
          "get",
          [](const V& v, const std::string& key, py::object fallback) -> py::object {
            const Value* found = v.table->find(key);
            return found ? Conv::to_py(*found) : fallback;
          },
          py::arg("key"), py::arg("default") = py::none(), "The value of key, or default.")
      .def("clear", [](V& v) { v.table->clear(); }, "Removes every entry.")
      .def(
          "__eq__",
          [](const V& v, py::handle other) {
            py::dict mine;
            for (const auto& [k, value] : *v.table) mine[py::str(k)] = Conv::to_py(value);
            if (py::isinstance<V>(other)) {
              py::dict theirs;
              for (const auto& [k, value] : *other.cast<const V&>().table) theirs[py::str(k)] = Conv::to_py(value);
              return mine.equal(theirs);
            }
            return mine.equal(other);
          },
          py::is_operator())
      .def("__repr__", [](const V& v) {
        // A table that holds a view of itself prints "{...}" there, as a dict that
        // holds itself does; each view is a new object, so the table is the key.
        static std::vector<const void*> open;
        if (std::find(open.begin(), open.end(), v.table) != open.end()) return std::string("{...}");
        open.push_back(v.table);
        struct Close {
          ~Close() { open.pop_back(); }
        } close;
        py::dict mine;
        for (const auto& [k, value] : *v.table) mine[py::str(k)] = Conv::to_py(value);
        return std::string(py::repr(mine));
      });
}

}  // namespace vorn::py_bind
