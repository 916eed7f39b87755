"""The gallery in a real window: looks at it at two scales, types into it, and ends it in every way
there is, without a message. Its pictures are kept for a person to see."""

import contextlib
import os
import pathlib
import subprocess
import sys

sys.path.append(str(pathlib.Path(__file__).parent.parent / "e2e"))
import desk  # noqa: E402
from desk import until, xdotool  # noqa: E402

PROGRAM = desk.BUILD / "examples/gallery"
BACKGROUND = (31, 33, 38)
PAPER = (255, 255, 255)


class Gallery(desk.Program):
    """The running gallery. Places are in points of its window."""

    def __init__(self, scale):
        self.scale = scale
        self._process = subprocess.Popen([PROGRAM], env=dict(os.environ, QT_SCALE_FACTOR=str(scale)),
                                         stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True)
        self.await_window()

    def _find_window(self):
        found = self.windows()
        self.window = found[0] if found else None
        return found and self.ink(390, 232, 100, 24)

    def ink(self, x, y, width, height, background=BACKGROUND):
        pixels = [round(point * self.scale) for point in (x, y, width, height)]
        ink = super().ink(*pixels, background)
        return ink and [edge / self.scale for edge in ink]

    def click(self, x, y):
        super().click(x * self.scale, y * self.scale)


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
    desk.keep_picture(f"gallery-at-{shown.scale}")
    captions = [shown.ink(26, y + 4, 200, 28) for y in (20, 64, 108)]
    for caption, middle in zip(captions, (37, 81, 125)):
        assert caption and near((caption[1] + caption[3]) / 2, middle, 4), captions
    left, center, right = captions
    assert near(left[0], 29) and near(sum(center[::2]) / 2, 126, 3) and near(right[2], 223), captions
    number = shown.ink(272, 192, 96, 20, PAPER)
    assert number and near(sum(number[::2]) / 2, 320, 3) and near(sum(number[1::2]) / 2, 202), number
    assert number[1] > 193 and number[3] < 211, f"the number is clipped: {number}"
    for y in (20, 100):
        text = shown.ink(268, y, 245, 60)
        assert text and near(text[0], 270, 3) and text[2] <= 502, f"text at {y}: {text}"


def takes_digits(shown):
    shown.click(320, 202)
    xdotool("key", "ctrl+a")
    xdotool("type", "a4")
    def one_digit():
        ink = shown.ink(272, 192, 96, 20, PAPER)
        return ink and 4 < ink[2] - ink[0] < 14
    until("the field holds one digit", one_digit)
    before = shown.ink(20, 232, 230, 24)
    xdotool("key", "Return")
    until("the window says what the field held", lambda: shown.ink(20, 232, 230, 24) != before)


ENDS = {
    "Escape": lambda shown: shown.key("Escape"),
    "the window manager": lambda shown: shown.key("alt+F4"),
    "SIGTERM": lambda shown: shown.terminate(),
    "its button": lambda shown: shown.click(440, 244),
}


def main():
    for scale in (1, 2):
        with gallery(scale) as shown:
            looks_right(shown)
            takes_digits(shown)
    for name, end in ENDS.items():
        with gallery() as shown:
            end(shown)
            printed = shown.await_end()
            assert printed == "", f"ended by {name}, it said {printed!r}"


if __name__ == "__main__":
    main()
