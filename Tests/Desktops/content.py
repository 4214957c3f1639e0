"""The moving content beneath the ink: a full-screen Wayland window with a number on it that counts up.

usage: content.py MONITOR PICTURES_A_SECOND
Prints its size in points, whenever it has another one, and "key" for each key that is pressed.
"""

import sys

import gi

gi.require_version("Gtk", "3.0")
gi.require_version("Gdk", "3.0")
from gi.repository import Gdk, GLib, Gtk  # noqa: E402

import pixels  # noqa: E402

PAPER = (0.90, 0.93, 0.95)
BARS = [(0.16, 0.50, 0.62), (0.25, 0.65, 0.59), (0.42, 0.55, 0.77)]  # nothing red


class Content(Gtk.DrawingArea):
    number = 0

    def tell_size(self, _, size):
        print(f"{size.width} x {size.height}", flush=True)

    def paint(self, _, context):
        width, height = self.get_allocated_width(), self.get_allocated_height()
        context.set_source_rgb(*PAPER)
        context.paint()
        for bar in range(20):
            context.set_source_rgb(*BARS[bar % len(BARS)])
            tall = height * (3 + bar * 7 % 11) / 20
            context.rectangle(width * (bar + 0.25) / 20, height * 0.85 - tall, width / 40, tall)
            context.fill()
        for top in (pixels.INNER_COUNTER_TOP, pixels.OUTER_COUNTER_TOP):
            for bit, cell in enumerate(pixels.counter_cells(width, height, top)):
                dark = self.number >> (pixels.CELLS - 1 - bit) & 1
                context.set_source_rgb(*((0, 0, 0) if dark else (1, 1, 1)))
                context.rectangle(*cell)
                context.fill()

    def count(self):
        self.number += 1
        width, height = self.get_allocated_width(), self.get_allocated_height()
        for top in (pixels.INNER_COUNTER_TOP, pixels.OUTER_COUNTER_TOP):
            cells = pixels.counter_cells(width, height, top)
            left, y = int(cells[0][0]), int(cells[0][1])
            self.queue_draw_area(left, y, int(cells[-1][0] + cells[-1][2]) - left + 1, int(cells[0][3]) + 2)
        return True


window = Gtk.Window(title="Moving content")
content = Content()
content.connect("draw", content.paint)
content.connect("size-allocate", content.tell_size)
window.add(content)
window.connect("destroy", Gtk.main_quit)
window.connect("key-press-event", lambda *_: print("key", flush=True))
window.fullscreen_on_monitor(Gdk.Screen.get_default(), int(sys.argv[1]))
window.show_all()
GLib.timeout_add(1000 // int(sys.argv[2]), content.count)
Gtk.main()
