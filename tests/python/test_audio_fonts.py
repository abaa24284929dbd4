"""Music, sounds and fonts through the resource manager, under SDL's dummy audio driver
when the machine has no sound card.

The OGG file is encoded from a written WAV by oggenc (vorbis-tools, installed by the
project's setup for its tests)."""
import math
import shutil
import struct
import subprocess
import sys
import textwrap
import wave

import pytest

import Vorn3DGameEngine as V

DEJAVU = "/usr/share/fonts/truetype/dejavu/DejaVuSans.ttf"


def write_wav(path, seconds, rate=22050):
    with wave.open(str(path), "wb") as w:
        w.setnchannels(1)
        w.setsampwidth(2)
        w.setframerate(rate)
        n = int(seconds * rate)
        w.writeframes(b"".join(struct.pack("<h", int(8000 * math.sin(i * 0.1))) for i in range(n)))


@pytest.fixture
def resources(tmp_path):
    write_wav(tmp_path / "beep.wav", 2.0)
    write_wav(tmp_path / "tune.wav", 3.0)
    subprocess.run(["oggenc", "-Q", "-o", str(tmp_path / "tune.ogg"), str(tmp_path / "tune.wav")], check=True)
    (tmp_path / "bad.wav").write_bytes((tmp_path / "beep.wav").read_bytes()[:30])
    shutil.copy(DEJAVU, tmp_path / "DejaVuSans.ttf")
    (tmp_path / "junk.ttf").write_bytes(bytes(range(256)) * 8)
    return tmp_path


def test_sounds_ids_counts_and_stop(scene, capsys):
    res = V.ResManagerInstance
    assert res.soundDict == {} and res.soundPlayCount == 0
    assert res.PlaySound("nothing.wav") == -1 and res.soundPlayCount == 0
    assert isinstance(V.AudioDriver(), str)
    first, second = res.PlaySound("beep.wav"), res.PlaySound("beep.wav")
    assert (first, second, res.soundPlayCount) == (0, 1, 2)
    sounds = res.soundDict
    assert list(sounds) == [0, 1] and sounds[0] is not sounds[1]
    assert sounds[0].IsPlaying() and sounds[0].get_length() == pytest.approx(2.0, abs=0.05)
    res.StopSound(0)
    assert not sounds[0].IsPlaying() and sounds[1].IsPlaying()
    res.StopSound(7)
    assert "No Find Sound" in capsys.readouterr().out
    assert list(res.soundDict) == [0, 1]  # stopped sounds stay
    res.StopSound(1)


def test_music_starts_and_stops(scene):
    res = V.ResManagerInstance
    res.PlayMusic("tune.wav")
    assert res.IsMusicPlaying()
    res.StopMusic()
    assert not res.IsMusicPlaying()
    res.PlayMusic("unknown.ogg")  # not found: nothing starts
    assert not res.IsMusicPlaying()
    res.PlayMusic("tune.wav", -1)
    res.PlayMusic("tune.wav", 2)  # new music replaces the old
    assert res.IsMusicPlaying()
    res.StopMusic()
    res.PlayMusic("tune.ogg")  # Vorbis music and sounds decode as well
    assert res.IsMusicPlaying()
    res.StopMusic()
    played = res.PlaySound("tune.ogg")
    sound = res.soundDict[played]
    assert sound.IsPlaying() and sound.get_length() == pytest.approx(3.0, abs=0.1)
    sound.stop()


def test_fonts_sizes_styles_and_render(scene):
    res = V.ResManagerInstance
    assert res.GetFont("nofont.ttf", 12) is None
    small, big = res.GetFont("DejaVuSans.ttf", 12), res.GetFont("DejaVuSans.ttf", 40)
    assert small is not res.GetFont("DejaVuSans.ttf", 12)
    assert small.fontSize == 12 and not small.get_bold()
    a, b = small.render("Hg", True, (255, 0, 0)), big.render("Hg", True, (255, 0, 0))
    assert (a.width, a.height) == small.size("Hg") and b.height > 2 * a.height
    bold = res.GetFont("DejaVuSans.ttf", 40, bold=True, italic=True)
    assert bold.get_bold() and bold.get_italic() and bold.size("Wide words")[0] > big.size("Wide words")[0]
    pixels = b.tobytes()
    alphas = pixels[3::4]
    assert max(alphas) == 255 and min(alphas) == 0 and 0 < sum(1 for x in alphas if 0 < x < 255)  # antialiased
    opaque = [pixels[i:i + 3] for i in range(0, len(pixels), 4) if pixels[i + 3] == 255]
    assert all(p == b"\xff\x00\x00" for p in opaque)
    assert small.render("", True, (1, 2, 3)).height == small.get_height()
    # Over a background colour the picture is opaque everywhere.
    assert set(big.render("VORN", True, (255, 255, 255), (0, 0, 0)).tobytes()[3::4]) == {255}


CHILD = textwrap.dedent("""
    import sys
    import Vorn3DGameEngine as V
    V.glutInit()
    V.glutInitDisplayMode(V.GLUT_SINGLE | V.GLUT_RGBA | V.GLUT_DEPTH)
    V.glutInitWindowSize(64, 64)
    V.glutCreateWindow("child")
    res = V.PyGameResManager(sys.argv[1])
    def attempt(name, call):
        try:
            print(name, "->", repr(call()))
        except Exception as e:
            print(name, "!", type(e).__name__, e)
    attempt("truncated sound", lambda: res.PlaySound("bad.wav"))
    attempt("count", lambda: res.soundPlayCount)
    attempt("truncated music", lambda: res.PlayMusic("bad.wav"))
    attempt("missing music", lambda: res.PlayMusic("none.ogg"))
    attempt("corrupt font", lambda: res.GetFont("junk.ttf", 12))
    attempt("size 0", lambda: res.GetFont("DejaVuSans.ttf", 0))
    attempt("size -5", lambda: res.GetFont("DejaVuSans.ttf", -5))
    attempt("missing font", lambda: res.GetFont("none.ttf", 12))
    attempt("sound path", lambda: V.Vorn_Sound(sys.argv[1] + "/missing.wav"))
""")


def test_bad_files_and_sizes_in_a_child(resources):
    out = subprocess.run([sys.executable, "-c", CHILD, str(resources)], capture_output=True, text=True, timeout=60)
    assert out.returncode == 0, out.stderr
    lines = out.stdout
    assert "Audio driver:" in lines
    assert "truncated sound ! RuntimeError" in lines and "bad.wav" in lines
    assert "count -> 0" in lines
    assert "truncated music ! RuntimeError" in lines and "missing music -> None" in lines
    assert "corrupt font ! RuntimeError" in lines and "junk.ttf" in lines
    assert "size 0 ! ValueError" in lines and "size -5 ! ValueError" in lines
    assert "missing font -> None" in lines and "sound path ! RuntimeError" in lines
