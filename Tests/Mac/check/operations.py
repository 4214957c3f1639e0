"""Proves that each operation of the list is found where the list says; with --table, writes the list as a table.

usage: operations.py <list> <source tree> [--table]
"""

import re
import sys
from dataclasses import dataclass
from pathlib import Path


@dataclass(frozen=True)
class Operation:
    heading: str
    name: str
    file: str = ""
    functions: str = ""
    token: str | None = None  # what stands there

    def problem(self, root):
        if self.token is None:
            return "four columns are needed"
        path = root / self.file
        if not path.exists():
            return f"there is no {self.file}"
        text = path.read_text()
        if self.token not in text:
            return f"not found in {self.file}: {self.token}"
        for name in self.functions.split(", "):
            if not re.search(rf"\b{re.escape(name.split('::')[-1])}\b", text):
                return f"{self.file} has no {name}"
        return None

    def row(self, previous):
        first = "" if previous and previous.heading == self.heading else self.heading
        file = self.file.removeprefix("Platform/Mac/")
        return f"| {first} | {self.name} | `{file}` | `{self.functions}` |"


def read_operations(text):
    heading = ""
    for line in text.splitlines():
        if line.startswith("## "):
            heading = line.removeprefix("## ")
        elif line and not line.startswith("#"):
            yield Operation(heading, *line.split(" | ")[:4])


def main(list_path, root, mode=""):
    operations = list(read_operations(Path(list_path).read_text()))
    problems = [f"{one.name}: {problem}" for one in operations if (problem := one.problem(Path(root)))]
    for problem in problems:
        print(f"operations: {problem}", file=sys.stderr)
    if mode == "--table":
        print("| | operation | file | function |\n|---|---|---|---|")
        for previous, one in zip([None, *operations], operations):
            print(one.row(previous))
    else:
        print(f"{len(operations)} operations listed, {len(problems)} missing")
    return 0 if operations and not problems else 1


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
