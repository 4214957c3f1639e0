"""PipeWire, and the frames of a stream as they come."""

import os
import queue

import gi
import numpy

from desktop import PATIENCE, wait_for

gi.require_version("Gst", "1.0")
from gi.repository import Gst  # noqa: E402


def start_services(desktop):
    """PipeWire, and the manager of its sessions, which gives up if nobody listens yet."""
    desktop.spawn(["pipewire"], "pipewire")
    wait_for((desktop.runtime / "pipewire-0").exists, "PipeWire listens")
    desktop.spawn(["wireplumber"], "wireplumber")


class Stream:
    """Who inherits it starts the cast, and ends it."""

    def __init__(self, desktop):
        self.desktop = desktop
        os.environ["XDG_RUNTIME_DIR"] = desktop.environment["XDG_RUNTIME_DIR"]
        Gst.init(None)
        self.pictures = queue.Queue()
        self.pipeline = Gst.parse_launch(
            f"pipewiresrc {self.start()} do-timestamp=true always-copy=true ! videoconvert ! "
            "video/x-raw,format=BGRx ! appsink name=sink sync=false emit-signals=true"
        )
        self.pipeline.get_by_name("sink").connect("new-sample", self.take)
        self.pipeline.set_state(Gst.State.PLAYING)

    def start(self):
        """What pipewiresrc is to connect to."""
        raise NotImplementedError

    def end(self):
        raise NotImplementedError

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
        while (picture := self.pictures.get(timeout=15 * PATIENCE)) is not None:
            yield picture

    def stop(self):
        self.pipeline.set_state(Gst.State.NULL)
        self.end()
        self.pictures.put(None)
