"""Looks at every frame of a recording as it comes."""

import threading
import time
from dataclasses import dataclass

import numpy

import pixels


@dataclass(frozen=True)
class Frame:
    time: float  # when it came
    inside: int  # pixels of ink
    outside: int
    number: int  # that the content shows inside
    look: numpy.ndarray | None  # the frame itself, where there is ink inside, or where it is black


class Recorder:
    def __init__(self, desktop, inner, outer, screen):
        self.frames = []
        self.source = desktop.frames()
        self.inner, self.outer, self.screen = inner, outer, screen
        self.thread = threading.Thread(target=self.read, daemon=True)
        self.thread.start()

    def read(self):
        for picture in self.source:
            inside = pixels.ink_inside(picture, self.inner)
            outside = int(pixels.ink_outside(picture, self.outer).sum())
            number = pixels.counter(picture, self.screen)
            look = picture.copy() if inside or number == pixels.BLACK else None
            self.frames.append(Frame(time.monotonic(), inside, outside, number, look))

    def stop(self):
        self.source.stop()
        self.thread.join(10)
        return self.frames
