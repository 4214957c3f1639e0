"""KWin in windows of a headless sway, one for each screen: what sway shows is what KWin shows.

On virtual screens of its own, and without a graphics device, it takes no pictures.
"""

from desktop import wait_for
from sway import Sway


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
        "locked": "KWin runs without its lock here",
    }

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
        command += ["--output-count", str(layout.outputs), "--xwayland", "--no-lockscreen"]
        self.compositor = self.spawn(command, "kwin", QT_QPA_PLATFORM="wayland")

    def version(self):
        return self.ask(["kwin_wayland", "--version"]).decode().strip()
