"""A frame of 1,000 indexed FX_DIFFUSE quads two ways, in one process and one window:
the engine's DrawScene called from Python once a frame, and the same scene drawn by a
script through PyOpenGL (python3-opengl) with the calls of an uncached node draw per
node (matrix push and pop, program, uniforms, state, buffers, arrays, draw, unbinds),
plus the camera, the clear, the two overlay texts and the flush. The script draws it
twice: with its uniform locations prepared once, and looking every uniform of the
node draw up by name at each draw as a script drawing node by node does. Prints the
times (medians of rounds) and the ratios to the engine.

Run under a display:
  PYTHONPATH=build/python xvfb-run -a /usr/bin/python3 bench/frame_bench.py
Compare with build/bench/frame_bench (BM_DrawScene_Quads/1000), the same scene from C++.
"""
import contextlib
import ctypes
import io
import statistics
import time

import Vorn3DGameEngine as V

W, H = 160, 120
COUNT = 1000


def build_scene():
    with contextlib.redirect_stdout(io.StringIO()):
        V.PyGameResManager("/nonexistent")
        scene = V.Vorn_3Dcene()
        scene.InitGL(W, H)
        scene.SetAmbientColor(0.9, 0.9, 0.9)
        camera = scene.GetActiveCamera()
        camera.SetXYZ(0.0, 0.0, 120.0)
        camera.LookAt(0.0, 0.0, 0.0)
        for i in range(COUNT):
            n = scene.Create3DGameNode(-60.0 + (i % 40) * 3.0, -45.0 + (i // 40) * 3.6, 0.0)
            s = n.CreateSubMesh("quad")
            n.PushQuadVertex_Postion(s, 0, 0, 0, 2, 0, 0, 2, 2, 0, 0, 2, 0)
            n.PushQuadVertex_Normal(s, 0, 0, 1, 0, 0, 1, 0, 0, 1, 0, 0, 1)
            n.PushTriangleVIndex(s, 0, 1, 2)
            n.PushTriangleVIndex(s, 0, 2, 3)
            n.SetSubMeshColor(s, 0.2 + 0.5 * i / COUNT, 0.6, 0.9)
            n.BuildVBO()
            n.ApplyFX(V.Vorn_3DFX.FX_DIFFUSE)
        scene.DrawScene()
    return scene


class PyOpenGLScene:
    """The same quads with buffers, matrices and locations made by the script."""

    def __init__(self, program):
        from OpenGL import GL

        self.GL = GL
        self.program = program
        self.uModel = GL.glGetUniformLocation(program, "uModelMatrix")
        self.uColour = GL.glGetUniformLocation(program, "uSubmeshColor")
        self.uAmbient = GL.glGetUniformLocation(program, "uAmbientColor")
        self.uSun = GL.glGetUniformLocation(program, "uSunLight")
        vertices = (ctypes.c_float * 24)(0, 0, 1, 0, 0, 0, 0, 0, 1, 2, 0, 0, 0, 0, 1, 2, 2, 0, 0, 0, 1, 0, 2, 0)
        indices = (ctypes.c_ushort * 6)(0, 1, 2, 0, 2, 3)
        self.nodes = []
        for i in range(COUNT):
            vbo, ibo = GL.glGenBuffers(2)
            GL.glBindBuffer(GL.GL_ARRAY_BUFFER, vbo)
            GL.glBufferData(GL.GL_ARRAY_BUFFER, ctypes.sizeof(vertices), vertices, GL.GL_STATIC_DRAW)
            GL.glBindBuffer(GL.GL_ELEMENT_ARRAY_BUFFER, ibo)
            GL.glBufferData(GL.GL_ELEMENT_ARRAY_BUFFER, ctypes.sizeof(indices), indices, GL.GL_STATIC_DRAW)
            x, y = -60.0 + (i % 40) * 3.0, -45.0 + (i // 40) * 3.6
            model = (ctypes.c_float * 16)(1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, x, y, 0, 1)
            colour = (ctypes.c_float * 4)(0.2 + 0.5 * i / COUNT, 0.6, 0.9, 1.0)
            self.nodes.append((model, colour, vbo, ibo))
        GL.glBindBuffer(GL.GL_ARRAY_BUFFER, 0)
        GL.glBindBuffer(GL.GL_ELEMENT_ARRAY_BUFFER, 0)
        self.ambient = (ctypes.c_float * 3)(0.9, 0.9, 0.9)
        self.sun = (ctypes.c_float * 6)(-1, -1, -1, 1, 1, 1)

    def text(self, s, x, y):
        from OpenGL import GLUT

        GL = self.GL
        for colour, dx in (((0, 0, 0), 1), ((1, 1, 1), 0)):
            GL.glColor3f(*colour)
            GL.glWindowPos2f(x + dx, H - 13 - y - dx)
            for c in s:
                GLUT.glutBitmapCharacter(GLUT.GLUT_BITMAP_8_BY_13, ord(c))

    NAMES = ("uModelMatrix", "uViewMatrix", "uProjMatrix", "uSSAOKernelCount", "uSSAOKernelRadius",
             "uSSAOKernelSample", "uSubmeshColor", "uCurrTime", "uAmbientColor", "uFogInfo", "fBlurLerpValue",
             "uSunLight", "uEyePosition", "uSpecularColor", "uPointLightCount", "uPointLightXYZRangeArray",
             "uPointLightColorArray")

    def frame(self, lookup=False):
        from OpenGL import GLU

        GL = self.GL
        GL.glViewport(0, 0, W, H)
        GL.glClearColor(0, 0, 0, 1)
        GL.glClear(GL.GL_COLOR_BUFFER_BIT | GL.GL_DEPTH_BUFFER_BIT)
        GL.glMatrixMode(GL.GL_PROJECTION)
        GL.glLoadIdentity()
        GLU.gluPerspective(45.0, W / H, 0.1, 1000.0)
        GLU.gluLookAt(0, 0, 120, 0, 0, 0, 0, 1, 0)
        GL.glMatrixMode(GL.GL_MODELVIEW)
        GL.glLoadIdentity()
        for model, colour, vbo, ibo in self.nodes:
            GL.glPushMatrix()
            GL.glUseProgram(self.program)
            if lookup:
                for name in self.NAMES:
                    GL.glGetUniformLocation(self.program, name)
            GL.glUniformMatrix4fv(self.uModel, 1, GL.GL_FALSE, model)
            GL.glUniform4fv(self.uColour, 1, colour)
            GL.glUniform3fv(self.uAmbient, 1, self.ambient)
            GL.glUniform3fv(self.uSun, 2, self.sun)
            GL.glEnable(GL.GL_TEXTURE_2D)
            GL.glPolygonMode(GL.GL_FRONT, GL.GL_FILL)
            GL.glPolygonMode(GL.GL_BACK, GL.GL_FILL)
            GL.glDisable(GL.GL_CULL_FACE)
            GL.glBindBuffer(GL.GL_ARRAY_BUFFER, vbo)
            GL.glInterleavedArrays(GL.GL_N3F_V3F, 0, None)
            GL.glBindBuffer(GL.GL_ELEMENT_ARRAY_BUFFER, ibo)
            GL.glDrawElements(GL.GL_TRIANGLES, 6, GL.GL_UNSIGNED_SHORT, None)
            GL.glBindBuffer(GL.GL_ELEMENT_ARRAY_BUFFER, 0)
            GL.glBindBuffer(GL.GL_ARRAY_BUFFER, 0)
            GL.glBindTexture(GL.GL_TEXTURE_2D, 0)
            GL.glUseProgram(0)
            GL.glPopMatrix()
        GL.glDisableClientState(GL.GL_VERTEX_ARRAY)
        GL.glDisableClientState(GL.GL_NORMAL_ARRAY)
        self.text("FPS:60", 2, 2)
        self.text("Batch:1002", 2, 22)
        GL.glFlush()
        GL.glFinish()


def per_frame(draw, frames, rounds=7):
    """Median over rounds of the mean wall time of a frame, in microseconds."""
    times = []
    for _ in range(rounds):
        start = time.perf_counter()
        for _ in range(frames):
            draw()
        times.append((time.perf_counter() - start) / frames * 1e6)
    return statistics.median(times)


def main():
    V.glutInit()
    V.glutInitDisplayMode(V.GLUT_SINGLE | V.GLUT_RGBA | V.GLUT_DEPTH)
    V.glutInitWindowSize(W, H)
    V.glutCreateWindow("frame_bench.py")
    V.SCREEN_WIDTH, V.SCREEN_HEIGHT = W, H
    scene = build_scene()
    try:
        from OpenGL import GL
    except ImportError:
        print(f"DrawScene from Python, {COUNT} nodes: {per_frame(scene.DrawScene, 30):.0f} us/frame "
              "(PyOpenGL is not installed)")
        return

    def engine_frame():
        scene.DrawScene()
        GL.glFinish()

    engine_us = per_frame(engine_frame, 30)
    raw = PyOpenGLScene(V.FXManagerInstance.GetShader(V.Vorn_3DFX.FX_DIFFUSE))
    raw.frame()
    pyopengl_us = per_frame(raw.frame, 3)
    lookup_us = per_frame(lambda: raw.frame(lookup=True), 3)
    print(f"{COUNT} nodes: DrawScene from Python {engine_us:.0f} us/frame; the same scene through PyOpenGL "
          f"{pyopengl_us:.0f} us/frame with prepared locations, {lookup_us:.0f} us/frame looking them up; "
          f"PyOpenGL / engine {pyopengl_us / engine_us:.1f} and {lookup_us / engine_us:.1f}")


if __name__ == "__main__":
    main()
