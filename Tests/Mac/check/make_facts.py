"""Writes what the typings tell of all that the check of the declarations asks: of them as they are, and with each of
the mistakes that are planted in them.

usage: make_facts.py <source tree> <typings package>
"""

import shutil
import sys
import tempfile
from pathlib import Path

from facts import PATH, Facts
from planted import MISTAKES, NothingToSpoil, planted
from tokens import ReadingError
from typings import Typings
from verification import Verification


def main(root, package):
    facts = Facts(Typings(package))
    Verification(root, facts).run()
    with tempfile.TemporaryDirectory(prefix="quillfade-mac-") as directory:
        copy = Path(directory)
        shutil.copytree(root / "Tests/Mac", copy / "Tests/Mac")
        for mistake in MISTAKES:
            if mistake.step != ("declarations",) or not mistake.in_facts:
                continue
            try:
                with planted(mistake, copy):
                    Verification(copy, facts).run()
            except NothingToSpoil as nothing:
                print(f"mac-facts: {mistake.what} cannot be planted: {nothing}", file=sys.stderr)
    print(f"{PATH}: {facts.write(root)} facts")


if __name__ == "__main__":
    try:
        main(*map(Path, sys.argv[1:3]))
    except ReadingError as error:
        sys.exit(f"mac-facts: {error}")
