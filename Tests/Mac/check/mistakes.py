"""Plants one mistake at a time in a copy of the sources and proves that the check finds it.

usage: mistakes.py <source tree>
"""

import re
import shutil
import subprocess
import sys
import tempfile
from pathlib import Path

from planted import MISTAKES, NothingToSpoil, planted

COPIED = ["CMakeLists.txt", "Platform", "Quillfade", "Resources/Mac", "Scripts", "Tests/Mac"]


def copy_sources(root, copy):
    for name in COPIED:
        (copy / name).parent.mkdir(parents=True, exist_ok=True)
        if (root / name).is_dir():
            shutil.copytree(root / name, copy / name)
        else:
            shutil.copy2(root / name, copy / name)


def run(copy, *step):
    return subprocess.run([copy / "Scripts/check-mac", *step], stdin=subprocess.DEVNULL, capture_output=True, text=True)


def failure_of(mistake, copy):
    """Why the mistake was not found as it should be; None when it was."""
    try:
        with planted(mistake, copy):
            done = run(copy, *mistake.step)
    except NothingToSpoil as nothing:
        return nothing
    if done.returncode == 0:
        return "the check passed"
    if not re.search(mistake.says, done.stderr):
        return f"the check failed otherwise:\n{done.stderr}"
    return None


def main(root):
    failures = 0
    with tempfile.TemporaryDirectory(prefix="quillfade-mac-") as directory:
        copy = Path(directory)
        copy_sources(root, copy)
        for mistake in MISTAKES:
            if failure := failure_of(mistake, copy):
                print(f"mistakes: {mistake.what}: {failure}", file=sys.stderr)
                failures += 1
        # The copy as it was passes the steps in which the mistakes were found.
        for step in ("declarations", "rules", "operations", "bundle"):
            if run(copy, step).returncode != 0:
                print(f'mistakes: the sources fail "{step}" without any mistake', file=sys.stderr)
                failures += 1
    print(f"{len(MISTAKES)} planted mistakes, {failures} not found")
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main(Path(sys.argv[1])))
