"""The full-screen modes of a scene: the VR split, the deferred-light and ambient-occlusion
previews, a bloom chain of post passes, and an inset: a second camera rendering into a
texture that a 2D image shows.

    python3 examples/fullscreen_modes.py [--mode vr|defer|ssao|bloom|inset] [--frames N] [--screenshot out.png] [--fixed-step S]

Without --frames the window stays open (GLUT main loop). With --frames N the script draws
N frames, saves the window to --screenshot if given, and ends: that is how it runs
headless (under xvfb-run); --fixed-step S gives every frame exactly S seconds, for
pictures that repeat. VR mode shows ico/vorn.png of the working directory; when
there is none, the script makes a small logo in a temporary working directory.
"""
import argparse
import os
import sys
import tempfile

import Vorn3DGameEngine as V

WIDTH, HEIGHT = 800, 600


def build_world(scene):
    """Two boxes meeting in creases on a floor, a bright sphere and two point lights."""
    scene.SetBGColor(0.1, 0.1, 0.15)
    scene.SetAmbientColor(1.0, 1.0, 1.0)
    scene.SetSunLight(-1, -1, -1, 1, 1, 1)
    scene.DisableFog()
    camera = scene.GetActiveCamera()
    camera.SetXYZ(0, 4, 8)
    camera.LookAt(0, 0, 0)
    floor = scene.CreateBox(0, -0.05, 0, None, 6.0, 0.1, 6.0)
    floor.SetMeshColor(0.6, 0.6, 0.6, 1.0)
    # A tall and a low box side by side: the low one's top meets the tall one's side.
    tall = scene.CreateBox(-0.6, 0.6, 0, None, 1.2, 1.2, 1.2)
    tall.SetMeshColor(0.9, 0.3, 0.2, 1.0)
    low = scene.CreateBox(0.6, 0.3, 0, None, 1.2, 0.6, 1.2)
    low.SetMeshColor(0.2, 0.5, 0.9, 1.0)
    sun = scene.CreateSphere(0, 1.8, -1, None, 0.4)
    sun.SetMeshColor(1.0, 1.0, 1.0, 1.0)
    scene.CreatePointLight(-2, 1.5, 1.5, None, 6.0, 1.0, 0.8, 0.6)
    scene.CreatePointLight(2, 1.5, 1.5, None, 6.0, 0.6, 0.8, 1.0)


def ensure_logo():
    """VR mode reads ico/vorn.png of the working directory; make one where it is missing."""
    if os.path.exists(os.path.join("ico", "vorn.png")):
        return
    workdir = tempfile.mkdtemp(prefix="vorn_fullscreen_")
    os.makedirs(os.path.join(workdir, "ico"))
    logo = V.Vorn_Image("RGB", (160, 75))
    for x in range(160):
        for y in range(75):
            logo.putpixel((x, y), (255, 200, 40) if (x // 20 + y // 15) % 2 else (40, 40, 40))
    logo.save(os.path.join(workdir, "ico", "vorn.png"))
    os.chdir(workdir)


def open_bloom(scene):
    """Scene picture -> bright area -> blur, twice -> added back onto the picture.

    Each middle step is a 2D image in post mode: it draws its FX over the whole of its
    target texture, which the next step samples. The last image shows the sum."""
    res = V.ResManagerInstance
    active = scene.GetActiveCamera()
    capture = scene.CreateCamera(active.X, active.Y, active.Z)
    capture.LookAt(0, 0, 0)
    source = capture.CreateRenderTarget()
    texture = source
    for fx in (V.Vorn_2DFX.FX_BRIGHTAREA, V.Vorn_2DFX.FX_BLUR, V.Vorn_2DFX.FX_BLUR):
        step = scene.Create2DImage(0, 0, WIDTH, HEIGHT)
        step.SetDynamicTextureID(texture, 0)
        step.ApplyFX(fx)
        texture = res.CreateRenderTargetTexture()
        step.SetRenderTargetTexture(texture)
        step.SetTag("Bloom_Step")
    result = scene.Create2DImage(0, 0, WIDTH, HEIGHT)
    result.SetDynamicTextureID(source, 0)
    result.SetDynamicTextureID(texture, 1)
    result.ApplyFX(V.Vorn_2DFX.FX_BLOOM)
    result.SetTag("Bloom")
    label = V.Vorn_Text(WIDTH - 10, 10, "Bloom")
    label.SetColor(1.0, 0.0, 0.0)
    label.SetBorderMode()
    label.SetAlignMode(V.Vorn_Text.FT_ALIGN_RIGHT)
    result.AddChild(label)


def open_inset(scene):
    """A second camera looks down from above into a texture of its own; a 2D image in the
    corner shows that texture over the normal view."""
    top = scene.CreateCamera(0, 9, 3)
    top.LookAt(0, 0, 0)
    texture = top.CreateRenderTarget()
    inset = scene.Create2DImage(WIDTH - 210, 10, 200, 150)
    inset.SetDynamicTextureID(texture, 0)
    inset.SetTag("Inset")


def main(argv):
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--mode", choices=["vr", "defer", "ssao", "bloom", "inset"], default="vr")
    parser.add_argument("--frames", type=int, default=None)
    parser.add_argument("--screenshot", default=None)
    parser.add_argument("--fixed-step", type=float, default=0.0, help="seconds per frame (0: the clock)")
    args = parser.parse_args(argv)
    if args.fixed_step:
        V.SeedRandom(1)
    screenshot = os.path.abspath(args.screenshot) if args.screenshot else None

    V.glutInit()
    V.glutInitDisplayMode(V.GLUT_SINGLE | V.GLUT_RGBA | V.GLUT_DEPTH)
    V.glutInitWindowSize(WIDTH, HEIGHT)
    V.glutCreateWindow("Vorn3D full-screen modes")
    V.SCREEN_WIDTH, V.SCREEN_HEIGHT = WIDTH, HEIGHT
    V.PyGameResManager(os.path.abspath("Resources"))
    scene = V.Vorn_3Dcene()
    scene.InitGL(WIDTH, HEIGHT)
    V.openGLScene = scene
    scene.SetFixedTimeStep(args.fixed_step)
    build_world(scene)

    if args.mode == "vr":
        ensure_logo()
        scene.OpenVRMode()
    elif args.mode == "defer":
        scene.OpenDeferLight()
    elif args.mode == "ssao":
        scene.OpenSSAO()
    elif args.mode == "bloom":
        open_bloom(scene)
    else:
        open_inset(scene)

    if args.frames is None:
        V.glutDisplayFunc(V.DrawFunc)
        V.glutIdleFunc(V.DrawFunc)
        V.glutMainLoop()
        return 0
    for _ in range(args.frames):
        scene.DrawScene()
        V.glutMainLoopEvent()
    if screenshot and not V.SaveScreenshot(screenshot):
        print("could not save", screenshot)
        return 1
    return 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
