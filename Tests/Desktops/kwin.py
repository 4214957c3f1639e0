"""KWin in windows of a headless sway, one for each screen: what sway shows is what KWin shows.

On virtual screens of its own, and without a graphics device, it takes no pictures.
"""

import time

import dbus
import dbus.bus

import hands
from desktop import wait_for
from sway import Sway

SAVER = "org.freedesktop.ScreenSaver"
RETRY_AFTER = 6  # seconds; after a wrong password, the lock screen makes the user wait
PASSWORD = [hands.D] * 4  # as `prepare` sets it


class Kwin(Sway):
    name = "kwin"
    wayland_sockets = "kwin-?"
    keys = "as KWin's service for shortcuts gives it"
    options = ["xwayland disable"] + [
        f'for_window [title="WL-{number} "] move container to output HEADLESS-{number + 1}, fullscreen enable'
        for number in range(2)
    ]
    left_out = {
        "scale": "KWin in a window of another compositor, without OpenGL, does not scale what it draws",
    }
    tells_of_lock = True

    def launch(self):
        # KWin waits for news of each picture, also of one in which nothing changed. Without this, the host does not
        # draw that one and sends none, and the screen stands still for good.
        self.environment["WLR_SCENE_DEBUG_DAMAGE"] = "rerender"
        super().launch()
        (host,) = wait_for(lambda: self.sockets(f"{self.runtime}/wayland-?"), "the host")
        self.host = {"WAYLAND_DISPLAY": host}
        layout = self.layout
        command = ["kwin_wayland", "--wayland-display", host, "--socket", "kwin-0"]
        command += ["--width", str(layout.width), "--height", str(layout.height)]
        command += ["--output-count", str(layout.outputs), "--xwayland"]
        # Its lock screen draws without OpenGL, too.
        self.compositor = self.spawn(command, "kwin", QT_QPA_PLATFORM="wayland", QT_QUICK_BACKEND="software")

    def version(self):
        return self.ask(["kwin_wayland", "--version"]).decode().strip()

    def saver(self):
        bus = dbus.bus.BusConnection(self.environment["DBUS_SESSION_BUS_ADDRESS"])
        return dbus.Interface(bus.get_object(SAVER, "/" + SAVER.replace(".", "/")), SAVER)

    def lock(self):
        saver = self.saver()

        def is_locked():
            saver.Lock()  # again while it is not: one request led to nothing
            return saver.GetActive()

        wait_for(is_locked, "the screen is locked")

    def unlock(self):
        """With the password. The lock screen asks for it when a key is pressed."""
        saver, pressed = self.saver(), 0

        def is_unlocked():
            nonlocal pressed
            if time.monotonic() > pressed + RETRY_AFTER:
                self.hands.press(hands.CONTROL)
                time.sleep(1)  # the field fades in
                for key in [*PASSWORD, hands.ENTER]:
                    self.hands.press(key)
                pressed = time.monotonic()
            return not saver.GetActive()

        wait_for(is_unlocked, "the screen is unlocked", 30)
