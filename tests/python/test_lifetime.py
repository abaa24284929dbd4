"""Who keeps a node alive: a script's attributes, its subclass and its identity last as
long as the engine holds the node, and the cycle collector frees scenes that only their
own nodes' callbacks refer to, with their GL buffers."""
import ctypes
import gc
import resource
import weakref

import Vorn3DGameEngine as V
from conftest import W, H, needs_plain_memory


class Tracked(V.Vorn_3DCamera):
    """A camera whose update override counts its calls."""

    def update(self, delay):
        self.updates = getattr(self, "updates", 0) + 1
        super().update(delay)


def test_engine_held_nodes_keep_attributes_class_and_identity(scene):
    box = scene.CreateBox(0, 0, 0)
    box.hp = 10
    child = V.Vorn_3DGameNode(0, 0, 0, box)
    child.tag = "wheel"
    box.CreateFollowCamera(0, 2, 5).role = "follow"
    shadow = scene.CreateShadowMapCamera(1, 2, 3)
    box.SetShadowMapCamera(Tracked())
    box.ShadowMapCamera.role = "shadow"
    active = Tracked(0, 0, 5)
    active.OnLoad(scene)
    scene.SetActiveCamera(active)
    text = scene.Create2DText(5, 5, "hud")
    text.kind = "hud"
    refs = [weakref.ref(o) for o in (box, child, active, text)]
    del box, child, active, text, shadow
    gc.collect()
    assert all(r() is not None for r in refs)

    box = scene.Get3DObjectArray()[-1]
    assert box is scene.Get3DObjectArray()[-1] is scene.Quey3DObjectByTag(box.GetTag())
    assert (box.hp, box.children[0].tag, box.children[0].GetParent() is box) == (10, "wheel", True)
    assert (box.FollowCamera.role, box.ShadowMapCamera.role) == ("follow", "shadow")
    assert type(box.ShadowMapCamera) is Tracked and box.FollowCamera is box.FollowCamera
    assert scene.TextArray[-1].kind == "hud"
    camera = scene.GetActiveCamera()
    assert type(camera) is Tracked and camera is scene.ActiveCamera
    scene.DrawScene()
    scene.DrawScene()
    assert camera.updates == 2


def test_the_last_engine_reference_hands_the_node_back_to_python(scene):
    box = scene.CreateBox(0, 0, 0)
    box.hp = 3
    ref = weakref.ref(box)
    scene.ObjectArray_3D.remove(box)
    assert box.hp == 3  # the script still holds it
    del box
    gc.collect()
    assert ref() is None  # a parent letting go: test_node.py


def test_a_child_that_refers_to_its_parent_is_collected_with_it():
    parent = V.Vorn_3DGameNode()
    child = V.Vorn_3DGameNode(0, 0, 0, parent)
    child.owner = parent
    child.SetUpdateFunction(lambda n, p=parent: p)
    refs = weakref.ref(parent), weakref.ref(child)
    del parent, child
    gc.collect()
    assert [r() for r in refs] == [None, None]


def test_scene_global_keeps_the_scene_and_its_attributes(scene):
    level = V.Vorn_3Dcene()
    level.name = "level 2"
    saved = V.openGLScene
    V.openGLScene = level
    ref = weakref.ref(level)
    del level
    gc.collect()
    assert V.openGLScene is ref() and V.openGLScene.name == "level 2"
    V.openGLScene = saved
    gc.collect()
    assert ref() is None


def gl_is_buffer(name):
    gl = ctypes.CDLL("libGL.so.1")
    return bool(gl.glIsBuffer(ctypes.c_uint(name)))


class Player(V.Vorn_3DGameNode):
    """The common pattern: a subclass that keeps its scene."""

    def __init__(self, scene):
        super().__init__()
        self.scene = scene
        scene.ObjectArray_3D.append(self)


def uploaded_name(buffer):
    buffer.bind()
    buffer.unbind()
    return buffer.glName


def build_level(nodes=100, make=V.Vorn_3Dcene.Create3DGameNode):
    level = V.Vorn_3Dcene()
    level.InitGL(W, H)
    for i in range(nodes):
        node = make(level, i, 0, 0)
        node.SetUpdateFunction(lambda n, sc=level: sc.GetCurrTime())
        node.AddChild(V.Vorn_3DGameNode())
    Player(level)
    return level


def test_a_scene_that_its_nodes_refer_to_is_collected_with_its_buffers(scene):
    level = build_level(10, V.Vorn_3Dcene.CreateBox)
    level.DrawScene()
    names = [uploaded_name(level.ObjectArray_3D[i].VVBOArray[0]) for i in range(10)]
    assert all(gl_is_buffer(n) for n in names)
    refs = [weakref.ref(level), weakref.ref(level.ObjectArray_3D[0]), weakref.ref(level.ObjectArray_3D[-1])]
    del level
    gc.collect()
    assert [r() for r in refs] == [None, None, None]
    assert not any(gl_is_buffer(n) for n in names)


@needs_plain_memory
def test_building_and_dropping_levels_leaves_memory_flat(scene):
    def rounds(n):
        for _ in range(n):
            build_level()
            gc.collect()
        return resource.getrusage(resource.RUSAGE_SELF).ru_maxrss

    before = rounds(50)  # warms caches and allocator pools
    after = rounds(1000)
    assert after - before < 8 * 1024, f"peak RSS grew by {(after - before) // 1024} MB"
