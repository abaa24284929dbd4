"""A skinned GLB character playing each of its actions side by side.

    python3 examples/skinned_walker.py [--frames N] [--screenshot out.png] [--fixed-step S]
                                       [--resources DIR] [--tool PATH]

The character is walker.glb, modelled by the engine's own asset tool (tools/
make_demo_assets, built as build/tools/make_demo_assets): one copy per action, each
named in a caption, and one more playing the first action at half speed. The resource folder is
--resources when it holds walker.glb already, otherwise the tool writes into it (a
temporary folder unless --resources is given). With --frames N the script draws N frames
and ends (saving the last one to --screenshot), so it runs headless under Xvfb;
--fixed-step S gives every frame exactly S seconds, for pictures that repeat.
"""
import argparse
import os
import subprocess
import sys
import tempfile
from typing import List

import Vorn3DGameEngine as V

WIDTH, HEIGHT = 640, 480
HERE = os.path.dirname(os.path.abspath(__file__))
DEFAULT_TOOL = os.path.join(HERE, "..", "build", "tools", "make_demo_assets")


def ensure_walker(root: str, tool: str) -> None:
    """Runs the asset tool into root unless walker.glb is there already."""
    if os.path.exists(os.path.join(root, "walker.glb")):
        return
    if not os.path.exists(tool):
        sys.exit("no walker.glb in %s and no asset tool at %s (build it, or pass --tool)" % (root, tool))
    subprocess.run([tool, root], check=True, stdout=subprocess.DEVNULL)


def place_walkers(scene: V.Vorn_3Dcene) -> None:
    """One walker per action of the file in a row, then one more playing the first action at
    half speed; a caption names the actions from left to right."""
    first = scene.CreateMeshFromFile(0, 0, 0, None, "walker.glb")
    count = first.GetActionCount()
    walkers = [first] + [scene.CreateMeshFromFile(0, 0, 0, None, "walker.glb") for _ in range(count)]
    names: List[str] = []
    for index, walker in enumerate(walkers):
        walker.SetXYZ((index - count / 2.0) * 1.6, 0, 0)
        walker.PlayAction(index % count)
        names.append(walker.GetActionName(index % count) or "?")
    walkers[-1].SetActionSpeed(0.5)
    names[-1] += " x0.5"
    caption = scene.Create2DText(WIDTH / 2, HEIGHT - 30, "   ".join(names))
    caption.SetAlignMode(V.Vorn_Text.FT_ALIGN_CENTER)


def main(argv: List[str]) -> int:
    parser = argparse.ArgumentParser(description=(__doc__ or "").splitlines()[0])
    parser.add_argument("--frames", type=int, default=0, help="draw this many frames, then end")
    parser.add_argument("--screenshot", help="save the last frame to this PNG file")
    parser.add_argument("--fixed-step", type=float, default=0.0, help="seconds per frame (0: the clock)")
    parser.add_argument("--resources", help="resource folder (default: a temporary one)")
    parser.add_argument("--tool", default=DEFAULT_TOOL, help="the make_demo_assets program")
    args = parser.parse_args(argv)
    if args.fixed_step:
        V.SeedRandom(1)

    root = args.resources or tempfile.mkdtemp(prefix="skinned_walker_")
    ensure_walker(root, args.tool)
    V.glutInit()
    V.glutInitDisplayMode(V.GLUT_SINGLE | V.GLUT_RGBA | V.GLUT_DEPTH)
    V.glutInitWindowSize(WIDTH, HEIGHT)
    V.glutCreateWindow("Vorn3D skinned walker")
    V.SCREEN_WIDTH, V.SCREEN_HEIGHT = WIDTH, HEIGHT
    V.PyGameResManager(root)
    scene = V.Vorn_3Dcene()
    scene.InitGL(WIDTH, HEIGHT)
    V.openGLScene = scene
    scene.SetFixedTimeStep(args.fixed_step)
    scene.SetBGColor(0.35, 0.45, 0.55)
    scene.SetAmbientColor(1.0, 1.0, 1.0)
    scene.DisableFog()
    camera = scene.GetActiveCamera()
    camera.SetXYZ(0, 2.2, 5.5)
    camera.LookAt(0, 1.0, 0)
    place_walkers(scene)

    frames = [0]

    def draw() -> None:
        V.DrawFunc()
        frames[0] += 1
        if args.frames and frames[0] >= args.frames:
            if args.screenshot:
                V.SaveScreenshot(args.screenshot)
            V.glutLeaveMainLoop()

    V.glutDisplayFunc(draw)
    V.glutIdleFunc(draw)
    V.glutMouseFunc(V.MouseFunc)
    V.glutMotionFunc(V.MotionFunc)
    V.glutMainLoop()
    return 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
