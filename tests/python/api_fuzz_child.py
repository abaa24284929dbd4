"""Child process of the API fuzz test: builds the engine in one state, then calls every
operation with hostile arguments. Before each call it writes the call to the progress
file (unbuffered), so that when the process dies the parent knows the exact call.

    python api_fuzz_child.py STATE SEED CALLS START PROGRESS_FILE RESOURCE_DIR

Progress lines are "index<TAB>operation<TAB>call"; the last line is "DONE" after a
normal end. Python exceptions are the expected outcome of most calls and are ignored."""
import gc
import os
import resource
import sys
import time

import Vorn3DGameEngine as V
import api_fuzz_catalogue as cat

STATE, SEED, CALLS, START, PROGRESS, RESDIR = sys.argv[1:7]
SEED, CALLS, START = int(SEED), int(CALLS), int(START)

# A huge size argument must fail with MemoryError, not take the machine's memory. The
# address sanitizer reserves its shadow memory up front and cannot run under the limit.
if "libasan" not in os.environ.get("LD_PRELOAD", ""):
    resource.setrlimit(resource.RLIMIT_AS, (8 << 30, 8 << 30))
_progress = os.open(PROGRESS, os.O_WRONLY | os.O_CREAT | os.O_APPEND)


def note(line):
    os.write(_progress, (line.replace("\n", " ") + "\n").encode("utf-8", "backslashreplace"))


def show(value):
    """A short text for a value that never calls into the engine."""
    if type(value).__module__.startswith("Vorn3DGameEngine") or isinstance(value, type):
        return f"<{getattr(value, '__name__', type(value).__name__)}>"
    if isinstance(value, (list, tuple)):
        inner = ", ".join(show(v) for v in value[:4])
        more = f", ...{len(value)} items" if len(value) > 4 else ""
        kind = "" if type(value) in (list, tuple) else type(value).__name__
        return kind + (("[%s%s]" if isinstance(value, list) else "(%s%s)") % (inner, more))
    if callable(value):
        return getattr(value, "__name__", "callable")
    try:
        text = repr(value)
    except RecursionError:  # a hostile value nested deeper than repr can follow
        return f"<deeply nested {type(value).__name__}>"
    except UnicodeDecodeError:  # engine text holding bytes a script stored: not UTF-8
        return f"<{type(value).__name__} with non-UTF-8 text>"
    return text if len(text) <= 40 else f"{text[:20]}...({len(text)} chars)"


class Pool:
    """The engine objects of the state, by class; results of calls join it."""

    LIMIT = 12

    def __init__(self):
        self.by_class = {}

    def add(self, obj):
        if type(obj).__module__.startswith("Vorn3DGameEngine") and not isinstance(obj, type):
            bucket = self.by_class.setdefault(type(obj), [])
            if len(bucket) < self.LIMIT and not any(o is obj for o in bucket):
                bucket.append(obj)

    def of_class(self, rng, cls):
        found = [o for c, objs in self.by_class.items() if cls and issubclass(c, cls) for o in objs]
        return rng.choice(found) if found else None

    def any(self, rng):
        objs = [o for objs in self.by_class.values() for o in objs]
        return rng.choice(objs) if objs else None


pool = Pool()
scene = None


# --- States ---------------------------------------------------------------------------

def open_window():
    V.glutInit()
    V.glutInitDisplayMode(V.GLUT_SINGLE | V.GLUT_RGBA | V.GLUT_DEPTH)
    V.glutInitWindowSize(320, 240)
    V.glutCreateWindow("vorn fuzz")
    V.SCREEN_WIDTH, V.SCREEN_HEIGHT = 320, 240
    V.PyGameResManager(RESDIR)
    s = V.Vorn_3Dcene()
    s.InitGL(320, 240)
    V.openGLScene = s
    return s


def construct_all():
    """Objects of each class: with the defaults, then with well-typed arguments."""
    for _, cls in cat._engine_classes():
        build_with(cls, cat.signatures(cls.__init__, "__init__"))


def build_with(fn, sigs, want=2):
    """Calls `fn` with no arguments, then with well-typed ones, until `want` results came."""
    import random

    rng = random.Random(SEED)
    tries = [[]] + [[cat.Values(rng, pool, fn).typed(p[1]) for p in rng.choice(sigs)] for _ in range(12)]
    made = []
    for args in tries:
        try:
            made.append(fn(*args))
        except Exception:
            pass
        if len(made) == want:
            break
    for obj in made:
        pool.add(obj)
    return made


def factory_objects(s):
    """Everything the scene's Create* factories make with their defaults."""
    made = []
    for name in sorted(dir(s)):
        if name.startswith("Create"):
            fn = getattr(s, name)
            made += build_with(fn, cat.signatures(fn, name))
    # The scene's live registries, camera and overlays.
    for name in sorted(dir(s)):
        if not name.startswith("_"):
            try:
                pool.add(getattr(s, name))
            except Exception:
                pass
    return made


def drive_main_loop():
    """glutMainLoop ends with the exception a callback raises."""
    V.glutIdleFunc(cat.raising)
    V.glutDisplayFunc(cat.raising)
    note("-1\tglutMainLoop\tglutMainLoop() with raising idle and display callbacks")
    try:
        V.glutMainLoop()
    except cat.Boom:
        return
    except BaseException as e:  # noqa: BLE001  (reported, not a crash)
        note(f"WRONG\tglutMainLoop\tended with {type(e).__name__}: {e} instead of the callback's exception")
        return
    note("WRONG\tglutMainLoop\treturned although the callbacks raised")


def build_state():
    """Builds the objects of STATE; returns the classes whose operations are fuzzed (None: all)."""
    global scene
    if STATE == "nowin":
        construct_all()
        return None
    scene = open_window()
    pool.add(scene)
    if STATE == "gl":
        if START == 0:
            drive_main_loop()
        construct_all()
        return None
    nodes = factory_objects(scene)
    if STATE == "detached":
        # Out of every registry and parent, while the scene lives on.
        for name in dir(scene):
            try:
                attr = getattr(scene, name)
                if hasattr(attr, "clear") and hasattr(attr, "append"):
                    attr.clear()
            except Exception:
                pass
        for node in nodes:
            try:
                node.SetParent(None)
            except Exception:
                pass
    elif STATE == "dropped":
        # The scene is gone: nothing holds it but the nodes' back references.
        pool.by_class.pop(type(scene), None)
        V.openGLScene = None
        scene = None
        gc.collect()
    return set(pool.by_class) - ({V.Vorn_3Dcene} if STATE == "detached" else set())


# --- Calls ----------------------------------------------------------------------------

# Wall-clock share of one operation: a scene that the calls before filled with hundreds of
# nodes and cameras draws slowly on a software driver. The calls made are still a prefix
# of the seeded sequence.
OP_BUDGET = 2.0
deadline = 0.0


def out_of_time():
    return time.monotonic() > deadline


def attempt(index, op, text, fn):
    if out_of_time():
        return None
    note(f"{index}\t{op.name}\t{text}")
    try:
        result = fn()
    except BaseException as e:  # noqa: BLE001  (any exception is an acceptable answer)
        if isinstance(e, (SystemExit, KeyboardInterrupt)):
            note(f"WRONG\t{op.name}\t{text} raised {type(e).__name__}")
        return None
    pool.add(result)
    return result


def probe(index, op):
    """After a global changed, the operations that read globals run once each."""
    for obj in ([scene] if scene else []) + [pool.of_class(cat_rng, V.Vorn_3DGameNode)]:
        for name in ("DrawScene", "update", "draw", "CreateBox"):
            fn = getattr(obj, name, None) if obj is not None else None
            if fn is not None:
                args = (0.1,) if name == "update" else ()
                attempt(index, op, f"<{type(obj).__name__}>.{name}{show(args)} after a global change", lambda: fn(*args))


def run_globals(index, op, rng):
    for name in cat._global_names():
        saved = getattr(V, name)
        for _ in range(max(2, CALLS // 4)):
            value = cat.Values(rng, pool, saved).argument("")
            attempt(index, op, f"Vorn3DGameEngine.{name} = {show(value)}", lambda: setattr(V, name, value))
            attempt(index, op, f"Vorn3DGameEngine.{name}", lambda: getattr(V, name))
            probe(index, op)
        try:
            setattr(V, name, saved)
        except Exception:
            pass


def targets_of(op, rng):
    found = [o for c, objs in pool.by_class.items() if issubclass(c, op.owner) for o in objs]
    rng.shuffle(found)
    return found[:3]


def run(index, op, rng):
    if op.kind == "globals":
        return run_globals(index, op, rng)
    if op.kind in ("function", "construct", "static"):
        fn = getattr(V._engine, op.attr) if op.kind == "function" else (
            op.owner if op.kind == "construct" else getattr(op.owner, op.attr))
        for _ in range(CALLS):
            args = cat.Values(rng, pool, fn).arguments(op.signatures)
            attempt(index, op, f"{op.name}({', '.join(show(a) for a in args)})", lambda: fn(*args))
        return
    targets = targets_of(op, rng)
    for i in range(CALLS if targets else 0):
        obj = targets[i % len(targets)]
        label = f"<{type(obj).__name__}>.{op.attr}"
        if op.kind == "property":
            if i % 2:
                attempt(index, op, label, lambda: getattr(obj, op.attr))
                continue
            value = cat.Values(rng, pool, obj).argument(op.signatures[0][0][1])
            attempt(index, op, f"{label} = {show(value)}", lambda: setattr(obj, op.attr, value))
        else:
            args = cat.Values(rng, pool, obj).arguments(op.signatures)
            method = getattr(obj, op.attr)
            attempt(index, op, f"{label}({', '.join(show(a) for a in args)})", lambda: method(*args))


def selected(op, classes):
    """States built from factories fuzz the globals and the operations of what they made."""
    if classes is None or op.kind == "globals":
        return True
    if op.kind in ("function", "construct"):
        return False
    return any(issubclass(c, op.owner) for c in classes)


def main():
    global cat_rng, deadline
    import random

    cat_rng = random.Random(SEED)
    classes = build_state()
    ops = cat.operations()
    for index, op in enumerate(ops):
        if index < START:
            continue
        if not selected(op, classes):
            continue
        rng = random.Random(op.seed(SEED))
        cat_rng = rng
        began = time.monotonic()
        deadline = began + OP_BUDGET * (3 if op.kind == "globals" else 1)
        run(index, op, rng)
        gc.collect()
        if time.monotonic() - began > OP_BUDGET * 4:
            note(f"SLOW\t{op.name}\t{time.monotonic() - began:.1f} s")
    note("DONE")
    # The interpreter's own exit follows: a crash while it frees the engine shows in the
    # exit status.


if __name__ == "__main__":
    main()
