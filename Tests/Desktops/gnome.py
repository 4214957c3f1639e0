"""GNOME Shell on virtual monitors, managed by systemd as in a user's session, with stand-ins for the login
manager and for the display manager, without which the shell does not lock the screen."""

import contextlib
import itertools
import json
import os
import pathlib
import sys
import time

import dbus
import dbus.bus
import numpy
from PIL import Image

import hands
import pipewire
from desktop import Desktop, Failure, wait_for
from screencast import Recording

SYSTEM_BUS = """<!DOCTYPE busconfig PUBLIC "-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN"
 "http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd">
<busconfig><type>system</type><listen>unix:path={path}</listen><auth>EXTERNAL</auth><policy context="default">
<allow send_destination="*" eavesdrop="true"/><allow eavesdrop="true"/><allow own="*"/></policy></busconfig>
"""
SETTINGS = """[org/gnome/mutter]
experimental-features=['scale-monitor-framebuffer']
[org/gnome/shell]
enabled-extensions=['ubuntu-appindicators@ubuntu.com']
welcome-dialog-last-shown-version='99'
[org/gnome/desktop/interface]
enable-animations=false
enable-hot-corners=false
[org/gnome/desktop/session]
idle-delay=uint32 0
[org/gnome/desktop/notifications]
show-banners=false
"""
# GNOME's portal starts only in a graphical session, and that target is not to be started by itself.
SESSION_TARGET = "[Unit]\nBindsTo=graphical-session.target\n"
# What is to be seen of the tray icon and its menu, for `evaluate`: texts and rectangles, in points.
TRAY = """(() => {
  const seen = (text, actor) => [text, ...actor.get_transformed_position(), ...actor.get_transformed_size()];
  const icons = Object.entries(Main.panel.statusArea).filter(([name]) => name.startsWith("appindicator"));
  const icon = icons.map(([name, each]) => each).find(each => each.accessible_name?.includes("Quillfade"));
  if (!icon) return [];
  const lines = icon.menu.isOpen ? icon.menu._getMenuItems().filter(line => line.label?.text) : [];
  return [seen("", icon), ...lines.map(line => seen(line.label.text, line))];
})()"""
# By their control groups, the shell knows that systemd manages it, and portals know a program's name.
UNITS = {
    "gnome-shell": ("session", "gnome-shell-{}.scope"),
    "application": ("app", "app-gnome-org.quillfade.Quillfade-{}.scope"),
}
DISPLAYS = "org.gnome.Mutter.DisplayConfig"
TEMPORARY = 1
REMOTE = "org.gnome.Mutter.RemoteDesktop"
BUTTON_COLOR = (53, 132, 228)  # of the button that agrees, in dialogs


class Gnome(Desktop):
    name = "gnome"
    keys = "as the portal gives it, once the user has agreed"
    asks_for_keys = True
    tells_of_lock = True

    def start_bus(self):
        own = pathlib.Path("/sys/fs/cgroup/user.slice/user-0.slice/user@0.service/init.scope")
        own.mkdir(parents=True)
        units = pathlib.Path(self.environment["HOME"]) / ".config" / "systemd" / "user"
        units.mkdir(parents=True)
        (units / "desktop.target").write_text(SESSION_TARGET)
        inside = ["bash", "-c", f"echo $$ > {own}/cgroup.procs && exec /lib/systemd/systemd --user"]
        self.spawn(inside, "systemd")
        self.units = itertools.count(1)

    def spawn(self, command, name, **environment):
        if name in UNITS:
            slice_, unit = UNITS[name]
            scope = ["systemd-run", "--user", "--scope", "--quiet", f"--slice={slice_}"]
            command = [*scope, f"--unit={unit.format(next(self.units))}", "--", *command]
        return super().spawn(command, name, **environment)

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
        manager = ["org.gnome.DisplayManager", "/org/gnome/DisplayManager/Manager", "org.gnome.DisplayManager.Manager"]
        self.spawn([sys.executable, "-m", "dbusmock", "--system", *manager], "display-manager")
        wait_for(lambda: buses.name_has_owner(manager[0]), "the display manager's stand-in")
        stand_in = dbus.Interface(buses.get_object(*manager[:2]), "org.freedesktop.DBus.Mock")
        stand_in.AddProperty(manager[2], "Version", "48.0")
        pathlib.Path("/run/systemd/seats").mkdir()
        pipewire.start_services(self)
        layout = self.layout
        command = ["gnome-shell", "--headless", "--wayland", "--unsafe-mode"]
        for _ in range(layout.outputs):
            command += ["--virtual-monitor", f"{layout.width}x{layout.height}"]
        self.compositor = self.spawn(command, "gnome-shell")

    def version(self):
        return self.ask(["gnome-shell", "--version"]).decode().strip()

    def arrange(self):
        names = [name for name in self.environment if name != "DBUS_SESSION_BUS_ADDRESS"]
        self.ask(["dbus-update-activation-environment", "--systemd", *names])
        self.ask(["systemctl", "--user", "start", "desktop.target"])
        self.bus = dbus.bus.BusConnection(self.environment["DBUS_SESSION_BUS_ADDRESS"])
        wait_for(lambda: self.bus.name_has_owner("org.gnome.Shell.Screenshot"), "the shell", 60)
        # It begins with the overview.
        self.shell = dbus.Interface(self.bus.get_object("org.gnome.Shell", "/org/gnome/Shell"), "org.gnome.Shell")
        wait_for(lambda: self.evaluate("Main.layoutManager._startingUp") is False, "the shell has started", 60)
        self.shell.Eval("Main.overview.hide()")
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

    def agree(self, place=None):
        """Clicks the button that agrees until the dialog is gone; before, what is to be chosen at that place."""
        button = None

        def is_gone():
            nonlocal button
            picture = self.picture()
            # Before the dialog is there, a click would raise what lies under it. Only dialogs are white.
            is_open = (picture.min(axis=2) > 245).mean() > 0.1
            blue = numpy.argwhere(numpy.abs(picture.astype(int) - BUTTON_COLOR).max(axis=2) < 3)
            if is_open and len(blue) > 300:
                # The button is at the top. What is chosen has the same colour around it.
                button = numpy.median(blue[blue[:, 0] < blue[0, 0] + 30 * self.layout.scale], axis=0)[::-1]
            if is_open and (button is not None or place):
                self.click(place if button is None else button)
            time.sleep(0.5)
            return button is not None and not is_open

        wait_for(is_gone, "a dialog that asks, and goes")

    def lock(self):
        self.savers().Lock()
        wait_for(lambda: self.savers().GetActive(), "the screen is locked")

    def unlock(self):
        self.shell.Eval("Main.screenShield.deactivate(false)")
        wait_for(lambda: not self.savers().GetActive(), "the screen is unlocked")

    def savers(self):
        name = "org.gnome.ScreenSaver"
        return dbus.Interface(self.bus.get_object(name, "/org/gnome/ScreenSaver"), name)

    def tray(self):
        return contextlib.nullcontext(self)

    def choose(self, line, look):
        (icon,) = wait_for(lambda: self.evaluate(TRAY), "the tray icon")
        self.click_middle(icon)
        menu = wait_for(lambda: self.evaluate(TRAY)[1:], "the menu")
        time.sleep(0.5)  # it grows
        menu = self.evaluate(TRAY)[1:]
        look()
        self.click_middle(next(each for each in menu if each[0] == line))
        return [each[0] for each in menu]

    def click_middle(self, seen):
        _, x, y, width, height = seen
        self.click([value * self.layout.scale for value in (x + width / 2, y + height / 2)])

    def click(self, place):
        """In pixels of the picture."""
        goal = [round(value / self.layout.scale) for value in place]

        def is_there():
            missing = [to - at for to, at in zip(goal, self.evaluate("global.get_pointer()")[:2], strict=True)]
            if missing == [0, 0]:
                return True
            self.move(*missing)
            return False

        wait_for(is_there, f"the pointer is at {place}")
        # A program beneath may not hear of a leap, but only of the next movement.
        self.move(1, 1)
        self.move(-1, -1)
        for is_pressed in (True, False):
            self.remote.NotifyPointerButton(hands.LEFT_BUTTON, is_pressed)
            time.sleep(hands.PAUSE)

    def move(self, x, y):
        self.remote.NotifyPointerMotionRelative(float(x), float(y))
        time.sleep(4 * hands.PAUSE)

    def evaluate(self, script):
        """In the shell's own language."""
        done, result = self.shell.Eval(script)
        if not done:
            raise Failure(f"the shell does not know what {script} is: {result}")
        return json.loads(result)

    def drag(self, start, end):
        middle = ((start[0] + end[0]) // 2, (start[1] + end[1]) // 2)
        self.move_pointer(start)
        self.remote.NotifyPointerButton(hands.LEFT_BUTTON, True)
        self.move_pointer(middle)
        self.move_pointer(end)
        self.remote.NotifyPointerButton(hands.LEFT_BUTTON, False)

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
                self.move(*(points * each for each in missing))
                return False

            wait_for(is_there, f"the pointer is at {place}")

    def press_escape(self):
        self.press(hands.ESCAPE)

    def press_toggle(self):
        self.press(hands.CONTROL, hands.ALT, hands.SUPER, hands.D)

    def press(self, *keys):
        """Presses the keys one after the other, and releases them in the opposite order."""
        for is_pressed in (True, False):
            for key in keys if is_pressed else reversed(keys):
                self.remote.NotifyKeyboardKeycode(dbus.UInt32(key), is_pressed)
                time.sleep(hands.PAUSE)
