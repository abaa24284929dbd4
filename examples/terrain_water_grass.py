"""Terrain from height and blend files, with a pond of moving water and a patch of swaying grass.

    python3 examples/terrain_water_grass.py [--frames N] [--screenshot out.png] [--fixed-step S]
                                            [--resources DIR] [--tool PATH]

The landscape "island" (Terrain/island.hei and .ter, its blend picture and textures) and
the grass blade are written by the engine's own asset tool (tools/make_demo_assets, built
as build/tools/make_demo_assets). The resource folder is --resources when it holds them
already, otherwise the tool writes into it (a temporary folder unless --resources is
given). With --frames N the script draws N frames and ends (saving the last one to
--screenshot), so it runs headless under Xvfb; --fixed-step S gives every frame exactly
S seconds, for pictures that repeat (waves and grass move with the scene's time).
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


def ensure_terrain(root: str, tool: str) -> None:
    """Runs the asset tool into root unless the island's height file is there already."""
    if os.path.exists(os.path.join(root, "Terrain", "island.hei")):
        return
    if not os.path.exists(tool):
        sys.exit("no Terrain/island.hei in %s and no asset tool at %s (build it, or pass --tool)" % (root, tool))
    subprocess.run([tool, root], check=True, stdout=subprocess.DEVNULL)


def build_landscape(scene: V.Vorn_3Dcene) -> None:
    """The island, water at a level below its flat middle (so it shows in the pond only) and
    a round patch of grass standing on the ground."""
    scene.LoadTerrain("island")
    ocean = scene.CreateOcean(0.0, -0.35, 0.0)
    ocean.SetMeshColor(0.12, 0.42, 0.48, 1.0)
    ocean.SetWave(0.8, 0.06)
    # radius, blade count, width and height ranges, height of one bending section
    grass = scene.CreateGrass(-1.0, 0.0, -2.0, None, 1.6, 900, 0.04, 0.08, 0.3, 0.55, 0.12)
    for submesh in range(len(grass.SubMeshList)):
        grass.LoadSubMeshTextureFromFile(submesh, 0, "grass_blade.png")
    grass.SetSwing(1.5, 0.05)
    grass.StandOnGround(True)


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

    root = args.resources or tempfile.mkdtemp(prefix="terrain_water_grass_")
    ensure_terrain(root, args.tool)
    V.glutInit()
    V.glutInitDisplayMode(V.GLUT_SINGLE | V.GLUT_RGBA | V.GLUT_DEPTH)
    V.glutInitWindowSize(WIDTH, HEIGHT)
    V.glutCreateWindow("Vorn3D terrain, water and grass")
    V.SCREEN_WIDTH, V.SCREEN_HEIGHT = WIDTH, HEIGHT
    V.PyGameResManager(root)
    scene = V.Vorn_3Dcene()
    scene.InitGL(WIDTH, HEIGHT)
    V.openGLScene = scene
    scene.SetFixedTimeStep(args.fixed_step)
    scene.SetBGColor(0.55, 0.7, 0.9)
    scene.SetAmbientColor(1.0, 1.0, 1.0)
    scene.DisableFog()
    camera = scene.GetActiveCamera()
    camera.SetXYZ(-3.0, 4.0, 4.0)
    camera.LookAt(-4.0, 0.0, -3.0)
    build_landscape(scene)

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
