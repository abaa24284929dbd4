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
    node = cls(1, 2.5, 0)
    assert isinstance(node, V.Vorn_3DGameNode)
    assert node.GetNodeType() == label and node.GetXYZ() == (1, 2.5, 0)
    assert node.VertexArray_Positon == {}
    getattr(node, create)()
    assert [len(node.VertexArray_Positon[s]) for s in range(len(counts))] == counts
    assert sorted(node.VVBOArray) == list(range(len(counts)))
    node.x = 7
    node.update(0.0)
    assert node.GetWorldXYZ().x == 7


def test_sphere_from_python():
    ball = V.Vorn_3DSphere()
    assert (ball.statckZ, ball.statckY, ball.radius) == (30, 30, 0.5)
    ball.CreateSphere(radius=2, statckY=4, statckZ=6)
    assert (ball.statckZ, ball.statckY, ball.radius) == (6, 4, 2.0)
    positions = ball.VertexArray_Positon[0]
    assert len(positions) == 35 and len(ball.VIndexArray[0]) == 3 * 48
    assert positions[0][1] == -2.0 and positions[-1][1] == 2.0
    ball.GenTexCoords(0, RebuildVBO=False)
    ball.GenTexCoords(0)
    assert len(ball.VertexArray_UV[0]) == 35
    assert ball.VertexArray_UV[0][6] == [1.0, 0.0]
    assert ball.VertexDescArray[0] == GL_T2F_N3F_V3F


def test_box_fields_texcoords_and_pick():
    box = V.Vorn_3DBox(0, 0, 5)
    assert (box.size_x, box.size_y, box.size_z) == (1.0, 1.0, 1.0)
    assert box.cubeMapTexID is None and box.cubeMapData is None
    assert (box.cubeMapWidth, box.cubeMapHeight) == (0, 0)
    box.cubeMapData = b"\x01\x02"
    assert box.cubeMapData == b"\x01\x02"
    box.CreateBox(size_z=4)
    assert box.size_z == 4.0
    assert box.SubMeshShapeType[0] == GL_QUADS and box.VIndexArray[0] == [] and box.IVBOArray == {}
    box.GenTexCoords(0)
    assert box.VertexArray_UV[0][:4] == [[0.0, 1.0], [1.0, 1.0], [1.0, 0.0], [0.0, 0.0]]

    box.update(0.0)
    hit, detail = box.checkPick(V.Vector3(0.1, 0.2, -20), V.Vector3(0, 0, 1))
    assert hit is True
    position, corners, extra = detail
    assert (position.x, position.y, position.z) == pytest.approx((0.1, 0.2, 7.0))
    assert len(corners) == 3 and all(c.z == 7.0 for c in corners) and extra is None
    assert box.checkPick(V.Vector3(3, 0, 0), V.Vector3(0, 0, 1)) == (False, None)


def test_point_light():
    light = V.Vorn_3DPointLight(0, 3, 0)
    assert isinstance(light, V.Vorn_3DSphere)
    assert light.GetNodeType() == "3DPointLight"
    assert light.LightRange == 10 and light.GetLightRange() == 10
    light.CreatePointLight(5.0)
    assert light.GetLightRange() == 5.0 and light.radius == 0.1
    assert len(light.VertexArray_Positon[0]) == 121
    assert light.GetSubMeshColor() == [1.0, 1.0, 1.0, 1.0]
    light.SetMeshColor(0.2, 0.4, 0.6)
    assert light.GetSubMeshColor() == [0.2, 0.4, 0.6, 1.0]
    light.draw()
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


def test_cycles_through_a_solid_are_collected():
    ball = V.Vorn_3DSphere()
    ball.SetUserData(ball)
    ball.SetUpdateFunction(lambda node: ball)
    ref = weakref.ref(ball)
    del ball
    gc.collect()
    assert ref() is None


def test_misuse():
    ball = V.Vorn_3DSphere()
    ball.CreateSphere()
    with pytest.raises(ZeroDivisionError, match="Vorn_3DSphere.CreateSphere: statckZ"):
        ball.CreateSphere(statckZ=0)
    assert len(ball.VertexArray_Positon[0]) == 961  # unchanged by the failed call
    with pytest.raises(TypeError, match="Vorn_3DSphere.CreateSphere: statckY must be an int"):
        ball.CreateSphere(0.5, 30, 2.5)
    with pytest.raises(TypeError, match="Vorn_3DBox.CreateBox: size_x must be a number"):
        V.Vorn_3DBox().CreateBox("big")
    with pytest.raises(ValueError, match="Vorn_3DTorus.CreateTorus: statckR is out of range"):
        V.Vorn_3DTorus().CreateTorus(statckR=2**40)
    with pytest.raises(ValueError, match="too many"):
        V.Vorn_3DSphere().CreateSphere(0.5, 100000, 100000)
    with pytest.raises(ZeroDivisionError):
        V.Vorn_3DCapsule().CreateCapsule(statckR=1)
    with pytest.raises(TypeError, match="Vorn_3DCircle"):
        V.Vorn_3DCircle(parent=5)
    with pytest.raises(TypeError, match="Vorn_3DBox.checkPick: Dir must be a Vector3"):
        V.Vorn_3DBox().checkPick(V.Vector3(0, 0, 0), (0, 0, 1))
    with pytest.raises(KeyError):
        V.Vorn_3DCircle().GenTexCoords(0)
    with pytest.raises(TypeError):
        V.Vorn_3DPointLight().CreatePointLight()
    # Negative step counts make empty grids rather than failing.
    tube = V.Vorn_3DTube()
    tube.CreateTube(statckR=-2)
    assert tube.VertexArray_Positon == {0: [], 1: [], 2: []} and tube.VVBOArray == {}


def test_docstrings():
    for cls, create, _, _ in SOLIDS:
        assert cls.__doc__ and getattr(cls, create).__doc__
        assert "parent=None" in cls.__init__.__doc__
    assert "RebuildVBO" in V.Vorn_3DSphere.GenTexCoords.__doc__
    assert V.Vorn_3DPointLight.CreatePointLight.__doc__
