"""python3 -m Vorn3DGameEngine [--frames N] [--screenshot out.png] [--resources DIR]: the demonstration.

Opens an 800 by 600 window with a lit scene; the left button rotates the world or drags
the gizmo, the right button pans, the wheel zooms. Resources come from ./Resources; when
the working folder has none, the resources installed with the package are used.
"""
import os
import sys

import Vorn3DGameEngine as V


def demo_arguments(argv, cwd=None):
    """The demonstration's arguments, with --resources added when ./Resources is missing.

    An explicit --resources wins; otherwise ./Resources under cwd (the working folder by
    default) is used if it exists, then the Resources folder shipped inside the package.
    """
    args = list(argv)
    if "--resources" in args:
        return args
    if os.path.isdir(os.path.join(cwd or os.getcwd(), "Resources")):
        return args
    packaged = os.path.join(os.path.dirname(os.path.abspath(__file__)), "Resources")
    if os.path.isdir(packaged):
        args += ["--resources", packaged]
    return args


if __name__ == "__main__":
    sys.exit(V.RunDemo(demo_arguments(sys.argv[1:])))
