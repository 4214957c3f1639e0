"""A screen cast by the desktop portal, as the audience of a video call gets it."""

from gi.repository import Gio, GLib

from desktop import PATIENCE, Failure
from pipewire import Stream

SERVICE, PATH = "org.freedesktop.portal.Desktop", "/org/freedesktop/portal/desktop"
CASTS = "org.freedesktop.portal.ScreenCast"
MONITOR, WITHOUT_POINTER = 1, 1  # what to cast, and how


class Recording(Stream):
    def start(self):
        """The first screen, once the user has agreed."""
        flags = Gio.DBusConnectionFlags.AUTHENTICATION_CLIENT | Gio.DBusConnectionFlags.MESSAGE_BUS_CONNECTION
        address = self.desktop.environment["DBUS_SESSION_BUS_ADDRESS"]
        self.bus = Gio.DBusConnection.new_for_address_sync(address, flags, None, None)
        self.tokens = 0
        created = self.request("CreateSession", "", (), {"session_handle_token": GLib.Variant("s", "cast")})
        self.session = created["session_handle"]
        wanted = {"types": GLib.Variant("u", MONITOR), "cursor_mode": GLib.Variant("u", WITHOUT_POINTER)}
        self.request("SelectSources", "o", (self.session,), wanted)
        started = self.request("Start", "os", (self.session, ""), {}, self.agree)
        reply, descriptors = self.bus.call_with_unix_fd_list_sync(
            *self.method("OpenPipeWireRemote", "(oa{sv})", (self.session, {})), None, 0, -1, None, None
        )
        return f"fd={descriptors.get(reply.unpack()[0])} path={started['streams'][0][0]}"

    @staticmethod
    def method(name, signature, arguments):
        return SERVICE, PATH, CASTS, name, GLib.Variant(signature, arguments)

    def agree(self):
        # The dialog has one screen to choose, in its middle.
        layout = self.desktop.layout
        self.desktop.agree((layout.width // 2, layout.height // 2))

    def request(self, name, signature, arguments, options, meanwhile=None):
        """What the portal answers."""
        self.tokens += 1
        token = f"cast{self.tokens}"
        caller = self.bus.get_unique_name()[1:].replace(".", "_")
        answers = []
        loop = GLib.MainLoop()

        def answered(*signal):
            answers.append(signal[5].unpack())
            loop.quit()

        path = f"{PATH}/request/{caller}/{token}"
        self.bus.signal_subscribe(SERVICE, "org.freedesktop.portal.Request", "Response", path, None, 0, answered)
        options = options | {"handle_token": GLib.Variant("s", token)}
        self.bus.call_sync(*self.method(name, f"({signature}a{{sv}})", (*arguments, options)), None, 0, -1, None)
        if meanwhile:
            meanwhile()
        GLib.timeout_add_seconds(round(15 * PATIENCE), loop.quit)
        loop.run()
        if not answers or answers[0][0] != 0:
            raise Failure(f"the portal answers {name} with {answers}")
        return answers[0][1]

    def end(self):
        closed = (SERVICE, self.session, "org.freedesktop.portal.Session", "Close")
        self.bus.call_sync(*closed, None, None, 0, -1, None)
