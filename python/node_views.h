#pragma once
// Live views of engine containers for scripts: a node list (a node's children, a
// scene's registries) and a string-keyed table (the binding tables). A view keeps its
// owner alive and reads and writes the engine's own container, so `node.children.append`
// or `node.BindingVarArray["hp"] = 3` reaches the engine.
#include <pybind11/pybind11.h>

#include <functional>
#include <memory>
#include <string>

#include "bind_common.h"
#include "core/console.h"
#include "core/ordered_map.h"
#include "core/pyseq.h"
#include "node/game_node.h"
#include "node/node_list.h"
#include "node_trampoline.h"

namespace vorn::py_bind {

// A node list reached through an owner object.
struct NodeListView {
  std::shared_ptr<void> owner;
  NodeList* list;
};

// A node from a script value; TypeError naming the place for anything else.
inline std::shared_ptr<Vorn_3DGameNode> node_arg(py::handle value, const std::string& where) {
  if (!value.is_none() && py::isinstance<Vorn_3DGameNode>(value)) {
    return value.cast<std::shared_ptr<Vorn_3DGameNode>>();
  }
  throw py::type_error(where + ": expected a Vorn_3DGameNode, not " +
                       std::string(py::str(py::type::handle_of(value).attr("__name__"))));
}

// Replaces the list's content with the nodes of a script sequence.
inline void assign_node_list(NodeList& list, py::handle value, const std::string& where) {
  if (py::isinstance<NodeListView>(value)) {
    const auto& other = value.cast<const NodeListView&>();
    if (other.list == &list) return;
    NodeList copy;
    for (const auto& n : *other.list) copy.push_back(n);
    list = std::move(copy);
    return;
  }
  if (!py::isinstance<py::sequence>(value) || py::isinstance<py::str>(value)) {
    throw py::type_error(where + ": expected a sequence of nodes");
  }
  NodeList fresh;
  for (py::handle item : value) fresh.push_back(node_arg(item, where));
  list = std::move(fresh);
}

// Binds the view class once; `name` is its Python class name.
inline void bind_node_list_view(py::module_& m, const char* name) {
  using V = NodeListView;
  py::class_<V>(m, name,
                "A live list of nodes held by the engine. Changes made through it (append,\n"
                "insert, item assignment, del, remove, pop, clear) reach the engine at once.")
      .def("__len__", [](const V& v) { return v.list->size(); })
      .def("__getitem__", [](const V& v, std::int64_t i) { return node_to_py(v.list->at(i)); }, py::arg("index"))
      .def(
          "__getitem__",
          [](const V& v, const py::slice& slice) {
            std::size_t start = 0, stop = 0, step = 0, length = 0;
            if (!slice.compute(v.list->size(), &start, &stop, &step, &length)) throw py::error_already_set();
            py::list out;
            for (std::size_t k = 0; k < length; ++k) out.append(node_to_py((*v.list)[start + k * step]));
            return out;
          },
          py::arg("slice"))
      .def(
          "__setitem__",
          [](V& v, std::int64_t i, py::handle node) { v.list->set(i, node_arg(node, "children[i] = node")); },
          py::arg("index"), py::arg("node"))
      .def("__delitem__", [](V& v, std::int64_t i) { v.list->pop(i); }, py::arg("index"))
      .def(
          "__iter__",
          [](const V& v) {
            py::list items;
            for (const auto& n : *v.list) items.append(node_to_py(n));
            return py::iter(items);
          },
          "Iterates over a snapshot of the list.")
      .def("__contains__",
           [](const V& v, py::handle node) {
             return py::isinstance<Vorn_3DGameNode>(node) &&
                    v.list->index_of(node.cast<Vorn_3DGameNode*>()) >= 0;
           })
      .def(
          "append", [](V& v, py::handle node) { v.list->push_back(node_arg(node, "append")); }, py::arg("node"),
          "Appends a node (the node's parent field is not written).")
      .def(
          "insert", [](V& v, std::int64_t i, py::handle node) { v.list->insert(i, node_arg(node, "insert")); },
          py::arg("index"), py::arg("node"), "Inserts a node before position index.")
      .def(
          "extend",
          [](V& v, py::iterable nodes) {
            std::vector<std::shared_ptr<Vorn_3DGameNode>> items;
            for (py::handle n : nodes) items.push_back(node_arg(n, "extend"));
            for (auto& n : items) v.list->push_back(std::move(n));
          },
          py::arg("nodes"), "Appends every node of an iterable.")
      .def(
          "remove",
          [](V& v, py::handle node) {
            if (!py::isinstance<Vorn_3DGameNode>(node) || !v.list->remove(node.cast<Vorn_3DGameNode*>())) {
              throw py::value_error("list.remove(x): x not in list");
            }
          },
          py::arg("node"), "Removes the first occurrence of node; ValueError when absent.")
      .def(
          "pop", [](V& v, std::int64_t i) { return node_to_py(v.list->pop(i)); }, py::arg("index") = -1,
          "Removes and returns the node at index (default the last).")
      .def(
          "index",
          [](const V& v, py::handle node) {
            const std::int64_t i =
                py::isinstance<Vorn_3DGameNode>(node) ? v.list->index_of(node.cast<Vorn_3DGameNode*>()) : -1;
            if (i < 0) throw py::value_error("node is not in list");
            return i;
          },
          py::arg("node"), "Position of the first occurrence of node.")
      .def(
          "count",
          [](const V& v, py::handle node) {
            if (!py::isinstance<Vorn_3DGameNode>(node)) return 0;
            const auto* raw = node.cast<Vorn_3DGameNode*>();
            int n = 0;
            for (const auto& item : *v.list) n += item.get() == raw;
            return n;
          },
          py::arg("node"), "How many slots hold node.")
      .def("clear", [](V& v) { v.list->clear(); }, "Removes every node.")
      .def(
          "__eq__",
          [](const V& v, py::handle other) {
            if (!py::isinstance<py::sequence>(other) && !py::isinstance<V>(other)) return false;
            if (static_cast<std::size_t>(py::len(other)) != v.list->size()) return false;
            std::size_t i = 0;
            for (py::handle item : other) {
              if (!py::isinstance<Vorn_3DGameNode>(item) || item.cast<Vorn_3DGameNode*>() != (*v.list)[i].get())
                return false;
              ++i;
            }
            return true;
          },
          py::is_operator())
      .def("__repr__", [](const V& v) {
        py::list items;
        for (const auto& n : *v.list) items.append(node_to_py(n));
        return std::string(py::repr(items));
      });
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
        py::dict mine;
        for (const auto& [k, value] : *v.table) mine[py::str(k)] = Conv::to_py(value);
        return std::string(py::repr(mine));
      });
}

}  // namespace vorn::py_bind
