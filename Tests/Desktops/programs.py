"""The programs of a session: the content beneath, the ink above it, and Quillfade."""

import json
import pathlib
import signal
import subprocess
import sys

from desktop import PATIENCE, Failure, wait_for

HERE = pathlib.Path(__file__).parent
WIDTH_OF_STROKES = 8


class Program:
    def __init__(self, process):
        self.process = process

    def is_running(self):
        return self.process.poll() is None

    def kill(self):
        self.process.kill()
        self.process.wait()


class Content(Program):
    def __init__(self, desktop, monitor, pictures_a_second=10):
        command = [sys.executable, str(HERE / "content.py"), str(monitor), str(pictures_a_second)]
        self.log = desktop.logs / f"content{monitor}.log"
        super().__init__(desktop.spawn(command, self.log.stem, GDK_BACKEND="wayland"))

    def keys(self):
        """How many were pressed in all windows of the kind so far."""
        return self.log.read_text().split("\n").count("key")

    def pause(self):
        self.process.send_signal(signal.SIGSTOP)

    def resume(self):
        self.process.send_signal(signal.SIGCONT)


class Gromit(Program):
    """gromit-mpx; strokes are (from x, from y, to x, to y) in the pixels of the X server."""

    def __init__(self, desktop):
        self.desktop = desktop
        config = pathlib.Path(desktop.environment["HOME"]) / ".config"
        config.mkdir(exist_ok=True)
        (config / "gromit-mpx.ini").write_text("[General]\nShowIntroOnStartup=false\n")
        # Not with --debug: it makes the window pink.
        command = ["gromit-mpx", "--opacity", "1", "--key", "none", "--undo-key", "none"]
        super().__init__(desktop.spawn(command, "gromit", GDK_BACKEND="x11"))

    def draw(self, *strokes):
        # Whoever asks before the program listens takes its place for good.
        wait_for(lambda: self.desktop.owns_selection("Gromit/control"), "gromit-mpx listens")
        for stroke in strokes:
            self.desktop.ask(["gromit-mpx", "--line", *map(str, stroke), "#ff0000", str(WIDTH_OF_STROKES)])


class Quillfade(Program):
    def __init__(self, desktop, executable, region, name="quillfade"):
        self.desktop = desktop
        self.executable = executable
        home = pathlib.Path(desktop.environment["HOME"])
        (home / ".config" / "quillfade").mkdir(parents=True, exist_ok=True)
        (home / "Library" / "Logs").mkdir(parents=True, exist_ok=True)
        values = {"enabled": False, "style": 0, "outline": False, "region": region}
        (home / ".config" / "quillfade" / "settings.json").write_text(json.dumps(values))
        super().__init__(desktop.spawn([executable], name))
        wait_for(lambda: not self.is_running() or self.answers(), "Quillfade answers")
        if not self.is_running():
            raise Failure(f"Quillfade ended with {self.process.returncode}")

    def answers(self):
        return self.run("status").returncode == 0

    def run(self, *words):
        command = [self.executable, *words]
        patience = 30 * PATIENCE
        return subprocess.run(
            command, env=self.desktop.environment, capture_output=True, timeout=patience, check=False
        )

    def command(self, *words):
        done = self.run(*words)
        if done.returncode != 0:
            raise Failure(f"quillfade {' '.join(words)}: {done.returncode}: {done.stderr.decode().strip()}")
        return done.stdout.decode()
