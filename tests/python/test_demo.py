"""The demonstration as the README runs it: our tool writes its resources, and the demo
draws the landscape (terrain, pond, grass) with the two walkers (one idle, one walking)
and saves a screenshot."""
import os
import pathlib
import subprocess
import sys

import pytest

import Vorn3DGameEngine as V

PACKAGE_DIR = pathlib.Path(V.__file__).resolve().parents[1]
TOOL = PACKAGE_DIR.parent / "tools" / "make_demo_assets"


@pytest.mark.skipif(not TOOL.exists(), reason="the demo tool is built with the engine")
def test_demo_draws_the_landscape_and_the_walkers(gl_context, tmp_path):
    subprocess.run([str(TOOL), str(tmp_path / "Resources")], check=True)
    shot = tmp_path / "shot.png"
    code = f"import Vorn3DGameEngine as V; raise SystemExit(V.RunDemo(['--frames', '15', '--screenshot', {str(shot)!r}]))"
    result = subprocess.run([sys.executable, "-c", code], cwd=tmp_path, capture_output=True, text=True, timeout=120,
                            env={**os.environ, "PYTHONPATH": str(PACKAGE_DIR)})
    assert result.returncode == 0, result.stderr[-2000:]
    # Both walkers loaded and started their actions.
    assert result.stdout.count("walker.glb  include  2  animation.") == 2
    assert "Load Failed." not in result.stdout  # the FBX walker loaded too
    assert "Duration:1.0000" in result.stdout and "Duration:2.0000" in result.stdout
    # The landscape loaded without a missing texture.
    assert "Can't find" not in result.stdout and "Lost" not in result.stdout
    image, width, height, _ = V.PyGameResManager(str(tmp_path)).LoadImageFile(str(shot))
    assert (width, height) == (V.SCREEN_WIDTH, V.SCREEN_HEIGHT)
    # The floor is brick red; the walkers' shirts are the only blue in the picture.
    shirt = sum(1 for y in range(0, height, 2) for x in range(0, width, 2)
                if (lambda p: p[2] > 150 and p[2] > p[0] + 80)(image.getpixel((x, y))))
    assert shirt > 100
