"""python3 -m Vorn3DGameEngine [--frames N] [--screenshot out.png]: the demonstration.

Opens an 800 by 600 window with a lit scene; the left button rotates the world or drags
the gizmo, the right button pans, the wheel zooms. Resources come from ./Resources.
"""
import sys

import Vorn3DGameEngine as V

if __name__ == "__main__":
    sys.exit(V.RunDemo(sys.argv[1:]))
