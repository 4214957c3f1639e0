"""KWin on virtual screens of its own, with OpenGL: it scales them, takes pictures and casts.

It needs a graphics device; the kernel's vgem is enough (`modprobe vgem`), and Mesa renders in software.
"""

import glob
import os
import struct
import time

import dbus
import dbus.bus
import dbus.types
import numpy

import hands
import pipewire
from desktop import PATIENCE, Desktop, Failure, wait_for
from wire import Connection, fixed, string

KWIN, PICTURES = "org.kde.KWin", "org.kde.KWin.ScreenShot2"
BGR, RGB = (4, 5, 6), (16, 17, 18)  # layouts of pixels, as Qt numbers them
WITHOUT_POINTER = 1
CREATED = 1  # the event of a stream


class KwinHands:
    """A keyboard and a pointer by org_kde_kwin_fake_input, in points."""

    def __init__(self, path):
        self.wire = Connection(path)
        self.fake = self.wire.bind(b"org_kde_kwin_fake_input", 4)
        self.request(0, string(b"tests") + string(b"tests"))

    def request(self, opcode, arguments):
        self.wire.request(self.fake, opcode, arguments)
        time.sleep(hands.PAUSE)

    def point(self, x, y):
        self.request(9, fixed(x) + fixed(y))

    def button(self, is_pressed):
        self.request(2, struct.pack("II", hands.LEFT_BUTTON, is_pressed))

    def press(self, *keys):
        """Presses the keys one after the other, and releases them in the opposite order."""
        for is_pressed in (1, 0):
            for key in keys if is_pressed else reversed(keys):
                self.request(10, struct.pack("II", key, is_pressed))


class KwinRecording(pipewire.Stream):
    """A screen cast of KWin's, of the first screen."""

    def start(self):
        wire = Connection(self.desktop.wayland_path())
        output, casts = wire.bind(b"wl_output", 1), wire.bind(b"zkde_screencast_unstable_v1", 1)
        self.wire, self.stream = wire, wire.new()
        wire.request(casts, 0, struct.pack("III", self.stream, output, WITHOUT_POINTER))
        while (event := wire.event())[0] != self.stream:
            pass
        if event[1] != CREATED:
            raise Failure(f"KWin casts nothing: {event[2]}")
        return f"path={struct.unpack('I', event[2])[0]}"

    def end(self):
        self.wire.request(self.stream, 0)


class KwinGl(Desktop):
    name = "kwin-gl"
    left_out = {
        "tray menu": "no program of the session shows tray icons",
        "locked": "KWin runs without its lock here",
    }
    keys = "as KWin's service for shortcuts gives it"

    def launch(self):
        if not glob.glob("/dev/dri/*"):
            raise Failure("there is no graphics device")
        pipewire.start_services(self)
        layout = self.layout
        command = ["kwin_wayland", "--virtual", "--xwayland", "--no-lockscreen"]
        command += ["--width", str(layout.width), "--height", str(layout.height)]
        command += ["--output-count", str(layout.outputs)]
        allowed = {"KWIN_SCREENSHOT_NO_PERMISSION_CHECKS": "1", "KWIN_WAYLAND_NO_PERMISSION_CHECKS": "1"}
        self.compositor = self.spawn(command, "kwin", KWIN_COMPOSE="O2", **allowed)

    def version(self):
        return self.ask(["kwin_wayland", "--version"]).decode().strip()

    def wayland_path(self):
        return str(self.runtime / self.environment["WAYLAND_DISPLAY"])

    def arrange(self):
        self.bus = dbus.bus.BusConnection(self.environment["DBUS_SESSION_BUS_ADDRESS"])
        wait_for(lambda: self.bus.name_has_owner(PICTURES), "KWin takes pictures", 60)
        self.hands = KwinHands(self.wayland_path())
        if self.layout.scale != 1:
            self.set_scale()

    def set_scale(self):
        """As the system settings do. KWin does not keep the one of its command line: its settings of screens hold."""
        command = ["kscreen-doctor", f"output.1.scale.{self.layout.scale}"]
        self.ask(command, 60, QT_QPA_PLATFORM="wayland")

    def picture(self):
        kwin = self.bus.get_object(PICTURES, "/" + PICTURES.replace(".", "/"), introspect=False)
        service = dbus.Interface(kwin, PICTURES)
        ours, kwins = os.pipe()
        try:
            native = dbus.Dictionary({"native-resolution": True}, signature="sv")
            said = service.CaptureWorkspace(native, dbus.types.UnixFd(kwins), timeout=20 * PATIENCE)
        except dbus.DBusException as error:
            os.close(ours)
            raise Failure(f"KWin takes no picture: {error}") from error
        finally:
            os.close(kwins)
        with open(ours, "rb") as pipe:
            data = pipe.read()
        width, height, stride, layout = (int(said[each]) for each in ("width", "height", "stride", "format"))
        rows = numpy.frombuffer(data, numpy.uint8).reshape(height, stride)[:, : width * 4].reshape(height, width, 4)
        if layout not in BGR + RGB:
            raise Failure(f"KWin's picture has the format {layout}")
        return rows[..., 2::-1] if layout in BGR else rows[..., :3]

    def frames(self):
        return KwinRecording(self)

    def press_escape(self):
        self.hands.press(hands.ESCAPE)

    def press_toggle(self):
        self.hands.press(hands.CONTROL, hands.ALT, hands.SUPER, hands.D)

    def drag(self, start, end):
        points = self.layout.outputs * self.layout.width / self.layout.scale / self.x_size()[0]
        middle = ((start[0] + end[0]) // 2, (start[1] + end[1]) // 2)
        # Not by a single leap: the program beneath may hear only of the next movement.
        for step in (2, 1, 0):
            self.hands.point(points * (start[0] + step), points * (start[1] + step))
        self.hands.button(1)
        self.hands.point(points * middle[0], points * middle[1])
        self.hands.point(points * end[0], points * end[1])
        self.hands.button(0)
