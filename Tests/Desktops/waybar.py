"""A bar whose tray shows Quillfade's icon, for desktops without a tray of their own."""

import json
import time

import dbus
import dbus.bus
import numpy

from desktop import Failure, wait_for
from hands import RIGHT_BUTTON

HEIGHT = 30
PAPER = (255, 255, 192)  # the menu's background
STYLE = f"window {{ background: white; }} menu {{ background: rgb{PAPER}; }} menu * {{ color: black; }}\n"
MARGIN = 8  # of the menu, without text
DARK = 150  # text is, and ink that may lie above it is not
LEAST_TEXT = 5  # rows of pixels; what separates lines has fewer
WATCHER, WATCHER_PATH = "org.kde.StatusNotifierWatcher", "/StatusNotifierWatcher"
ITEM, MENU = "org.kde.StatusNotifierItem", "com.canonical.dbusmenu"


def bands(flags):
    """Where the flags are set without a gap: the first place, and the first that is not."""
    edges = numpy.flatnonzero(numpy.diff(flags.astype(int), prepend=0, append=0))
    return list(zip(edges[::2], edges[1::2], strict=True))


class Waybar:
    """Along the top. Its menus do not get the keyboard, so they are used with the pointer."""

    def __init__(self, desktop):
        self.desktop = desktop
        bar = {"layer": "top", "position": "top", "height": HEIGHT}
        bar |= {"modules-right": ["tray"], "tray": {"spacing": 10}}
        settings, style = desktop.runtime / "waybar.json", desktop.runtime / "waybar.css"
        settings.write_text(json.dumps(bar))
        style.write_text(STYLE)
        self.process = desktop.spawn(["waybar", "--config", str(settings), "--style", str(style)], "waybar")
        self.bus = dbus.bus.BusConnection(desktop.environment["DBUS_SESSION_BUS_ADDRESS"])
        self.icon = wait_for(self.find_icon, "the tray icon")
        self.menu = self.find_menu()

    def close(self):
        self.process.kill()
        self.process.wait()
        self.bus.close()

    def find_icon(self):
        """Its middle. Unlike gromit-mpx's, it has no colours."""
        bar = self.desktop.picture()[: HEIGHT - 2].astype(int)
        icons = bands((bar < 255).any(axis=(0, 2)))
        gray = [(begin + end) / 2 for begin, end in icons if numpy.ptp(bar[:, begin:end], axis=2).max() < 30]
        return (gray[0], HEIGHT / 2) if len(gray) == 1 and icons[0][0] > bar.shape[1] / 2 else None

    def find_menu(self):
        for item in self.property(WATCHER, WATCHER_PATH, WATCHER, "RegisteredStatusNotifierItems"):
            name, path = item[: item.index("/")], item[item.index("/") :]
            if self.property(name, path, ITEM, "Id") == "Quillfade":
                return dbus.Interface(self.bus.get_object(name, self.property(name, path, ITEM, "Menu")), MENU)
        raise Failure("Quillfade has announced no tray icon")

    def property(self, name, path, interface, which):
        return self.bus.get_object(name, path).Get(interface, which, dbus_interface=dbus.PROPERTIES_IFACE)

    def lines(self):
        """The menu's texts, from Quillfade."""
        _, (_, _, lines) = self.menu.GetLayout(0, 1, ["label", "type"])
        return [str(values["label"]) for _, values, _ in lines if values.get("type") != "separator"]

    def places(self):
        """The middle of each line that is seen in the open menu."""
        picture = self.desktop.picture()
        paper = (picture == PAPER).all(axis=2)
        rows, columns = (numpy.flatnonzero(paper.any(axis=axis)) for axis in (1, 0))
        if not len(rows):
            return []
        top, bottom, left, right = rows[0] + MARGIN, rows[-1] - MARGIN, columns[0] + MARGIN, columns[-1] - MARGIN
        lines = bands((picture[top:bottom, left:right].max(axis=2) < DARK).any(axis=1))
        return [((left + right) / 2, top + (begin + end) / 2) for begin, end in lines if end - begin >= LEAST_TEXT]

    def choose(self, line, look):
        """Calls `look` while the menu is open."""
        lines = self.lines()
        self.click(self.icon, RIGHT_BUTTON)
        wait_for(lambda: len(self.places()) == len(lines), "the menu shows all its lines")
        time.sleep(0.5)  # it may still move
        place = self.places()[lines.index(line)]
        look()
        self.click(place)
        return lines

    def click(self, place, *button):
        height, width = self.desktop.picture().shape[:2]
        self.desktop.hands.click([round(value) for value in place], (width, height), *button)
