"""Vorn_3DMesh as scripts use it: actions and their clock, keyframes for the skin
objects, a skinned quad moved on screen by its bone, and OBJ models through the scene.
Vertices shared between bones are drawn by the skinned-walker render reference."""
import pytest

import Vorn3DGameEngine as V
from conftest import W, H, look, pixel

STILL = [("rotation", [(0.0, [0, 0, 0, 1]), (1.0, [0, 0, 0, 1])]),
         ("scale", [(0.0, [1, 1, 1]), (1.0, [1, 1, 1])])]


def walk(dx):
    """Bone 1 moves along x to dx in one second; bone 2 has channels of unequal lengths."""
    return {1: [("translation", [(0.0, [0, 0, 0]), (1.0, [dx, 0, 0])])] + STILL,
            2: [("translation", [(0.0, [0, 0, 0])]), ("rotation", [(0.0, [0, 0, 0, 1]), (2.5, [0, 0, 0, 1])])]}


def test_actions_and_the_clock(capsys):
    mesh = V.Vorn_3DMesh()
    mesh.ActionDict = {"walk": walk(2.0), "idle": {}}
    assert (mesh.GetActionCount(), mesh.GetActionName(1), mesh.GetActionName(-1), mesh.GetActionName(2)) == (
        2, "idle", None, None)
    assert mesh.Looping is None and not mesh.Playing
    mesh.PlayAction(2)  # no such action: nothing changes
    assert not mesh.Playing and capsys.readouterr().out == ""

    mesh.PlayAction(0)
    assert capsys.readouterr().out.splitlines() == ["Duration:2.5000"]
    assert (mesh.Playing, mesh.Looping, mesh.CurrAnimation_CurrTime, mesh.CurrAnimation_EndTime) == (
        True, True, 0.0, 2.5)
    mesh.update_skin_animation(2.0)
    mesh.update_skin_animation(0.7)  # past the end: restarts exactly at the beginning
    assert mesh.CurrAnimation_CurrTime == 0.0
    mesh.SetActionSpeed(0.0)
    mesh.update_skin_animation(1.0)
    assert mesh.CurrAnimation_CurrTime == 0.0
    mesh.SetActionSpeed(-1.0)  # only the end is tested: the clock runs back freely
    mesh.update_skin_animation(1.0)
    assert mesh.CurrAnimation_CurrTime == -1.0


def test_play_action_hands_keyframes_to_every_skin_object(capsys):
    mesh = V.Vorn_3DMesh()
    skins = [V.Vorn_SkinSubMeshAni_GLB(), V.Vorn_SkinSubMeshAni_GLB()]
    mesh.SubMesh_Dict = {0: skins[0], 3: skins[1]}
    action = walk(2.0)
    action[1][0][1].append((2.0, [9, 9, 9]))  # a translation key with no rotation or scale
    action[3] = [("translation", [(0.5, [0, 0, 0])]), ("rotation", [(0.5, [0, 0, 0, 1])]),
                 ("scale", [(0.25, [1, 1, 1])])]
    mesh.ActionDict = {"walk": action}
    mesh.PlayAction(0)
    assert capsys.readouterr().out.splitlines() == ["R,S,T Time not equal", "Duration:2.5000"]
    for skin in skins:
        table = skin.AniBoneTree
        # Bone 1's unequal channels and bone 2's short ones give no keyframes.
        assert [[t for t, _ in table[b]] for b in (1, 2, 3)] == [[], [], []]
    mesh.ActionDict = {"walk": walk(2.0)}
    mesh.PlayAction(0)
    assert [t for t, _ in skins[1].AniBoneTree[1]] == [0.0, 1.0]
    assert skins[1].AniBoneTree[1][1][1].Get(3, 0) == 2.0  # row 3 holds the translation


def skinned_quad(scene):
    """A white 2 by 2 quad at the origin whose vertices all follow bone 1 (shader matrix 0)."""
    look(scene)
    mesh = scene.CreateMeshFromFile(0, 0, 0)
    mesh.withSkin = True  # as a loader sets it for a mesh with bones
    s = mesh.CreateSubMesh("skin", True, True)
    for x, y in [(-1, -1), (1, -1), (1, 1), (-1, 1)]:
        mesh.PushVertex_Position(s, x, y, 0)
        mesh.PushVertex_UV(s, 0, 0)
        mesh.PushVertex_Normal(s, 0, 0, 1)
        mesh.PushVertex_BoneIndics(s, 0, 0, 0, 0)
        mesh.PushVertex_BoneWeights(s, 1, 0, 0, 0)
    mesh.PushTriangleVIndex(s, 0, 1, 2)
    mesh.PushTriangleVIndex(s, 0, 2, 3)
    mesh.BuildVBO()
    mesh.LoadSubMeshTextureFromImage(s, 0, bytes([255] * 12), "RGB", 2, 2)
    mesh.ApplyFX(V.Vorn_3DFX.FX_TEXTURE_SKIN)
    identity = V.FbxMatrix()
    skin = V.Vorn_SkinSubMeshAni_GLB()
    skin.SetInitBoneTree({1: (None, identity), 2: (1, identity)})
    skin.SetInverseBindMatrices({1: identity, 2: identity})
    mesh.SubMesh_Dict = {s: skin}
    mesh.ActionDict = {"walk": walk(2.0)}
    return mesh


def lit(p):
    return sum(p) > 600


def test_a_skinned_quad_follows_its_bone_on_screen(scene, capsys):
    mesh = skinned_quad(scene)
    with pytest.raises(RuntimeError, match="no action started"):
        scene.DrawScene()
    mesh.PlayAction(0)
    mesh.SetActionSpeed(0.0)  # the frame must not move the clock on a slow machine
    scene.DrawScene()  # the clock is at 0: the bone is where it was bound
    assert lit(pixel(W // 2, H // 2))
    mesh.CurrAnimation_CurrTime = 1.0  # the second key: two units to the right
    scene.DrawScene()
    # Two units at five under a 45 degree view are about 116 pixels.
    assert not lit(pixel(W // 2 - 20, H // 2)) and lit(pixel(W // 2 + 116, H // 2))
    assert "CurrFrame: 1.0" in capsys.readouterr().out


def test_obj_models_through_the_scene(scene, tmp_path):
    (tmp_path / "crate.mtl").write_text("newmtl wood\nKd 1 1 1\n")
    (tmp_path / "crate.obj").write_text(
        "mtllib crate.mtl\nusemtl wood\nv 0 0 0\nv 1 0 0\nv 0 1 0\nvt 0 0\nvt 1 0\nvt 0 1\n"
        "vn 0 0 1\nvn 0 0 1\nvn 0 0 1\nf 0/0/0 1/1/1 2/2/2\n")
    mesh = scene.CreateMeshFromFile(meshFile=str(tmp_path / "crate.obj"))
    assert type(mesh) is V.Vorn_3DMesh and scene.ObjectArray_3D[-1] is mesh
    assert (mesh.SubMeshList, mesh.MeshFile, mesh.VIndexArray[0]) == (["submesh_0"], str(tmp_path / "crate.obj"),
                                                                     [0, 1, 2])
    assert type(scene.CreateMeshFromFile(meshFile="notes.txt")) is V.Vorn_3DMesh  # no kind: an empty mesh
    hero = scene.CreateMeshFromFile(meshFile="hero.fbx")  # FBX is read now; a missing file leaves it empty
    assert hero.SubMeshList == [] and scene.ObjectArray_3D[-1] is hero
