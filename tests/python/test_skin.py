"""Skin animation data from a script: tables in, bone matrices and skeleton lines out."""
import pytest

import Vorn3DGameEngine as V

M = V.FbxMatrix


def moved(x, y, z):
    return M.FromTQS(V.FbxVector4(x, y, z, 0), V.FbxVector4(0, 0, 0, 0), V.FbxVector4(1, 1, 1, 1))


def translation(floats, bone):
    return floats[bone * 16 + 12: bone * 16 + 15]


def make_skin():
    skin = V.Vorn_SkinSubMeshAni_GLB()
    skin.SetInverseBindMatrices({1: moved(0, -1, 0), 2: moved(0, -3, 0)})
    skin.SetInitBoneTree({1: [None, moved(0, 1, 0)], 2: (1, moved(0, 2, 0))})
    skin.SetAniBonesMatrix({1: [(0.0, moved(0, 1, 0)), (1.0, moved(5, 1, 0))],
                            2: [(0.0, moved(0, 2, 0)), (1.0, moved(0, 2, 7))]})
    return skin


def test_base_gives_sixty_four_bones():
    data = V.Vorn_SkinSubMeshAniData()
    assert len(data.GetFinalBoneMatrixByTime(0.5)) == 1024


def test_glb_bones_follow_the_last_key_reached(capsys):
    skin = make_skin()
    assert isinstance(skin, V.Vorn_SkinSubMeshAniData)
    assert skin.BoneCount is None and skin.FinalBoneXYZArray == []
    # Translations only: final = frame * inverse * init * inverse adds them up. Which key
    # applies when is the C++ suite's (skin_ani_test); here the tables and lists.
    for time, root, child in [(0.5, [0, 0, 0], [0, 0, 0]), (2, [5, 0, 0], [5, 0, 7])]:
        floats = skin.GetFinalBoneMatrixByTime(time)
        assert len(floats) == 32 and isinstance(floats[0], float)
        assert translation(floats, 0) == root and translation(floats, 1) == child
    assert skin.FinalShaderMatrixArray == floats and skin.BoneCount == 2
    assert skin.GetBoneXYZList() == [[0.0, -2.0, 0.0, 0.0, 0.0, 0.0]]
    assert capsys.readouterr().out.splitlines() == ["CurrFrame: 0.5", "CurrFrame: 2"]
    # The tables read back as copies.
    assert skin.InitBoneTree[2][0] == 1 and skin.InitBoneTree[1][0] is None
    assert [t for t, _ in skin.AniBoneTree[2]] == [0.0, 1.0]
    assert list(skin.InverseBindMatrices) == [1, 2]


def test_misuse_and_broken_tables_raise():
    skin = V.Vorn_SkinSubMeshAni_GLB()
    with pytest.raises(RuntimeError, match="no action started"):
        skin.GetFinalBoneMatrixByTime(0.0)
    with pytest.raises(TypeError, match="SetInitBoneTree: initBoneTree must be a dict, not list"):
        skin.SetInitBoneTree([])
    with pytest.raises(TypeError, match="record of node 3"):
        skin.SetInitBoneTree({3: [None]})
    with pytest.raises(TypeError, match="keyframe time"):
        skin.SetAniBonesMatrix({1: [("soon", moved(0, 0, 0))]})
    with pytest.raises(TypeError, match="currTime must be a number"):
        make_skin().GetFinalBoneMatrixByTime("now")
    skin = make_skin()
    skin.SetInverseBindMatrices({1: moved(0, 0, 0)})
    with pytest.raises(KeyError, match="bone 2 is not in InverseBindMatrices"):
        skin.GetFinalBoneMatrixByTime(0.0)
    skin = make_skin()
    skin.SetAniBonesMatrix({1: [(0.0, moved(0, 0, 0))], 2: [(0.0, moved(0, 0, 0)), (1.0, moved(0, 0, 0))]})
    with pytest.raises(IndexError, match="keyframe 1 of bone 2"):
        skin.GetFinalBoneMatrixByTime(1.0)
