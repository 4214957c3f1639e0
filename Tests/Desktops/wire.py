"""As much of a Wayland client as the tests need: objects by their numbers, requests, and events as bytes."""

import array
import socket
import struct

from desktop import Failure

DISPLAY, REGISTRY, CALLBACK = range(1, 4)


def string(text):
    data = text + b"\0"
    return struct.pack("I", len(data)) + data + bytes(-len(data) % 4)


def fixed(value):
    """With eight binary places."""
    return struct.pack("i", round(value * 256))


class Connection:
    def __init__(self, path):
        self.socket = socket.socket(socket.AF_UNIX)
        self.socket.settimeout(60)
        self.socket.connect(path)
        self.received = b""
        self.last = CALLBACK
        self.request(DISPLAY, 1, struct.pack("I", REGISTRY))
        self.request(DISPLAY, 0, struct.pack("I", CALLBACK))
        self.numbers = {}
        while (event := self.event())[0] != CALLBACK:
            if event[0] == REGISTRY:
                name, length = struct.unpack_from("II", event[2])
                self.numbers.setdefault(event[2][8 : 7 + length], name)

    def new(self):
        """The number of the next object; the protocol wants no gaps."""
        self.last += 1
        return self.last

    def bind(self, interface, version):
        """The first object of the compositor with that interface."""
        if interface not in self.numbers:
            raise Failure(f"the compositor has no {interface.decode()}")
        bound = self.new()
        arguments = struct.pack("I", self.numbers[interface]) + string(interface) + struct.pack("II", version, bound)
        self.request(REGISTRY, 0, arguments)
        return bound

    def request(self, target, opcode, arguments=b"", descriptors=()):
        message = struct.pack("IHH", target, opcode, 8 + len(arguments)) + arguments
        passed = [(socket.SOL_SOCKET, socket.SCM_RIGHTS, array.array("i", descriptors))] if descriptors else []
        self.socket.sendmsg([message], passed)

    def event(self):
        """The next one: of which object, its number, its arguments."""
        while len(self.received) < 8 or len(self.received) < struct.unpack_from("IHH", self.received)[2]:
            data = self.socket.recv(65536)
            if not data:
                raise Failure("the compositor has closed the connection")
            self.received += data
        target, opcode, size = struct.unpack_from("IHH", self.received)
        arguments, self.received = self.received[8:size], self.received[size:]
        if target == DISPLAY and opcode == 0:
            raise Failure(f"the compositor says: {arguments[12:].rstrip(bytes(1)).decode()}")
        return target, opcode, arguments
