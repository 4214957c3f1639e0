"""Runs the sessions of the desktops, each in namespaces of its own: X sockets, processes and /tmp end with it.

usage: run.py [DESKTOP[:SESSION]…]     needs root
Prints one line for each step; pictures and logs go to build/desktops. Ends with 1 if a step failed.
"""

import os
import pathlib
import subprocess
import sys

HERE = pathlib.Path(__file__).resolve().parent
DESKTOPS = ["sway", "labwc", "kwin", "gnome"]
SESSIONS = ["one", "scale-1.25", "scale-2", "two"]
LONGEST = 600  # seconds for a session


def run(desktop, session):
    results = HERE.parents[1] / "build" / "desktops"
    executable = HERE.parents[1] / "build" / "release" / "Platform" / "Linux" / "quillfade"
    command = [str(HERE / "apart"), sys.executable, "-B", str(HERE / "session.py")]
    command += [desktop, session, str(executable), str(results)]
    try:
        return subprocess.run(command, timeout=LONGEST, check=False).returncode == 0
    except subprocess.TimeoutExpired:
        print(f"{desktop} {session}: FAILED: took longer than {LONGEST} s", flush=True)
        return False


def main():
    passed = True
    for wish in sys.argv[1:] or DESKTOPS:
        desktop, _, session = wish.partition(":")
        for each in [session] if session else SESSIONS:
            passed = run(desktop, each) and passed
    return 0 if passed else 1


if __name__ == "__main__":
    os.environ.setdefault("PATH", "/usr/bin:/bin")
    sys.exit(main())
