"""What the steps need of a desktop; one class for each desktop inherits it.

A session runs in namespaces of its own (`run.py` makes them), so every process, socket and X display that is found
belongs to it.
"""

import contextlib
import glob
import os
import pathlib
import signal
import subprocess
import time
from dataclasses import dataclass

import Xlib.display
import Xlib.error
import Xlib.X


class Failure(Exception):
    """Something is not as it should be; the text says what."""


PATIENCE = float(os.environ.get("QUILLFADE_TEST_PATIENCE", "1"))  # more than 1 on a slow machine


def wait_for(condition, what, deadline=15.0):
    """The first true value of the condition."""
    deadline *= PATIENCE
    end = time.monotonic() + deadline
    while True:
        value = condition()
        if value:
            return value
        if time.monotonic() > end:
            raise Failure(f"waited {deadline:g} s in vain: {what}")
        time.sleep(0.02)


@dataclass(frozen=True)
class Layout:
    """The screens, side by side, in device pixels."""

    outputs: int = 1
    scale: float = 1
    width: int = 1280
    height: int = 720


class Frames:
    """Pictures of the screen as they come, until they are stopped. This one takes them one after the other."""

    def __init__(self, take):
        self.take = take
        self.runs = True

    def __iter__(self):
        while self.runs:
            yield self.take()

    def stop(self):
        self.runs = False


class Desktop:
    name = ""
    wayland_sockets = "wayland-?"
    left_out = {}  # steps that cannot be taken here, or "scale", and why
    keys = "as bound in the desktop's settings"  # how the desktop gives hot keys
    asks_for_keys = False  # whether it asks the user first
    tells_of_lock = False  # whether programs hear that the screen is locked

    def __init__(self, layout, runtime, logs):
        self.layout = layout
        self.runtime = pathlib.Path(runtime)
        self.logs = pathlib.Path(logs)
        self.compositor = None
        self.environment = {
            "PATH": os.environ["PATH"],
            "LANG": "C.UTF-8",
            "HOME": str(self.runtime / "home"),
            "XDG_RUNTIME_DIR": str(self.runtime),
            "XDG_SESSION_TYPE": "wayland",
            "NO_AT_BRIDGE": "1",
            "GSETTINGS_BACKEND": "memory",
            "GIO_USE_VFS": "local",
            "LIBGL_ALWAYS_SOFTWARE": "1",
        }
        pathlib.Path(self.environment["HOME"]).mkdir(parents=True)
        self.runtime.chmod(0o700)

    # For each desktop to define.

    def launch(self):
        """Starts the compositor: sets `compositor`."""
        raise NotImplementedError

    def version(self):
        """The compositor's, as a sentence."""
        raise NotImplementedError

    def picture(self):
        """What the whole desktop shows, in device pixels."""
        raise NotImplementedError

    def frames(self):
        """What a recording of the first screen gets."""
        return Frames(self.picture)

    def press_escape(self):
        raise NotImplementedError

    def press_toggle(self):
        """Presses and releases Ctrl+Alt+Super+D."""
        raise NotImplementedError

    def drag(self, start, end):
        """With the first button, in the pixels of the X server."""
        raise NotImplementedError

    def lock(self):
        """Locks the screen."""
        raise NotImplementedError

    def unlock(self):
        raise NotImplementedError

    def tray(self):
        """A context whose value can `choose` a line of the tray icon's menu, and calls a function while it is open."""
        raise NotImplementedError

    def arrange(self):
        """After the start: sets what the command line of the compositor cannot."""

    # The same everywhere, or nearly.

    def start_bus(self):
        self.spawn(["dbus-daemon", "--session", "--nofork", f"--address=unix:path={self.runtime}/bus"], "bus")

    def start(self):
        self.start_bus()
        self.environment["DBUS_SESSION_BUS_ADDRESS"] = f"unix:path={self.runtime}/bus"
        wait_for((self.runtime / "bus").exists, "the session bus")
        self.launch()
        wayland = wait_for(lambda: self.sockets(f"{self.runtime}/{self.wayland_sockets}"), "the Wayland display", 30)
        self.environment["WAYLAND_DISPLAY"] = os.path.basename(wayland[0])
        self.find_display()
        self.arrange()

    def find_display(self):
        x11 = wait_for(lambda: self.sockets("/tmp/.X11-unix/X*"), "the X display", 30)
        self.environment["DISPLAY"] = ":" + os.path.basename(x11[0])[1:]
        cookies = glob.glob(f"{self.runtime}/.mutter-Xwaylandauth.*") + glob.glob(f"{self.runtime}/xauth_*")
        if cookies:
            self.environment["XAUTHORITY"] = max(cookies, key=os.path.getmtime)

    def x_display(self):
        os.environ["XAUTHORITY"] = self.environment.get("XAUTHORITY", "")
        return contextlib.closing(Xlib.display.Display(self.environment["DISPLAY"]))

    def owns_selection(self, name):
        """Whether some X client owns it."""
        try:
            with self.x_display() as display:
                return display.get_selection_owner(display.intern_atom(name)) != Xlib.X.NONE
        except (Xlib.error.DisplayConnectionError, Xlib.error.ConnectionClosedError):
            return False  # the server is about to start

    def x_size(self):
        """The size of the X server's screen, once the compositor manages it."""
        # Programs ask whether somebody composites before they choose how to be seen through.
        def is_composited():
            self.find_display()
            return self.owns_selection("_NET_WM_CM_S0")

        wait_for(is_composited, "the X windows are composited")
        with self.x_display() as display:
            size = display.screen().root.get_geometry()
            return size.width, size.height

    def primary_corner(self):
        """The top-left corner of the X server's primary monitor, or else of its first."""
        with self.x_display() as display:
            monitors = display.screen().root.xrandr_get_monitors().monitors
            chosen = max(monitors, key=lambda monitor: monitor.primary)
            return chosen.x, chosen.y

    @staticmethod
    def sockets(pattern):
        return sorted(path for path in glob.glob(pattern) if not path.endswith((".lock", "_")))

    def spawn(self, command, name, **environment):
        """Starts a program of the session. What it says goes to the logs."""
        log = open(self.logs / f"{name}.log", "ab")
        return subprocess.Popen(
            command, env=self.environment | environment, stdin=subprocess.DEVNULL, stdout=log, stderr=log
        )

    def ask(self, command, deadline=20, **environment):
        """The output of a short program of the session."""
        done = subprocess.run(
            command,
            env=self.environment | environment,
            stdin=subprocess.DEVNULL,
            capture_output=True,
            timeout=deadline * PATIENCE,
            check=False,
        )
        if done.returncode != 0:
            raise Failure(f"{command[0]} ended with {done.returncode}: {done.stderr.decode().strip()[-300:]}")
        return done.stdout

    def processes(self, name):
        """The ids of the processes of that name that have not ended."""
        found = []
        for path in glob.glob("/proc/[0-9]*/stat"):
            try:
                pid, rest = pathlib.Path(path).read_text().split(" (", 1)
            except OSError:
                continue
            comm, state = rest.rsplit(") ", 1)
            if comm == name[:15] and state[0] not in "ZX":
                found.append(int(pid))
        return found

    def processor_time(self, pid):
        """What the process has used so far, in seconds."""
        fields = pathlib.Path(f"/proc/{pid}/stat").read_text().rsplit(") ", 1)[1].split()
        return (int(fields[11]) + int(fields[12])) / os.sysconf("SC_CLK_TCK")

    def kill(self, pid):
        os.kill(pid, signal.SIGKILL)
