"""A lit scene of solids: click one to select it, then drag an arrow of the gizmo to move it.

    python3 examples/lit_picking.py [--frames N] [--screenshot out.png] [--fixed-step S]

The left button picks (and, off the gizmo, rotates the world), the right button pans, the
wheel zooms: the engine's own mouse callbacks do it all. A picked solid turns yellow.
With --frames N the script plays a click on the crate and a drag of its x arrow itself,
draws N frames and ends (saving the last one to --screenshot), so it runs headless under
Xvfb; --fixed-step S gives every frame exactly S seconds, for pictures that repeat.
"""
import argparse
import sys
from typing import List, Optional, Tuple

import Vorn3DGameEngine as V

WIDTH, HEIGHT = 640, 480
YELLOW = (1.0, 0.85, 0.1)


def build_world(scene: V.Vorn_3Dcene) -> V.Vorn_3DGameNode:
    """Three solids under a sun and two coloured point lights; returns the crate.

    Every node under the mouse ray selects itself, the last one drawn winning, so nothing
    stands behind the crate's x arrow: a press there grabs the arrow and keeps the crate."""
    scene.SetBGColor(0.12, 0.12, 0.16)
    scene.SetAmbientColor(1.0, 1.0, 1.0)
    scene.SetSunLight(-0.5, -1.0, -0.3, 0.9, 0.9, 0.9)
    scene.DisableFog()
    camera = scene.GetActiveCamera()
    camera.SetXYZ(0, 5, 8)
    camera.LookAt(0, 0.5, 0)
    crate = scene.CreateBox(0, 0.5, 0, None, 1.0, 1.0, 1.0)
    crate.SetMeshColor(0.8, 0.35, 0.2, 1.0)
    ball = scene.CreateSphere(-2.2, 0.7, 0, None, 0.7)
    ball.SetMeshColor(0.25, 0.5, 0.9, 1.0)
    ring = scene.CreateTorus(1.5, 0.25, -3.0, None, 0.3, 0.7, 0.5)
    ring.SetMeshColor(0.3, 0.8, 0.4, 1.0)
    scene.CreatePointLight(-2.5, 2.0, 2.0, None, 6.0, 1.0, 0.7, 0.5)
    scene.CreatePointLight(2.5, 2.0, 2.0, None, 6.0, 0.5, 0.7, 1.0)
    for solid in (crate, ball, ring):
        solid.SetPickDownFunction(on_picked)
    return crate


def on_picked(node: V.Vorn_3DGameNode, detail: Tuple[V.Vector3, List[V.Vector3], None]) -> None:
    """Called in the frame that picks a solid: the engine has bound the gizmo to it already."""
    position = detail[0]
    print("picked %s at (%.2f, %.2f, %.2f)" % (node.NodeType, position.x, position.y, position.z))
    node.SetMeshColor(YELLOW[0], YELLOW[1], YELLOW[2], 1.0)


class ScriptedMouse:
    """The input of a headless run: a click on the crate, then a drag of the gizmo's x arrow."""

    def __init__(self, scene: V.Vorn_3Dcene, crate: V.Vorn_3DGameNode) -> None:
        self.scene, self.crate = scene, crate

    def screen_point(self, x: float, y: float, z: float) -> Tuple[int, int]:
        sx, sy, _ = self.scene.GetActiveCamera().getScreenPosition(x, y, z)
        return int(round(sx)), int(round(sy))

    def at_frame(self, frame: int) -> None:
        """Mouse events between frames, as GLUT would deliver them."""
        cx, cy, cz = self.crate.X, self.crate.Y, self.crate.Z
        if frame == 1:
            x, y = self.screen_point(cx, cy, cz)
            V.MouseFunc(0, V.GLUT_DOWN, x, y)
            V.MouseFunc(0, V.GLUT_UP, x, y)
        elif frame == 3:
            # Press on the shaft of the x arrow, beside the crate.
            x, y = self.screen_point(cx + 1.5, cy, cz)
            V.MouseFunc(0, V.GLUT_DOWN, x, y)
        elif 5 <= frame < 9:
            x, y = self.screen_point(cx + 1.5, cy, cz)
            V.MotionFunc(x + 5 * (frame - 4), y)
        elif frame == 9:
            V.MouseFunc(0, V.GLUT_UP, 0, 0)


def main(argv: List[str]) -> int:
    parser = argparse.ArgumentParser(description=(__doc__ or "").splitlines()[0])
    parser.add_argument("--frames", type=int, default=0, help="draw this many frames, then end")
    parser.add_argument("--screenshot", help="save the last frame to this PNG file")
    parser.add_argument("--fixed-step", type=float, default=0.0, help="seconds per frame (0: the clock)")
    args = parser.parse_args(argv)
    if args.fixed_step:
        V.SeedRandom(1)

    V.glutInit()
    V.glutInitDisplayMode(V.GLUT_SINGLE | V.GLUT_RGBA | V.GLUT_DEPTH)
    V.glutInitWindowSize(WIDTH, HEIGHT)
    V.glutCreateWindow("Vorn3D picking and gizmo")
    V.SCREEN_WIDTH, V.SCREEN_HEIGHT = WIDTH, HEIGHT
    V.PyGameResManager("Resources")
    scene = V.Vorn_3Dcene()
    scene.InitGL(WIDTH, HEIGHT)
    V.openGLScene = scene
    scene.SetFixedTimeStep(args.fixed_step)
    crate = build_world(scene)

    mouse: Optional[ScriptedMouse] = ScriptedMouse(scene, crate) if args.frames else None
    frames = [0]

    def draw() -> None:
        if mouse is not None:
            mouse.at_frame(frames[0])
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
