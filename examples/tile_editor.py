"""A tiny tile-map editor.

    python3 examples/tile_editor.py [--frames N] [--screenshot out.png] [--fixed-step S] [--resources DIR]

Keys act on the tile under the mouse:
    u  raise the tile            d  lower the tile
    s  ramp toward a neighbour   p  paint the blend map (red channel)
    e  erase the paint           w  fill the basin with water
    z  undo the last raise, lower or ramp
    q  quit

With --frames N the editor draws N frames and ends (with --screenshot it saves the last
one first), so it also runs headless under Xvfb; --fixed-step S gives every frame
exactly S seconds, for pictures that repeat (the water moves with the scene's time). The material set is drawn by the script
itself into the resource folder (a temporary one unless --resources is given).
"""
import argparse
import os
import sys
import tempfile

import Vorn3DGameEngine as V

WIDTH, HEIGHT = 640, 480
MATERIALS = {
    "plain.png": (96, 160, 72),
    "slope.png": (150, 120, 80),
    "bottom.png": (90, 80, 70),
    "water.png": (40, 90, 200),
    "blend.png": (128, 128, 128),
}


def write_materials(root):
    """Solid-colour materials in root/TiledMap, plus one custom texture for the paint. The
    water has light ripples, so that its flow (the texture drifts with time) shows."""
    folder = os.path.join(root, "TiledMap")
    os.makedirs(folder, exist_ok=True)
    for name, colour in MATERIALS.items():
        material = V.Vorn_Image("RGB", (8, 8), colour)
        if name == "water.png":
            for x in range(8):
                material.putpixel((x, x), (140, 180, 240))
        material.save(os.path.join(folder, name))
    V.Vorn_Image("RGB", (8, 8), (220, 200, 60)).save(os.path.join(folder, "sand.png"))


class Editor:
    """Turns keys into edits of the tile under the mouse and keeps an undo list."""

    def __init__(self, scene, tiles):
        self.scene, self.map = scene, tiles
        self.mouse = (WIDTH // 2, HEIGHT // 2)
        self.undo = []

    def tile_under_mouse(self):
        point, direction = self.scene.ScreenPtTo3DPointAndDir(*self.mouse)
        hit, detail = self.map.checkPick(point, direction)
        return (detail[0], detail[1]) if hit else None

    def raise_tile(self, x, z):
        self.map.UpTile(x, z, True)
        self.undo.append(("DownTile", x, z))

    def lower_tile(self, x, z):
        self.map.DownTile(x, z, True)
        self.undo.append(("UpTile", x, z))

    def ramp(self, x, z):
        level = self.map.GetTileHeight(x, z)
        for move in ((-1, 0), (1, 0), (0, -1), (0, 1)):
            if self.map.SlopeTile(x, z, move[0], move[1], True):
                # A ramp above the grid is taken away by lowering, one below by raising.
                self.undo.append(("DownTile" if self.map.GetTileHeight(x, z) > level else "UpTile", x, z))
                return

    def paint(self, x, z, amount):
        self.map.SetBlendData(0, x + 0.5, z + 0.5, 1.0, amount)

    def water(self, x, z):
        try:
            self.map.FillWater(x, z)
        except IndexError:
            print("The basin is open to the map's edge")
            return
        self.map.ReBuildTiledMap()

    def undo_last(self):
        if self.undo:
            operation, x, z = self.undo.pop()
            getattr(self.map, operation)(x, z, True)

    def key(self, key, x, y):
        self.mouse = (x, y)
        k = key.decode("latin-1").lower()
        if k == "q":
            V.glutLeaveMainLoop()
            return
        if k == "z":
            self.undo_last()
            return
        tile = self.tile_under_mouse()
        if tile is None:
            return
        action = {"u": self.raise_tile, "d": self.lower_tile, "s": self.ramp, "w": self.water,
                  "p": lambda x, z: self.paint(x, z, 96), "e": lambda x, z: self.paint(x, z, -255)}.get(k)
        if action:
            action(*tile)


def build_example(editor):
    """A small landscape made with the editor's own edits: a walled pond, a hill with a
    ramp, a pit and a painted patch."""
    for x in range(3, 9):
        for z in (3, 8):
            editor.raise_tile(x, z)
    for z in range(4, 8):
        for x in (3, 8):
            editor.raise_tile(x, z)
    editor.water(5, 5)
    editor.raise_tile(12, 12)
    editor.raise_tile(12, 12)
    editor.raise_tile(11, 12)
    editor.ramp(10, 12)
    editor.lower_tile(13, 4)
    editor.lower_tile(13, 5)
    editor.undo_last()
    editor.paint(12, 7, 160)


def main(argv):
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--frames", type=int, default=0, help="draw this many frames, then end")
    parser.add_argument("--screenshot", help="save the last frame to this PNG file")
    parser.add_argument("--fixed-step", type=float, default=0.0, help="seconds per frame (0: the clock)")
    parser.add_argument("--resources", help="resource folder (default: a temporary one)")
    args = parser.parse_args(argv)
    if args.fixed_step:
        V.SeedRandom(1)

    root = args.resources or tempfile.mkdtemp(prefix="tile_editor_")
    write_materials(root)
    V.glutInit()
    V.glutInitDisplayMode(V.GLUT_SINGLE | V.GLUT_RGBA | V.GLUT_DEPTH)
    V.glutInitWindowSize(WIDTH, HEIGHT)
    V.glutCreateWindow("Vorn3D tile editor")
    V.SCREEN_WIDTH, V.SCREEN_HEIGHT = WIDTH, HEIGHT
    V.PyGameResManager(root)
    scene = V.Vorn_3Dcene()
    scene.InitGL(WIDTH, HEIGHT)
    V.openGLScene = scene
    scene.SetFixedTimeStep(args.fixed_step)
    scene.SetBGColor(0.5, 0.7, 0.9)
    scene.SetAmbientColor(1.0, 1.0, 1.0)
    scene.SetSunLight(-0.3, -1.0, -0.4, 1.0, 1.0, 1.0)
    camera = scene.GetActiveCamera()
    camera.SetXYZ(0, 16, 14)
    camera.LookAt(0, 0, 0)

    tiles = scene.CreateTiledMap(rows=16, cows=16)
    tiles.SetTileMapMaterials("TiledMap")
    tiles.LoadCustomTexture("sand.png", 0)
    tiles.CreateBlendTeture(128)
    editor = Editor(scene, tiles)
    build_example(editor)
    tiles.ReBuildTiledMap()

    frames = [0]

    def draw():
        V.DrawFunc()
        frames[0] += 1
        if args.frames and frames[0] >= args.frames:
            if args.screenshot:
                V.SaveScreenshot(args.screenshot)
            V.glutLeaveMainLoop()

    def motion(x, y):
        editor.mouse = (x, y)

    V.glutDisplayFunc(draw)
    V.glutIdleFunc(draw)
    V.glutKeyboardFunc(editor.key)
    V.glutPassiveMotionFunc(motion)
    V.glutMainLoop()
    return 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
