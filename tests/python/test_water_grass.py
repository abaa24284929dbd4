"""Ocean and grass as scripts use them: factories and registries, fields and texture
channels, the ground a script scene gives, misuse and script subclasses.
Blade shapes, seeded patches, the ground drop, refused values, the motion on screen and
other objects drawn unchanged beside them are the C++ suite's (grass_gl_test, ocean_gl_test)."""
import gc
import weakref

import pytest

import Vorn3DGameEngine as V
from conftest import ScriptScene


def picture(path, width):
    """A one-row grey PNG `width` pixels wide: its width tells the files apart."""
    im = V.Vorn_Image("RGB", (width, 1))
    for x in range(width):
        im.putpixel((x, 0), (128, 128, 128))
    im.save(str(path))
    return str(path)


def test_ocean_fields_texture_channels_and_registry(scene, tmp_path, capsys):
    ocean = scene.CreateOcean(1, 2, 3)
    assert type(ocean) is V.Vorn_3DOcean and ocean.NodeType == "3DOcean"
    assert list(scene.Get3DTerrainArray()) == [ocean] and list(scene.ObjectArray_3DOcean) == []
    assert ocean not in list(scene.Get3DObjectArray())
    assert (ocean.Rows, ocean.Cows, ocean.TileSize) == (128, 128, 1.0)
    assert ocean.GetShader() is None and ocean.SubMeshFX == {0: V.FXManagerInstance.GetShader(V.Vorn_3DFX.FX_OCEAN)}
    ocean.SetWave(Freq=0.7, Amp=0.2)
    ocean.SetBump(1.5, 0.25, 0.5)
    assert (ocean.WaveFreq, ocean.WaveAmp, ocean.BumpScale, ocean.BumpSpeedX, ocean.BumpSpeedY) == (
        0.7, 0.2, 1.5, 0.25, 0.5)

    # Wave textures on channels 0 and 1, depth on 2; the second depth name adds a later
    # record on the same channel, which binds last and so wins.
    ocean.SetWaveTexture(picture(tmp_path / "x.png", 2), picture(tmp_path / "y.png", 3))
    ocean.SetDepthTexture(picture(tmp_path / "deep.png", 4))
    ocean.SetDepthFrTexture(picture(tmp_path / "deepfr.png", 5))
    records = ocean.TextureArray[0]
    assert [(r[0], r[4]) for r in records] == [(0, 2), (1, 3), (2, 4), (2, 5)]
    ocean.SetDepthTexture(str(tmp_path / "missing.png"))
    assert "Can't find texture:" in capsys.readouterr().out
    assert len(ocean.TextureArray[0]) == 4

    # A child ocean is its parent's to draw.
    child = scene.CreateOcean(parent=ocean)
    assert list(ocean.children) == [child] and list(scene.Get3DTerrainArray()) == [ocean]


def test_load_ocean_makes_one_more_ocean_each_call_in_a_plain_scene(scene):
    first = scene.LoadOcean("Ocean/sea")
    second = scene.LoadOcean("ignored")
    assert isinstance(first, V.Vorn_3DOcean) and second is not first
    assert list(scene.Get3DTerrainArray()) == [first, second] and list(scene.ObjectArray_3DOcean) == []
    # Only an ocean a script put into the ocean registry is found again.
    scene.ObjectArray_3DOcean.append(second)
    assert scene.LoadOcean("again") is second and len(scene.Get3DTerrainArray()) == 2
    # The oceans stand with the terrains, so the first one answers the ground query.
    first.SetTileVertexY(64, 64, 2.0)
    assert scene.Get3DTerrainY(0.25, 0.25) == pytest.approx(2.0)


def test_grass_factory_fields_and_seeded_patches(scene):
    grass = scene.CreateGrass(1, 0, 2)
    assert type(grass) is V.Vorn_3DGrass and grass.NodeType == "3DGrass"
    assert list(scene.Get3DObjectArray()) == [grass] and tuple(grass.GetXYZ()) == (1, 0, 2)
    # The factory's defaults: radius 0.5, 50 blades in one submesh.
    assert grass.statckR == 0.5 and grass.SubMeshList == ["submesh_0"]
    assert grass.VertexDescArray == {0: V.GL_T2F_N3F_V3F}
    assert grass.SubMeshFX == {0: V.FXManagerInstance.GetShader(V.Vorn_3DFX.FX_GRASS)}
    roots = [uv for uv in grass.VertexArray_UV[0] if uv[1] == 0.0]
    assert len(roots) == 2 * 50
    assert all(x * x + z * z <= (0.5 + 0.3) ** 2 for x, _, z in grass.VertexArray_Positon[0])

    fresh = V.Vorn_3DGrass()
    assert repr(fresh.statckR) == "30" and (fresh.SwingSpeed, fresh.SwingRegion) == (1.0, 0.1)
    fresh.SetSwing(swingSpeed=2.0, swingRegion=0.3)
    assert (fresh.SwingSpeed, fresh.SwingRegion) == (2.0, 0.3)
    assert scene.CreateGrass(parent=grass) not in list(scene.Get3DObjectArray())


def test_grass_stands_on_the_ground_below_its_world_position(scene):
    # A script's ground: a slope, with every query recorded.
    class Slope(ScriptScene):
        def __init__(self):
            super().__init__()
            self.queries = []

        def Get3DTerrainY(self, x, z):
            self.queries.append((x, z))
            return 0.1 * x + 0.2 * z

    ground = Slope()
    grass = V.Vorn_3DGrass(10, 0, 5)
    grass.OnLoad(ground)
    grass.CreateGrass(radius=1.0, density=20)
    before = grass.VertexArray_Positon[0]
    grass.StandOnGround()
    after = grass.VertexArray_Positon[0]
    # The ground is asked once a blade edge: each edge keeps its x and z upwards.
    assert sorted(ground.queries) == sorted({(x + 10, z + 5) for x, _, z in before})
    assert len(ground.queries) == 2 * 20
    for (x, y, z), (x2, y2, z2) in zip(before, after):
        assert (x2, z2) == (x, z) and y2 == pytest.approx(y + 0.1 * (x + 10) + 0.2 * (z + 5))


def test_refused_arguments_change_nothing(scene, capsys):
    objects = len(scene.Get3DObjectArray())
    # The C++ suite has the whole table; here the operation's name and the unchanged node.
    for kwargs, match in [
        ({"subsectionH": 0.7}, "subsectionH must be above 0 and at most maxH \\(0.6\\), not 0.7"),
        ({"density": 1e8}, "density 100000000.0 with blades of up to 2 sections would make more than 4194304 vertices"),
    ]:
        with pytest.raises(ValueError, match="Vorn_3DGrass.CreateGrass: " + match):
            scene.CreateGrass(**kwargs)
        grass = V.Vorn_3DGrass()
        with pytest.raises(ValueError):
            grass.CreateGrass(**kwargs)
        assert grass.SubMeshList == [] and grass.statckR == 30
    assert len(scene.Get3DObjectArray()) == objects
    with pytest.raises(TypeError):
        scene.CreateGrass(density="many")
    with pytest.raises(TypeError, match="Vorn_3Dcene.CreateOcean"):
        scene.CreateOcean(parent=5)
    with pytest.raises(ValueError, match="rows and cows"):
        V.Vorn_3DOcean().CreateOcean(-1)
    V.Vorn_3DGrass().StandOnGround()
    assert capsys.readouterr().out.endswith("No SceneInstance\n")


class Meadow(V.Vorn_3DGrass):
    def __init__(self):
        super().__init__()
        self.shaded = []

    def draw_begin_shader(self, submeshIndex):
        self.shaded.append(submeshIndex)
        super().draw_begin_shader(submeshIndex)


def test_a_script_subclass_hooks_the_draw_and_is_collected(scene):
    meadow = Meadow()
    meadow.CreateGrass(density=3001)
    meadow.OnLoad(scene)
    scene.ObjectArray_3D.append(meadow)
    scene.DrawScene()
    assert meadow.shaded == [0, 1]
    ref = weakref.ref(meadow)
    scene.ObjectArray_3D.remove(meadow)
    del meadow
    gc.collect()
    assert ref() is None
