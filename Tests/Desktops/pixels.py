"""What a picture shows. Pure functions.

A picture is an array of rows of (red, green, blue) bytes. Rectangles are (x, y, width, height), y down, in the pixels
of the picture.
"""

import numpy

CELLS = 16  # of the counter: one bit each
BLACK = 2**CELLS - 1  # what the counter seems to be where everything is black
CELL_WIDTH = 1 / 80  # of the screen's width
CELL_HEIGHT = 1 / 40  # of the screen's height
COUNTER_LEFT = 0.5 - CELLS / 2 * CELL_WIDTH
INNER_COUNTER_TOP = 0.3  # of the screen's height: inside the covered area
OUTER_COUNTER_TOP = 0.9  # below it


def ink(picture):
    """Which pixels are ink: red, also where it is blended with what lies beneath, which has no red of its own."""
    red, green, blue = (picture[..., channel].astype(numpy.int16) for channel in range(3))
    return red - numpy.maximum(green, blue) > 40


def part(picture, rect):
    x, y, width, height = rect
    return picture[max(y, 0) : y + height, max(x, 0) : x + width]


def ink_inside(picture, rect):
    return int(ink(part(picture, rect)).sum())


def ink_outside(picture, rect):
    """As a picture of its own, without what is inside the rectangle."""
    mask = ink(picture)
    part(mask, rect)[...] = False
    return mask


def differences(one, other, rect):
    """The number of pixels in the rectangle that differ by more than rounding."""
    a, b = (part(each, rect).astype(numpy.int16) for each in (one, other))
    return int((numpy.abs(a - b).max(axis=2) > 8).sum())


def grown(rect, margin):
    x, y, width, height = rect
    return (x - margin, y - margin, width + 2 * margin, height + 2 * margin)


def scaled(rect, factor):
    return tuple(round(value * factor) for value in rect)


def counter_cells(width, height, top):
    """The rectangles of the counter's bits on a screen of this size, most significant first."""
    left = COUNTER_LEFT
    return [
        ((left + cell * CELL_WIDTH) * width, top * height, CELL_WIDTH * width, CELL_HEIGHT * height)
        for cell in range(CELLS)
    ]


def counter(picture, screen, top=INNER_COUNTER_TOP):
    """The number that the moving content shows on the part of the picture that is its screen."""
    view = part(picture, screen)
    height, width = view.shape[:2]
    number = 0
    for x, y, cell_width, cell_height in counter_cells(width, height, top):
        middle = view[int(y + cell_height / 2), int(x + cell_width / 2)]
        number = number * 2 + int(middle.mean() < 128)
    return number


def without_counter(picture, screen):
    """The same with the counters wiped out, to compare what stands still."""
    result = picture.copy()
    view = part(result, screen)
    height, width = view.shape[:2]
    for top in (INNER_COUNTER_TOP, OUTER_COUNTER_TOP):
        cells = counter_cells(width, height, top)
        left, y = int(cells[0][0]) - 2, int(cells[0][1]) - 2
        right, bottom = int(cells[-1][0] + cells[-1][2]) + 3, int(y + cells[0][3]) + 6
        view[y:bottom, left:right] = 0
    return result
