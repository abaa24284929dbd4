"""The resource index as a script sees it."""
import pytest

import Vorn3DGameEngine as V


@pytest.fixture
def resdir(tmp_path):
    root = tmp_path / "Resources"
    for name in ("readme.txt", "Textures/Wall.JPG", "Other/wall.jpg", "Other/deep/deeper/wall.jpg",
                 "my.github.io/skip.png", "__pycache__/skip.pyc", "Scene/level1.scene",
                 "Scene/level1_Res.Json", "Scene/level2.scene", "SkyBox/sunny/left.jpg",
                 "SkyBox/single.dds", "Terrain/hill/height.raw", "Terrain/loose.txt", "Ocean/sea/deep.png"):
        (root / name).parent.mkdir(parents=True, exist_ok=True)
        (root / name).write_bytes(b"x")
    return str(root)


def test_index_lookup_and_listings(gl_context, resdir):
    res = V.PyGameResManager(resdir)
    assert V.ResManagerInstance is res
    # The manager brings up the shader manager with the whole catalogue.
    assert isinstance(V.FXManagerInstance, V.Vorn_FXManage)
    assert V.FXManagerInstance.GetShader(V.Vorn_3DFX.FX_DIFFUSE) is not None
    assert res.GetResRootDir() == resdir
    # Names that differ only in case share one key, in scan order (sorted by name).
    walls = res.GetResPath("WALL.jpg")
    assert walls == [f"{resdir}/Other/deep/deeper/wall.jpg", f"{resdir}/Other/wall.jpg",
                     f"{resdir}/Textures/Wall.JPG"]
    # dirName is compared with the name as asked for, case and all.
    assert res.GetResPath("wall.jpg", "Textures") == walls
    assert res.GetResPath("Wall.JPG", "Textures") == f"{resdir}/Textures/Wall.JPG"
    assert res.GetResPath("wall.jpg", "Nowhere") == walls
    assert res.GetResPath("missing.png") is None
    # Folders whose names merely contain ".git" or "__pycache__" are skipped.
    assert res.GetResPath("skip.png") is None and res.GetResPath("skip.pyc") is None
    assert res.GetSceneList() == [f"{resdir}/Scene/level1_Res.Json"]
    assert res.ListSkyBoxTexture() == [f"{resdir}/SkyBox/single.dds", f"{resdir}/SkyBox/sunny/left.jpg"]
    assert res.ListTerrainDir() == [f"{resdir}/Terrain/hill"]
    assert res.ListOceanDir() == [f"{resdir}/Ocean/sea/deep.png"]
    # The driver's list is read; llvmpipe offers S3TC.
    assert "GL_ARB_vertex_buffer_object" in res.ExtensionList
    assert res.CheckCompressTextureFormat_DXT() == res.DXT_Support
    assert res.CheckCompressTextureFormat_PVR() is False


def test_missing_root_gives_an_empty_index(gl_context, tmp_path):
    res = V.PyGameResManager(str(tmp_path / "nothing-here"))
    assert res.fileDict == {}
    assert res.ListTerrainDir() == [] and res.ListSkyBoxTexture() == [] and res.ListOceanDir() == []


def test_image_loading_and_use_record(gl_context, tmp_path, capsys):
    root = tmp_path / "Res"
    (root / "Anim").mkdir(parents=True)
    img = V.Vorn_Image("RGB", (4, 2))
    for name in ("walk_01.png", "walk_02.png", "walk_10.png"):
        img.save(str(root / "Anim" / name))
    (root / "Anim" / "walk_01.jpg").write_bytes(b"not an image")
    (root / "Anim" / "photo.BMP").write_bytes(b"BM")
    res = V.PyGameResManager(str(root))
    image, w, h, flag = res.LoadImageFile("WALK_01.png")
    assert (w, h, flag) == (4, 2, False) and image is not None
    assert res.LoadImageFile("walk_01.jpg") == (None, 0, 0, False)
    assert res.LoadImageFile("photo.BMP") == (None, 0, 0, False)
    assert res.LoadImageFile("absent.png") == (None, 0, 0, False)
    assert res.GetImageListFiles("walk_02.png") == [str(root / "Anim" / n) for n in
                                                    ("walk_01.png", "walk_02.png", "walk_10.png")]
    assert res.GetImageListFiles("absent.png") == []
    capsys.readouterr()
    res.ManageImageMemory("a")
    res.ManageImageMemory("b")
    res.ManageImageMemory("a")
    assert capsys.readouterr().out.splitlines() == ["a  load: 1", "b  load: 2", "a  load: 0  ->  2"]
    assert res.ImageDict_MemManage_List == ["b", "a"] and res.ImageDict_MemManage_Count == 2
    res.ReleaseAllImageMemeory()
    assert res.ImageDict_MemManage_List == [] and res.ImageDict_MemManage_Count == 0
    assert res.ImageDict == {}
