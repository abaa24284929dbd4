"""A particle fountain with music, a sound on a key and a TrueType label.

    python3 examples/particles_audio.py [--frames N] [--screenshot out.png] [--fixed-step S] [--resources DIR]

Keys:
    s  play the splash sound     m  stop the music     q  quit

With --frames N the example draws N frames and ends (with --screenshot it saves the last
one first), so it also runs headless under Xvfb; without a sound card the mixer plays in
silence on SDL's dummy driver. --fixed-step S gives every frame exactly S seconds and
fixes the random numbers, for pictures that repeat. The sprite, the music and the sound are written by the
script itself into the resource folder (a temporary one unless --resources is given).
"""
import argparse
import math
import os
import struct
import sys
import tempfile
import wave

import Vorn3DGameEngine as V

WIDTH, HEIGHT = 640, 480
FONT = "/usr/share/fonts/truetype/dejavu/DejaVuSans.ttf"


def write_tone(path, seconds, pitch, rate=22050):
    """A plain sine tone as 16-bit mono WAV."""
    with wave.open(path, "wb") as w:
        w.setnchannels(1)
        w.setsampwidth(2)
        w.setframerate(rate)
        step = 2 * math.pi * pitch / rate
        w.writeframes(b"".join(struct.pack("<h", int(6000 * math.sin(i * step))) for i in range(int(seconds * rate))))


def write_resources(root):
    """A round, soft sprite, the music, the splash sound and the font."""
    os.makedirs(root, exist_ok=True)
    sprite = V.Vorn_Image("RGBA", (32, 32), (255, 255, 255, 0))
    for y in range(32):
        for x in range(32):
            d = math.hypot(x - 15.5, y - 15.5) / 16.0
            sprite.putpixel((x, y), (255, 255, 255, max(0, int(255 * (1.0 - d)))))
    sprite.save(os.path.join(root, "spark.png"))
    write_tone(os.path.join(root, "music.wav"), 2.0, 220)
    write_tone(os.path.join(root, "splash.wav"), 0.3, 660)
    if os.path.exists(FONT) and not os.path.exists(os.path.join(root, "DejaVuSans.ttf")):
        with open(FONT, "rb") as src, open(os.path.join(root, "DejaVuSans.ttf"), "wb") as dst:
            dst.write(src.read())


def make_fountain(scene, root):
    """A fountain: particles leave the origin upwards and fall back under gravity."""
    fountain = scene.CreateParticleEmitter(0, 0, 0)
    fountain.CreateParticleEmitter(400)
    fountain.EmissionRate = 120
    fountain.EmitterLifeDecSpeed = 40.0
    fountain.SetEmitterDirSpeed(-0.8, 0.8, 3.0, 4.5, -0.8, 0.8)
    fountain.SetEmitterAccSpeed_Y(-4.0, -4.0)
    fountain.SetEmitterColor(0.2, 0.4, 0.5, 0.9, 0.9, 1.0, 1.0, 1.0)
    fountain.SetEmitterColorSpeed(0, 0, 0, 0, 0, 0, -0.2, -0.1)
    fountain.LoadTextureFromFile(os.path.join(root, "spark.png"))
    # A first second of flow, so the first frame already shows the arc.
    for _ in range(50):
        fountain.update(0.02)
    return fountain


def make_label(scene, res, root):
    """The title, drawn by the TrueType font into a picture that a 2D image shows."""
    font = res.GetFont("DejaVuSans.ttf", 28, bold=True)
    if font is None:
        return None
    image = font.render("Vorn3D fountain", True, (255, 230, 120), (13, 13, 31))
    path = os.path.join(root, "label.png")
    image.save(path)
    return scene.Create2DImage(20, 20, image.width, image.height, path)


def main(argv):
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--frames", type=int, default=0, help="draw this many frames, then end")
    parser.add_argument("--screenshot", help="save the last frame to this PNG file")
    parser.add_argument("--fixed-step", type=float, default=0.0, help="seconds per frame (0: the clock)")
    parser.add_argument("--resources", help="resource folder (default: a temporary one)")
    args = parser.parse_args(argv)
    if args.fixed_step:
        V.SeedRandom(1)

    root = args.resources or tempfile.mkdtemp(prefix="particles_audio_")
    write_resources(root)
    V.glutInit()
    V.glutInitDisplayMode(V.GLUT_SINGLE | V.GLUT_RGBA | V.GLUT_DEPTH)
    V.glutInitWindowSize(WIDTH, HEIGHT)
    V.glutCreateWindow("Vorn3D particles and audio")
    V.SCREEN_WIDTH, V.SCREEN_HEIGHT = WIDTH, HEIGHT
    res = V.PyGameResManager(root)
    scene = V.Vorn_3Dcene()
    scene.InitGL(WIDTH, HEIGHT)
    V.openGLScene = scene
    scene.SetFixedTimeStep(args.fixed_step)
    scene.SetBGColor(0.05, 0.05, 0.12)
    camera = scene.GetActiveCamera()
    camera.SetXYZ(0, 2.5, 9)
    camera.LookAt(0, 2, 0)

    make_fountain(scene, root)
    make_label(scene, res, root)
    res.PlayMusic("music.wav", -1)

    frames = [0]

    def draw():
        V.DrawFunc()
        frames[0] += 1
        if args.frames and frames[0] >= args.frames:
            if args.screenshot:
                V.SaveScreenshot(args.screenshot)
            res.StopMusic()
            V.glutLeaveMainLoop()

    def key(k, x, y):
        k = k.decode("latin-1").lower()
        if k == "s":
            res.PlaySound("splash.wav")
        elif k == "m":
            res.StopMusic()
        elif k == "q":
            res.StopMusic()
            V.glutLeaveMainLoop()

    V.glutDisplayFunc(draw)
    V.glutIdleFunc(draw)
    V.glutKeyboardFunc(key)
    V.glutMainLoop()
    return 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
