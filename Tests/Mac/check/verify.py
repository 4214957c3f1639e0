"""Proves each declaration by the facts.

usage: verify.py <source tree>
"""

import sys
from pathlib import Path

from facts import Facts, UnknownFact
from tokens import ReadingError
from verification import Verification


def main(root):
    facts = Facts()
    facts.read(root)
    verification = Verification(root, facts)
    verification.run()

    for problem in verification.problems:
        print(f"verify: {problem}", file=sys.stderr)
    for name, reason in verification.exceptions.items():
        print(f"not in the typings: {name} ({reason})")
    declared = verification.declared
    print("typedefs, which the typings resolve:", *(one.name for one in declared.typedefs))
    print("constants without a value in the typings:",
          *(one.name for one in declared.constants if one.value is not None))
    print(f"{verification.proved} declarations proved, {verification.values} of them with their values; "
          f"{len(verification.problems)} problems")
    return 1 if verification.problems else 0


if __name__ == "__main__":
    try:
        sys.exit(main(Path(sys.argv[1])))
    except (ReadingError, UnknownFact) as error:
        sys.exit(f"verify: {error}")
