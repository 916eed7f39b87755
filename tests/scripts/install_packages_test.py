#!/usr/bin/env python3
"""scripts/install-packages as a user without root meets it, with stand-ins for the system's tools.

    install_packages_test.py ROOT
"""

import os
import pathlib
import pty
import shutil
import subprocess
import sys
import tempfile
import unittest

ROOT = pathlib.Path(sys.argv.pop())


class InstallPackages(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.tree = pathlib.Path(folder.name)
        self.calls = self.tree / "calls"
        self.calls.touch()
        for name in ("scripts", "bin"):
            (self.tree / name).mkdir()
        shutil.copy(ROOT / "scripts/install-packages", self.tree / "scripts")
        (self.tree / "packages.txt").write_text("there run\nmissing run\n")
        self.stand_in("dpkg-query", 'case "$*" in *there) echo installed ;; esac')
        self.stand_in("apt-get", "")
        self.stand_in("sudo", f'echo "$*" >>"{self.calls}"')
        for path in (self.tree, *self.tree.rglob("*")):
            path.chmod(0o777)

    def stand_in(self, name, does):
        (self.tree / "bin" / name).write_text(f"#!/bin/sh\n{does}\n")

    def install(self, answer=None):
        """Runs it, in a terminal where there is an answer; answers its status and what it called."""
        terminal, stdin = pty.openpty() if answer is not None else (None, subprocess.DEVNULL)
        if answer is not None:
            os.write(terminal, answer.encode())
        environment = {"PATH": f"{self.tree}/bin:/usr/bin:/bin"}
        nobody = {"user": 65534, "group": 65534, "extra_groups": []} if os.geteuid() == 0 else {}
        done = subprocess.run([self.tree / "scripts/install-packages", "run"], stdin=stdin, timeout=60,
                              env=environment, capture_output=True, text=True, **nobody)
        return done.returncode, self.calls.read_text()

    def test_asks_in_a_terminal_before_it_uses_sudo(self):
        status, called = self.install("n\n")
        self.assertEqual((status, called), (1, ""))
        for answer in ("\n", "y\n", None):
            self.calls.write_text("")
            status, called = self.install(answer)
            self.assertEqual(status, 0)
            self.assertRegex(called, r"install .* missing\n$")


if __name__ == "__main__":
    unittest.main()
