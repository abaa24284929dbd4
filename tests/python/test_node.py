"""Vorn_3DGameNode as scripts use it: hierarchy, script subclasses, fields, misuse."""
import gc
import weakref

import pytest

import Vorn3DGameEngine as V
from conftest import ScriptScene


class Box(V.Vorn_3DGameNode):
    """A subclass that writes its label after the base constructor, like engine classes."""

    def __init__(self, x=0, y=0, z=0, parent=None):
        super().__init__(x, y, z, parent)
        self.NodeType = "3DBox"


def test_tags_come_from_the_script_scene_and_the_label_the_subclass_wrote():
    scene = ScriptScene()
    root = Box()
    root.OnLoad(scene)
    child = Box(0, 0, 0, root)
    assert (root.GetTag(), child.GetNodeType(), child.GetTag()) == ("3DBox_1", "3DBox", "3DGameNode_2")
    assert child.GetSceneInstance() is scene and root.children == [child] and child.Parent is root


def test_children_hold_the_hierarchy(capsys):
    # The list operations themselves are test_sequences.py's.
    a, b, c = V.Vorn_3DGameNode(), V.Vorn_3DGameNode(), V.Vorn_3DGameNode()
    d, e = V.Vorn_3DGameNode(), V.Vorn_3DGameNode()
    a.children.extend([b, c])
    b.AddChild(d)
    b.children.append(e)
    assert a.GetAllChildrens() == [d, e, b, c]
    a.children = [c]
    assert a.children == [c]
    with pytest.raises(TypeError):
        a.children = 5
    b.RemoveChild(None)
    assert capsys.readouterr().out == "No Find Child\n"


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


def test_transform_properties_keep_ints_and_refuse_other_types():
    n = V.Vorn_3DGameNode(1, 2, 3)
    assert n.GetXYZ() == (1, 2, 3) and type(n.GetX()) is int
    n.MoveX(0.5)
    for name, value in (("XYZ", 5), ("SXYZ", (1, 1, 1)), ("RXYZ", 1)):
        with pytest.raises(TypeError):
            setattr(n, name, value)
    with pytest.raises(TypeError):
        n.SetX("far")
    assert n.XYZ == (1.5, 2, 3)
    # Standing on the ground asks the script's scene, which the node does not keep alive.
    n.update(0)
    n.StandOnGround(True)
    scene = ScriptScene(7.5)
    n.OnLoad(scene)
    assert n.GetWorldXYZ().y == 7.5


def test_submesh_misuse_raises_and_changes_nothing():
    n = V.Vorn_3DGameNode()
    s = n.CreateSubMesh("quad", True)
    n.PushQuadVertex_Postion(s, 0, 0, 0, 1, 0, 0, 1, 1, 0, 0, 1, 0)
    n.PushQuadVIndex(s, 0, 1, 2, 3)
    k = n.CreateSubMesh("skin", False, True)
    n.PushVertex_BoneIndics(k, 1, 2, 3, 4)
    for call, error in [
        (lambda: n.PushVertex_Position(99, 0, 0, 0), KeyError),
        (lambda: n.PushVertex_Position("0", 0, 0, 0), TypeError),
        (lambda: n.PushVertex_Position(0, "x", 0, 0), TypeError),
        (lambda: n.PushQuadVertex_Postion(s, 0, 0, 0), TypeError),
        (lambda: n.DropVIndex(s, 4), IndexError),
        (lambda: setattr(n, "VertexArray_Positon", {0: [[1, 2, 3, 4]]}), TypeError),
    ]:
        with pytest.raises(error):
            call()
    assert n.VIndexArray[s] == [0, 1, 2, 3] and n.VertexArray_BoneIndics[k] == [[1.02, 3.04]]
    # Read as copies, replaced whole on assignment.
    copy = n.VertexArray_Positon
    copy[s].append([9, 9, 9])
    assert len(n.VertexArray_Positon[s]) == 4
    n.VertexArray_Positon = {s: [[0, 0, 0]]}
    assert n.VertexArray_Positon == {s: [[0.0, 0.0, 0.0]]}


class Clickable(V.Vorn_3DGameNode):
    def on_PickDown(self, params):
        self.calls = getattr(self, "calls", []) + [("first", params)]


def test_binding_tables_and_events(capsys):
    n = Clickable()
    assert n.GetBindingVar("hp") is None
    assert capsys.readouterr().out == "No Find Variable\n"
    n.BindingVarArray["hp"] = 3  # the live table reaches the engine
    assert n.GetBindingVar("hp") == 3 and n.GetBindingVarArray() == {"hp": 3}
    n.BindingVarArray["me"] = n.BindingVarArray  # holds itself: printed as a dict would be
    assert repr(n.BindingVarArray) == "{'hp': 3, 'me': {...}}"
    del n.BindingVarArray["me"]

    # An inner event binds on_<name> at its first call, and is not looked up again.
    n.CallInnerEvent("PickDown", px=1, py=2)
    assert n.calls == [("first", {"px": 1, "py": 2})]
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
    assert got == [{"power": 2}]
    with pytest.raises(TypeError):
        n.InnerBindingEventArray["X"] = []


def test_timed_actions_on_nodes():
    # The actions' arithmetic is the C++ suite's (actions_test); here the node runs them.
    n = V.Vorn_3DGameNode()
    n.RunAction([V.MoveToAction(2.0, 4, 8, 0)])
    n.update(0.5)
    assert n.GetXYZ() == (1.0, 2.0, 0.0)
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
    for call in (lambda: n.AddChild(None), lambda: n.SetParent(5),
                 lambda: V.Vorn_3DGameNode(0, 0, 0, "parent"), lambda: n.SetUpdateFunction(3)):
        with pytest.raises(TypeError):
            call()


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
    del child
    gc.collect()
    parent.update(0.1)
    assert len(calls) == 1 and calls[0].GetBindingVar("me") is calls[0]
