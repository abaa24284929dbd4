"""The math toolkit and core value types as scripts use them."""
import copy
import math

import pytest

import Vorn3DGameEngine as V


def test_vector_operators_print_like_script_numbers():
    assert str(V.Vector3(1, 2, 3) + V.Vector3(1, 1, 1)) == "2,3,4"
    assert str(V.Vector3(1, 2, 3) - V.Vector3(0.5, 0, 0)) == "0.5,2,3"
    assert str(V.Vector3(1, 2, 3) * 2) == "2,4,6"
    assert str(V.Vector3(1, 2, 3) * 0.5) == "0.5,1.0,1.5"
    assert str(2 * V.Vector3(1, 2, 3)) == "2,4,6"
    assert str(V.Vector3(1, 2, 3) / 2) == "0.5,1.0,1.5"
    assert str(V.Vector3()) == "0,0,0"
    assert str(V.Vector3(1.0, 2.5, -3)) == "1.0,2.5,-3"
    v = V.Vector3(1, 2, 3)
    assert (type(v.x), type((v * 1.0).x)) == (int, float)
    v.x = 0.25
    assert str(v) == "0.25,2,3"
    assert V.Vector3(1, 2, 3).dot(V.Vector3(4, 5, 6)) == 32
    assert str(V.Vector3(1, 0, 0).cross(V.Vector3(0, 1, 0))) == "0,0,1"
    assert str(V.Vector3(0, 0, 0).lerp(V.Vector3(10, 20, 30), 0.5)) == "5.0,10.0,15.0"


def test_vector_values_are_copies_and_normalize_is_in_place():
    a = V.Vector3(3, 4, 0)
    b = a.copy()
    c = copy.copy(a)
    a.normalize()
    assert a.length() == pytest.approx(1.0)
    assert str(b) == "3,4,0" and str(c) == "3,4,0"
    z = V.Vector3(0, 0, 0)
    assert z.normalize() is None
    assert str(z) == "0,0,0"
    r = V.Vector3(0, 0, 0).RotateAngleAxis(V.Vector3(1, 0, 0), V.Vector3(0, 0, 1), 90)
    assert (r.x, r.y, r.z) == pytest.approx((0.0, 1.0, 0.0))


def test_misuse_raises_python_exceptions():
    with pytest.raises(ZeroDivisionError):
        V.Vector3(1, 2, 3) / 0
    with pytest.raises(TypeError):
        V.Vector3("a")
    with pytest.raises(TypeError):
        V.Vector3(1, 2, 3) + 1
    with pytest.raises(TypeError):
        V.Vector3(1, 2, 3) * "x"
    with pytest.raises(TypeError):
        V.Vector3(1, 2, 3).cross(None)
    with pytest.raises(TypeError):
        V.IntersectTriangle(None, V.Vector3(), V.Vector3(), V.Vector3(), V.Vector3())
    with pytest.raises(TypeError):
        V.MatrixToFloatList("not a matrix")
    with pytest.raises(TypeError):
        V.Vec3MulMatrix([1, 2], V.MatrixToFloatList(V.FbxAMatrix()))
    with pytest.raises(TypeError):
        V.FbxAMatrix(1, 2, 3)
    with pytest.raises(IndexError):
        V.FbxAMatrix().GetRow(4)
    with pytest.raises(IndexError):
        V.FbxVector4(1, 2, 3, 4)[4]
    with pytest.raises(ZeroDivisionError):
        V.Vec3MulMatrix([1, 2, 3], [0.0] * 16)


def test_free_functions():
    assert V.Clamp(5, 0, 1) == 1 and type(V.Clamp(5, 0, 1)) is int
    assert V.Clamp(-5, 0, 1) == 0
    assert V.Clamp(0.5, 0, 1) == 0.5
    assert V.Lerp(1, 3, 0.5) == 2.0
    assert V.Lerp(1, 3, 1) == 3 and type(V.Lerp(1, 3, 1)) is int
    assert V.PI == 3.141592653589793
    assert V.checkPtInRect(10, 20, 10, 30, 20, 40) == 1
    assert V.checkPtInRect(9, 20, 10, 30, 20, 40) == 0
    assert V.checkRectInRect(0, 10, 0, 10, 10, 20, 10, 20) == 1
    assert V.checkRectInRect(0, 10, 0, 10, 11, 20, 0, 10) == 0
    values = [V.RANDOM01() for _ in range(200)] + [V.RANDOM11() for _ in range(200)]
    assert all(0.0 <= x < 1.0 for x in values[:200])
    assert all(-1.0 <= x < 1.0 for x in values[200:])
    assert min(values[200:]) < 0.0


def test_intersect_triangle():
    tri = (V.Vector3(0, 0, 0), V.Vector3(1, 0, 0), V.Vector3(0, 1, 0))
    hit, point = V.IntersectTriangle(V.Vector3(0.2, 0.3, 4), V.Vector3(0, 0, -1), *tri)
    assert hit and (point.x, point.y, point.z) == pytest.approx((0.2, 0.3, 0.0))
    hit_back, point_back = V.IntersectTriangle(V.Vector3(0.2, 0.3, -4), V.Vector3(0, 0, 1), *tri)
    assert hit_back and (point_back.x, point_back.y, point_back.z) == pytest.approx((0.2, 0.3, 0.0))
    miss, zero = V.IntersectTriangle(V.Vector3(-1, 0.5, 0), V.Vector3(1, 0, 0), *tri)
    assert miss is False and str(zero) == "0,0,0"


def reference(point, t, r, s):
    """Scale, then rotate about X, Y, Z (degrees, right-handed), then translate."""
    x, y, z = (point[0] * s[0], point[1] * s[1], point[2] * s[2])
    ax, ay, az = (math.radians(a) for a in r)
    y, z = y * math.cos(ax) - z * math.sin(ax), y * math.sin(ax) + z * math.cos(ax)
    z, x = z * math.cos(ay) - x * math.sin(ay), z * math.sin(ay) + x * math.cos(ay)
    x, y = x * math.cos(az) - y * math.sin(az), x * math.sin(az) + y * math.cos(az)
    return (x + t[0], y + t[1], z + t[2])


def test_matrices_follow_the_row_vector_convention():
    t, r, s = (1.5, -2, 3), (25, -40, 70), (2, 0.5, 3)
    m = V.FbxAMatrix(V.FbxVector4(*t, 0), V.FbxVector4(*r, 0), V.FbxVector4(*s, 1))
    flat = V.MatrixToFloatList(m)
    assert len(flat) == 16 and flat[12:15] == [1.5, -2.0, 3.0]
    for p in ((1, 0, 0), (0, 1, 0), (0.3, -0.7, 2.0)):
        got = V.Vec3MulMatrix(list(p), flat)
        assert (got.x, got.y, got.z) == pytest.approx(reference(p, t, r, s), abs=1e-12)
    # Plain sequences are accepted: 16 numbers, or 4 rows of 4.
    rows = [list(m.GetRow(i)) for i in range(4)]
    assert V.MatrixToFloatList(rows) == flat
    assert V.MatrixToFloatList(flat) == flat
    ident = m.Inverse() * m
    for i in range(4):
        for j in range(4):
            assert abs(ident.Get(i, j) - (1.0 if i == j else 0.0)) < 1e-12
    # A * B applies B first.
    parent = V.FbxAMatrix(V.FbxVector4(10, 0, 0, 0), V.FbxVector4(0, 0, 0, 0), V.FbxVector4(2, 2, 2, 1))
    child = V.FbxAMatrix(V.FbxVector4(1, 0, 0, 0), V.FbxVector4(0, 0, 0, 0), V.FbxVector4(1, 1, 1, 1))
    assert list((parent * child).GetRow(3)) == [12.0, 0.0, 0.0, 1.0]
    fm = V.FbxMatrix()
    fm.Set(3, 0, 5.0)
    assert fm.GetRow(3)[0] == 5.0 and V.MatrixToFloatList(fm)[12] == 5.0


def test_module_globals_are_live_both_ways():
    assert V.TICKS_PER_SEC == 60 and V.DEBUG_MODE is True
    old = V.SCREEN_WIDTH
    try:
        V.SCREEN_WIDTH = 1024
        assert V.SCREEN_WIDTH == 1024
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


def test_help_reads_like_a_reference():
    for obj in (V.Vector3, V.Vector3.lerp, V.FbxAMatrix, V.FbxMatrix.Set, V.IntersectTriangle,
                V.MatrixToFloatList, V.Vec3MulMatrix, V.Clamp):
        assert obj.__doc__ and len(obj.__doc__.strip()) > 10, obj
