"""The gallery in a real window: looks at it, uses each of its parts, and ends it in every way there
is, without a message. Everything waits on a condition; its pictures are kept for a person to see."""

import contextlib
import os
import pathlib
import re
import signal
import subprocess
import sys
import time

sys.path.append(str(pathlib.Path(__file__).parent.parent / "e2e"))
from picture import Picture  # noqa: E402

PROGRAM = pathlib.Path(os.environ["BUILD_FOLDER"]) / "examples/gallery"
ARTEFACTS = pathlib.Path(os.environ["ARTEFACT_FOLDER"])
BACKGROUND = (31, 33, 38)
PAPER = (255, 255, 255)
PATIENCE = 20  # seconds


def until(what, condition):
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


class Gallery:
    """The running gallery. Places are in points of its window."""

    def __init__(self, scale):
        self.scale = scale
        self._process = subprocess.Popen([PROGRAM], env=dict(os.environ, QT_SCALE_FACTOR=str(scale)),
                                         stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True)
        until("the window is shown and painted", self._is_painted)
        until("the window has the focus", lambda: xdotool("getwindowfocus") == [self.window])

    def _is_painted(self):
        found = xdotool("search", "--onlyvisible", "--pid", self._process.pid)
        self.window = found[0] if found else None
        return found and self.ink(390, 232, 100, 24)

    def windows(self):
        return xdotool("search", "--onlyvisible", "--pid", self._process.pid)

    def _pixels(self, *points):
        return [round(point * self.scale) for point in points]

    def _origin(self):
        told = subprocess.run(["xwininfo", "-id", self.window], check=True, capture_output=True,
                              text=True).stdout
        return [int(re.search(f"Absolute upper-left {axis}: +(-?[0-9]+)", told)[1]) for axis in "XY"]

    def ink(self, x, y, width, height, background=BACKGROUND):
        """Where the ink stands in a rectangle, in points: left, top, right and bottom."""
        left, top = self._origin()
        px, py, pwidth, pheight = self._pixels(x, y, width, height)
        ink = Picture.of_screen().ink(left + px, top + py, pwidth, pheight, background)
        return ink and [(edge - origin) / self.scale
                        for edge, origin in zip(ink, (left, top, left, top))]

    def region(self, x, y, width, height):
        left, top = self._origin()
        px, py, pwidth, pheight = self._pixels(x, y, width, height)
        return Picture.of_screen().region(left + px, top + py, pwidth, pheight)

    def click(self, x, y):
        xdotool("mousemove", "--window", self.window, *self._pixels(x, y), "click", 1)

    def changes(self, what, action, x, y, width, height):
        """Does something and waits until a rectangle of the window looks different."""
        before = self.region(x, y, width, height)
        action()
        until(what, lambda: self.region(x, y, width, height) != before)

    def keep_picture(self, name):
        ARTEFACTS.mkdir(parents=True, exist_ok=True)
        Picture.of_screen().save(ARTEFACTS / f"gallery-{name}-at-{self.scale}.png")

    def await_end(self):
        until("the program has ended", lambda: self._process.poll() is not None)
        printed = self._process.stdout.read()
        assert self._process.returncode == 0 and printed == "", (
            f"exit code {self._process.returncode}, printed {printed!r}")

    def terminate(self):
        self._process.send_signal(signal.SIGTERM)

    def kill(self):
        self._process.kill()
        self._process.wait()
        self._process.stdout.close()


@contextlib.contextmanager
def gallery(scale=1):
    running = Gallery(scale)
    try:
        yield running
    finally:
        running.kill()


def near(value, expected, tolerance=2):
    return abs(value - expected) <= tolerance


def looks_right(shown):
    """Captions stand in the middle of their frames' height, at the side that they are aligned to."""
    shown.keep_picture("window")
    sides = []
    for y in (20, 64, 108):
        ink = shown.ink(26, y + 4, 200, 28)
        assert ink and near((ink[1] + ink[3]) / 2, y + 17, 4), f"caption at {y}: {ink}"
        sides.append((ink[0], ink[2]))
    assert near(sides[0][0], 29) and near(sum(sides[1]) / 2, 126, 3) and near(sides[2][1], 223), sides
    number = shown.ink(272, 192, 96, 20, PAPER)
    assert number and near((number[0] + number[2]) / 2, 320, 3), f"number: {number}"
    assert number[1] > 193 and number[3] < 211, f"the number is clipped: {number}"
    assert near((number[1] + number[3]) / 2, 202, 2), f"number: {number}"
    for y in (20, 100):
        ink = shown.ink(268, y, 245, 60)
        assert ink and near(ink[0], 270, 3) and ink[2] <= 502, f"text at {y}: {ink}"


def can_be_used(shown):
    shown.changes("the field has the focus", lambda: shown.click(320, 202), 272, 192, 96, 20)
    xdotool("key", "ctrl+a")
    shown.changes("the field shows what was typed", lambda: xdotool("type", "a4"), 272, 192, 96, 20)
    narrow = shown.ink(272, 192, 96, 20, PAPER)
    assert narrow[2] - narrow[0] < 14, f"more than one digit: {narrow}"
    shown.changes("Return ends the edit and the window says what the field holds",
                  lambda: xdotool("key", "Return"), 20, 232, 230, 24)

    shown.click(100, 200)
    until("the menu is shown", lambda: len(shown.windows()) > 1)
    shown.keep_picture("menu")
    xdotool("key", "Down", "Return")
    until("the menu is gone", lambda: shown.windows() == [shown.window])

    shown.click(320, 244)
    until("the alert is shown",
          lambda: len(shown.windows()) > 1 and xdotool("getwindowfocus") != [shown.window])
    shown.keep_picture("alert")
    shown.changes("the window says what was answered", lambda: xdotool("key", "Escape"), 20, 232, 230, 24)
    until("the window has the focus again", lambda: xdotool("getwindowfocus") == [shown.window])


ENDS = {
    "Escape": lambda shown: xdotool("key", "Escape"),
    "the window manager": lambda shown: xdotool("key", "alt+F4"),
    "SIGTERM": lambda shown: shown.terminate(),
    "its button": lambda shown: shown.click(440, 244),
}


def main():
    for scale in (1, 2):
        with gallery(scale) as shown:
            looks_right(shown)
            can_be_used(shown)
            shown.click(440, 244)
            shown.await_end()
    for name, end in ENDS.items():
        with gallery() as shown:
            end(shown)
            shown.await_end()
        print(f"ended by {name}")


if __name__ == "__main__":
    main()
