"""The math toolkit and core value types as scripts use them."""
import copy
import re

import pytest

import Vorn3DGameEngine as V

Vec = V.Vector3


def test_vectors_print_like_script_numbers():
    a = Vec(1, 2, 3)
    values = (a + Vec(1, 1, 1), a - Vec(0.5, 0, 0), a * 2, 2 * a, a * 0.5, a / 2, Vec(), Vec(1.0, 2.5, -3),
              Vec(1, 0, 0).cross(Vec(0, 1, 0)), Vec(0, 0, 0).lerp(Vec(10, 20, 30), 0.5))
    assert [str(v) for v in values] == ["2,3,4", "0.5,2,3", "2,4,6", "2,4,6", "0.5,1.0,1.5", "0.5,1.0,1.5",
                                        "0,0,0", "1.0,2.5,-3", "0,0,1", "5.0,10.0,15.0"]


def test_vector_fields_copies_and_normalize_in_place():
    v = Vec(1, 2, 3)
    assert (type(v.x), type((v * 1.0).x)) == (int, float)
    v.x = 0.25
    assert str(v) == "0.25,2,3"
    a = Vec(3, 4, 0)
    b, c = a.copy(), copy.copy(a)
    assert a.normalize() is None and a.length() == pytest.approx(1.0)
    assert str(b) == "3,4,0" and str(c) == "3,4,0"


@pytest.mark.parametrize("call, error", [
    (lambda: Vec(1, 2, 3) / 0, ZeroDivisionError),
    (lambda: Vec("a"), TypeError),
    (lambda: Vec(1, 2, 3) + 1, TypeError),
    (lambda: Vec(1, 2, 3) * "x", TypeError),
    (lambda: Vec(1, 2, 3).cross(None), TypeError),
    (lambda: V.IntersectTriangle(None, Vec(), Vec(), Vec(), Vec()), TypeError),
    (lambda: V.MatrixToFloatList("not a matrix"), TypeError),
    (lambda: V.Vec3MulMatrix([1, 2], V.MatrixToFloatList(V.FbxAMatrix())), TypeError),
    (lambda: V.FbxAMatrix(1, 2, 3), TypeError),
    (lambda: V.FbxAMatrix().GetRow(4), IndexError),
    (lambda: V.FbxVector4(1, 2, 3, 4)[4], IndexError),
    (lambda: V.Vec3MulMatrix([1, 2, 3], [0.0] * 16), ZeroDivisionError),
])
def test_misuse_raises_python_exceptions(call, error):
    with pytest.raises(error):
        call()


def test_free_functions_keep_script_number_types():
    assert V.Clamp(5, 0, 1) == 1 and type(V.Clamp(5, 0, 1)) is int
    assert V.Clamp(0.5, 0, 1) == 0.5
    assert V.Lerp(1, 3, 0.5) == 2.0
    assert V.Lerp(1, 3, 1) == 3 and type(V.Lerp(1, 3, 1)) is int
    assert V.PI == 3.141592653589793
    assert V.checkPtInRect(10, 20, 10, 30, 20, 40) == 1
    tri = (Vec(0, 0, 0), Vec(1, 0, 0), Vec(0, 1, 0))
    hit, point = V.IntersectTriangle(Vec(0.2, 0.3, 4), Vec(0, 0, -1), *tri)
    assert hit and (point.x, point.y, point.z) == pytest.approx((0.2, 0.3, 0.0))
    miss, zero = V.IntersectTriangle(Vec(-1, 0.5, 0), Vec(1, 0, 0), *tri)  # in the plane
    assert miss is False and str(zero) == "0,0,0"


def test_matrices_take_script_sequences():
    m = V.FbxAMatrix(V.FbxVector4(1.5, -2, 3, 0), V.FbxVector4(25, -40, 70, 0), V.FbxVector4(2, 0.5, 3, 1))
    flat = V.MatrixToFloatList(m)
    assert len(flat) == 16 and flat[12:15] == [1.5, -2.0, 3.0]
    # Plain sequences are accepted: 16 numbers, or 4 rows of 4.
    assert V.MatrixToFloatList([list(m.GetRow(i)) for i in range(4)]) == flat
    assert V.MatrixToFloatList(flat) == flat
    got = V.Vec3MulMatrix((0, 0, 0), flat)
    assert (got.x, got.y, got.z) == (1.5, -2.0, 3.0)
    fm = V.FbxMatrix()
    fm.Set(3, 0, 5.0)
    assert fm.GetRow(3)[0] == 5.0 and V.MatrixToFloatList(fm)[12] == 5.0


def test_module_globals_are_live_both_ways():
    assert V.TICKS_PER_SEC == 60 and V.DEBUG_MODE is True
    old = V.SCREEN_WIDTH
    try:
        V.SCREEN_WIDTH = 1024
        assert V._engine._get_global("SCREEN_WIDTH") == 1024
        V._engine._set_global("SCREEN_HEIGHT", 700)
        assert V.SCREEN_HEIGHT == 700
        with pytest.raises(TypeError):
            V.SCREEN_WIDTH = "wide"
        assert V.SCREEN_WIDTH == 1024
    finally:
        V.SCREEN_WIDTH = old
        V.SCREEN_HEIGHT = 600
    # Object globals take their own class or None.
    with pytest.raises(TypeError):
        V.openGLScene = object()
    V.openGLScene = None
    assert V.openGLScene is None


def test_console_lines_reach_sys_stdout(capsys):
    V._engine._console_print("hello from the engine")
    print("and from python")
    assert capsys.readouterr().out == "hello from the engine\nand from python\n"


def test_every_public_class_operation_and_property_has_a_docstring():
    """Beyond pybind11's signature lines: a text a script's help() shows."""
    signature = re.compile(r"^(\d+\. )?\w+\(.*\)( -> .*)?$|^Overloaded function\.$")

    def text(doc):
        return [line for line in (doc or "").splitlines() if line.strip() and not signature.match(line.strip())]

    missing = []
    for name, obj in vars(V._engine).items():
        if name.startswith("_") or not (isinstance(obj, type) or callable(obj)):
            continue
        members = [(name, obj)] + [
            (f"{name}.{attr}", value.fget if isinstance(value, property) else value)
            for attr, value in (vars(obj).items() if isinstance(obj, type) else [])
            if not attr.startswith("_") and (callable(value) or isinstance(value, property))]
        missing += [label for label, member in members if not text(member.__doc__)]
    assert not missing, missing
