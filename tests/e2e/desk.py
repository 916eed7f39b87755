"""Someone at the desk: starts the program on a display, looks, clicks and types.

Everything waits on a condition; nothing waits a fixed time.
"""

import contextlib
import json
import os
import pathlib
import re
import signal
import sqlite3
import subprocess
import tempfile
import time

from picture import Picture

BUILD = pathlib.Path(os.environ["BUILD_FOLDER"])
ARTEFACTS = pathlib.Path(os.environ["ARTEFACT_FOLDER"])
PROGRAM = BUILD / "app/sorvex-mackie-setup"
MIDISETUP = BUILD / "tools/midisetup/midisetup"
TITLE = "Velt Sorvex Mackie Control Surface Settings"
GROUP_KEY = "com_velt_sorvex_control_surface_groupid"
POSITION_KEY = "com_velt_sorvex_control_surface_grouppos"
BACKGROUND = (25, 29, 29)
# Where the controls are clicked, in window coordinates.
SURFACES, GROUP, POSITION = (300, 32), (190, 92), (190, 132)
HELP, CANCEL, OK = (300, 171), (400, 171), (500, 171)
PATIENCE = int(os.environ.get("PATIENCE", "20"))  # seconds, for a machine that has other things to do
UNDER = os.environ.get("RUN_UNDER", "").split()  # a command that the program is run by, as valgrind


def until(what, condition):
    """Waits until `condition` answers something true, and answers that."""
    end = time.monotonic() + PATIENCE
    while time.monotonic() < end:
        answer = condition()
        if answer:
            return answer
        time.sleep(0.02)
    raise AssertionError(f"never came true: {what}")


def xdotool(*arguments):
    done = subprocess.run(["xdotool", *map(str, arguments)], capture_output=True, text=True)
    return done.stdout.split() if done.returncode == 0 else []


def set_text_scale(scale):
    """For the programs that start from now on, as the settings of a desktop do it."""
    subprocess.run(["xprop", "-root", "-format", "RESOURCE_MANAGER", "8s", "-set", "RESOURCE_MANAGER",
                    f"Xft.dpi:\t{96 * scale:.0f}"], check=True)


class Studio:
    """A database of its own, in a folder of its own."""

    def __init__(self, with_surfaces=True):
        self._folder = tempfile.TemporaryDirectory(prefix="kestrin-e2e-")
        self.folder = pathlib.Path(self._folder.name)
        self.database = self.folder / "objects.sqlite3"
        self.environment = dict(os.environ, KESTRIN_MIDI_DATABASE=str(self.database))
        self._record_opened_documents()
        if with_surfaces:
            self.midisetup("demo")

    def close(self):
        self._folder.cleanup()

    def _record_opened_documents(self):
        """Puts a recorder in the place of the desktop's opener."""
        self._opened = self.folder / "opened"
        opener = self.folder / "bin/xdg-open"
        opener.parent.mkdir()
        opener.write_text(f'#!/bin/sh\nprintf "%s\\n" "$*" >>"{self._opened}"\n')
        opener.chmod(0o755)
        self.environment["PATH"] = f"{opener.parent}:{self.environment['PATH']}"

    def opened_documents(self):
        return self._opened.read_text().splitlines() if self._opened.exists() else []

    def midisetup(self, *arguments):
        return subprocess.run([MIDISETUP, *arguments], env=self.environment, check=True,
                              capture_output=True, text=True).stdout

    def surfaces(self):
        return json.loads(self.midisetup("surfaces", "--json"))

    @contextlib.contextmanager
    def locked(self):
        """Another program keeps the database from being written."""
        other = sqlite3.connect(self.database, isolation_level=None)
        other.execute("BEGIN IMMEDIATE")
        yield
        other.close()

    def settings(self):
        """(group, position) of every surface, in the program's order, as stored."""
        return [tuple(int(self.midisetup("get", str(surface["uniqueID"]), key))
                      for key in (GROUP_KEY, POSITION_KEY)) for surface in self.surfaces()]


class Program:
    """The running program and its window."""

    def __init__(self, studio, awaits_window=True, scale=1):
        self.scale = scale  # pixels of the screen to one of window coordinates
        self._process = subprocess.Popen([*UNDER, PROGRAM], env=studio.environment, stdout=subprocess.PIPE,
                                         stderr=subprocess.STDOUT, text=True)
        if awaits_window:
            self.await_window()

    @property
    def process(self):
        """Its number."""
        return self._process.pid

    # Windows

    def windows(self):
        return xdotool("search", "--onlyvisible", "--pid", self._process.pid)

    def await_window(self):
        until("the settings window is shown and painted", self._find_window)
        until("the window has the focus", lambda: xdotool("getwindowfocus") == [self.window])

    def _find_window(self):
        found = xdotool("search", "--onlyvisible", "--name", f"^{TITLE}$")
        mine = [window for window in found if window in self.windows()]
        if not mine:
            return False
        self.window = mine[0]
        # The Ok button is the last thing painted.
        return self.ink(450, 160, 100, 22) is not None

    def await_alert(self):
        """Waits for a second window, an alert, that has the focus."""
        def alert():
            focus = xdotool("getwindowfocus")
            return focus and focus[0] != getattr(self, "window", None) and focus[0] in self.windows()
        until("an alert is shown", alert)

    def await_no_alert(self):
        until("the settings window has the focus again",
              lambda: self.windows() == [self.window] and xdotool("getwindowfocus") == [self.window])

    # Looking

    def origin(self):
        told = subprocess.run(["xwininfo", "-id", self.window], check=True, capture_output=True,
                              text=True).stdout
        return tuple(int(re.search(f"Absolute upper-left {axis}: +(-?[0-9]+)", told)[1]) for axis in "XY")

    def ink(self, x, y, width, height, background=BACKGROUND):
        """Where the ink stands in a rectangle of the window, in window coordinates."""
        left, top = self.origin()
        place = [round(self.scale * part) for part in (x, y, width, height)]
        ink = Picture.of_screen().ink(left + place[0], top + place[1], *place[2:], background)
        return ink and tuple((edge - start) / self.scale
                             for edge, start in zip(ink, (left, top, left, top)))

    def region(self, x, y, width, height):
        left, top = self.origin()
        return Picture.of_screen().region(left + x, top + y, width, height)

    def shown_surface(self):
        return self.region(150, 20, 360, 25)

    # Doing

    def click(self, x, y):
        xdotool("mousemove", "--window", self.window, x * self.scale, y * self.scale, "click", 1)

    def key(self, *keys):
        xdotool("key", *keys)

    def type(self, text):
        xdotool("type", "--delay", 5, text)

    def set_number(self, box, text):
        """Clicks a box and types over what it holds."""
        around = (box[0] - 38, box[1] - 12, 76, 24)
        before = self.region(*around)
        self.click(*box)
        until("the box shows that it has the focus", lambda: self.region(*around) != before)
        self.key("ctrl+a")
        self.type(text)

    # The end

    def is_running(self):
        return self._process.poll() is None

    def await_end(self):
        """Waits until the program has ended well; answers what it printed."""
        until("the program has ended", lambda: not self.is_running())
        printed = self._process.stdout.read()
        assert self._process.returncode == 0, f"exit code {self._process.returncode}: {printed}"
        return printed

    def terminate(self):
        self._process.send_signal(signal.SIGTERM)

    def kill(self):
        if self.is_running():
            self._process.kill()
        self._process.wait()
        self._process.stdout.close()


def keep_picture(name):
    ARTEFACTS.mkdir(parents=True, exist_ok=True)
    subprocess.run(["import", "-silent", "-window", "root", ARTEFACTS / f"{name}.png"], check=True)
