// Core value types and free math functions.
#include <array>
#include <string>

#include <pybind11/operators.h>

#include "bind_common.h"
#include "core/console.h"
#include "core/fbx_matrix.h"
#include "core/math_util.h"
#include "core/vector3.h"

namespace vorn::py_bind {
namespace {

// A Vector3 component as the script sees it: int when it was given as an int.
py::object component(const Vector3& v, int axis, double value) {
  if (v.is_int(axis) && std::isfinite(value) && value == std::floor(value)) {
    return py::int_(static_cast<long long>(value));
  }
  return py::float_(value);
}

void set_component(Vector3& v, int axis, double& field, py::handle value, const char* name) {
  field = number_arg(value, "Vector3", name);
  const auto bit = static_cast<std::uint8_t>(1u << axis);
  v.intMask = is_py_int(value) ? (v.intMask | bit) : (v.intMask & ~bit);
}

std::string vector4_text(const FbxVector4& v) {
  return console::py_float(v[0]) + ", " + console::py_float(v[1]) + ", " + console::py_float(v[2]) + ", " +
         console::py_float(v[3]);
}

std::string matrix_repr(const char* name, const Matrix4d& mat) {
  std::string out = std::string(name) + "(";
  for (int r = 0; r < 4; ++r) out += std::string(r ? ", " : "") + "(" + vector4_text(mat.GetRow(r)) + ")";
  return out + ")";
}

// Sixteen numbers from a matrix value, a flat sequence of 16 numbers or 4 rows of 4.
FloatList16 float_list_arg(py::handle value, const char* where, const char* what) {
  if (py::isinstance<Matrix4d>(value)) return value.cast<const Matrix4d&>().Flatten();
  const std::string bad = std::string(where) + ": " + what +
                          " must be a matrix or a sequence of 16 numbers (or 4 rows of 4 numbers)";
  if (!PySequence_Check(value.ptr()) || PyUnicode_Check(value.ptr())) throw py::type_error(bad);
  py::sequence seq = py::reinterpret_borrow<py::sequence>(value);
  FloatList16 out{};
  if (seq.size() >= 16) {
    for (std::size_t i = 0; i < 16; ++i) out[i] = number_arg(seq[i], where, what);
    return out;
  }
  if (seq.size() == 4) {
    for (std::size_t r = 0; r < 4; ++r) {
      py::object row = seq[r];
      if (py::isinstance<FbxVector4>(row)) {
        const auto& v4 = row.cast<const FbxVector4&>();
        for (std::size_t c = 0; c < 4; ++c) out[r * 4 + c] = v4[c];
        continue;
      }
      if (!PySequence_Check(row.ptr()) || py::len(row) < 4) throw py::type_error(bad);
      py::sequence row_seq = py::reinterpret_borrow<py::sequence>(row);
      for (std::size_t c = 0; c < 4; ++c) out[r * 4 + c] = number_arg(row_seq[c], where, what);
    }
    return out;
  }
  throw py::type_error(bad);
}

// Three numbers from a Vector3 or a sequence of at least three numbers.
std::array<double, 3> point_arg(py::handle value, const char* where, const char* what) {
  if (py::isinstance<Vector3>(value)) {
    const auto& v = value.cast<const Vector3&>();
    return {v.x, v.y, v.z};
  }
  if (!PySequence_Check(value.ptr()) || PyUnicode_Check(value.ptr()) || py::len(value) < 3) {
    throw py::type_error(std::string(where) + ": " + what + " must be a sequence of three numbers");
  }
  py::sequence seq = py::reinterpret_borrow<py::sequence>(value);
  return {number_arg(seq[0], where, what), number_arg(seq[1], where, what), number_arg(seq[2], where, what)};
}

void bind_vector3(py::module_& m) {
  py::class_<Vector3>(m, "Vector3",
                      "Three-component vector with value operators. Operators build new vectors;\n"
                      "only normalize() changes the object. str() gives \"x,y,z\".")
      .def(py::init([](py::handle x, py::handle y, py::handle z) {
             Vector3 v(0.0, 0.0, 0.0, 0);
             set_component(v, 0, v.x, x, "x");
             set_component(v, 1, v.y, y, "y");
             set_component(v, 2, v.z, z, "z");
             return v;
           }),
           py::arg("x") = 0, py::arg("y") = 0, py::arg("z") = 0, "Vector3(x=0, y=0, z=0)")
      .def_property(
          "x", [](const Vector3& v) { return component(v, 0, v.x); },
          [](Vector3& v, py::handle value) { set_component(v, 0, v.x, value, "x"); }, "The x component.")
      .def_property(
          "y", [](const Vector3& v) { return component(v, 1, v.y); },
          [](Vector3& v, py::handle value) { set_component(v, 1, v.y, value, "y"); }, "The y component.")
      .def_property(
          "z", [](const Vector3& v) { return component(v, 2, v.z); },
          [](Vector3& v, py::handle value) { set_component(v, 2, v.z, value, "z"); }, "The z component.")
      .def(
          "__add__", [](const Vector3& a, const Vector3& b) { return a + b; }, py::is_operator(),
          "Component-wise sum.")
      .def(
          "__sub__", [](const Vector3& a, const Vector3& b) { return a - b; }, py::is_operator(),
          "Component-wise difference.")
      .def(
          "__mul__",
          [](const Vector3& a, py::handle n) {
            if (is_py_int(n)) return a.mul_int(n.cast<long long>());
            return a * number_arg(n, "Vector3.__mul__", "n");
          },
          py::arg("n"), "Vector3(x * n, y * n, z * n); n is a number.")
      .def(
          "__rmul__",
          [](const Vector3& a, py::handle n) {
            if (is_py_int(n)) return a.mul_int(n.cast<long long>());
            return a * number_arg(n, "Vector3.__rmul__", "n");
          },
          py::arg("n"), "n * v, the same as v * n.")
      .def(
          "__truediv__", [](const Vector3& a, py::handle n) { return a / number_arg(n, "Vector3.__truediv__", "n"); },
          py::arg("n"), "Vector3(x / n, y / n, z / n); ZeroDivisionError when n is 0.")
      .def("cross", &Vector3::cross, py::arg("obj"), "The cross product self x obj.")
      .def(
          "dot",
          [](const Vector3& a, const Vector3& b) -> py::object {
            const double d = a.dot(b);
            if (a.dot_is_int(b)) return py::int_(static_cast<long long>(d));
            return py::float_(d);
          },
          py::arg("obj"), "x * obj.x + y * obj.y + z * obj.z.")
      .def("length", &Vector3::length, "The Euclidean length.")
      .def("normalize", &Vector3::normalize, "Divides x, y, z in place by length(); a zero vector stays zero.")
      .def("copy", &Vector3::copy, "A new Vector3 with the same fields.")
      .def("__copy__", &Vector3::copy)
      .def(
          "__deepcopy__", [](const Vector3& v, py::handle) { return v; }, py::arg("memo"))
      .def(
          "lerp",
          [](const Vector3& a, const Vector3& dst, py::handle progress) {
            if (is_py_int(progress)) return a + (dst - a).mul_int(progress.cast<long long>());
            return a.lerp(dst, number_arg(progress, "Vector3.lerp", "progress"));
          },
          py::arg("dstPostion"), py::arg("progress"), "self + (dstPostion - self) * progress.")
      .def("RotateAngleAxis", &Vector3::RotateAngleAxis, py::arg("aroundPos"), py::arg("Axis"),
           py::arg("AngleDeg"),
           "Rotates the offset aroundPos - self about Axis by AngleDeg degrees and returns\n"
           "that offset (aroundPos is not added back; the third component is negated).")
      .def("__str__", &Vector3::str)
      .def("__repr__", [](const Vector3& v) { return "Vector3(" + v.str() + ")"; });
}

void bind_matrices(py::module_& m) {
  py::class_<FbxVector4>(m, "FbxVector4", "Four doubles, indexable 0 to 3.")
      .def(py::init<>(), "FbxVector4(): (0, 0, 0, 1).")
      .def(py::init([](double x, double y, double z, double w) { return FbxVector4(x, y, z, w); }), py::arg("x"),
           py::arg("y"), py::arg("z"), py::arg("w") = 1.0, "FbxVector4(x, y, z, w=1.0)")
      .def("__getitem__", [](const FbxVector4& v, std::int64_t i) { return v.at(i); }, py::arg("index"))
      .def(
          "__setitem__", [](FbxVector4& v, std::int64_t i, double value) { v.at(i) = value; }, py::arg("index"),
          py::arg("value"))
      .def("__len__", [](const FbxVector4&) { return 4; })
      .def(py::self == py::self)
      .def("__repr__", [](const FbxVector4& v) { return "FbxVector4(" + vector4_text(v) + ")"; });

  py::class_<Matrix4d>(m, "_Matrix4d", "Shared base of FbxAMatrix and FbxMatrix.")
      .def("SetIdentity", &Matrix4d::SetIdentity, "Makes the matrix the identity.")
      .def("GetRow", &Matrix4d::GetRow, py::arg("r"), "Row r (0 to 3) as an FbxVector4; row 3 is the translation.")
      .def("SetRow", &Matrix4d::SetRow, py::arg("r"), py::arg("row"), "Replaces row r (0 to 3).")
      .def("Get", &Matrix4d::Get, py::arg("row"), py::arg("column"), "The element at row, column.")
      .def("__getitem__", [](const Matrix4d& mat, int r) { return mat.GetRow(r); }, py::arg("r"));

  py::class_<FbxAMatrix, Matrix4d>(m, "FbxAMatrix",
                                   "Affine 4x4 transform in doubles, row-vector convention. FbxAMatrix(T, R, S)\n"
                                   "scales by S, rotates by R (degrees, X then Y then Z) and translates by T;\n"
                                   "row 3 holds the translation. A * B applies B first, then A.")
      .def(py::init<>(), "The identity.")
      .def(py::init<const FbxVector4&, const FbxVector4&, const FbxVector4&>(), py::arg("T"), py::arg("R"),
           py::arg("S"), "Built from translation T, Euler rotation R in degrees and scale S.")
      .def("Inverse", &FbxAMatrix::Inverse, "The inverse matrix; a singular matrix gives zeros.")
      .def("GetT", &FbxAMatrix::GetT, "The translation as an FbxVector4.")
      .def(py::self * py::self)
      .def(py::self == py::self)
      .def("__repr__", [](const FbxAMatrix& mat) { return matrix_repr("FbxAMatrix", mat); });

  py::class_<FbxMatrix, Matrix4d>(m, "FbxMatrix",
                                  "General 4x4 matrix in doubles with the conventions of FbxAMatrix.")
      .def(py::init<>(), "The identity.")
      .def(py::init<const FbxVector4&, const FbxVector4&, const FbxVector4&>(), py::arg("T"), py::arg("R"),
           py::arg("S"), "Built from translation T, Euler rotation R in degrees and scale S.")
      .def(py::init([](const FbxAMatrix& a) { return FbxMatrix(static_cast<const Matrix4d&>(a)); }),
           py::arg("matrix"), "A copy of an FbxAMatrix.")
      .def("Set", &FbxMatrix::Set, py::arg("row"), py::arg("column"), py::arg("value"),
           "Sets the element at row, column (0 to 3 each).")
      .def("Inverse", &FbxMatrix::Inverse, "The inverse matrix; a singular matrix gives zeros.")
      .def(py::self * py::self)
      .def(py::self == py::self)
      .def("__repr__", [](const FbxMatrix& mat) { return matrix_repr("FbxMatrix", mat); });
}

void bind_functions(py::module_& m) {
  m.attr("PI") = PI;

  m.def(
      "Clamp",
      [](py::object value, py::object min, py::object max) -> py::object {
        if (value < min) return min;
        if (value > max) return max;
        return value;
      },
      py::arg("value"), py::arg("min"), py::arg("max"),
      "min if value < min, else max if value > max, else value (the argument itself).");
  m.def("RANDOM01", &RANDOM01, "A uniform random number in [0, 1).");
  m.def("RANDOM11", &RANDOM11, "A uniform random number in [-1, 1).");
  m.def("SeedRandom", &SeedRandom, py::arg("seed"), "Reseeds the generator of RANDOM01 and RANDOM11.");
  m.def(
      "Lerp", [](py::object a, py::object b, py::object f) -> py::object { return a + f * (b - a); }, py::arg("a"),
      py::arg("b"), py::arg("f"), "a + f * (b - a).");
  m.def(
      "IntersectTriangle",
      [](const Vector3& vPt, const Vector3& vDir, const Vector3& V1, const Vector3& V2, const Vector3& V3) {
        auto [hit, point] = IntersectTriangle(vPt, vDir, V1, V2, V3);
        return py::make_tuple(hit, point);
      },
      py::arg("vPt"), py::arg("vDir"), py::arg("V1"), py::arg("V2"), py::arg("V3"),
      "Two-sided ray/triangle test of the infinite line vPt + t * vDir.\n"
      "Returns (hit, point); a miss gives (False, Vector3()).");
  m.def(
      "MatrixToFloatList",
      [](py::handle Matrix) {
        const auto list = float_list_arg(Matrix, "MatrixToFloatList", "Matrix");
        py::list out(16);
        for (std::size_t i = 0; i < 16; ++i) out[i] = list[i];
        return out;
      },
      py::arg("Matrix"), "The 16 floats of a matrix, row by row (OpenGL's column-major order).");
  m.def(
      "Vec3MulMatrix",
      [](py::handle Vec3FloatList, py::handle matFloatList) {
        const auto v = point_arg(Vec3FloatList, "Vec3MulMatrix", "Vec3FloatList");
        const auto mat = float_list_arg(matFloatList, "Vec3MulMatrix", "matFloatList");
        return Vec3MulMatrix(std::span<const double, 3>(v), std::span<const double, 16>(mat));
      },
      py::arg("Vec3FloatList"), py::arg("matFloatList"),
      "Transforms the point Vec3FloatList (three numbers) by a 16-float list and divides by w.\n"
      "ZeroDivisionError when w is 0.");
  m.def("checkPtInRect", &checkPtInRect, py::arg("x"), py::arg("y"), py::arg("left"), py::arg("right"),
        py::arg("top"), py::arg("bottom"), "1 if (x, y) is in the rectangle, border included; else 0.");
  m.def("checkRectInRect", &checkRectInRect, py::arg("left1"), py::arg("right1"), py::arg("top1"),
        py::arg("bottom1"), py::arg("left2"), py::arg("right2"), py::arg("top2"), py::arg("bottom2"),
        "1 if the two rectangles overlap, border included; else 0.");
}

}  // namespace

void bind_core(py::module_& m) {
  bind_vector3(m);
  bind_matrices(m);
  bind_functions(m);
}

}  // namespace vorn::py_bind
