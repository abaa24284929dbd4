"""Particle emitters as scripts use them: defaults, the particle step, the live particle
list, subclass hooks, and sprites on screen. The example fountain is a
render-reference case (tests/render)."""
import weakref

import pytest

import Vorn3DGameEngine as V
from conftest import H, W, look, near, pixel


def still_emitter(**kw):
    """An emitter whose particles stay where they are born and keep their colour."""
    e = V.Vorn_3DParticleEmitter(**kw)
    e.SetEmitterDirSpeed()
    e.SetEmitterAccSpeed_Y()
    e.SetEmitterColor(1, 1, 1, 1, 1, 1, 1, 1)
    e.SetEmitterColorSpeed(0, 0, 0, 0, 0, 0, 0, 0)
    return e


def test_defaults_and_asymmetric_setter_defaults():
    e = V.Vorn_3DParticleEmitter()
    assert (e.NodeType, e.ParticleMode, e.ParticleTotal, e.ParticleCount) == ("3DParticleEmitter", "Gravity", 500, 0)
    assert list(e.ParticleArray) == [] and e.EmissionRate == 100 and e.EmitterLifeDecSpeed == 10.0
    assert e.EmitterArea == [(0.0, 0.0)] * 3 and e.EmitterSize == (1.0, 2.0) and e.EmitterSizeSpeed == (0.0, 1.0)
    assert e.EmitterDirSpeed == [(-0.5, 0.5), (1.0, 1.0), (-0.5, 0.5)]
    assert e.EmitterAccSpeed == [(0.0, 0.0), (0.0, -2.0), (0.0, 0.0)]
    assert e.EmitterColor == [(0.0, 1.0)] * 4 and e.EmitterColorSpeed == [(0.1, 0.1)] * 4
    assert e.EmitterTime == 0 and e.TextureID is None
    e.SetEmitterColorSpeed()
    assert e.EmitterColorSpeed == [(-0.1, 0.0), (-0.1, 1.0), (-0.1, 1.0), (-0.1, 1.0)]
    e.SetEmitterColorSpeed_G()
    assert e.EmitterColorSpeed[1] == (-0.1, 0.0)
    e.SetEmitterSize()
    e.SetEmitterSizeSpeed()
    assert e.EmitterSize == (0.0, 1.0) and e.EmitterSizeSpeed == (0.0, 0.0)
    e.CreateParticleEmitter()
    assert (e.ParticleTotal, e.ParticleMode) == (200, "Gravity")
    with pytest.raises(TypeError):
        e.EmitterArea = [(0, 0)]


def test_particle_rolls_from_ranges_or_stays_none():
    V.SeedRandom(3)
    e = V.Vorn_3DParticleEmitter(1, 2, 3)
    e.SetEmitterArea(0, 0, 5, 5, -1, -1)
    p = V.Vorn_Particle(e, 7)
    assert p.pos == [1.0, 7.0, 2.0] and p.life == 7 and p.emitter is e
    assert p.acspeed[1] <= 0 and -0.5 <= p.speed[0] <= 0.5 and 1 <= p.size <= 2
    bare = V.Vorn_Particle(None)
    assert (bare.pos, bare.color, bare.size, bare.life, bare.emitter) == (None, None, None, 100, None)
    bare.update(1.0)  # no emitter: nothing moves
    assert bare.life == 100
    bare.SetColor()
    assert bare.GetColor() == [1.0, 1.0, 1.0, 1.0]
    # The emitter reference does not keep the emitter alive.
    ref = weakref.ref(e)
    del e
    assert ref() is None and p.emitter is None
    p.update(1.0)
    assert p.life == 7


def test_euler_step_uses_the_new_speed_and_clamps_colour():
    e = V.Vorn_3DParticleEmitter()
    p = V.Vorn_Particle(e)
    p.pos, p.speed, p.acspeed = [0, 0, 0], [1, 0, 0], [0, -2, 0]
    p.color, p.colorSpeed = [0.5, 0.95, 0.05, 1], [0, 1, -1, 0]
    p.size, p.sizeSpeed, p.life = 1.0, 2.0, 50
    p.update(0.5)
    assert p.life == 45.0 and p.speed == [1.0, -1.0, 0.0] and p.pos == [0.5, -0.5, 0.0]
    assert p.color == [0.5, 1.0, 0.0, 1.0] and p.size == 2.0
    p.speed = None
    with pytest.raises(TypeError):
        p.update(0.1)


def test_the_live_particle_list_hands_back_the_same_particles():
    # The walk's removals and the emission over gathered time are the C++ suite's
    # (particle_test); here the list a script fills and reads.
    e = V.Vorn_3DParticleEmitter()
    e.EmissionRate = 0  # these frames only walk
    tagged = [V.Vorn_Particle(e, life) for life in (0.5, 0.5, 50, 0.5)]
    for p in tagged:
        e.ParticleArray.append(p)
    e.ParticleArray[2].life = 60  # an item write reaches the engine
    assert tagged[2].life == 60
    e.update(0.1)
    assert e.ParticleCount == 1 and list(e.ParticleArray) == [tagged[1], tagged[3]]
    with pytest.raises(TypeError):
        e.ParticleArray.append(3)
    # Seeded: the same seed repeats the same particles.
    runs = []
    for _ in range(2):
        V.SeedRandom(9)
        a = V.Vorn_3DParticleEmitter()
        a.update(0.05)
        runs.append([(p.pos, p.life) for p in a.ParticleArray])
    assert runs[0] == runs[1] and len(runs[0]) == 5


def test_life_100_lasts_ten_seconds():
    e = V.Vorn_3DParticleEmitter()
    e.EmissionRate = 0
    e.ParticleArray.append(V.Vorn_Particle(e, 100))
    for _ in range(99):
        e.update(0.1)
    assert e.ParticleCount == 1
    e.update(0.1)
    assert len(e.ParticleArray) == 0


def test_script_subclass_overrides_update_and_draw(scene):
    calls = []

    class Fountain(V.Vorn_3DParticleEmitter):
        def update(self, delay):
            calls.append(("update", delay))
            super().update(delay)

        def draw_allsubmesh(self):
            calls.append(("draw",))
            super().draw_allsubmesh()

    f = Fountain()
    scene.ObjectArray_3D.append(f)
    f.update(0.02)
    scene.DrawScene()  # the frame updates and draws through the overrides
    assert calls[0] == ("update", 0.02) and calls[1][0] == "update" and calls[-1] == ("draw",)
    assert len(f.ParticleArray) == 2


def test_factory_holds_200_and_registers(scene):
    e = scene.CreateParticleEmitter(1, 2, 3)
    assert isinstance(e, V.Vorn_3DParticleEmitter) and e.ParticleTotal == 200 and e in scene.ObjectArray_3D
    child = scene.CreateParticleEmitter(parent=e)
    assert child not in scene.ObjectArray_3D


def test_textured_sprites_on_screen_where_emitted(scene, resources, capsys):
    look(scene)
    e = still_emitter()
    e.EmissionRate, e.EmitterLifeDecSpeed = 0, 0.0  # the frame's own update changes nothing
    e.SetEmitterColor(1, 1, 1, 1, 0, 0, 1, 1)  # yellow points
    scene.ObjectArray_3D.append(e)
    e.AddParticle()
    e.ParticleArray[0].life = 50
    # Untextured first: the point colour itself.
    scene.DrawScene()
    cx, cy = W // 2, H // 2
    assert near(pixel(cx, cy), (255, 255, 0), 8)
    V.Vorn_Image("RGBA", (4, 4), (255, 128, 255, 255)).save(str(resources / "spark.png"))
    e.LoadTextureFromFile("missing.tga")
    assert "Can't find texture: missing.tga" in capsys.readouterr().out and e.TextureID is None
    e.LoadTextureFromFile(str(resources / "spark.png"))
    assert e.TextureID is not None
    scene.DrawScene()
    # The texture is modulated by the point colour: (1, 0.5, 1) * (1, 1, 0). Sprite size
    # and motion on screen are the fountain's render reference (tests/render).
    assert near(pixel(cx, cy), (255, 128, 0), 8)
    # A particle moved by the script shows where it was moved to.
    e.ParticleArray[0].pos = [1.0, 0.0, 0.0]
    scene.DrawScene()
    assert near(pixel(cx, cy), (0, 0, 0), 8)
