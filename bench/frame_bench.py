"""A frame of 1,000 indexed FX_DIFFUSE quads in one process and one window, drawn three
ways: the engine's DrawScene called from Python once a frame; the same scene drawn by a
lean script through PyOpenGL (python3-opengl) with the calls of an uncached node draw
per node (matrix push and pop, program, uniforms, state, buffers, arrays, draw,
unbinds), plus the camera, the clear, the two overlay texts and the flush; and the same
scene as a pure-Python engine draws it over PyOpenGL.

The lean script draws twice: with its uniform locations prepared once, and looking
every uniform of the node draw up by name at each draw as a script drawing node by node
does. The pure-Python engine does the engine's own per-frame work for these nodes in
Python: the update of each node (loop rotation, local, world and axis matrices in plain
lists, no numpy) and the node draw in the engine's order (draw_begin, the program switch
with the per-program uniforms, the per-submesh uniforms, blend, polygon and cull state,
buffers and draw, the closing unbinds, draw_end, the batch count), every uniform looked
up by name at each use and its value built as a Python list; the scene-level calls are
the lean script's. Its picture is read back once and compared with DrawScene's.

Prints the times (medians of rounds), the ratios to the engine and the comparison.

Run under a display:
  PYTHONPATH=build/python xvfb-run -a /usr/bin/python3 bench/frame_bench.py
Compare with build/bench/frame_bench (BM_DrawScene_Quads/1000), the same scene from C++.
"""
import contextlib
import ctypes
import io
import math
import statistics
import time

import Vorn3DGameEngine as V

W, H = 160, 120
COUNT = 1000


def quad_xy(i):
    """Position of quad i in the 40-wide grid."""
    return -60.0 + (i % 40) * 3.0, -45.0 + (i // 40) * 3.6


def quad_colour(i):
    """Submesh colour of quad i, red rising along the list."""
    return 0.2 + 0.5 * i / COUNT, 0.6, 0.9


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
            n = scene.Create3DGameNode(*quad_xy(i), 0.0)
            s = n.CreateSubMesh("quad")
            n.PushQuadVertex_Postion(s, 0, 0, 0, 2, 0, 0, 2, 2, 0, 0, 2, 0)
            n.PushQuadVertex_Normal(s, 0, 0, 1, 0, 0, 1, 0, 0, 1, 0, 0, 1)
            n.PushTriangleVIndex(s, 0, 1, 2)
            n.PushTriangleVIndex(s, 0, 2, 3)
            n.SetSubMeshColor(s, *quad_colour(i))
            n.BuildVBO()
            n.ApplyFX(V.Vorn_3DFX.FX_DIFFUSE)
        scene.DrawScene()
    return scene


class ScriptFrame:
    """What the script scenes share: the start of a frame (viewport, clear, camera) and
    its end (the two overlay texts, flush and finish)."""

    def __init__(self):
        from OpenGL import GL

        self.GL = GL

    def text(self, s, x, y):
        from OpenGL import GLUT

        GL = self.GL
        for colour, dx in (((0, 0, 0), 1), ((1, 1, 1), 0)):
            GL.glColor3f(*colour)
            GL.glWindowPos2f(x + dx, H - 13 - y - dx)
            for c in s:
                GLUT.glutBitmapCharacter(GLUT.GLUT_BITMAP_8_BY_13, ord(c))

    def begin_frame(self):
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

    def end_frame(self, fps_text="FPS:60", batch_text="Batch:1002"):
        GL = self.GL
        GL.glDisableClientState(GL.GL_VERTEX_ARRAY)
        GL.glDisableClientState(GL.GL_NORMAL_ARRAY)
        self.text(fps_text, 2, 2)
        self.text(batch_text, 2, 22)
        GL.glFlush()
        GL.glFinish()


class PyOpenGLScene(ScriptFrame):
    """The same quads with buffers, matrices and locations made by the script."""

    def __init__(self, program):
        super().__init__()
        GL = self.GL
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
            x, y = quad_xy(i)
            model = (ctypes.c_float * 16)(1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, x, y, 0, 1)
            colour = (ctypes.c_float * 4)(*quad_colour(i), 1.0)
            self.nodes.append((model, colour, vbo, ibo))
        GL.glBindBuffer(GL.GL_ARRAY_BUFFER, 0)
        GL.glBindBuffer(GL.GL_ELEMENT_ARRAY_BUFFER, 0)
        self.ambient = (ctypes.c_float * 3)(0.9, 0.9, 0.9)
        self.sun = (ctypes.c_float * 6)(-1, -1, -1, 1, 1, 1)

    NAMES = ("uModelMatrix", "uViewMatrix", "uProjMatrix", "uSSAOKernelCount", "uSSAOKernelRadius",
             "uSSAOKernelSample", "uSubmeshColor", "uCurrTime", "uAmbientColor", "uFogInfo", "fBlurLerpValue",
             "uSunLight", "uEyePosition", "uSpecularColor", "uPointLightCount", "uPointLightXYZRangeArray",
             "uPointLightColorArray")

    def frame(self, lookup=False):
        GL = self.GL
        self.begin_frame()
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
        self.end_frame()


def unsupported(what):
    """Stops a pure-Python draw at a branch that the quads of this benchmark never take."""
    raise NotImplementedError(f"PyEngineScene: {what} is not part of this benchmark's scene")


def identity():
    """A new identity matrix, four rows of four floats."""
    return [[1.0, 0.0, 0.0, 0.0], [0.0, 1.0, 0.0, 0.0], [0.0, 0.0, 1.0, 0.0], [0.0, 0.0, 0.0, 1.0]]


def local_matrix(x, y, z, rx, ry, rz, sx, sy, sz):
    """Scale, then rotation about X, Y, Z (degrees), then translation, stored as four rows
    with the translation in row 3: the engine's matrix layout, as plain lists."""
    a, b, c = math.radians(rx), math.radians(ry), math.radians(rz)
    ca, sa, cb, sb, cc, sc = math.cos(a), math.sin(a), math.cos(b), math.sin(b), math.cos(c), math.sin(c)
    return [[sx * cc * cb, sx * sc * cb, -sx * sb, 0.0],
            [sy * (cc * sb * sa - sc * ca), sy * (sc * sb * sa + cc * ca), sy * cb * sa, 0.0],
            [sz * (cc * sb * ca + sc * sa), sz * (sc * sb * ca - cc * sa), sz * cb * ca, 0.0],
            [x, y, z, 1.0]]


def product(a, b):
    """The engine's matrix product a * b, b applied first. Rows act on row vectors, so it
    is the plain row-by-column product of b by a."""
    return [[r[0] * a[0][c] + r[1] * a[1][c] + r[2] * a[2][c] + r[3] * a[3][c] for c in range(4)] for r in b]


class PyNode:
    """A node as a pure-Python engine keeps it, copied once from an engine node: the
    transform fields, matrices as lists of rows, submesh maps keyed by submesh index,
    and the GL names of the node's buffers."""

    FIELDS = ("x", "y", "z", "sx", "sy", "sz", "rx", "ry", "rz", "rx_speed", "ry_speed", "rz_speed", "visible",
              "axisVisible", "standOnGround")
    MAPS = ("VertexArray_Positon", "VertexArray_Normal", "VertexArray_Tangent", "VertexArray_Bitangent",
            "VertexArray_UV", "VertexArray_BoneIndics", "VertexArray_BoneWeight", "VIndexArray", "VertexDescArray",
            "TextureArray", "SubMeshShapeType", "SubMeshShapeCount", "SubMeshCullMode", "SubMeshAlphaMode",
            "SubMeshWireFrame", "SubMeshColor", "SubMeshSpecularColor", "SubMeshFX")

    def __init__(self, node):
        for name in self.FIELDS:
            setattr(self, name, getattr(node, name))
        for name in self.MAPS:
            setattr(self, name, dict(getattr(node, name)))
        self.VVBOArray = {s: buffer.glName for s, buffer in node.VVBOArray.items()}
        self.IVBOArray = {s: buffer.glName for s, buffer in node.IVBOArray.items()}
        if node.children or node.parent or node.followTarget or node.TargetFrameBuffer or node.ShadowMapCamera:
            unsupported("a node with children, parent, target, render target or shadow camera")
        self.parent = self.followTarget = self.ActionPlayer = self.UpdateFunction = None
        self.TargetFrameBuffer = self.ShadowMapCamera = self.CurrSubMeshFX = None
        self.children = []
        self.WorldMatrix = identity()
        self.AxisMatrix = identity()


class PyEngineScene(ScriptFrame):
    """The same scene as a pure-Python engine draws it over PyOpenGL: each frame updates
    every node (loop rotation, local, world and axis matrices in plain lists) and draws
    it as the engine's node draw does, each uniform looked up by name at each use and
    its value built as a Python list. The scene's fixed values (camera matrices, sun,
    ambient, fog, SSAO) are read from the engine once."""

    WHITE = [1.0, 1.0, 1.0, 1.0]
    SPECULAR = [1.0, 1.0, 1.0, 10.0]

    def __init__(self, scene):
        super().__init__()
        self.nodes = [PyNode(n) for n in scene.Get3DObjectArray()]
        # The scene's built-in gizmo and pick marker are updated and drawn after the
        # objects; unbound and empty here, the gizmo draws nothing and the marker no
        # submesh, but the marker's draw counts a batch.
        self.axis = PyNode(scene.CurrObjectAxis)
        self.axis.GameNode = scene.CurrObjectAxis.GameNode
        self.draw_node = PyNode(scene.CurrDrawNode)
        camera = scene.GetActiveCamera()
        self.view_matrix = list(camera.GetViewMatrix())
        self.proj_matrix = list(camera.GetProjMatrix())
        eye = camera.GetWorldXYZ()
        self.eye = [eye.x, eye.y, eye.z]
        self.rotate_v, self.rotate_h = scene.Scene_RotateV, scene.Scene_RotateH
        self.ambient = list(scene.GetAmbientColor())
        self.fog = list(scene.GetSceneFog())
        self.blur_lerp = scene.GetDepthBlurLerpValue()
        self.sun_dir, self.sun_colour = list(scene.GetSunLightDir()), list(scene.GetSunLightColor())
        self.ssao_count, self.ssao_radius = scene.GetSSAOKernelCount(), scene.GetSSAOKernelRadius()
        self.ssao_list = list(scene.GetSSAOKernelList())
        self.point_lights = list(scene.GetPointLightList())
        self.defer_light_mode = scene.IsDeferLightMode()
        self.check_pick_once = scene.isCheckPickOnce()
        self.begin_time = time.time()
        self.last_time = 0.0
        self.curr_time = 0.0
        self.batch_count = 0
        self.fps_text = "FPS:60"

    def frame(self):
        """Clock, update of every node, then the draw between the scene-level calls."""
        self.curr_time = time.time() - self.begin_time
        if self.last_time == 0.0:
            self.last_time = self.curr_time
        delay = self.curr_time - self.last_time
        for node in self.nodes:
            self.update(node, delay)
        self.update(self.axis, delay)
        self.update(self.draw_node, delay)
        self.last_time = self.curr_time
        # The overlay shows the count of the previous frame.
        batch_text = "Batch:%d" % self.batch_count
        self.batch_count = 0
        self.begin_frame()
        for node in self.nodes:
            self.draw(node, self.rotate_v, self.rotate_h, 0.0)
        if self.axis.visible and self.axis.GameNode is not None:
            unsupported("a bound gizmo")
        self.draw(self.draw_node, self.rotate_v, self.rotate_h, 0.0)
        self.end_frame(self.fps_text, batch_text)

    # ---- update ----

    def parent_matrix(self, node):
        if node.followTarget is not None:
            unsupported("following")
        return identity() if node.parent is None else node.parent.WorldMatrix

    def update(self, node, delay):
        # Loop rotation, each axis by itself.
        if node.rx_speed != 0:
            node.rx += node.rx_speed * delay
        if node.ry_speed != 0:
            node.ry += node.ry_speed * delay
        if node.rz_speed != 0:
            node.rz += node.rz_speed * delay
        # World matrix, then the same without the node's scale; a root's local matrix
        # stands on the left, a child's on the right.
        parent = self.parent_matrix(node)
        local = local_matrix(node.x, node.y, node.z, node.rx, node.ry, node.rz, node.sx, node.sy, node.sz)
        node.WorldMatrix = product(local, parent) if node.parent is None else product(parent, local)
        local = local_matrix(node.x, node.y, node.z, node.rx, node.ry, node.rz, 1.0, 1.0, 1.0)
        node.AxisMatrix = product(local, parent) if node.parent is None else product(parent, local)
        # A plain node has no skin to animate.
        for child in node.children:
            self.update(child, delay)
        if node.ActionPlayer is not None:
            node.ActionPlayer.update(delay)
        if node.UpdateFunction is not None:
            node.UpdateFunction(node)

    # ---- draw ----

    def draw(self, node, rx=0.0, ry=0.0, rz=0.0):
        if not node.visible:
            return
        if node.TargetFrameBuffer is not None:
            unsupported("a render target")
        self.draw_begin(node, rx, ry, rz)
        self.draw_allsubmesh(node)
        # A plain node has no skeleton; the pick test runs only while a pick is asked for.
        if self.check_pick_once:
            unsupported("picking")
        self.draw_children(node)
        self.GL.glPopMatrix()  # draw_end
        self.batch_count += 1
        if node.visible and node.axisVisible:
            unsupported("the axis lines")

    def draw_begin(self, node, rx, ry, rz):
        GL = self.GL
        GL.glPushMatrix()
        GL.glRotatef(rx, 1.0, 0.0, 0.0)
        GL.glRotatef(ry, 0.0, 1.0, 0.0)
        GL.glRotatef(rz, 0.0, 0.0, 1.0)
        # The position is read here but not applied: uModelMatrix carries it.
        if node.followTarget is not None or (node.parent is None and node.standOnGround):
            unsupported("following or standing on the ground")

    def draw_children(self, node):
        if node.visible:
            for child in node.children:
                self.draw(child)

    def draw_allsubmesh(self, node):
        GL = self.GL
        for s in node.VertexArray_Positon:
            self.draw_submesh(node, s)
        GL.glBindTexture(GL.GL_TEXTURE_2D, 0)
        GL.glUseProgram(0)
        node.CurrSubMeshFX = None

    def draw_begin_shader(self, node, s):
        """Program switch and the per-program uniforms."""
        GL = self.GL
        program = node.SubMeshFX.get(s)
        if not program or node.CurrSubMeshFX == program:
            return
        node.CurrSubMeshFX = program
        GL.glUseProgram(program)
        location = GL.glGetUniformLocation(program, "uModelMatrix")
        if location >= 0:
            GL.glUniformMatrix4fv(location, 1, False, [v for row in node.WorldMatrix for v in row])
        location = GL.glGetUniformLocation(program, "uViewMatrix")
        if location >= 0:
            GL.glUniformMatrix4fv(location, 1, False, self.view_matrix)
        location = GL.glGetUniformLocation(program, "uProjMatrix")
        if location >= 0:
            GL.glUniformMatrix4fv(location, 1, False, self.proj_matrix)
        location = GL.glGetUniformLocation(program, "uSSAOKernelCount")
        if location >= 0:
            GL.glUniform1i(location, self.ssao_count)
        location = GL.glGetUniformLocation(program, "uSSAOKernelRadius")
        if location >= 0:
            GL.glUniform1f(location, self.ssao_radius)
        location = GL.glGetUniformLocation(program, "uSSAOKernelSample")
        if location >= 0:
            # Never more samples than the list holds.
            count = min(self.ssao_count, len(self.ssao_list) // 3)
            GL.glUniform3fv(location, count, self.ssao_list[:count * 3])
        if node.ShadowMapCamera is not None:
            unsupported("a shadow map camera")

    def draw_submesh(self, node, s):
        GL = self.GL
        # The submesh's arrays, read as the draw starts; only the immediate path draws from them.
        positions, normals, tangents, bitangents, uvs, bone_indices, bone_weights, indices = (
            node.VertexArray_Positon.get(s, []), node.VertexArray_Normal.get(s, []),
            node.VertexArray_Tangent.get(s, []), node.VertexArray_Bitangent.get(s, []),
            node.VertexArray_UV.get(s, []), node.VertexArray_BoneIndics.get(s, []),
            node.VertexArray_BoneWeight.get(s, []), node.VIndexArray.get(s, []))
        self.draw_begin_shader(node, s)

        program = node.CurrSubMeshFX
        if program is not None:
            location = GL.glGetUniformLocation(program, "uSubmeshColor")
            if location >= 0:
                GL.glUniform4fv(location, 1, node.SubMeshColor.get(s, self.WHITE))
            location = GL.glGetUniformLocation(program, "uCurrTime")
            if location >= 0:
                GL.glUniform1f(location, self.curr_time)
            location = GL.glGetUniformLocation(program, "uAmbientColor")
            if location >= 0:
                GL.glUniform3fv(location, 1, self.ambient)
            location = GL.glGetUniformLocation(program, "uFogInfo")
            if location >= 0:
                GL.glUniform1fv(location, 5, self.fog)
            location = GL.glGetUniformLocation(program, "fBlurLerpValue")
            if location >= 0:
                GL.glUniform1f(location, self.blur_lerp)
            location = GL.glGetUniformLocation(program, "uSunLight")
            if location >= 0:
                GL.glUniform3fv(location, 2, self.sun_dir + self.sun_colour)
            location = GL.glGetUniformLocation(program, "uEyePosition")
            if location >= 0:
                GL.glUniform3fv(location, 1, self.eye)
            location = GL.glGetUniformLocation(program, "uSpecularColor")
            if location >= 0:
                GL.glUniform4fv(location, 1, node.SubMeshSpecularColor.get(s, self.SPECULAR))
            # Point lights: at most 3 forward, 64 deferred.
            count = min(len(self.point_lights), 64 if self.defer_light_mode else 3)
            count_location = GL.glGetUniformLocation(program, "uPointLightCount")
            xyz_range_location = GL.glGetUniformLocation(program, "uPointLightXYZRangeArray")
            colour_location = GL.glGetUniformLocation(program, "uPointLightColorArray")
            if count_location >= 0:
                GL.glUniform1i(count_location, count)
            if count > 0 and (xyz_range_location >= 0 or colour_location >= 0):
                unsupported("point lights")
            # A plain node prepares no uniforms of its own.

        records = node.TextureArray.get(s)
        if records is not None:
            GL.glEnable(GL.GL_TEXTURE_2D)
            if records:
                unsupported("textures")

        shape_type = node.SubMeshShapeType[s]
        cull_mode = node.SubMeshCullMode[s]
        alpha_mode = node.SubMeshAlphaMode.get(s)
        if alpha_mode is None:
            print(s)
        if alpha_mode == GL.GL_BLEND:
            GL.glEnable(GL.GL_BLEND)
            GL.glBlendFunc(GL.GL_SRC_ALPHA, GL.GL_ONE_MINUS_SRC_ALPHA)
        polygon_mode = GL.GL_LINE if node.SubMeshWireFrame.get(s, False) else GL.GL_FILL
        GL.glPolygonMode(GL.GL_FRONT, polygon_mode)
        GL.glPolygonMode(GL.GL_BACK, polygon_mode)
        if cull_mode == GL.GL_NONE:
            GL.glDisable(GL.GL_CULL_FACE)
        else:
            GL.glEnable(GL.GL_CULL_FACE)
            GL.glFrontFace(cull_mode)
            GL.glCullFace(GL.GL_BACK)

        vbo, ibo = node.VVBOArray.get(s), node.IVBOArray.get(s)
        if vbo is None or ibo is None:
            unsupported(f"the immediate path ({len(positions)} positions, {len(normals)} normals, {len(tangents)} "
                        f"tangents, {len(bitangents)} bitangents, {len(uvs)} UVs, {len(bone_indices)} bone indices, "
                        f"{len(bone_weights)} bone weights, {len(indices)} indices)")
        GL.glBindBuffer(GL.GL_ARRAY_BUFFER, vbo)
        GL.glInterleavedArrays(node.VertexDescArray[s], 0, None)
        count = node.SubMeshShapeCount.get(s, 0)
        if count > 0:
            GL.glBindBuffer(GL.GL_ELEMENT_ARRAY_BUFFER, ibo)
            GL.glDrawElements(shape_type, count, GL.GL_UNSIGNED_SHORT, None)
            GL.glBindBuffer(GL.GL_ELEMENT_ARRAY_BUFFER, 0)
        GL.glBindBuffer(GL.GL_ARRAY_BUFFER, 0)

        if alpha_mode == GL.GL_BLEND:
            GL.glDisable(GL.GL_BLEND)


def read_pixels():
    """The window's pixels, RGB bytes, bottom row first."""
    from OpenGL import GL

    return bytes(GL.glReadPixels(0, 0, W, H, GL.GL_RGB, GL.GL_UNSIGNED_BYTE))


def compare_pictures(engine, script):
    """Text saying whether two pictures of read_pixels match: count and size of the differences."""
    differing, largest = 0, 0
    for p in range(0, len(engine), 3):
        d = max(abs(engine[p + k] - script[p + k]) for k in range(3))
        if d:
            differing += 1
            largest = max(largest, d)
    if not differing:
        return f"identical to DrawScene's ({W}x{H} pixels read back)"
    return f"{differing} of {W * H} pixels differ from DrawScene's, by up to {largest}/255"


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

    # The pure-Python engine must draw DrawScene's picture: one frame of each, read back,
    # with the FPS overlay of the engine's frame (the batch overlay is the script's own).
    python_engine = PyEngineScene(scene)
    python_engine.frame()
    engine_frame()
    engine_pixels = read_pixels()
    python_engine.fps_text = scene.FPSText.text
    python_engine.frame()
    picture = compare_pictures(engine_pixels, read_pixels())
    python_engine_us = per_frame(python_engine.frame, 3)

    print(f"{COUNT} nodes: DrawScene from Python {engine_us:.0f} us/frame; the same scene through PyOpenGL "
          f"{pyopengl_us:.0f} us/frame with prepared locations, {lookup_us:.0f} us/frame looking them up; "
          f"PyOpenGL / engine {pyopengl_us / engine_us:.1f} and {lookup_us / engine_us:.1f}")
    print(f"{COUNT} nodes as a pure-Python engine updates and draws them over PyOpenGL: {python_engine_us:.0f} "
          f"us/frame; python engine / DrawScene {python_engine_us / engine_us:.1f}")
    print(f"pure-Python engine picture: {picture}")

if __name__ == "__main__":
    main()
