#pragma once
// A live view of an engine list that behaves as a Python list does: the whole list
// protocol, with the results, bounds and error texts of a list. The view keeps its
// owner alive and reads and writes the engine's own list.
//
// L is the engine list: size(), operator[](size_t), set(int64, Ptr), insert(int64, Ptr),
// pop(int64), push_back(Ptr), clear(), default construction and move assignment (bulk
// changes build a fresh list and move-assign it, so old entries are released only
// after the new ones are owned). Conv converts an element:
//   static py::object to_py(const typename L::Ptr&);
//   static typename L::Ptr from_py(py::handle, const std::string& where);  // TypeError
//   static constexpr const char* items;  // what the list holds, e.g. "nodes"
// Every value is converted before the list changes, so a bad value leaves it as it was.
#include <pybind11/pybind11.h>

#include <algorithm>
#include <memory>
#include <new>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

namespace vorn::py_bind {

namespace py = pybind11;

template <class L, class ConvT>
struct ListView {
  using List = L;
  using Conv = ConvT;
  std::shared_ptr<void> owner;
  L* list;
};

namespace list_detail {

[[noreturn]] inline void raise() { throw py::error_already_set(); }

inline bool equal(py::handle a, py::handle b) {
  const int r = PyObject_RichCompareBool(a.ptr(), b.ptr(), Py_EQ);
  if (r < 0) raise();
  return r != 0;
}

// An integer argument (insert, pop): TypeError or OverflowError as a list gives them.
inline Py_ssize_t ssize_arg(py::handle h) {
  auto i = py::reinterpret_steal<py::object>(PyNumber_Index(h.ptr()));
  if (!i) raise();
  const Py_ssize_t n = PyLong_AsSsize_t(i.ptr());
  if (n == -1 && PyErr_Occurred()) raise();
  return n;
}

// A bound of index(): huge values clamp, as slice bounds do.
inline Py_ssize_t bound_arg(py::handle h) {
  if (!PyIndex_Check(h.ptr())) throw py::type_error("slice indices must be integers or have an __index__ method");
  const Py_ssize_t n = PyNumber_AsSsize_t(h.ptr(), nullptr);
  if (n == -1 && PyErr_Occurred()) raise();
  return n;
}

// A script iterable as a list, or the error a list gives for a non-iterable.
inline py::list materialize(py::handle value, const char* not_iterable) {
  auto seq = py::reinterpret_steal<py::object>(PySequence_Fast(value.ptr(), not_iterable));
  if (!seq) raise();
  return py::list(seq);
}

// A slice's bounds as written, then fitted to n items (length is then set).
struct Slice {
  Py_ssize_t start, stop, step, length = 0;
  explicit Slice(py::handle slice) {
    if (PySlice_Unpack(slice.ptr(), &start, &stop, &step) < 0) raise();
  }
  Slice(py::handle slice, Py_ssize_t n) : Slice(slice) { fit(n); }
  void fit(Py_ssize_t n) { length = PySlice_AdjustIndices(n, &start, &stop, step); }
};

}  // namespace list_detail

// The operations of a view; one instantiation per list type.
template <class L, class Conv>
struct ListOps {
  using V = ListView<L, Conv>;
  using Ptr = typename L::Ptr;
  using Refs = std::vector<Ptr>;

  static Py_ssize_t size(const V& v) { return static_cast<Py_ssize_t>(v.list->size()); }
  static py::object item(const V& v, Py_ssize_t i) { return Conv::to_py((*v.list)[static_cast<std::size_t>(i)]); }

  // The items as a plain list (what copy() and slices give).
  static py::list items(const V& v) {
    py::list out(v.list->size());
    for (Py_ssize_t i = 0; i < size(v); ++i) PyList_SET_ITEM(out.ptr(), i, item(v, i).release().ptr());
    return out;
  }
  static Refs refs(const V& v) {
    Refs out;
    out.reserve(v.list->size());
    for (std::size_t i = 0; i < v.list->size(); ++i) out.push_back((*v.list)[i]);
    return out;
  }
  static Refs convert(const py::list& values, const std::string& where) {
    Refs out;
    out.reserve(values.size());
    for (py::handle value : values) out.push_back(Conv::from_py(value, where));
    return out;
  }
  static void replace(L& list, Refs content) {
    L fresh;
    for (auto& p : content) fresh.push_back(std::move(p));
    list = std::move(fresh);
  }

  // A position in the list from a subscript, with a list's errors.
  static Py_ssize_t position(const V& v, py::handle key, const char* out_of_range) {
    if (!PyIndex_Check(key.ptr()))
      throw py::type_error(std::string("list indices must be integers or slices, not ") + Py_TYPE(key.ptr())->tp_name);
    Py_ssize_t i = PyNumber_AsSsize_t(key.ptr(), PyExc_IndexError);
    if (i == -1 && PyErr_Occurred()) list_detail::raise();
    if (i < 0) i += size(v);
    if (i < 0 || i >= size(v)) throw py::index_error(out_of_range);
    return i;
  }

  static py::object getitem(const V& v, py::handle key) {
    if (!PySlice_Check(key.ptr())) return item(v, position(v, key, "list index out of range"));
    const list_detail::Slice s(key, size(v));
    py::list out(static_cast<std::size_t>(s.length));
    for (Py_ssize_t k = 0; k < s.length; ++k)
      PyList_SET_ITEM(out.ptr(), k, item(v, s.start + k * s.step).release().ptr());
    return out;
  }

  static void setitem(const V& v, py::handle key, py::handle value, const std::string& where) {
    if (!PySlice_Check(key.ptr())) {
      const Py_ssize_t i = position(v, key, "list assignment index out of range");
      v.list->set(i, Conv::from_py(value, where));
      return;
    }
    // Materialize first: a generator may change the list while it runs.
    list_detail::Slice s(key);
    const py::list values = list_detail::materialize(
        value, s.step == 1 ? "can only assign an iterable" : "must assign iterable to extended slice");
    s.fit(size(v));
    Refs content = refs(v);
    if (s.step == 1) {
      Refs fresh = convert(values, where);
      const auto first = content.begin() + s.start, last = content.begin() + std::max(s.start, s.stop);
      content.insert(content.erase(first, last), fresh.begin(), fresh.end());
    } else {
      const auto got = static_cast<Py_ssize_t>(values.size());
      if (got != s.length)
        throw py::value_error("attempt to assign sequence of size " + std::to_string(got) +
                              " to extended slice of size " + std::to_string(s.length));
      Refs fresh = convert(values, where);
      if (s.length == 0) return;
      for (Py_ssize_t k = 0; k < s.length; ++k)
        content[static_cast<std::size_t>(s.start + k * s.step)] = fresh[static_cast<std::size_t>(k)];
    }
    replace(*v.list, std::move(content));
  }

  static void delitem(const V& v, py::handle key) {
    if (!PySlice_Check(key.ptr())) {
      v.list->pop(position(v, key, "list assignment index out of range"));
      return;
    }
    const list_detail::Slice s(key, size(v));
    if (s.length <= 0) return;
    std::vector<bool> drop(v.list->size());
    for (Py_ssize_t k = 0; k < s.length; ++k) drop[static_cast<std::size_t>(s.start + k * s.step)] = true;
    Refs kept;
    for (std::size_t i = 0; i < drop.size(); ++i)
      if (!drop[i]) kept.push_back((*v.list)[i]);
    replace(*v.list, std::move(kept));
  }

  // First position in [start, stop) holding an item equal to x, or -1. The length is
  // read at every step, since a comparison may run script code that changes the list.
  static Py_ssize_t find(const V& v, py::handle x, Py_ssize_t start = 0, Py_ssize_t stop = PY_SSIZE_T_MAX) {
    for (Py_ssize_t i = start; i < stop && i < size(v); ++i)
      if (list_detail::equal(item(v, i), x)) return i;
    return -1;
  }

  static void extend(const V& v, py::handle values, const std::string& where) {
    auto all = py::reinterpret_steal<py::object>(PySequence_List(values.ptr()));
    if (!all) list_detail::raise();
    for (auto& p : convert(py::list(all), where)) v.list->push_back(std::move(p));
  }

  static void repeat_in_place(const V& v, py::handle times) {
    if (!PyIndex_Check(times.ptr()))
      throw py::type_error(std::string("can't multiply sequence by non-int of type '") + Py_TYPE(times.ptr())->tp_name +
                           "'");
    const Py_ssize_t n = PyNumber_AsSsize_t(times.ptr(), PyExc_OverflowError);
    if (n == -1 && PyErr_Occurred()) list_detail::raise();
    if (n < 1) return v.list->clear();
    const Py_ssize_t len = size(v);
    if (n == 1 || len == 0) return;
    if (len > PY_SSIZE_T_MAX / n || static_cast<std::size_t>(len * n) > Refs{}.max_size()) throw std::bad_alloc();
    const Refs once = refs(v);
    Refs content;
    content.reserve(static_cast<std::size_t>(len * n));
    for (Py_ssize_t k = 0; k < n; ++k) content.insert(content.end(), once.begin(), once.end());
    replace(*v.list, std::move(content));
  }

  // list.sort on a copy, written back as list.sort leaves a list: also after a failed
  // comparison, and with changes made by a key function dropped (then ValueError).
  static void sort(const V& v, const py::args& args, const py::kwargs& kwargs) {
    const Refs before = refs(v);
    py::list sorted = items(v);
    std::optional<py::error_already_set> failure;
    try {
      sorted.attr("sort")(*args, **kwargs);
    } catch (py::error_already_set& e) {
      failure = std::move(e);
    }
    const bool modified = refs(v) != before;
    replace(*v.list, convert(sorted, "sort"));
    if (failure) throw std::move(*failure);
    if (modified) throw py::value_error("list modified during sort");
  }

  // Comparison with a list or a view of the same kind, as list comparison does.
  static py::object compare(const V& v, py::handle other, int op) {
    py::object theirs;
    if (py::isinstance<V>(other)) theirs = items(other.cast<const V&>());
    else if (PyList_Check(other.ptr())) theirs = py::reinterpret_borrow<py::object>(other);
    else return py::reinterpret_borrow<py::object>(Py_NotImplemented);
    auto result = py::reinterpret_steal<py::object>(PyObject_RichCompare(items(v).ptr(), theirs.ptr(), op));
    if (!result) list_detail::raise();
    return result;
  }

  static py::object plain(py::handle value) {
    if (py::isinstance<V>(value)) return items(value.cast<const V&>());
    return py::reinterpret_borrow<py::object>(value);
  }
  static py::object checked(PyObject* result) {
    if (!result) list_detail::raise();
    return py::reinterpret_steal<py::object>(result);
  }
};

// An iterator that holds the view and a position and reads the length at every step,
// so it survives changes to the list as a list iterator does.
template <class V>
struct ListIterator {
  V view;
  Py_ssize_t next;
  bool reversed;
  bool done = false;
};

// The next item, or NULL with no error set at the end (StopIteration). Once at the end
// the iterator stays there, as a list iterator does.
template <class V>
PyObject* iterator_next(PyObject* self) noexcept {
  try {
    using Ops = ListOps<typename V::List, typename V::Conv>;
    // Only the final iterator type has this slot, so self holds a ListIterator<V>, built
    // unless a script made one with __new__.
    auto holder = reinterpret_cast<py::detail::instance*>(self)->get_value_and_holder();
    if (!holder.holder_constructed()) throw py::type_error("a list iterator comes from iter(list)");
    auto& it = *holder.value_ptr<ListIterator<V>>();
    if (!it.done && it.next >= 0 && it.next < Ops::size(it.view)) {
      const Py_ssize_t i = it.next;
      it.next += it.reversed ? -1 : 1;
      return Ops::item(it.view, i).release().ptr();
    }
    it.done = true;
    return nullptr;
  } catch (py::error_already_set& e) {
    e.restore();
  } catch (const py::builtin_exception& e) {
    e.set_error();
  } catch (const std::exception& e) {
    PyErr_SetString(PyExc_RuntimeError, e.what());
  }
  return nullptr;
}

// Replaces a list with the items of a script sequence (assignment of a whole field).
template <class L, class Conv>
void assign_list(L& list, py::handle value, const std::string& where) {
  using Ops = ListOps<L, Conv>;
  if (py::isinstance<typename Ops::V>(value) && value.cast<const typename Ops::V&>().list == &list) return;
  const std::string expected = where + ": expected a sequence of " + Conv::items;
  if (py::isinstance<py::str>(value) || py::isinstance<py::bytes>(value)) throw py::type_error(expected);
  Ops::replace(list, Ops::convert(list_detail::materialize(value, expected.c_str()), where));
}

// Binds the view class of L once; `name` is its Python class name.
template <class L, class Conv>
void bind_list_view(py::module_& m, const char* name, const char* doc) {
  using Ops = ListOps<L, Conv>;
  using V = typename Ops::V;
  using It = ListIterator<V>;
  const std::string cls_name = name;
  auto where = [cls_name](const char* op) { return cls_name + "." + op; };

  // The step is the type's tp_iternext slot rather than a bound __next__, so a for loop
  // over a live list costs about what one over a plain list does.
  py::class_<It>(m, (cls_name + "Iterator").c_str(),
                 "Iterator over a live list; follows changes as a list iterator does.", py::is_final(),
                 py::custom_type_setup([](PyHeapTypeObject* type) { type->ht_type.tp_iternext = &iterator_next<V>; }))
      .def("__iter__", [](py::object self) { return self; })
      .def("__length_hint__", [](const It& it) {
        const Py_ssize_t n = Ops::size(it.view);
        if (it.done || it.next < 0 || it.next >= n) return Py_ssize_t{0};
        return it.reversed ? it.next + 1 : n - it.next;
      });

  py::class_<V> cls(m, name, doc);
  cls.def("__len__", [](const V& v) { return v.list->size(); })
      .def("__bool__", [](const V& v) { return v.list->size() > 0; })
      .def("__getitem__", &Ops::getitem, py::arg("index"), "Item or slice (a plain list), as a list indexes.")
      .def(
          "__setitem__",
          [cls_name](const V& v, py::handle key, py::handle value) {
            Ops::setitem(v, key, value, cls_name + "[i] = value");
          },
          py::arg("index"), py::arg("value"), "Item or slice assignment, as on a list.")
      .def("__delitem__", &Ops::delitem, py::arg("index"), "Deletes an item or a slice.")
      .def("__iter__", [](const V& v) { return It{v, 0, false}; })
      .def("__reversed__", [](const V& v) { return It{v, Ops::size(v) - 1, true}; })
      .def("__contains__", [](const V& v, py::handle x) { return Ops::find(v, x) >= 0; })
      .def("__repr__", [](const V& v) { return py::repr(Ops::items(v)); })
      .def(
          "append", [where](const V& v, py::handle x) { v.list->push_back(Conv::from_py(x, where("append"))); },
          py::arg("object"), "Appends an item.")
      .def(
          "insert",
          [where](const V& v, py::handle index, py::handle x) {
            const Py_ssize_t i = list_detail::ssize_arg(index);
            v.list->insert(i, Conv::from_py(x, where("insert")));
          },
          py::arg("index"), py::arg("object"), py::pos_only(), "Inserts an item before position index.")
      .def(
          "extend", [where](const V& v, py::handle values) { Ops::extend(v, values, where("extend")); },
          py::arg("iterable"), py::pos_only(), "Appends every item of an iterable (all checked first).")
      .def(
          "pop",
          [](const V& v, py::handle index) {
            Py_ssize_t i = list_detail::ssize_arg(index);
            if (v.list->size() == 0) throw py::index_error("pop from empty list");
            if (i < 0) i += Ops::size(v);
            if (i < 0 || i >= Ops::size(v)) throw py::index_error("pop index out of range");
            return Conv::to_py(v.list->pop(i));
          },
          py::arg("index") = -1, py::pos_only(), "Removes and returns the item at index (default the last).")
      .def(
          "remove",
          [](const V& v, py::handle x) {
            const Py_ssize_t i = Ops::find(v, x);
            if (i < 0) throw py::value_error("list.remove(x): x not in list");
            v.list->pop(i);
          },
          py::arg("value"), py::pos_only(), "Removes the first item equal to value; ValueError when none is.")
      .def(
          "index",
          [](const V& v, py::handle x, py::handle start, py::handle stop) {
            Py_ssize_t first = list_detail::bound_arg(start), last = list_detail::bound_arg(stop);
            const Py_ssize_t n = Ops::size(v);
            if (first < 0) first = std::max<Py_ssize_t>(first + n, 0);
            if (last < 0) last = std::max<Py_ssize_t>(last + n, 0);
            const Py_ssize_t i = Ops::find(v, x, first, last);
            if (i < 0) throw py::value_error(std::string(py::str(py::repr(x))) + " is not in list");
            return i;
          },
          py::arg("value"), py::arg("start") = 0, py::arg("stop") = PY_SSIZE_T_MAX, py::pos_only(),
          "Position of the first item equal to value within [start, stop).")
      .def(
          "count",
          [](const V& v, py::handle x) {
            Py_ssize_t n = 0;
            for (Py_ssize_t i = 0; i < Ops::size(v); ++i) n += list_detail::equal(Ops::item(v, i), x);
            return n;
          },
          py::arg("value"), py::pos_only(), "How many items equal value.")
      .def("clear", [](const V& v) { v.list->clear(); }, "Removes every item.")
      .def("copy", &Ops::items, "A plain list of the items.")
      .def("__copy__", &Ops::items)
      .def(
          "reverse",
          [](const V& v) {
            auto content = Ops::refs(v);
            std::reverse(content.begin(), content.end());
            Ops::replace(*v.list, std::move(content));
          },
          "Reverses the items in place.")
      .def("sort", &Ops::sort,
           "sort(*, key=None, reverse=False): stable, in place, as list.sort (key called once per item).")
      .def("__add__",
           [](const V& v, py::handle other) {
             return Ops::checked(PySequence_Concat(Ops::items(v).ptr(), Ops::plain(other).ptr()));
           })
      .def("__radd__",
           [](const V& v, py::handle other) -> py::object {
             if (!PyList_Check(other.ptr())) return py::reinterpret_borrow<py::object>(Py_NotImplemented);
             return Ops::checked(PySequence_Concat(other.ptr(), Ops::items(v).ptr()));
           })
      .def("__mul__",
           [](const V& v, py::handle n) { return Ops::checked(PyNumber_Multiply(Ops::items(v).ptr(), n.ptr())); })
      .def("__rmul__",
           [](const V& v, py::handle n) { return Ops::checked(PyNumber_Multiply(n.ptr(), Ops::items(v).ptr())); })
      .def("__iadd__",
           [where](py::object self, py::handle values) {
             Ops::extend(self.cast<const V&>(), values, where("__iadd__"));
             return self;
           })
      .def("__imul__", [](py::object self, py::handle n) {
        Ops::repeat_in_place(self.cast<const V&>(), n);
        return self;
      });
  const std::pair<const char*, int> comparisons[] = {{"__eq__", Py_EQ}, {"__ne__", Py_NE}, {"__lt__", Py_LT},
                                                     {"__le__", Py_LE}, {"__gt__", Py_GT}, {"__ge__", Py_GE}};
  for (const auto& [op_name, op] : comparisons)
    cls.def(op_name, [op = op](const V& v, py::handle other) { return Ops::compare(v, other, op); });
  // isinstance(view, collections.abc.MutableSequence) holds, as for a list.
  py::module_::import("collections.abc").attr("MutableSequence").attr("register")(cls);
}

}  // namespace vorn::py_bind
