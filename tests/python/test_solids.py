"""The solid primitives and the point light as scripts use them."""
import gc
import weakref

import pytest

import Vorn3DGameEngine as V

GL_QUADS = 0x0007
GL_T2F_N3F_V3F = 0x2A2B

SOLIDS = [
    # class, creating operation, NodeType, vertices per submesh with the defaults
    (V.Vorn_3DBox, "CreateBox", "3DBox", [24]),
    (V.Vorn_3DCircle, "CreateCircle", "3DCircle", [32]),
    (V.Vorn_3DConus, "CreateConus", "3DConus", [61, 32]),
    (V.Vorn_3DCylinder, "CreateCylinder", "3DCylinder", [32, 32, 62]),
    (V.Vorn_3DSphere, "CreateSphere", "3DSphere", [961]),
    (V.Vorn_3DTorus, "CreateTorus", "3DTorus", [341]),
    (V.Vorn_3DTube, "CreateTube", "3DTube", [62, 62, 124]),
    (V.Vorn_3DCapsule, "CreateCapsule", "3DCapsule", [496, 496, 62]),
]


@pytest.mark.parametrize("cls, create, label, counts", SOLIDS, ids=[s[2] for s in SOLIDS])
def test_every_solid_with_its_defaults(cls, create, label, counts):
    assert "parent=None" in cls.__init__.__doc__
    node = cls(1, 2.5, 0)
    assert isinstance(node, V.Vorn_3DGameNode) and node.VertexArray_Positon == {}
    assert node.GetNodeType() == label and node.GetXYZ() == (1, 2.5, 0)
    getattr(node, create)()
    assert [len(node.VertexArray_Positon[s]) for s in range(len(counts))] == counts
    assert sorted(node.VVBOArray) == list(range(len(counts)))


def test_keyword_arguments_fields_and_pick_detail():
    ball = V.Vorn_3DSphere()
    assert (ball.statckZ, ball.statckY, ball.radius) == (30, 30, 0.5)
    ball.CreateSphere(radius=2, statckY=4, statckZ=6)
    assert (ball.statckZ, ball.statckY, ball.radius) == (6, 4, 2.0)
    assert len(ball.VertexArray_Positon[0]) == 35
    ball.GenTexCoords(0, RebuildVBO=False)
    assert len(ball.VertexArray_UV[0]) == 35 and ball.VertexDescArray[0] == GL_T2F_N3F_V3F

    box = V.Vorn_3DBox(0, 0, 5)
    box.CreateBox(size_z=4)
    assert (box.size_x, box.size_z) == (1.0, 4.0) and box.SubMeshShapeType[0] == GL_QUADS
    box.update(0.0)
    hit, (position, corners, extra) = box.checkPick(V.Vector3(0.1, 0.2, -20), V.Vector3(0, 0, 1))
    assert hit is True and extra is None and len(corners) == 3
    assert (position.x, position.y, position.z) == pytest.approx((0.1, 0.2, 7.0))
    assert box.checkPick(V.Vector3(3, 0, 0), V.Vector3(0, 0, 1)) == (False, None)

    light = V.Vorn_3DPointLight(0, 3, 0)
    assert isinstance(light, V.Vorn_3DSphere) and light.GetNodeType() == "3DPointLight"
    light.CreatePointLight(5.0)
    assert light.GetLightRange() == 5.0 and light.radius == 0.1
    light.draw(10, 20, 30)


class Planet(V.Vorn_3DSphere):
    """A script subclass: own attributes, own update, built in its constructor."""

    def __init__(self, parent=None):
        super().__init__(0, 0, 0, parent)
        self.spins = 0
        self.CreateSphere(1.0, 8, 4)

    def update(self, delay):
        self.spins += 1
        super().update(delay)


def test_a_script_subclass_under_a_parent():
    root = V.Vorn_3DGameNode()
    Planet(root)  # only the engine holds it from here on
    root.update(0.1)
    planet = root.children[0]
    assert isinstance(planet, Planet) and planet.spins == 1
    assert planet.GetNodeType() == "3DSphere"
    assert len(planet.VertexArray_Positon[0]) == 45
    planet.moons = 2
    assert root.children[0].moons == 2


@pytest.mark.parametrize("call, error, text", [
    (lambda: V.Vorn_3DSphere().CreateSphere(statckZ=0), ZeroDivisionError, "Vorn_3DSphere.CreateSphere: statckZ"),
    (lambda: V.Vorn_3DSphere().CreateSphere(0.5, 30, 2.5), TypeError,
     "Vorn_3DSphere.CreateSphere: statckY must be an int"),
    (lambda: V.Vorn_3DBox().CreateBox("big"), TypeError, "Vorn_3DBox.CreateBox: size_x must be a number"),
    (lambda: V.Vorn_3DTorus().CreateTorus(statckR=2**40), ValueError,
     "Vorn_3DTorus.CreateTorus: statckR is out of range"),
    (lambda: V.Vorn_3DSphere().CreateSphere(0.5, 100000, 100000), ValueError, "too many"),
    (lambda: V.Vorn_3DCapsule().CreateCapsule(statckR=1), ZeroDivisionError, ""),
    (lambda: V.Vorn_3DCircle(parent=5), TypeError, "Vorn_3DCircle"),
    (lambda: V.Vorn_3DBox().checkPick(V.Vector3(0, 0, 0), (0, 0, 1)), TypeError,
     "Vorn_3DBox.checkPick: Dir must be a Vector3"),
    (lambda: V.Vorn_3DCircle().GenTexCoords(0), KeyError, ""),
    (lambda: V.Vorn_3DPointLight().CreatePointLight(), TypeError, ""),
])
def test_misuse(call, error, text):
    with pytest.raises(error, match=text):
        call()


def test_failed_call_changes_nothing_and_cycles_are_collected():
    ball = V.Vorn_3DSphere()
    ball.CreateSphere()
    with pytest.raises(ZeroDivisionError):
        ball.CreateSphere(statckZ=0)
    assert len(ball.VertexArray_Positon[0]) == 961
    ball.SetUserData(ball)
    ball.SetUpdateFunction(lambda node: ball)
    ref = weakref.ref(ball)
    del ball
    gc.collect()
    assert ref() is None

