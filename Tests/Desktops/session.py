"""One session of one desktop: starts it, takes the steps, prints a line for each. `run.py` starts this.

usage: session.py DESKTOP SESSION EXECUTABLE RESULTS
"""

import faulthandler
import pathlib
import shutil
import signal
import sys
import time
import traceback

import steps
from desktop import Failure, Layout
from gnome import Gnome
from kwin import Kwin
from kwin_gl import KwinGl
from labwc import Labwc
from sway import Sway

DESKTOPS = {desktop.name: desktop for desktop in (Sway, Labwc, Kwin, KwinGl, Gnome)}
SESSIONS = {
    "one": (Layout(), steps.MAIN),
    "scale-1.25": (Layout(scale=1.25), steps.SCALED),
    "scale-2": (Layout(scale=2, width=1920, height=1080), steps.SCALED),
    "two": (Layout(outputs=2), steps.TWO_OUTPUTS),
}


def main():
    # Says where it hangs.
    faulthandler.register(signal.SIGTERM, chain=True)
    name, session, executable, results = sys.argv[1:]
    layout, todo = SESSIONS[session]
    place = pathlib.Path(results) / name / session
    shutil.rmtree(place, ignore_errors=True)
    place.mkdir(parents=True)
    desktop = DESKTOPS[name](layout, "/tmp/session", place)
    desktop.environment["PATH"] = f"{pathlib.Path(executable).parent}:{desktop.environment['PATH']}"
    if layout.scale != 1 and "scale" in desktop.left_out:
        print(f"{name} {session}: left out: {desktop.left_out['scale']}", flush=True)
        return 0
    taken = steps.Steps(desktop, executable, place)
    failures = 0

    def attempt(what, step):
        begin = time.monotonic()
        taken.step = what
        try:
            outcome = f"passed: {step()}"
        except Exception as error:  # whatever goes wrong, the next step is tried
            if not isinstance(error, Failure):
                traceback.print_exc()
            outcome = f"FAILED: {error}"
        print(f"{name} {session}: {what}: {outcome} ({time.monotonic() - begin:.0f} s)", flush=True)
        return outcome.startswith("passed")

    if not attempt("session", lambda: desktop.start() or desktop.version()):
        return 1
    for what, step in todo:
        if what in desktop.left_out:
            print(f"{name} {session}: {what}: left out: {desktop.left_out[what]}", flush=True)
            continue
        if attempt(what, lambda step=step: step(taken)):
            continue
        failures += 1
        if what == "start":
            break
        taken.tear_down()
    said = desktop.runtime / "home" / "Library" / "Logs" / "Quillfade.log"
    if said.exists():
        shutil.copy(said, place)
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main())
