"""The gallery in a real window: looks at it at two scales and ends it in every way there is,
without a message. Its pictures are kept for a person to see."""

import os
import subprocess

import desk

BACKGROUND = (31, 33, 38)
PAPER = (255, 255, 255)


class Gallery(desk.Program):
    """The running gallery. Places are in points of its window."""

    def __init__(self, scale):
        self.scale = scale
        self._process = subprocess.Popen([desk.BUILD / "examples/gallery"],
                                         env=dict(os.environ, QT_SCALE_FACTOR=str(scale)),
                                         stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True)
        self.await_window()

    def _find_window(self):
        found = self.windows()
        self.window = found[0] if found else None
        return found and self.ink(390, 232, 100, 24)

    def ink(self, x, y, width, height, background=BACKGROUND):
        return super().ink(x, y, width, height, background)


def assert_near(values, expected):
    assert all(abs(a - b) <= 4 for a, b in zip(values, expected)), f"{values}, not {expected}"


def looks_right(shown):
    """Captions stand in the middle of their frames' height, at the side that they are aligned to."""
    desk.keep_picture(f"gallery-at-{shown.scale}")
    captions = [shown.ink(26, y, 200, 28) for y in (24, 68, 112)]
    assert_near([(top + bottom) / 2 for _, top, _, bottom in captions], (37, 81, 125))
    assert_near((captions[0][0], sum(captions[1][::2]) / 2, captions[2][2]), (29, 126, 223))
    left, top, right, bottom = shown.ink(272, 192, 96, 20, PAPER)
    assert_near(((left + right) / 2, (top + bottom) / 2), (320, 202))
    assert top > 193 and bottom < 211, "the number is clipped"
    for y in (20, 100):
        text = shown.ink(268, y, 245, 60)
        assert 267 <= text[0] and text[2] <= 502, f"text at {y}: {text}"


def main():
    ends = ((1, lambda shown: shown.key("Escape")), (2, lambda shown: shown.key("alt+F4")),
            (1, lambda shown: shown.terminate()), (2, lambda shown: shown.click(440, 244)))
    for scale, end in ends:
        shown = Gallery(scale)
        try:
            looks_right(shown)
            end(shown)
            assert shown.await_end() == ""
        finally:
            shown.kill()


if __name__ == "__main__":
    main()
