"""The engine's live lists (scene registries, children, TextArray) against plain lists:
every operation gives the same result, the same exception and the same content."""
import pytest

import Vorn3DGameEngine as V


def iterate(s, change):
    out = []
    for x in s:
        out.append(x)
        change(s, x)
    return out


def sort_calls(s):
    calls = []
    s.sort(key=lambda x: calls.append(x) or 0)
    return calls


def exhausted_then_append(s, i):
    it = iter(s)
    list(it)
    s.append(i[4])
    return list(it)


def inplace(s, op, value):
    t = s
    if op == "+":
        t += value
    else:
        t *= value
    return t is s


# Each run on a live list and on a plain list both holding [a, b, c, a, d]; e is absent.
OPS = [
    lambda s, i: (s[-1], s[4], s[-5]), lambda s, i: s[5], lambda s, i: s[-6], lambda s, i: s["a"],
    lambda s, i: s[2**70], lambda s, i: (s[1:-1], s[::-2], s[-2:0:-1], s[10:], s[::3]), lambda s, i: s[::0],
    lambda s, i: s.__setitem__(-1, i[5]), lambda s, i: s.__setitem__(5, i[5]),
    lambda s, i: s.__setitem__(slice(1, 3), [i[5]] * 3), lambda s, i: s.__setitem__(slice(3, 1), [i[5]]),
    lambda s, i: s.__setitem__(slice(-2, None), []), lambda s, i: s.__setitem__(slice(None, None, 2), i[3:6]),
    lambda s, i: s.__setitem__(slice(None, None, 2), [i[5]]), lambda s, i: s.__setitem__(slice(None, None, -2), i[:3]),
    lambda s, i: s.__setitem__(slice(1, 2), 5), lambda s, i: s.__setitem__(slice(None, None, 2), 5),
    lambda s, i: s.__setitem__(slice(None), s), lambda s, i: s.__setitem__(slice(4, 0, -1), (x for x in i[:4])),
    lambda s, i: s.__delitem__(slice(None, None, 2)), lambda s, i: s.__delitem__(-1), lambda s, i: s.__delitem__(5),
    lambda s, i: s.__delitem__(slice(None)), lambda s, i: s.__delitem__(slice(None, None, -3)),
    lambda s, i: s.__delitem__(slice(1, -1, -1)),
    lambda s, i: iterate(s, lambda s, x: len(s) < 8 and s.append(i[5])),
    lambda s, i: iterate(s, lambda s, x: s.remove(x)), exhausted_then_append,
    lambda s, i: [(x, s.pop(0)) for x in reversed(s)], lambda s, i: list(reversed(s)),
    lambda s, i: s.sort(), lambda s, i: s.sort(key=lambda x: i.index(x) % 2, reverse=True),
    lambda s, i: s.sort(key=lambda x: -i.index(x)), sort_calls, lambda s, i: s.sort(i[0]),
    lambda s, i: s.sort(key=lambda x: s.append(x) or 0),
    lambda s, i: s.reverse(), lambda s, i: (type(s.copy()), s.copy()),
    lambda s, i: (s + [i[5]], [i[5]] + s, s + s, s * 2, 2 * s, s * -1), lambda s, i: s + 5, lambda s, i: s + (1,),
    lambda s, i: s * "a", lambda s, i: "a" * s, lambda s, i: inplace(s, "+", [i[5], i[5]]),
    lambda s, i: inplace(s, "+", s), lambda s, i: inplace(s, "+", 5), lambda s, i: inplace(s, "*", 2),
    lambda s, i: inplace(s, "*", 0), lambda s, i: inplace(s, "*", "a"), lambda s, i: inplace(s, "*", 2**70),
    lambda s, i: (s == list(s), s != list(s), s == s[:-1], s < s[:-1], s > s[:-1], s <= s, s >= s[:], s == 5),
    lambda s, i: (list(s) == s, i[:3] <= s, i[:3] > s, s[:1] < s, s != s), lambda s, i: s < [i[5]], lambda s, i: s < 5,
    lambda s, i: 5 > s,
    lambda s, i: (s.index(i[0]), s.index(i[0], 1), s.index(i[0], -2), s.index(i[4], -10**30, 10**30)),
    lambda s, i: s.index(i[0], 1, 3), lambda s, i: s.index(i[5]), lambda s, i: s.index(i[0], None),
    lambda s, i: s.index(5), lambda s, i: (s.count(i[0]), s.count(i[5]), s.count(None)),
    lambda s, i: (i[0] in s, i[5] in s, None in s, 3 in s, len(s), bool(s), repr(s)),
    lambda s, i: (s.clear(), bool(s), len(s), repr(s)), lambda s, i: s.extend(i[3:]), lambda s, i: s.extend(5),
    lambda s, i: (s.insert(-100, i[5]), s.insert(100, i[5]), s.insert(-1, i[5])), lambda s, i: s.insert("a", i[5]),
    lambda s, i: (s.pop(), s.pop(1), s.pop(-1)), lambda s, i: s.pop(10), lambda s, i: (s.clear(), s.pop()),
    lambda s, i: s.pop("a"), lambda s, i: s.remove(i[0]), lambda s, i: s.remove(i[5]), lambda s, i: s.remove(None),
]

# Values a list of engine objects refuses: TypeError, list unchanged (a plain list takes them).
BAD = [
    lambda s, i: s.append(None), lambda s, i: s.insert(0, 5), lambda s, i: s.__setitem__(0, "x"),
    lambda s, i: s.__setitem__(slice(0, 2), [i[5], None]),
    lambda s, i: s.__setitem__(slice(None, None, 2), [i[5]] * 2 + [3]),
    lambda s, i: s.extend([i[5], None]), lambda s, i: inplace(s, "+", [i[5], 1]),
]


def outcome(op, seq, items):
    """What an operation gave, with objects by identity and the list's type name as 'list'."""
    def norm(x):
        if x is seq:
            return "self"
        if isinstance(x, (list, tuple)):
            return [norm(e) for e in x]
        if isinstance(x, str):
            return x.replace("Vorn3DGameEngine._engine.", "").replace(type(seq).__name__, "list")
        return ("item", items.index(x)) if any(x is e for e in items) else x
    try:
        result = norm(op(seq, items))
    except Exception as e:  # noqa: BLE001 - the exception is the outcome
        result = (type(e), norm(str(e)))
    return result, [next(k for k, e in enumerate(items) if e is x) for x in seq]


TARGETS = {
    "ObjectArray_2D": (lambda scene, node: scene.ObjectArray_2D, V.Vorn_3DGameNode),
    "children": (lambda scene, node: node.children, V.Vorn_3DGameNode),
    "TextArray": (lambda scene, node: scene.TextArray, lambda: V.Vorn_Text(0, 0, "t")),
}


@pytest.mark.parametrize("target", TARGETS)
def test_live_list_behaves_as_a_list(scene, target):
    view_of, make = TARGETS[target]
    owner = V.Vorn_3DGameNode()
    items = [make() for _ in range(6)]
    start = [items[k] for k in (0, 1, 2, 0, 4)]
    for n, op in enumerate(OPS):
        view = view_of(scene, owner)
        view[:] = start
        plain = list(start)
        assert outcome(op, view, items) == outcome(op, plain, items), f"operation {n}"
    for n, op in enumerate(BAD):
        view = view_of(scene, owner)
        view[:] = start
        # Node lists also take texts (labels hang below nodes), and say so.
        with pytest.raises(TypeError, match=f"expected a {type(items[0]).__name__}( or a Vorn_Text)?, not"):
            op(view, items)
        assert [x for x in view_of(scene, owner)] == start, f"bad value {n}"


def test_whole_assignment_and_copies(scene):
    """A refused whole assignment keeps the registry; created texts never upset iteration;
    matrices read from a node are copies."""
    node = scene.Create3DGameNode(0, 0, 0)
    with pytest.raises(TypeError):
        scene.ObjectArray_3D = [V.Vorn_3DGameNode(), None]
    assert node in scene.ObjectArray_3D
    seen = []
    for text in scene.TextArray:
        seen.append(text.text)
        if len(scene.TextArray) < 40:
            scene.Create2DText(0, 0, "more")
    assert seen == ["FPS:60", "Batch:0"] + ["more"] * 38
    matrix = node.WorldMatrix
    node.x = 5
    node.update(0)
    assert matrix.GetT()[0] == 0 and node.WorldMatrix.GetT()[0] == 5
