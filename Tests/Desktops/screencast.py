"""A screen cast of mutter's, as the audience of a video call gets it: frames by PipeWire."""

import os
import queue

import gi
import numpy

gi.require_version("Gst", "1.0")
from gi.repository import Gio, GLib, Gst  # noqa: E402

SERVICE, PATH = "org.gnome.Mutter.ScreenCast", "/org/gnome/Mutter/ScreenCast"
PATIENCE = 15  # seconds


class Recording:
    def __init__(self, desktop):
        os.environ["XDG_RUNTIME_DIR"] = desktop.environment["XDG_RUNTIME_DIR"]
        Gst.init(None)
        self.pictures = queue.Queue()
        flags = Gio.DBusConnectionFlags.AUTHENTICATION_CLIENT | Gio.DBusConnectionFlags.MESSAGE_BUS_CONNECTION
        address = desktop.environment["DBUS_SESSION_BUS_ADDRESS"]
        self.bus = Gio.DBusConnection.new_for_address_sync(address, flags, None, None)
        self.pipeline = Gst.parse_launch(
            f"pipewiresrc path={self.start()} do-timestamp=true always-copy=true ! videoconvert ! "
            "video/x-raw,format=BGRx ! appsink name=sink sync=false emit-signals=true"
        )
        self.pipeline.get_by_name("sink").connect("new-sample", self.take)
        self.pipeline.set_state(Gst.State.PLAYING)

    def call(self, path, interface, method, arguments=None):
        return self.bus.call_sync(SERVICE, path, interface, method, arguments, None, 0, -1, None)

    def start(self):
        """The PipeWire node; the stream tells it when the session starts."""
        session = SERVICE + ".Session"
        (self.session,) = self.call(PATH, SERVICE, "CreateSession", GLib.Variant("(a{sv})", ({},)))
        without_pointer = {"cursor-mode": GLib.Variant("u", 0)}
        monitor = GLib.Variant("(sa{sv})", ("Meta-0", without_pointer))
        (stream,) = self.call(self.session, session, "RecordMonitor", monitor)
        nodes = []
        loop = GLib.MainLoop()

        def added(*arguments):
            nodes.append(arguments[5][0])
            loop.quit()

        signal = (SERVICE, SERVICE + ".Stream", "PipeWireStreamAdded", stream, None, 0, added)
        self.bus.signal_subscribe(*signal)
        self.call(self.session, session, "Start")
        GLib.timeout_add_seconds(PATIENCE, loop.quit)
        loop.run()
        return nodes[0]

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
        self.call(self.session, SERVICE + ".Session", "Stop")
        self.pictures.put(None)
