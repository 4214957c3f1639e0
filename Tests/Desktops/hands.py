"""A keyboard and a pointer for the compositors that have virtual-keyboard-unstable-v1 and
wlr-virtual-pointer-unstable-v1. Keys go by position, as on a real keyboard."""

import os
import struct
import time

from wire import Connection

KEYMAP = b"""xkb_keymap {
  xkb_keycodes { include "evdev+aliases(qwerty)" };
  xkb_types { include "complete" };
  xkb_compat { include "complete" };
  xkb_symbols { include "pc+us+inet(evdev)" };
};\0"""
# As the kernel numbers keys and buttons; the modifiers are those on the left, with their bits in that map.
CONTROL, ALT, SUPER, D, ESCAPE, ENTER = 29, 56, 125, 32, 1, 28
MODIFIERS = {CONTROL: 1 << 2, ALT: 1 << 3, SUPER: 1 << 6}
LEFT_BUTTON, RIGHT_BUTTON = 0x110, 0x111
PAUSE = 0.05


def now():
    return time.monotonic_ns() // 10**6 % 2**32


class Hands:
    def __init__(self, path):
        self.wire = Connection(path)
        seat = self.wire.bind(b"wl_seat", 1)
        keyboards = self.wire.bind(b"zwp_virtual_keyboard_manager_v1", 1)
        pointers = self.wire.bind(b"zwlr_virtual_pointer_manager_v1", 1)
        self.keyboard, self.pointer = self.wire.new(), self.wire.new()
        self.wire.request(keyboards, 0, struct.pack("II", seat, self.keyboard))
        self.wire.request(pointers, 0, struct.pack("II", seat, self.pointer))
        keymap = os.memfd_create("keymap")
        os.write(keymap, KEYMAP)
        self.wire.request(self.keyboard, 0, struct.pack("II", 1, len(KEYMAP)), [keymap])
        os.close(keymap)

    def press(self, *keys):
        """Presses the keys one after the other, and releases them in the opposite order."""
        held = 0
        for is_pressed in (1, 0):
            for key in keys if is_pressed else reversed(keys):
                self.wire.request(self.keyboard, 1, struct.pack("III", now(), key, is_pressed))
                held ^= MODIFIERS.get(key, 0)
                self.wire.request(self.keyboard, 2, struct.pack("IIII", held, 0, 0, 0))
                time.sleep(PAUSE)

    def drag(self, start, end, size):
        """With the first button. The places are in pixels of a desktop of that size."""
        middle = ((start[0] + end[0]) // 2, (start[1] + end[1]) // 2)
        # Not by a single leap: the program beneath may hear only of the next movement.
        for step in (2, 1, 0):
            self.point((start[0] + step, start[1] + step), size)
        self.button(LEFT_BUTTON, 1)
        self.point(middle, size)
        self.point(end, size)
        self.button(LEFT_BUTTON, 0)
        self.point_away()

    def click(self, place, size, button=LEFT_BUTTON):
        for step in (1, 0):
            self.point((place[0] + step, place[1]), size)
        for is_pressed in (1, 0):
            self.button(button, is_pressed)
        self.point_away()

    def point_away(self):
        """To the bottom-right corner, where the pointer hides nothing in the pictures."""
        self.point((1, 1), (1, 1))

    def point(self, place, size):
        self.wire.request(self.pointer, 1, struct.pack("5I", now(), *place, *size))
        self.end_of_frame()

    def button(self, button, is_pressed):
        self.wire.request(self.pointer, 2, struct.pack("III", now(), button, is_pressed))
        self.end_of_frame()

    def end_of_frame(self):
        self.wire.request(self.pointer, 4)
        time.sleep(PAUSE)
