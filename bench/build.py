# SPDX-License-Identifier: MIT
"""What the scripts of this folder share: the build that they measure, and a display of their own."""

import os
import pathlib
import subprocess
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent
BUILD = ROOT / "build" / "bench"
ON_DISPLAY = "KESTRIN_BENCH_ON_DISPLAY"


def build(kinds, *targets):
    """Builds the targets, for which packages of these kinds are needed besides those of run and bench."""
    subprocess.run([ROOT / "scripts/install-packages", "run", "bench", *kinds], check=True)
    subprocess.run(["cmake", "--preset", "release", "-B", BUILD, "-DKESTRIN_BENCH=ON"],
                   cwd=ROOT, check=True, stdout=subprocess.DEVNULL)
    subprocess.run(["cmake", "--build", BUILD, "--target", *targets], cwd=ROOT, check=True)


def go_on_display(script, *options):
    """Starts the script again on a display of its own, unless it is there, with options for the display."""
    if ON_DISPLAY in os.environ:
        return
    os.environ[ON_DISPLAY] = "1"
    command = [ROOT / "tests/support/with-display", *options, sys.executable, "-B", script]
    os.execv(command[0], [str(part) for part in command] + sys.argv[1:] + ["--no-build"])
