"""The package as pip installs it: into a fresh virtual environment, from the CMake build
of this tree (reused through VORN_CMAKE_BUILD_DIR), then used from another folder with
no PYTHONPATH: the import, and the demonstration drawing with the resources shipped
inside the package."""
import os
import pathlib
import subprocess
import sys

import pytest

import Vorn3DGameEngine as V

from conftest import SANITIZED

BUILD_DIR = pathlib.Path(V.__file__).resolve().parents[2]
SOURCE_DIR = pathlib.Path(__file__).resolve().parents[2]


def run(args, **kwargs):
    """Runs a command, failing the test with its output when it fails."""
    result = subprocess.run(args, capture_output=True, text=True, timeout=300, **kwargs)
    assert result.returncode == 0, f"{args}\n{result.stdout[-3000:]}\n{result.stderr[-3000:]}"
    return result


@pytest.mark.skipif(SANITIZED, reason="the installed package is not built with the sanitizer runtime")
@pytest.mark.skipif(not (BUILD_DIR / "CMakeCache.txt").exists(), reason="needs the CMake build folder")
def test_pip_install_then_import_and_demo_from_another_folder(gl_context, tmp_path):
    # Debian's pip, setuptools and mypy come from the system site: nothing is downloaded.
    env_dir = tmp_path / "env"
    run([sys.executable, "-m", "venv", "--system-site-packages", "--without-pip", str(env_dir)])
    python = str(env_dir / "bin" / "python3")
    clean_env = {k: v for k, v in os.environ.items() if k != "PYTHONPATH"}
    run([python, "-m", "pip", "install", "--no-build-isolation", "--no-index", "--no-deps", "-q", str(SOURCE_DIR)],
        cwd=SOURCE_DIR, env={**clean_env, "VORN_CMAKE_BUILD_DIR": str(BUILD_DIR)})

    elsewhere = tmp_path / "elsewhere"
    elsewhere.mkdir()
    where = run([python, "-c", "import Vorn3DGameEngine as V; print(V.__file__); print(V.SCREEN_WIDTH)"],
                cwd=elsewhere, env=clean_env).stdout.split()
    installed = pathlib.Path(where[0]).parent
    assert installed.is_relative_to(env_dir) and where[1] == "800"
    for shipped in ("_engine.pyi", "__init__.pyi", "py.typed", "Resources/wall.jpg", "Resources/walker.glb",
                    "Resources/walker.fbx", "Resources/Terrain/island.hei"):
        assert (installed / shipped).is_file(), shipped

    # The working folder has no Resources: the demo must take the package's own.
    shot = elsewhere / "shot.png"
    demo = run([python, "-m", "Vorn3DGameEngine", "--frames", "5", "--screenshot", str(shot)],
               cwd=elsewhere, env=clean_env)
    assert "Can't find" not in demo.stdout and "Load Failed." not in demo.stdout
    assert demo.stdout.count("walker.glb  include  2  animation.") == 2
    image, width, height, _ = V.PyGameResManager(str(tmp_path)).LoadImageFile(str(shot))
    assert (width, height) == (800, 600)
    # Without its textures the landscape is black; with them grass green fills most of it.
    samples = [image.getpixel((x, y)) for y in range(60, height, 20) for x in range(0, width, 20)]
    green = sum(1 for r, g, b, *_ in samples if g > r + 15 and g > b + 15 and g > 60)
    assert green > len(samples) // 3, f"{green} of {len(samples)} samples are grass"
