"""The module's public operations found by introspection, and hostile arguments for them.

Nothing here is a list of names: classes, methods, properties, static methods and module
globals added later are fuzzed without edits. The argument makers read the pybind11
signature lines of each docstring, so most arguments have the right type and arity, and
one argument in a few is hostile: that reaches the code behind the type checks."""
import math
import re
import zlib

import Vorn3DGameEngine as V

ENGINE = V._engine

# Operations that block or end the process by design; each is driven elsewhere or not at all.
SKIPPED = {
    # The demonstration's own window loop never returns to the caller.
    "RunDemo": "starts the demonstration window and its endless main loop",
    # Runs until a callback leaves it; the child drives it once with a raising callback.
    "glutMainLoop": "blocks until a callback ends it; driven with a raising idle callback",
}


def _global_names():
    names = getattr(V, "_global_names", None) or ENGINE._global_names
    return list(names())


class Operation:
    """One thing a script can do: call a function or method, or get or set a property."""

    def __init__(self, name, kind, owner, attr, signatures):
        self.name, self.kind, self.owner, self.attr = name, kind, owner, attr
        self.signatures = signatures  # list of parameter lists (no self)

    def seed(self, base):
        return zlib.crc32(self.name.encode()) ^ base


# --- Signatures ---------------------------------------------------------------------

_SIG_LINE = re.compile(r"^(?:\d+\. )?(\w+)\((.*)\)(?: -> .*)?$")


def _split_params(text):
    """Splits a parameter list at top-level commas (types contain brackets and commas)."""
    parts, depth, cur = [], 0, ""
    for ch in text:
        if ch in "[(":
            depth += 1
        elif ch in "])":
            depth -= 1
        if ch == "," and depth == 0:
            parts.append(cur.strip())
            cur = ""
        else:
            cur += ch
    if cur.strip():
        parts.append(cur.strip())
    return parts


def signatures(func, name):
    """Parameter lists [(name, type text, has default)] of every overload, self dropped."""
    found = []
    for line in (getattr(func, "__doc__", None) or "").splitlines():
        m = _SIG_LINE.match(line.strip())
        if not m or m.group(1) != name:
            continue
        params = []
        for p in _split_params(m.group(2)):
            pname, _, rest = p.partition(":")
            ptype, _, default = rest.partition("=")
            params.append((pname.strip(), ptype.strip(), bool(default.strip())))
        if params and params[0][0] == "self":
            params = params[1:]
        found.append(params)
    return found or [[("*args", "", False)]]


# --- Discovery ----------------------------------------------------------------------

def _engine_classes():
    return sorted(
        (n, c) for n, c in vars(ENGINE).items()
        if isinstance(c, type) and c.__module__.startswith("Vorn3DGameEngine"))


# Dunders that carry engine behaviour (sequence and number protocols) are fuzzed too;
# the rest come from object or pybind11 and are not ours.
_ENGINE_DUNDERS = {
    "__getitem__", "__setitem__", "__delitem__", "__len__", "__iter__", "__contains__",
    "__add__", "__sub__", "__mul__", "__rmul__", "__truediv__", "__eq__", "__ne__",
    "__repr__", "__str__", "__bool__", "__copy__", "__deepcopy__", "__neg__", "__hash__",
}


def operations():
    """Every public operation of the module, in a fixed order."""
    ops = []
    for name, func in sorted(vars(ENGINE).items()):
        if name.startswith("_") or isinstance(func, type) or not callable(func):
            continue
        ops.append(Operation(name, "function", None, name, signatures(func, name)))
    ops.append(Operation("<globals>", "globals", None, None, []))
    for cname, cls in _engine_classes():
        ops.append(Operation(cname, "construct", cls, None, signatures(cls.__init__, "__init__")))
        for attr, value in sorted(vars(cls).items()):
            if attr.startswith("_") and attr not in _ENGINE_DUNDERS:
                continue
            full = f"{cname}.{attr}"
            if isinstance(value, property):
                ops.append(Operation(full, "property", cls, attr, [[("value", _prop_type(value), False)]]))
            elif isinstance(value, staticmethod) or type(value).__name__ == "builtin_function_or_method":
                fn = getattr(cls, attr)
                ops.append(Operation(full, "static", cls, attr, signatures(fn, attr)))
            elif callable(value):
                ops.append(Operation(full, "method", cls, attr, signatures(value, attr)))
    return [op for op in ops if op.attr not in SKIPPED and op.name not in SKIPPED]


def _prop_type(prop):
    m = re.search(r"-> ([^\n]+)", getattr(prop.fget, "__doc__", None) or "")
    return m.group(1).strip() if m else ""


# --- Values -------------------------------------------------------------------------

class Boom(Exception):
    """Raised by the hostile callbacks."""


def raising(*args, **kwargs):
    raise Boom("callback raised")


class LyingList(list):
    """A list whose len() is smaller than what iterating it yields: code that sizes a
    fixed array by len() and then iterates must not write past the array."""

    def __len__(self):
        return min(16, list.__len__(self))


def lying_list(n):
    return LyingList([1.0] * n)


NAN, INF = math.nan, math.inf
INTS = [0, 1, 2, 3, -1, -2, 7, 64, 2**31 - 1, 2**31, -2**31 - 1, 2**63, -2**63 - 1, 10**30]
FLOATS = [0.0, 1.0, -1.0, 0.5, 100.0, NAN, INF, -INF, 1e308, -1e308, 5e-324, 1e6]
STRINGS = ["", "a", "t", "x" * 70000, "\x00ab", "\u00e9\u2713", "../nope", "missing.png", "%s%n", "a.tga"]


class Values:
    """Argument makers for one operation: typed values mostly, hostile ones sometimes."""

    def __init__(self, rng, pool, target):
        self.rng, self.pool, self.target = rng, pool, target

    def hostile(self):
        r = self.rng
        choices = [
            lambda: None, lambda: r.choice(INTS), lambda: r.choice(FLOATS), lambda: r.choice(STRINGS),
            lambda: b"\xff\x00", lambda: [], lambda: [None] * 3, lambda: [NAN] * 16,
            lambda: ["a", 1, None], lambda: {}, lambda: {"a": None}, lambda: (1, 2, 3),
            lambda: object(), lambda: self.target, lambda: self.pool.any(r), lambda: raising,
            lambda: (lambda *a: "wrong"), lambda: type(self.target), lambda: [self.pool.any(r)] * 2,
            lambda: list(range(300)), lambda: 1j, lambda: lying_list(5000),
        ]
        return r.choice(choices)()

    def typed(self, ptype):
        r, t = self.rng, ptype
        if t == "int" or t.startswith("Optional[int"):
            return r.choice(INTS)
        if t == "float" or t.startswith("Optional[float"):
            return r.choice(FLOATS + [0, 1])
        if t == "bool":
            return r.choice([True, False])
        if t == "str" or t.startswith("Optional[str"):
            return r.choice(STRINGS)
        if t.startswith(("List[", "list", "Sequence", "Tuple[", "Iterable")):
            inner = "float" if "float" in t else "int" if "int" in t else "str" if "str" in t else ""
            n = r.choice([0, 1, 2, 3, 4, 8, 9, 16, 17, 1000])
            if r.random() < 0.1:
                return lying_list(5000)
            return [self.typed(inner) if inner else self.hostile() for _ in range(n)]
        if t.startswith(("Dict[", "dict")):
            return {self.typed("str"): self.hostile() for _ in range(r.randrange(3))}
        if "Callable" in t or t in ("function", "Callable"):
            return r.choice([raising, lambda *a: None, lambda *a: "wrong", None])
        m = re.search(r"_engine\.(\w+)", t)
        if m:
            obj = self.pool.of_class(r, getattr(ENGINE, m.group(1), None))
            return obj if obj is not None else self.hostile()
        return self.hostile()

    def argument(self, ptype):
        return self.hostile() if self.rng.random() < 0.25 else self.typed(ptype)

    def arguments(self, sigs):
        """Positional arguments for one call: one overload, mostly the right arity."""
        r = self.rng
        params = r.choice(sigs)
        if any(p[0].startswith("*") for p in params):
            return [self.hostile() if r.random() < 0.5 else r.choice(FLOATS) for _ in range(r.randrange(7))]
        required = sum(1 for p in params if not p[2])
        roll = r.random()
        if roll < 0.08:
            n = r.randrange(max(required, 1))  # too few
        elif roll < 0.14:
            n = len(params) + r.randrange(1, 3)  # too many
        else:
            n = r.randint(required, len(params))
        return [self.argument(params[i][1] if i < len(params) else "") for i in range(n)]
