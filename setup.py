"""Builds Vorn3DGameEngine with CMake and Ninja for pip.

    python3 -m venv --system-site-packages env && env/bin/pip install --no-build-isolation .

The CMake build assembles the whole package in <build>/python/Vorn3DGameEngine: the
extension _engine, the Python files, the type stubs with py.typed and the
demonstration's Resources. This script builds those targets and copies that folder into
the wheel.

    VORN_CMAKE_BUILD_DIR  an existing CMake build folder to reuse (built, not configured
                          again); by default a fresh temporary folder is configured
    VORN_CMAKE_ARGS       more arguments for that configure step
    CMAKE_BUILD_PARALLEL_LEVEL  parallel jobs, as for any cmake --build
"""
import os
import re
import shlex
import shutil
import subprocess
import sys
import tempfile

from setuptools import Extension, setup
from setuptools.command.build_ext import build_ext

ROOT = os.path.dirname(os.path.abspath(__file__))
PACKAGE = "Vorn3DGameEngine"
TARGETS = ["_engine", "vorn_python_files", "vorn_python_stubs", "vorn_package_resources"]


def project_version():
    """The version given in the top CMakeLists.txt, the one source of it."""
    with open(os.path.join(ROOT, "CMakeLists.txt"), encoding="utf-8") as f:
        match = re.search(r"project\(Vorn3D VERSION ([0-9.]+)", f.read())
    if not match:
        raise RuntimeError("CMakeLists.txt: no project(Vorn3D VERSION x.y.z)")
    return match.group(1)


class CMakeBuild(build_ext):
    """Builds the package with CMake and copies it next to the other built files."""

    def build_extension(self, ext):
        """Builds in VORN_CMAKE_BUILD_DIR, or configures a fresh temporary folder first."""
        reuse = os.environ.get("VORN_CMAKE_BUILD_DIR")
        if reuse:
            if not os.path.isfile(os.path.join(reuse, "CMakeCache.txt")):
                raise RuntimeError(f"VORN_CMAKE_BUILD_DIR={reuse}: not a configured CMake build folder")
            self.build_package(os.path.abspath(reuse), ext)
            return
        with tempfile.TemporaryDirectory(prefix="vorn-cmake-") as build_dir:
            subprocess.check_call([
                "cmake", "-S", ROOT, "-B", build_dir, "-G", "Ninja",
                "-DCMAKE_BUILD_TYPE=Release",
                f"-DPython3_EXECUTABLE={sys.executable}",
                "-DVORN_BUILD_TESTS=OFF", "-DVORN_BUILD_BENCH=OFF",
                *shlex.split(os.environ.get("VORN_CMAKE_ARGS", "")),
            ])
            self.build_package(build_dir, ext)

    def build_package(self, build_dir, ext):
        """Builds the package's targets in build_dir and copies the package folder."""
        subprocess.check_call(["cmake", "--build", build_dir, "--target", *TARGETS])
        source = os.path.join(build_dir, "python", PACKAGE)
        extension = os.path.basename(self.get_ext_fullpath(ext.name))
        if not os.path.isfile(os.path.join(source, extension)):
            raise RuntimeError(f"{source}: no {extension}; was the build configured for {sys.executable}?")
        # The CMake folder is the whole package: files left from an earlier build go.
        destination = os.path.dirname(self.get_ext_fullpath(ext.name))
        shutil.rmtree(destination, ignore_errors=True)
        shutil.copytree(source, destination, dirs_exist_ok=True,
                        ignore=shutil.ignore_patterns("__pycache__", "*.pyc"))


setup(
    version=project_version(),
    packages=[PACKAGE],
    package_dir={"": "python"},
    ext_modules=[Extension(f"{PACKAGE}._engine", sources=[])],
    cmdclass={"build_ext": CMakeBuild},
    options={"build": {"build_base": "build-pip"}},
    zip_safe=False,
)
