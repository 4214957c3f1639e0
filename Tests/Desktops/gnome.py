"""GNOME Shell on virtual monitors, with a stand-in for the login manager."""

import os
import pathlib
import sys
import time

import dbus
import dbus.bus
import numpy
from PIL import Image

from desktop import Desktop, Failure, wait_for
from hands import LEFT_BUTTON
from screencast import Recording

SYSTEM_BUS = """<!DOCTYPE busconfig PUBLIC "-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN"
 "http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd">
<busconfig><type>system</type><listen>unix:path={path}</listen><auth>EXTERNAL</auth><policy context="default">
<allow send_destination="*" eavesdrop="true"/><allow eavesdrop="true"/><allow own="*"/></policy></busconfig>
"""
SETTINGS = """[org/gnome/mutter]
experimental-features=['scale-monitor-framebuffer']
[org/gnome/shell]
welcome-dialog-last-shown-version='99'
[org/gnome/desktop/interface]
enable-animations=false
[org/gnome/desktop/notifications]
show-banners=false
"""
DISPLAYS = "org.gnome.Mutter.DisplayConfig"
TEMPORARY = 1
REMOTE = "org.gnome.Mutter.RemoteDesktop"
ESCAPE = 0xFF1B


class Gnome(Desktop):
    name = "gnome"
    left_out = {
        "Xwayland killed": "mutter ends together with its X server, unless systemd manages the session",
        "hot key": "the portal asks the user first, and knows programs by the units of systemd",
    }

    def launch(self):
        self.environment |= {"XDG_CURRENT_DESKTOP": "GNOME", "GSETTINGS_BACKEND": "keyfile"}
        settings = pathlib.Path(self.environment["HOME"]) / ".config" / "glib-2.0" / "settings"
        settings.mkdir(parents=True)
        (settings / "keyfile").write_text(SETTINGS)
        system = self.runtime / "system-bus"
        (self.runtime / "system-bus.conf").write_text(SYSTEM_BUS.format(path=system))
        self.spawn(["dbus-daemon", f"--config-file={self.runtime}/system-bus.conf", "--nofork"], "system-bus")
        self.environment["DBUS_SYSTEM_BUS_ADDRESS"] = f"unix:path={system}"
        wait_for(system.exists, "the system bus")
        self.spawn([sys.executable, "-m", "dbusmock", "--system", "--template", "logind"], "logind")
        buses = dbus.bus.BusConnection(self.environment["DBUS_SYSTEM_BUS_ADDRESS"])
        wait_for(lambda: buses.name_has_owner("org.freedesktop.login1"), "the login manager's stand-in")
        for name in ("pipewire", "wireplumber"):
            self.spawn([name], name)
        layout = self.layout
        command = ["gnome-shell", "--headless", "--wayland", "--unsafe-mode"]
        for _ in range(layout.outputs):
            command += ["--virtual-monitor", f"{layout.width}x{layout.height}"]
        self.compositor = self.spawn(command, "gnome-shell")

    def version(self):
        return self.ask(["gnome-shell", "--version"]).decode().strip()

    def arrange(self):
        self.bus = dbus.bus.BusConnection(self.environment["DBUS_SESSION_BUS_ADDRESS"])
        wait_for(lambda: self.bus.name_has_owner("org.gnome.Shell.Screenshot"), "the shell", 60)
        # It begins with the overview.
        shell = dbus.Interface(self.bus.get_object("org.gnome.Shell", "/org/gnome/Shell"), "org.gnome.Shell")
        wait_for(lambda: shell.Eval("Main.layoutManager._startingUp")[1] == "false", "the shell has started", 60)
        shell.Eval("Main.overview.hide()")
        self.remote = self.connect_remote()
        if self.layout.scale != 1:
            self.set_scale()

    def connect_remote(self):
        """The keyboard and the pointer of somebody far away; there are no others here."""
        service = dbus.Interface(self.bus.get_object(REMOTE, "/" + REMOTE.replace(".", "/")), REMOTE)
        session = dbus.Interface(self.bus.get_object(REMOTE, service.CreateSession()), REMOTE + ".Session")
        session.Start()
        return session

    def set_scale(self):
        displays = dbus.Interface(self.bus.get_object(DISPLAYS, "/org/gnome/Mutter/DisplayConfig"), DISPLAYS)
        serial, monitors, _, _ = displays.GetCurrentState()
        logical, x = [], 0
        for (connector, *_), modes, _ in monitors:
            mode, width, _, _, _, scales, _ = modes[0]
            scale = min(scales, key=lambda each: abs(each - self.layout.scale))
            if abs(scale - self.layout.scale) > 0.01:
                raise Failure(f"the compositor offers the scales {', '.join(f'{each:g}' for each in scales)}")
            monitor = dbus.Struct((connector, mode, dbus.Dictionary(signature="sv")), signature="ssa{sv}")
            logical.append((dbus.Int32(x), dbus.Int32(0), scale, dbus.UInt32(0), x == 0, [monitor]))
            x += round(width / scale)
        displays.ApplyMonitorsConfig(serial, dbus.UInt32(TEMPORARY), logical, dbus.Dictionary(signature="sv"))

    def picture(self):
        path = self.runtime / "screen.png"
        name = "org.gnome.Shell.Screenshot"
        service = dbus.Interface(self.bus.get_object(name, "/org/gnome/Shell/Screenshot"), name)
        done, used = service.Screenshot(False, False, str(path))
        if not done:
            raise Failure("the shell takes no picture")
        with Image.open(used) as image:
            picture = numpy.asarray(image.convert("RGB"))
        os.unlink(used)
        return picture

    def frames(self):
        return Recording(self)

    def drag(self, start, end):
        middle = ((start[0] + end[0]) // 2, (start[1] + end[1]) // 2)
        self.move_pointer(start)
        self.remote.NotifyPointerButton(LEFT_BUTTON, True)
        self.move_pointer(middle)
        self.move_pointer(end)
        self.remote.NotifyPointerButton(LEFT_BUTTON, False)

    def move_pointer(self, place):
        """Step by step: the X server knows where the pointer is only while it is over one of its windows."""
        points = self.layout.outputs * self.layout.width / self.layout.scale / self.x_size()[0]
        with self.x_display() as display:
            root = display.screen().root

            def is_there():
                now = root.query_pointer()
                missing = (place[0] - now.root_x, place[1] - now.root_y)
                if missing == (0, 0):
                    return True
                self.remote.NotifyPointerMotionRelative(*(points * each for each in missing))
                time.sleep(0.2)
                return False

            wait_for(is_there, f"the pointer is at {place}")

    def press_escape(self):
        for is_pressed in (True, False):
            self.remote.NotifyKeyboardKeysym(dbus.UInt32(ESCAPE), is_pressed)
