"""What sway and labwc have in common."""

import contextlib
import os
import signal
import subprocess

import numpy

import hands
from desktop import Desktop
from waybar import Waybar


class Recording:
    """wf-recorder's frames, uncompressed."""

    def __init__(self, desktop):
        self.size = (desktop.layout.width, desktop.layout.height)
        pipe = desktop.runtime / "frames"
        if not pipe.exists():
            os.mkfifo(pipe)
        command = ["wf-recorder", "--overwrite", "--no-dmabuf", "--output", "HEADLESS-1", "--codec", "rawvideo"]
        command += ["--muxer", "rawvideo", "--pixel-format", "bgr0", "--file", str(pipe)]
        self.process = desktop.spawn(command, "wf-recorder", **desktop.host)
        self.pipe = open(pipe, "rb")

    def __iter__(self):
        width, height = self.size
        while True:
            data = self.pipe.read(width * height * 4)
            if len(data) < width * height * 4:
                return
            yield numpy.frombuffer(data, numpy.uint8).reshape(height, width, 4)[..., 2::-1]

    def stop(self):
        self.process.terminate()
        try:
            self.process.wait(5)
        except subprocess.TimeoutExpired:
            self.process.kill()


class Wlroots(Desktop):
    host = {}  # what is different in the environment of those who look at the screen

    def __init__(self, layout, runtime, logs):
        super().__init__(layout, runtime, logs)
        self.environment |= {
            "WLR_BACKENDS": "headless",
            "WLR_RENDERER": "pixman",
            "WLR_LIBINPUT_NO_DEVICES": "1",
            "WLR_HEADLESS_OUTPUTS": str(layout.outputs),
        }

    def outputs(self):
        return [f"HEADLESS-{number + 1}" for number in range(self.layout.outputs)]

    def picture(self):
        data = self.ask(["grim", "-t", "ppm", "-"], **self.host)
        header, size, depth, rows = data.split(b"\n", 3)
        assert (header, depth) == (b"P6", b"255")
        width, height = map(int, size.split())
        return numpy.frombuffer(rows, numpy.uint8).reshape(height, width, 3)

    def frames(self):
        return Recording(self)

    def arrange(self):
        # Of the compositor that shows everything. There is no other.
        name = (self.environment | self.host)["WAYLAND_DISPLAY"]
        self.hands = hands.Hands(str(self.runtime / name))
        self.hands.point_away()

    def tray(self):
        return contextlib.closing(Waybar(self))

    def lock(self):
        self.locker = self.spawn(["swaylock", "--color", "202020"], "swaylock")

    def unlock(self):
        self.locker.send_signal(signal.SIGUSR1)
        self.locker.wait(10)

    def press_escape(self):
        self.hands.press(hands.ESCAPE)

    def press_toggle(self):
        self.hands.press(hands.CONTROL, hands.ALT, hands.SUPER, hands.D)

    def drag(self, start, end):
        self.hands.drag(start, end, self.x_size())
