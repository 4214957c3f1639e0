"""A keyboard and a pointer for the compositors that have virtual-keyboard-unstable-v1 and
wlr-virtual-pointer-unstable-v1. Keys go by position, as on a real keyboard."""

import array
import os
import socket
import struct
import time

from desktop import Failure

KEYMAP = b"""xkb_keymap {
  xkb_keycodes { include "evdev+aliases(qwerty)" };
  xkb_types { include "complete" };
  xkb_compat { include "complete" };
  xkb_symbols { include "pc+us+inet(evdev)" };
};\0"""
# As the kernel numbers keys and buttons; the modifiers are those on the left, with their bits in that map.
CONTROL, ALT, SUPER, D, ESCAPE = 29, 56, 125, 32, 1
MODIFIERS = {CONTROL: 1 << 2, ALT: 1 << 3, SUPER: 1 << 6}
LEFT_BUTTON = 0x110
PAUSE = 0.05

# Objects, in the order in which they are made: the protocol wants no gaps.
DISPLAY, REGISTRY, CALLBACK, SEAT, KEYBOARDS, POINTERS, KEYBOARD, POINTER = range(1, 9)
WANTED = {
    b"wl_seat": SEAT,
    b"zwp_virtual_keyboard_manager_v1": KEYBOARDS,
    b"zwlr_virtual_pointer_manager_v1": POINTERS,
}


def string(text):
    data = text + b"\0"
    return struct.pack("I", len(data)) + data + bytes(-len(data) % 4)


def now():
    return time.monotonic_ns() // 10**6 % 2**32


class Hands:
    def __init__(self, path):
        self.socket = socket.socket(socket.AF_UNIX)
        self.socket.settimeout(10)
        self.socket.connect(path)
        self.request(DISPLAY, 1, struct.pack("I", REGISTRY))
        numbers = self.globals()
        for interface, wanted in WANTED.items():
            bound = struct.pack("I", numbers[interface]) + string(interface) + struct.pack("II", 1, wanted)
            self.request(REGISTRY, 0, bound)
        self.request(KEYBOARDS, 0, struct.pack("II", SEAT, KEYBOARD))
        self.request(POINTERS, 0, struct.pack("II", SEAT, POINTER))
        keymap = os.memfd_create("keymap")
        os.write(keymap, KEYMAP)
        self.request(KEYBOARD, 0, struct.pack("II", 1, len(KEYMAP)), [keymap])
        os.close(keymap)

    def request(self, target, opcode, arguments=b"", descriptors=()):
        message = struct.pack("IHH", target, opcode, 8 + len(arguments)) + arguments
        passed = [(socket.SOL_SOCKET, socket.SCM_RIGHTS, array.array("i", descriptors))] if descriptors else []
        self.socket.sendmsg([message], passed)

    def globals(self):
        """The numbers of the interfaces that the compositor has."""
        self.request(DISPLAY, 0, struct.pack("I", CALLBACK))
        data, found = b"", {}
        while True:
            received = self.socket.recv(65536)
            if not received:
                raise Failure("the compositor has closed the connection")
            data += received
            while len(data) >= 8 and len(data) >= struct.unpack_from("IHH", data)[2]:
                target, _, size = struct.unpack_from("IHH", data)
                if target == CALLBACK:
                    return found
                if target == REGISTRY:
                    name, length = struct.unpack_from("II", data, 8)
                    found[data[16 : 15 + length]] = name
                data = data[size:]

    def press(self, *keys):
        """Presses the keys one after the other, and releases them in the opposite order."""
        held = 0
        for is_pressed in (1, 0):
            for key in keys if is_pressed else reversed(keys):
                self.request(KEYBOARD, 1, struct.pack("III", now(), key, is_pressed))
                held ^= MODIFIERS.get(key, 0)
                self.request(KEYBOARD, 2, struct.pack("IIII", held, 0, 0, 0))
                time.sleep(PAUSE)

    def drag(self, start, end, size):
        """With the first button. The places are in pixels of a desktop of that size."""
        middle = ((start[0] + end[0]) // 2, (start[1] + end[1]) // 2)
        # Not by a single leap: the program beneath may hear only of the next movement.
        for step in (2, 1, 0):
            self.point((start[0] + step, start[1] + step), size)
        self.button(1)
        self.point(middle, size)
        self.point(end, size)
        self.button(0)
        self.point_away()

    def point_away(self):
        """To the bottom-right corner, where the pointer hides nothing in the pictures."""
        self.point((1, 1), (1, 1))

    def point(self, place, size):
        self.request(POINTER, 1, struct.pack("5I", now(), *place, *size))
        self.end_of_frame()

    def button(self, is_pressed):
        self.request(POINTER, 2, struct.pack("III", now(), LEFT_BUTTON, is_pressed))
        self.end_of_frame()

    def end_of_frame(self):
        self.request(POINTER, 4)
        time.sleep(PAUSE)
