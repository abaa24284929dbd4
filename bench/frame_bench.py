"""DrawScene of 1,000 indexed FX_DIFFUSE quads driven from Python, one call per frame.

Run under a display: PYTHONPATH=build/python xvfb-run -a /usr/bin/python3 bench/frame_bench.py
Compare with build/bench/frame_bench (BM_DrawScene_1000Quads), the same scene from C++.
"""
import contextlib
import io
import time

import Vorn3DGameEngine as V

W, H = 640, 480


def main(frames=300):
    V.glutInit()
    V.glutInitDisplayMode(V.GLUT_SINGLE | V.GLUT_RGBA | V.GLUT_DEPTH)
    V.glutInitWindowSize(W, H)
    V.glutCreateWindow("frame_bench.py")
    V.SCREEN_WIDTH, V.SCREEN_HEIGHT = W, H
    with contextlib.redirect_stdout(io.StringIO()):
        V.PyGameResManager("/nonexistent")
        scene = V.Vorn_3Dcene()
        scene.InitGL(W, H)
        scene.SetAmbientColor(0.9, 0.9, 0.9)
        camera = scene.GetActiveCamera()
        camera.SetXYZ(0.0, 0.0, 120.0)
        camera.LookAt(0.0, 0.0, 0.0)
        for i in range(1000):
            n = scene.Create3DGameNode(-60.0 + (i % 40) * 3.0, -45.0 + (i // 40) * 3.6, 0.0)
            s = n.CreateSubMesh("quad")
            n.PushQuadVertex_Postion(s, 0, 0, 0, 2, 0, 0, 2, 2, 0, 0, 2, 0)
            n.PushQuadVertex_Normal(s, 0, 0, 1, 0, 0, 1, 0, 0, 1, 0, 0, 1)
            n.PushTriangleVIndex(s, 0, 1, 2)
            n.PushTriangleVIndex(s, 0, 2, 3)
            n.SetSubMeshColor(s, 0.2 + 0.0005 * i, 0.6, 0.9)
            n.BuildVBO()
            n.ApplyFX(V.Vorn_3DFX.FX_DIFFUSE)
        scene.DrawScene()
    start = time.perf_counter()
    for _ in range(frames):
        scene.DrawScene()
    elapsed = time.perf_counter() - start
    print(f"DrawScene from Python, 1,000 nodes: {elapsed / frames * 1e6:.0f} us/frame ({frames} frames)")


if __name__ == "__main__":
    main()
