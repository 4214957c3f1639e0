"""Proves that the bundle's property lists are well formed and say what the rest of the tree says.

usage: bundle.py <source tree>
"""

import itertools
import json
import re
import struct
import sys
from pathlib import Path
from xml.etree import ElementTree

IDENTITY = "Quillfade/Basics/Identity.h"
INFO = "Resources/Mac/Info.plist"
ENTITLEMENTS = "Resources/Mac/Quillfade.entitlements"
HEAD = re.compile(r'<\?xml version="1\.0" encoding="UTF-8"\?>\n<!DOCTYPE plist [^>]*>\n<plist version="1\.0">')


def as_text(value):
    return json.dumps(value, ensure_ascii=False)


def stray_text(root):
    """The text that stands in no key and in no value."""
    tails = [one.tail for one in root.iter()]
    texts = [one.text for one in root.iter() if one.tag not in ("key", "string")]
    return "".join(filter(None, tails + texts)).strip()


def plain_value(element):
    """A text or a truth value; None for anything else."""
    if element is None or len(element) > 0:
        return None
    return element.text or "" if element.tag == "string" else {"true": True, "false": False}.get(element.tag)


class Bundle:
    def __init__(self, root):
        self.root = root
        self.problems = []

    def read(self, path):
        return (self.root / path).read_text()

    def property_list(self, path):
        """The values by key, of a list that holds nothing but texts and truth values."""
        text = self.read(path)
        try:
            root = ElementTree.fromstring(text.encode())
        except ElementTree.ParseError as error:
            self.problems.append(f"{path} cannot be read: {error}")
            return {}
        if not HEAD.match(text) or [one.tag for one in root] != ["dict"] or len(root[0]) == 0:
            self.problems.append(f"{path} is no property list")
            return {}
        if stray := stray_text(root):
            self.problems.append(f"{path} cannot be read at: {stray}")
        values = {}
        for key, value in itertools.zip_longest(root[0][::2], root[0][1::2]):
            if key.tag != "key" or len(key) > 0 or key.text in values or plain_value(value) is None:
                self.problems.append(f"{path} cannot be read at: {key.text}")
                return values
            values[key.text] = plain_value(value)
        return values

    def found(self, path, pattern):
        found = re.search(pattern, self.read(path))
        return found and found[1]

    def expect(self, where, actual, expected):
        if actual != expected or type(actual) is not type(expected):
            self.problems.append(f"{where} is {as_text(actual)}, not {as_text(expected)}")

    def check(self):
        info = self.property_list(INFO)
        version = self.found(IDENTITY, r'applicationVersion = "([^"]+)"')
        self.expect("the version of the project", self.found("CMakeLists.txt", r"project\(Quillfade VERSION ([\d.]+)"),
                    version)
        for key, expected in {
            "CFBundleIdentifier": self.found(IDENTITY, r'applicationIdentifier = "([^"]+)"'),
            "CFBundleName": self.found(IDENTITY, r'applicationName = "([^"]+)"'),
            "CFBundleShortVersionString": version,
            "CFBundleVersion": version,
            "CFBundleExecutable": self.found("Platform/Mac/CMakeLists.txt", r"OUTPUT_NAME (\w+)"),
            "LSUIElement": True,
            "LSMinimumSystemVersion": self.found("CMakeLists.txt", r"CMAKE_OSX_DEPLOYMENT_TARGET ([\d.]+)"),
        }.items():
            self.expect(key, info.get(key), expected)
        if not info.get("NSScreenCaptureUsageDescription"):
            self.problems.append("nothing says why the screen is captured")
        self.check_icon(f"Resources/Mac/{info.get('CFBundleIconFile')}")
        entitlements = self.property_list(ENTITLEMENTS)
        # The signing tool hands them to a parser that knows no comments.
        self.expect("a comment in the entitlements", "<!--" in self.read(ENTITLEMENTS), False)
        self.expect("the sandbox", entitlements.get("com.apple.security.app-sandbox"), False)

    def check_icon(self, path):
        """An icon begins with its mark and its length."""
        icon = (self.root / path).read_bytes() if (self.root / path).exists() else b""
        if icon[:8] != struct.pack(">4sI", b"icns", len(icon)):
            self.problems.append(f"{path} is no icon")


def main(root):
    bundle = Bundle(root)
    bundle.check()
    for problem in bundle.problems:
        print(f"bundle: {problem}", file=sys.stderr)
    print(f"the bundle's property lists; {len(bundle.problems)} problems")
    return 1 if bundle.problems else 0


if __name__ == "__main__":
    sys.exit(main(Path(sys.argv[1])))
