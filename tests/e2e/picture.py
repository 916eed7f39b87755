"""Pictures of the screen, and where the ink stands in them. Coordinates are pixels of the screen."""

import subprocess


class Picture:
    def __init__(self, width, pixels):
        self.width, self._pixels = width, pixels

    @classmethod
    def of_screen(cls):
        data = subprocess.run(["import", "-silent", "-window", "root", "-depth", "8", "ppm:-"],
                              check=True, capture_output=True).stdout
        magic, size, depth, pixels = data.split(b"\n", 3)
        assert magic == b"P6" and depth == b"255", "an unexpected picture format"
        return cls(int(size.split()[0]), pixels)

    def region(self, x, y, width, height):
        """The bytes of a rectangle, for comparing two pictures."""
        return b"".join(self._pixels[3 * (row * self.width + x):3 * (row * self.width + x + width)]
                        for row in range(y, y + height))

    def ink(self, x, y, width, height, background):
        """The smallest (left, top, right, bottom), right and bottom outside, around all pixels of
        the rectangle that differ clearly from `background`; None when there are none."""
        def is_ink(column, row):
            return any(abs(a - b) > 60 for a, b in zip(self.region(column, row, 1, 1), background))
        spots = [(column, row) for row in range(y, y + height) for column in range(x, x + width)
                 if is_ink(column, row)]
        if not spots:
            return None
        columns, rows = zip(*spots)
        return min(columns), min(rows), max(columns) + 1, max(rows) + 1
