"""API fuzz: no call of the module, with any arguments, kills the interpreter.

Every public function, class, method, property, static method and module global (found by
introspection in api_fuzz_catalogue) is called with hostile arguments in child processes
(api_fuzz_child), in several states of the engine. A Python exception is a fine answer;
a signal, an abort, an exit the script did not ask for or a hang fails the test, naming the
exact call. After a crash the child is restarted at the next operation, so one run reports
every crashing operation. Seeded: the same calls run every time. The operations left out
by design, each with its reason, are api_fuzz_catalogue.SKIPPED; the package's __main__
(the demonstration) is never imported, and the module has no exit-like operation."""
import os
import subprocess
import sys
import time

import pytest

HERE = os.path.dirname(os.path.abspath(__file__))
SEED = 20240611
CALLS = 120  # calls per operation and state: bounds the run to about a minute
STALL = 20.0  # seconds without a new call before the child counts as hung

# States of the engine the operations run in:
#   nowin     no window, no GL context, no resource manager
#   gl        window + PyGameResManager + Vorn_3Dcene + InitGL, objects built directly
#   factories nodes made by the scene's Create* factories
#   detached  those nodes after leaving every registry and parent
#   dropped   those nodes after their scene was dropped
STATES = ["nowin", "gl", "factories", "detached", "dropped"]


def _progress_lines(path):
    try:
        with open(path, encoding="utf-8", errors="replace") as f:
            return f.read().splitlines()
    except FileNotFoundError:
        return []


def _run_child(state, start, progress, resdir):
    """Runs one child from operation `start`; returns (lines, returncode or 'hang')."""
    env = dict(os.environ, PYTHONPATH=os.pathsep.join(
        [HERE] + [os.path.abspath(p) for p in os.environ.get("PYTHONPATH", "").split(os.pathsep) if p]),
        SDL_AUDIODRIVER="dummy", PYTHONFAULTHANDLER="1")
    if os.path.exists(progress):
        os.remove(progress)
    with open(os.devnull, "wb") as devnull:
        child = subprocess.Popen(
            [sys.executable, os.path.join(HERE, "api_fuzz_child.py"), state, str(SEED), str(CALLS),
             str(start), progress, resdir],
            cwd=resdir, env=env, stdout=devnull, stderr=devnull)
        size, seen = -1, time.monotonic()
        while child.poll() is None:
            time.sleep(0.05)
            now_size = os.path.getsize(progress) if os.path.exists(progress) else 0
            if now_size != size:
                size, seen = now_size, time.monotonic()
            elif time.monotonic() - seen > STALL:
                child.kill()
                child.wait()
                return _progress_lines(progress), "hang"
    return _progress_lines(progress), child.returncode


def fuzz_state(state, tmp_path):
    """Runs every operation in `state`; returns {operation: (outcome, call)} and odd answers."""
    progress = str(tmp_path / f"{state}.progress")
    resdir = tmp_path / "res"
    resdir.mkdir(exist_ok=True)
    crashes, wrong, start = {}, [], 0
    while True:
        lines, rc = _run_child(state, start, progress, str(resdir))
        wrong += [line for line in lines if line.startswith("WRONG\t")]
        calls = [line for line in lines if line.split("\t", 1)[0].lstrip("-").isdigit()]
        done = bool(lines) and lines[-1] == "DONE"
        if done and rc == 0:
            return crashes, wrong
        if done:
            crashes["<interpreter exit>"] = (f"exit status {rc}", "interpreter exit after the run")
            return crashes, wrong
        if not calls:
            crashes["<state set-up>"] = (f"exit status {rc}", f"building state {state}")
            return crashes, wrong
        index, op, call = calls[-1].split("\t", 2)
        outcome = "hang" if rc == "hang" else f"signal {-rc}" if rc < 0 else f"exit status {rc}"
        crashes[op] = (outcome, call)
        start = int(index) + 1


@pytest.mark.parametrize("state", STATES)
def test_no_call_kills_the_interpreter(state, tmp_path):
    if state != "nowin" and not os.environ.get("DISPLAY"):
        if os.environ.get("VORN_REQUIRE_GL"):
            pytest.fail("no DISPLAY although VORN_REQUIRE_GL is set")
        pytest.skip("no display for an OpenGL context")
    crashes, wrong = fuzz_state(state, tmp_path)
    assert not crashes, f"operations that kill the interpreter in state {state}:\n" + "\n".join(
        f"  {op}: {outcome} at {call}" for op, (outcome, call) in sorted(crashes.items()))
    assert not wrong, "\n".join(wrong)
