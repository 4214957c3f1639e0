"""Says how many lines and branches of a folder were reached, and in which of its files that is too few.

usage: llvm-cov export --summary-only ... | coverage.py <folder>
"""

import json
import sys

ENOUGH = 90  # percent
KINDS = ("lines", "branches")


class Count:
    def __init__(self):
        self.reached = self.all = 0

    def add(self, summary):
        self.reached += summary["covered"]
        self.all += summary["count"]

    @property
    def percent(self):
        return 100 * self.reached / self.all if self.all else 100.0

    def __str__(self):
        return f"{self.percent:.1f} % ({self.reached} of {self.all})"


def counts_of(summaries):
    counts = {kind: Count() for kind in KINDS}
    for summary in summaries:
        for kind in KINDS:
            counts[kind].add(summary[kind])
    return counts


def report(files, folder):
    """The lines to print, and whether enough was reached."""
    own = {name.split(f"/{folder}/", 1)[1]: summary for name, summary in files if f"/{folder}/" in name}
    lines = []
    for name, summary in sorted(own.items()):
        counts = counts_of([summary])
        if any(count.percent < ENOUGH for count in counts.values()):
            lines.append(f"{name}: " + ", ".join(f"{kind} {counts[kind]}" for kind in KINDS))
    total = counts_of(own.values())
    lines.append(f"{folder}, {len(own)} files: " + ", ".join(f"{kind} {total[kind]}" for kind in KINDS))
    return lines, all(0 < count.all and count.percent >= ENOUGH for count in total.values())


def main(folder):
    data = json.load(sys.stdin)["data"][0]
    lines, is_enough = report([(one["filename"], one["summary"]) for one in data["files"]], folder)
    print("\n".join(lines))
    if not is_enough:
        print(f"coverage: less than {ENOUGH} % were reached", file=sys.stderr)
    return 0 if is_enough else 1


if __name__ == "__main__":
    sys.exit(main(sys.argv[1]))
