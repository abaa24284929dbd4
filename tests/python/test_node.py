"""Vorn_3DGameNode as scripts use it: hierarchy, script subclasses, fields, misuse."""
import gc
import weakref

import pytest

import Vorn3DGameEngine as V


class Scene(V.NodeScene):
    """A scene of the script's own: node numbers and a flat ground at y = 7.5."""

    def __init__(self):
        super().__init__()
        self.last = 0

    def GenNewGameNodeID(self):
        self.last += 1
        return self.last

    def Get3DTerrainY(self, x, z):
        return 7.5


class Box(V.Vorn_3DGameNode):
    """A subclass that writes its label after the base constructor, like engine classes."""

    def __init__(self, x=0, y=0, z=0, parent=None):
        super().__init__(x, y, z, parent)
        self.NodeType = "3DBox"


def test_automatic_tags_and_the_base_label_under_a_loaded_parent():
    scene = Scene()
    root = Box()
    root.OnLoad(scene)
    assert root.GetTag() == "3DBox_1"
    child = Box(0, 0, 0, root)
    assert child.GetNodeType() == "3DBox"
    assert child.GetTag() == "3DGameNode_2"
    assert child.GetSceneInstance() is scene
    assert root.children == [child] and child.Parent is root
    named = V.Vorn_3DGameNode()
    named.SetTag("hero")
    named.OnLoad(scene)
    assert (named.GetTag(), named.GetNodeIndex()) == ("hero", -1)


def test_children_is_a_live_list():
    a, b, c = V.Vorn_3DGameNode(), V.Vorn_3DGameNode(), V.Vorn_3DGameNode()
    d, e = V.Vorn_3DGameNode(), V.Vorn_3DGameNode()
    a.children.append(b)
    a.children.extend([c])
    b.AddChild(d)
    b.children.insert(5, e)
    assert a.GetAllChildrens() == [d, e, b, c]
    assert len(a.children) == 2 and b in a.children and d not in a.children
    del a.children[-1]
    assert a.children == [b]
    a.children = [c, b]
    assert a.children[0] is c and a.children[-1] is b
    assert a.children[::-1] == [b, c]
    with pytest.raises(TypeError):
        a.children.append(None)
    with pytest.raises(TypeError):
        a.children = 5
    with pytest.raises(IndexError):
        a.children[7]
    with pytest.raises(ValueError):
        a.children.remove(d)
    assert a.children.pop() is b and a.children == [c]


def test_remove_child_messages_and_subtree(capsys):
    parent, child, grandchild = V.Vorn_3DGameNode(), V.Vorn_3DGameNode(), V.Vorn_3DGameNode()
    parent.AddChild(child)
    child.AddChild(grandchild)
    parent.RemoveChild(grandchild)
    parent.RemoveChild(None)
    assert capsys.readouterr().out == "No Find Child\nNo Find Child\n"
    parent.RemoveChild(child)
    assert capsys.readouterr().out == ""
    assert len(parent.children) == 0 and len(child.children) == 0


class Walker(V.Vorn_3DGameNode):
    def update(self, delay):
        self.steps = getattr(self, "steps", 0) + 1
        super().update(delay)


def test_subclass_owned_only_by_its_parent_keeps_its_script_state():
    parent = V.Vorn_3DGameNode(10, 0, 0)
    Walker(1, 0, 0, parent).name = "w"  # no script reference survives this line
    parent.children.append(Walker())
    V.Vorn_3DGameNode(0, 0, 0, parent).note = "plain"
    gc.collect()
    parent.update(0.1)
    parent.update(0.1)
    first = parent.children[0]
    assert isinstance(first, Walker) and first.name == "w" and first.steps == 2
    assert parent.children[2].note == "plain"
    assert first.GetWorldXYZ().x == pytest.approx(11.0)  # the base update ran too
    # The update callback receives the script object itself.
    seen = []
    first.SetUpdateFunction(seen.append)
    parent.update(0.1)
    assert seen == [first]
    # Once the engine lets go, the script object goes as well (no leak through the back reference).
    first.SetUpdateFunction(None)
    ref = weakref.ref(first)
    del first, seen
    parent.RemoveAllChild()
    gc.collect()
    assert ref() is None


def test_transform_properties_and_ints():
    n = V.Vorn_3DGameNode(1, 2, 3)
    assert n.GetXYZ() == (1, 2, 3) and type(n.GetX()) is int
    n.MoveX(0.5)
    assert n.XYZ == (1.5, 2, 3)
    with pytest.raises(TypeError):
        n.XYZ = 5
    with pytest.raises(TypeError):
        n.SXYZ = (1, 1, 1)
    with pytest.raises(TypeError):
        n.RXYZ = 1
    assert n.XYZ == (1.5, 2, 3)
    n.X = 4
    n.SX = 2.0
    n.ScaleXYZ(1, 1, 1)
    assert (n.x, n.SXYZ) == (4, (3.0, 2.0, 2.0))
    with pytest.raises(TypeError):
        n.SetX("far")
    # Standing on the ground: matrix height without a scene, the scene's ground with one.
    n.update(0)
    n.StandOnGround(True)
    assert n.GetWorldXYZ().y == 2.0
    scene = Scene()  # the node does not keep its scene alive
    n.OnLoad(scene)
    assert n.GetWorldXYZ().y == 7.5
    assert n.GetWorldMatrix().GetRow(3)[1] == 2.0


def test_follow_target_with_scale_two():
    target = V.Vorn_3DGameNode(5, 0, 0)
    target.update(0)
    follower = V.Vorn_3DGameNode(1, 2, 0)
    follower.Follow(target)
    follower.SetScale(2)
    follower.update(0)
    row = follower.GetWorldMatrix().GetRow(3)
    assert (row[0], row[1], row[2]) == (11.0, 2.0, 0.0)
    follower.Follow(None)
    follower.update(0)
    assert follower.GetWorldXYZ().x == 1.0


def test_submesh_interface_and_misuse():
    n = V.Vorn_3DGameNode()
    s = n.CreateSubMesh("quad", True)
    n.PushQuadVertex_Postion(s, 0, 0, 0, 1, 0, 0, 1, 1, 0, 0, 1, 0)
    n.PushQuadVertex_Normal(s, *([0, 0, 1] * 4))
    n.PushQuadVertex_UV(s, 0, 0, 1, 0, 1, 1, 0, 1)
    n.PushQuadVIndex(s, 0, 1, 2, 3)
    n.BuildVBO()
    assert len(n.VVBOArray[s].data) == 32 and n.SubMeshShapeCount == {0: 4}
    assert n.VVBOArray[s].data[8:16] == [1.0, 0.0, 0.0, 0.0, 1.0, 1.0, 0.0, 0.0]
    assert (n.boxMin.x, n.boxMax.y) == (0.0, 1.0)

    k = n.CreateSubMesh("skin", False, True)
    n.PushVertex_BoneIndics(k, 1, 2, 3, 4)
    assert n.VertexArray_BoneIndics[k] == [[1.02, 3.04]]
    assert n.SortVertex4BoneInfo([(1, 0.1), (2, 0.5), (3, 0.2), (4, 0.3), (5, 0.4)]) == (
        [2, 5, 4, 3], [0.5, 0.4, 0.3, 0.2])

    # Misuse raises Python exceptions and changes nothing.
    with pytest.raises(KeyError):
        n.PushVertex_Position(99, 0, 0, 0)
    with pytest.raises(TypeError):
        n.PushVertex_Position("0", 0, 0, 0)
    with pytest.raises(TypeError):
        n.PushVertex_Position(0, "x", 0, 0)
    with pytest.raises(TypeError):
        n.PushQuadVertex_Postion(s, 0, 0, 0)
    with pytest.raises(TypeError):
        n.PushLineVertex_BoneIndics(k, 1, 2, 3, 4, 5, 6, 7, 8)
    with pytest.raises(TypeError):
        n.DropLineVIndex(s, 0, 1)
    with pytest.raises(IndexError):
        n.DropVIndex(s, 4)
    with pytest.raises(IndexError):
        n.DeleteSubMesh(5)
    with pytest.raises(TypeError):
        n.VertexArray_Positon = {0: [[1, 2, 3, 4]]}
    assert n.VIndexArray[s] == [0, 1, 2, 3] and n.VertexArray_BoneIndics[k] == [[1.02, 3.04]]
    assert n.GetSubMeshColor(42) == [1.0, 1.0, 1.0, 1.0]
    assert n.GetSubMeshSpecularColor() == [1.0, 1.0, 1.0, 10.0]

    # Read as copies, replaced whole on assignment.
    copy = n.VertexArray_Positon
    copy[s].append([9, 9, 9])
    assert len(n.VertexArray_Positon[s]) == 4
    n.VertexArray_Positon = {s: [[0, 0, 0]]}
    assert n.VertexArray_Positon == {s: [[0.0, 0.0, 0.0]]}


def test_delete_then_create_overwrites_key_two_and_clean_vertex_keeps_tangents():
    n = V.Vorn_3DGameNode()
    for name in "abc":
        n.CreateSubMesh(name)
    n.PushVertex_Position(2, 1, 1, 1)
    n.PushVertex_Tangent(2, 1, 0, 0)
    n.DeleteSubMesh(1)
    assert n.SubMeshList == ["a", "c"] and list(n.VertexArray_Positon) == [0, 2]
    assert n.CreateSubMesh("d") == 2
    assert n.VertexArray_Positon[2] == [] and n.SubMeshList == ["a", "c", "d"]
    n.PushVertex_Tangent(2, 0, 1, 0)
    n.CleanVertex()
    assert n.VertexArray_Tangent == {0: [], 2: [[0.0, 1.0, 0.0]]}
    assert n.VertexArray_Positon == {}
    with pytest.raises(KeyError):
        n.PushVertex_Position(2, 0, 0, 0)


class Clickable(V.Vorn_3DGameNode):
    def on_PickDown(self, params):
        self.calls = getattr(self, "calls", []) + [("first", params)]


def test_binding_tables_and_events(capsys):
    n = Clickable()
    assert n.GetBindingVar("hp") is None
    assert capsys.readouterr().out == "No Find Variable\n"
    n.BindingVarArray["hp"] = 3  # the live table reaches the engine
    assert n.GetBindingVar("hp") == 3 and n.GetBindingVarArray() == {"hp": 3}
    n.SetBindingPoint("p", 1, 2, 3)
    n.SetBindingPoint("p", 0, 5, 6)
    assert n.BindingPointArray == {"p": [0, 5, 6]}

    # An inner event binds on_<name> at its first call, and is not looked up again.
    n.CallInnerEvent("PickDown", px=1, py=2)
    assert n.calls == [("first", {"px": 1, "py": 2})]
    assert n.GetInnerBindingEvent("PickDown")[1:] == [["px", "py"], []]
    Clickable.on_PickDown = lambda self, params: pytest.fail("looked up again")
    n.CallInnerEvent("PickDown", px=3, py=4)
    assert n.calls[-1] == ("first", {"px": 3, "py": 4})

    # An operation without an entry is a KeyError; no operation at all prints.
    n.on_Hit = lambda params: None
    with pytest.raises(KeyError):
        n.CallEvent("Hit")
    n.CallEvent("Nothing")
    n.CallInnerEvent("Nothing")
    assert capsys.readouterr().out == "No Find Binding Event\nNo Find Inner Binding Event\n"
    got = []
    n.SetBindingEvent("Hit", lambda params: got.append(params))
    n.CallEvent("Hit", power=2)
    assert got == [{"power": 2}] and n.GetBindingEvent("Hit")[1] == []

    n.OnDestroy()
    assert len(n.BindingVarArray) == 0 and "PickDown" in n.InnerBindingEventArray
    with pytest.raises(TypeError):
        n.InnerBindingEventArray["X"] = []


def test_timed_actions_on_nodes():
    n = V.Vorn_3DGameNode()
    n.RunAction([V.MoveToAction(2.0, 4, 8, 0)])
    seen = []
    for _ in range(5):
        n.update(0.5)
        seen.append(n.GetXYZ())
    assert seen == [(1.0, 2.0, 0.0), (2.0, 4.0, 0.0), (3.0, 6.0, 0.0), (4.0, 8.0, 0.0), (4.0, 8.0, 0.0)]
    r = V.Vorn_3DGameNode()
    r.SetAngle(30)
    r.RunAction([V.RotateByAction(1.0, 90)])
    r.update(0.25)
    r.update(1.0)
    assert (r.GetAngle(), r.GetRZ()) == (120.0, 120.0)
    with pytest.raises(TypeError):
        r.RunAction([None])


def test_none_where_a_node_is_expected():
    n = V.Vorn_3DGameNode()
    n.SetParent(None)
    n.Follow(None)
    n.OnLoad(None)
    n.Parent = None
    with pytest.raises(TypeError):
        n.AddChild(None)
    with pytest.raises(TypeError):
        n.SetParent(5)
    with pytest.raises(TypeError):
        V.Vorn_3DGameNode(0, 0, 0, "parent")
    with pytest.raises(TypeError):
        n.SetUpdateFunction(3)
    with pytest.raises(RuntimeError, match="camera"):
        n.CreateFollowCamera(0, 0, 0)


def test_callbacks_referring_to_their_node_are_collected_only_when_unreachable():
    # A node held only by the script, with a callback that refers back to it: a cycle
    # through the engine that the collector still frees.
    lonely = V.Vorn_3DGameNode()
    lonely.SetUpdateFunction(lambda node: lonely)
    lonely.SetBindingVar("me", lonely)
    ref = weakref.ref(lonely)
    del lonely
    gc.collect()
    assert ref() is None

    # The same cycle on a node a parent owns: the engine keeps it, callback included.
    parent = V.Vorn_3DGameNode()
    child = V.Vorn_3DGameNode(0, 0, 0, parent)
    calls = []
    child.SetUpdateFunction(lambda node: calls.append(node))
    child.SetBindingVar("me", child)
    child.note = "kept"  # plain nodes take attributes too
    del child
    gc.collect()
    parent.update(0.1)
    assert len(calls) == 1 and calls[0].note == "kept" and calls[0].GetBindingVar("me") is calls[0]
