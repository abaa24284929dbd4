"""The node benchmarks driven from Python: one update call a frame on a tree of 10,000
nodes, the same with every hundredth node a script subclass overriding update, and
the 65,536-vertex submesh filled and built from a script.

Run: PYTHONPATH=build/python /usr/bin/python3 bench/node_update_bench.py
"""
import time

import Vorn3DGameEngine as V


class ScriptNode(V.Vorn_3DGameNode):
    def update(self, delay):
        self.frames = getattr(self, "frames", 0) + 1
        super().update(delay)


def make_tree(script_every=0):
    root = V.Vorn_3DGameNode()
    n = 1
    for b in range(99):
        branch = V.Vorn_3DGameNode(b, 0, 0, root)
        n += 1
        for leaf in range(100):
            cls = ScriptNode if script_every and n % script_every == 0 else V.Vorn_3DGameNode
            node = cls(0, leaf * 0.1, 0, branch)
            node.SetRXYZ(leaf, 2.0 * leaf, 0)
            if n % 10 == 0:
                node.SetLoopRotateY(45)
            n += 1
    return root


def per_call(fn, repeat):
    fn()
    start = time.perf_counter()
    for _ in range(repeat):
        fn()
    return (time.perf_counter() - start) / repeat


def main():
    root = make_tree()
    t = per_call(lambda: root.update(1.0 / 60.0), 200)
    print(f"update, 10,000 nodes, one Python call a frame: {t * 1e6:9.1f} us/frame")
    root = make_tree(script_every=100)
    t = per_call(lambda: root.update(1.0 / 60.0), 200)
    print(f"  the same with 100 Python subclass nodes:       {t * 1e6:9.1f} us/frame")

    node = V.Vorn_3DGameNode()
    s = node.CreateSubMesh("big", True)
    start = time.perf_counter()
    for v in range(65536):
        node.PushVertex_Position(s, v % 256, v // 256, 0.5)
        node.PushVertex_Normal(s, 0, 0, 1)
        node.PushVertex_UV(s, (v % 256) / 255.0, (v // 256) / 255.0)
    fill = time.perf_counter() - start
    t = per_call(lambda: node.BuildSubMeshVBO(s), 50)
    print(f"65,536-vertex submesh: pushes from Python {fill * 1e3:7.1f} ms, BuildSubMeshVBO {t * 1e3:6.2f} ms")


if __name__ == "__main__":
    main()
