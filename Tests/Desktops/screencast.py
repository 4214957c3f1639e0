"""A screen cast by the desktop portal, as the audience of a video call gets it: frames by PipeWire."""

import os
import queue

import gi
import numpy

from desktop import Failure

gi.require_version("Gst", "1.0")
from gi.repository import Gio, GLib, Gst  # noqa: E402

SERVICE, PATH = "org.freedesktop.portal.Desktop", "/org/freedesktop/portal/desktop"
CASTS = "org.freedesktop.portal.ScreenCast"
MONITOR, WITHOUT_POINTER = 1, 1  # what to cast, and how
PATIENCE = 15  # seconds


class Recording:
    def __init__(self, desktop):
        self.desktop = desktop
        os.environ["XDG_RUNTIME_DIR"] = desktop.environment["XDG_RUNTIME_DIR"]
        Gst.init(None)
        self.pictures = queue.Queue()
        flags = Gio.DBusConnectionFlags.AUTHENTICATION_CLIENT | Gio.DBusConnectionFlags.MESSAGE_BUS_CONNECTION
        address = desktop.environment["DBUS_SESSION_BUS_ADDRESS"]
        self.bus = Gio.DBusConnection.new_for_address_sync(address, flags, None, None)
        self.tokens = 0
        node = self.start()
        reply, descriptors = self.bus.call_with_unix_fd_list_sync(
            *self.method("OpenPipeWireRemote", "(oa{sv})", (self.session, {})), None, 0, -1, None, None
        )
        self.pipeline = Gst.parse_launch(
            f"pipewiresrc fd={descriptors.get(reply.unpack()[0])} path={node} do-timestamp=true always-copy=true ! "
            "videoconvert ! video/x-raw,format=BGRx ! appsink name=sink sync=false emit-signals=true"
        )
        self.pipeline.get_by_name("sink").connect("new-sample", self.take)
        self.pipeline.set_state(Gst.State.PLAYING)

    @staticmethod
    def method(name, signature, arguments):
        return SERVICE, PATH, CASTS, name, GLib.Variant(signature, arguments)

    def start(self):
        """The PipeWire node of the first screen, once the user has agreed."""
        created = self.request("CreateSession", "", (), {"session_handle_token": GLib.Variant("s", "cast")})
        self.session = created["session_handle"]
        wanted = {"types": GLib.Variant("u", MONITOR), "cursor_mode": GLib.Variant("u", WITHOUT_POINTER)}
        self.request("SelectSources", "o", (self.session,), wanted)
        started = self.request("Start", "os", (self.session, ""), {}, self.agree)
        return started["streams"][0][0]

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
        GLib.timeout_add_seconds(PATIENCE, loop.quit)
        loop.run()
        if not answers or answers[0][0] != 0:
            raise Failure(f"the portal answers {name} with {answers}")
        return answers[0][1]

    def take(self, sink):
        sample = sink.emit("pull-sample")
        shape = sample.get_caps().get_structure(0)
        width, height = shape.get_value("width"), shape.get_value("height")
        buffer = sample.get_buffer()
        data = buffer.extract_dup(0, buffer.get_size())
        rows = numpy.frombuffer(data, numpy.uint8).reshape(height, -1)[:, : width * 4]
        self.pictures.put(rows.reshape(height, width, 4)[..., 2::-1])
        return Gst.FlowReturn.OK

    def __iter__(self):
        while (picture := self.pictures.get(timeout=PATIENCE)) is not None:
            yield picture

    def stop(self):
        self.pipeline.set_state(Gst.State.NULL)
        closed = (SERVICE, self.session, "org.freedesktop.portal.Session", "Close")
        self.bus.call_sync(*closed, None, None, 0, -1, None)
        self.pictures.put(None)
