"""The gallery in a real window: shows its captions at two scales and ends without a message. Its
pictures are kept for a person to see."""

import os
import subprocess

import desk

BACKGROUND = (31, 33, 38)


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


def main():
    for scale, end in ((1, lambda shown: shown.key("Escape")), (2, lambda shown: shown.click(440, 244))):
        shown = Gallery(scale)
        try:
            desk.keep_picture(f"gallery-at-{scale}")
            assert all(shown.ink(26, y, 200, 28) for y in (24, 68, 112)), "a caption is missing"
            end(shown)
            assert shown.await_end() == ""
        finally:
            shown.kill()


if __name__ == "__main__":
    main()
