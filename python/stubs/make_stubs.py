"""Writes the type stubs of the Vorn3DGameEngine package built in PACKAGE_ROOT.

    python3 make_stubs.py PACKAGE_ROOT

stubgen (from mypy) reads the built extension; the result is then corrected where the
extension cannot say the type (see stub_types.py): arguments and fields bound as plain
objects, factories, the default values pybind11 shows in its signatures, and the live
module globals. Writes _engine.pyi, __init__.pyi and py.typed into the package.
"""
import ast
import importlib
import os
import re
import sys
import tempfile

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
import stub_types  # noqa: E402

PACKAGE = "Vorn3DGameEngine"
TYPING_IMPORT = ("from typing import Any, Callable, ClassVar, Dict, Iterator, List, Optional, "
                 "Sequence, Tuple, Union, overload")
UNTYPED = {"handle", "object"}


def split_top(text, sep=","):
    """Splits text at sep outside brackets."""
    parts, depth, start = [], 0, 0
    for i, ch in enumerate(text):
        if ch in "([{":
            depth += 1
        elif ch in ")]}":
            depth -= 1
        elif ch == sep and depth == 0:
            parts.append(text[start:i])
            start = i + 1
    parts.append(text[start:])
    return [p.strip() for p in parts if p.strip()]


def signature_defaults(doc, name):
    """Parameter name -> default text, read from the signature lines of a docstring."""
    defaults = {}
    for line in (doc or "").splitlines():
        line = re.sub(r"^\d+\. ", "", line)  # the numbered signatures of an overloaded function
        if not line.startswith(name + "("):
            continue
        params = line[len(name) + 1:line.rfind(")")]
        for param in split_top(params):
            head, eq, default = param.partition("=")
            if eq:
                defaults.setdefault(head.split(":")[0].strip(), default.strip())
    return defaults


def literal(text):
    """The default as stub text when it is a plain literal, else None."""
    try:
        value = ast.literal_eval(text)
    except (ValueError, SyntaxError):
        return None
    if isinstance(value, (bool, int, float, str, type(None))) and len(text) < 40:
        return repr(value)
    return None


def lookup(table, *keys):
    """The first key of keys found in table."""
    for key in keys:
        if key in table:
            return table[key]
    return None


def valid_type(text):
    """Whether text parses as a type expression without element sizes (float[3])."""
    try:
        ast.parse(text, mode="eval")
    except SyntaxError:
        return False
    return True


def fix_param(param, cls, func, defaults):
    """One parameter of a def line, typed and given its default."""
    if param.startswith("*") or param == "self":
        return param
    head, eq, default = param.partition(" = ")
    name, _, annotation = head.partition(": ")
    if annotation in UNTYPED or not annotation:
        annotation = lookup(stub_types.PARAMETERS, f"{cls}.{func}.{name}", f"{func}.{name}", name) or "Any"
    if eq and default == "..." and name in defaults:
        default = literal(defaults[name]) or default
    if func in ("__eq__", "__ne__"):
        annotation = "object"
    if default == "None" and not annotation.startswith(("Optional[", "Any")):
        annotation = f"Optional[{annotation}]"
    return f"{name}: {annotation}" + (f" = {default}" if eq else "")


DEF_LINE = re.compile(r"^(\s*)def (\w+)\((.*)\) -> (.+): \.\.\.$")
ATTR_LINE = re.compile(r"^(\s+)(\w+): (.+?)( = \.\.\.)?$")


def merge_false_overloads(lines, module):
    """Keeps one def where stubgen took extra signature lines of a docstring for overloads.

    Only pybind11's "Overloaded function." docstrings have true overloads. Otherwise the
    first signature that is not a bare (*args, **kwargs) wins.
    """
    out, cls, i = [], None, 0
    while i < len(lines):
        line = lines[i]
        class_match = re.match(r"^class (\w+)", line)
        if class_match:
            cls = class_match.group(1)
        elif line and not line[0].isspace():
            cls = None
        if line.strip() != "@overload":
            out.append(line)
            i += 1
            continue
        group = []
        while i + 1 < len(lines) and lines[i].strip() == "@overload":
            match = DEF_LINE.match(lines[i + 1])
            if not match or (group and match.group(2) != DEF_LINE.match(group[0]).group(2)):
                break
            group.append(lines[i + 1])
            i += 2
        name = DEF_LINE.match(group[0]).group(2)
        owner = getattr(module, cls) if cls else module
        doc = getattr(getattr(owner, name, None), "__doc__", None) or ""
        if "Overloaded function" in doc:
            for d in group:
                out += [d[:len(d) - len(d.lstrip())] + "@overload", d]
        else:
            plain = [d for d in group if "(self, *args, **kwargs)" not in d and "(*args, **kwargs)" not in d]
            out.append((plain or group)[0])
    return out


def fix_engine_stub(text, module):
    """Corrects the stubgen output of the extension module."""
    text = re.sub(r"\b(\w+)\[\d+\]", r"\1", text)
    out, cls = [], None
    for line in merge_false_overloads(text.splitlines(), module):
        if line.startswith("from typing import") and "overload" not in line:
            line = TYPING_IMPORT
        elif line == "from typing import overload":
            continue
        class_match = re.match(r"^class (\w+)", line)
        if class_match:
            cls = class_match.group(1)
        elif line and not line[0].isspace():
            cls = None
        def_match = DEF_LINE.match(line)
        attr_match = ATTR_LINE.match(line)
        if def_match:
            indent, func, params, ret = def_match.groups()
            owner = getattr(module, cls) if cls else module
            defaults = signature_defaults(getattr(getattr(owner, func, None), "__doc__", None), func)
            params = ", ".join(fix_param(p, cls, func, defaults) for p in split_top(params))
            if func == "__init__":
                ret = "None"
            elif ret in UNTYPED or not valid_type(ret):
                ret = lookup(stub_types.RETURNS, f"{cls}.{func}", func) or "Any"
            line = f"{indent}def {func}({params}) -> {ret}: ..."
        elif attr_match and cls:
            indent, name, annotation, default = attr_match.groups()
            if name == "__hash__":
                # pybind11 sets __hash__ to None beside __eq__, as Python itself does.
                line += "  # type: ignore[assignment]"
            elif annotation in UNTYPED or not valid_type(annotation):
                annotation = lookup(stub_types.ATTRIBUTES, f"{cls}.{name}", name) or "Any"
                line = f"{indent}{name}: {annotation}{default or ''}"
        out.append(line)
    return "\n".join(out) + "\n"


def ignore_overrides(root, stub_path):
    """Marks the operations whose bound signature differs from the base class's.

    A node class may bind an operation of its base with other parameters; the runtime
    allows it, so those lines carry an ignore instead of failing every user's check.
    """
    from mypy import api

    os.environ["MYPYPATH"] = root
    report, _, _ = api.run(["--no-incremental", "--cache-dir", os.devnull, "--no-error-summary",
                            "-p", PACKAGE])
    flagged = set()
    for line in report.splitlines():
        match = re.match(r"^(.*?):(\d+): error: .*\[override\]$", line)
        if match and os.path.abspath(match.group(1)) == stub_path:
            flagged.add(int(match.group(2)))
    with open(stub_path, encoding="utf-8") as f:
        lines = f.read().splitlines()
    for number in flagged:
        lines[number - 1] += "  # type: ignore[override]"
    with open(stub_path, "w", encoding="utf-8") as f:
        f.write("\n".join(lines) + "\n")


def package_stub(module):
    """__init__.pyi: everything of the extension plus the live globals with their types."""
    lines = ['"""Type stubs of Vorn3DGameEngine (generated at build time)."""',
             "from typing import Any", "",
             "from ._engine import *",
             "from ._engine import " + ", ".join(sorted(set(stub_types.GLOBALS.values()) - {"int", "bool", "float"})),
             "", "# Module globals, live in the engine both ways."]
    for name in module._global_names():
        lines.append(f"{name}: {stub_types.GLOBALS.get(name, 'Any')}")
    return "\n".join(lines) + "\n"


def main(argv):
    """Generates and writes the stubs; returns the exit status."""
    if len(argv) != 2:
        print("usage: make_stubs.py PACKAGE_ROOT", file=sys.stderr)
        return 2
    root = os.path.abspath(argv[1])
    sys.path.insert(0, root)
    engine = importlib.import_module(f"{PACKAGE}._engine")
    from mypy.stubgen import main as stubgen

    with tempfile.TemporaryDirectory() as tmp:
        stubgen(["-q", "-m", f"{PACKAGE}._engine", "-o", tmp])
        with open(os.path.join(tmp, PACKAGE, "_engine.pyi"), encoding="utf-8") as f:
            raw = f.read()
    package_dir = os.path.join(root, PACKAGE)
    outputs = {"_engine.pyi": fix_engine_stub(raw, engine), "__init__.pyi": package_stub(engine), "py.typed": ""}
    for name, content in outputs.items():
        with open(os.path.join(package_dir, name), "w", encoding="utf-8") as f:
            f.write(content)
    ignore_overrides(root, os.path.join(package_dir, "_engine.pyi"))
    return 0


if __name__ == "__main__":
    sys.exit(main(sys.argv))
