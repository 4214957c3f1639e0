"""A screen cast of mutter's, as the audience of a video call gets it: frames by PipeWire."""

import os
import queue

import dbus
import gi
import numpy

gi.require_version("Gst", "1.0")
from gi.repository import GLib, Gst  # noqa: E402

SERVICE = "org.gnome.Mutter.ScreenCast"
PATIENCE = 15  # seconds


class Recording:
    def __init__(self, desktop):
        os.environ["XDG_RUNTIME_DIR"] = desktop.environment["XDG_RUNTIME_DIR"]
        Gst.init(None)
        self.pictures = queue.Queue(200)
        bus = desktop.bus
        root = dbus.Interface(bus.get_object(SERVICE, "/org/gnome/Mutter/ScreenCast"), SERVICE)
        path = root.CreateSession(dbus.Dictionary(signature="sv"))
        self.session = dbus.Interface(bus.get_object(SERVICE, path), SERVICE + ".Session")
        options = dbus.Dictionary({"cursor-mode": dbus.UInt32(0)}, signature="sv")
        stream = self.session.RecordMonitor("Meta-0", options)
        node = self.node_of(desktop, stream)
        self.pipeline = Gst.parse_launch(
            f"pipewiresrc path={node} do-timestamp=true always-copy=true ! videoconvert ! video/x-raw,format=BGRx ! "
            "appsink name=sink sync=false emit-signals=true max-buffers=200"
        )
        self.pipeline.get_by_name("sink").connect("new-sample", self.take)
        self.pipeline.set_state(Gst.State.PLAYING)

    def node_of(self, desktop, stream):
        """The PipeWire node; the stream tells it when the session starts."""
        from gi.repository import Gio

        address = desktop.environment["DBUS_SESSION_BUS_ADDRESS"]
        flags = Gio.DBusConnectionFlags.AUTHENTICATION_CLIENT | Gio.DBusConnectionFlags.MESSAGE_BUS_CONNECTION
        listener = Gio.DBusConnection.new_for_address_sync(address, flags, None, None)
        nodes = []
        loop = GLib.MainLoop()

        def added(*arguments):
            nodes.append(arguments[5][0])
            loop.quit()

        interface = SERVICE + ".Stream"
        listener.signal_subscribe(
            SERVICE, interface, "PipeWireStreamAdded", stream, None, Gio.DBusSignalFlags.NONE, added
        )
        self.session.Start()
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
        self.session.Stop()
        self.pictures.put(None)
