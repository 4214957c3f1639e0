"""Holds the adapter's sources to the rules that no compiler checks:

- an Objective-C class holds a C++ object only by std::weak_ptr;
- no block uses `this` or a member;
- every method that an Objective-C class implements is declared: by itself, a superclass or a protocol;
- no text and no number of the application's stands in the adapter.

usage: adapter.py <adapter> <declarations>
"""

import re
import sys
from dataclasses import dataclass
from pathlib import Path

from declarations import read_declarations, read_interface, read_method
from tokens import Reader, ReadingError, tokenize

# What the system wants to be told in text, and the failures that only this adapter has.
TEXTS = {"", "NSScreenNumber", "The system gave no reason.", "The display to capture is no longer there.",
         "On macOS the cover's window asks to be left out of captures: start programs as usual. From macOS 15 on, some ",
         "are reported to capture it all the same.",
         "On macOS there is nothing to install: start programs as usual.",
         "com.apple.screenIsLocked", "com.apple.screenIsUnlocked", "com.apple.screensaver.didstart",
         "com.apple.screensaver.didstop", "CGSSessionScreenIsLocked"}
NUMBERS = {"0", "1"}


@dataclass(frozen=True)
class Source:
    name: str
    text: str

    def readers_after(self, keyword):
        """A reader that stands behind each occurrence of the keyword."""
        reader = Reader(self.text, self.name)
        for index, token in enumerate(reader.tokens):
            if token.value == keyword:
                reader.position = index + 1
                yield reader


def read_sources(root):
    paths = sorted(path for path in root.rglob("*") if path.suffix in (".h", ".mm"))
    return [Source(str(path.relative_to(root)), re.sub(r"^#.*$", "", path.read_text(), flags=re.MULTILINE)) for path in paths]


class Rules:
    def __init__(self, declared):
        self.interfaces = {one.name: one for one in declared.interfaces if not one.category}
        self.protocols = {one.name: one for one in declared.protocols}
        self.problems = []
        self.classes = self.methods = self.blocks = 0

    def check(self, sources):
        for source in sources:
            self.collect_interfaces(source)
        for source in sources:
            for reader in source.readers_after("@implementation"):
                self.check_implementation(source, reader)
            self.check_blocks(source)
            self.check_literals(source)

    def collect_interfaces(self, source):
        for reader in source.readers_after("@interface"):
            one = read_interface(reader)
            self.interfaces[one.name] = one
            self.classes += 1
            for property in one.properties:
                if property.type != "BOOL":
                    self.problems.append(f"{source.name}: the property {one.name}.{property.name} is no truth value")

    def check_implementation(self, source, reader):
        class_name = reader.identifier()
        self.check_state(source, reader, class_name)
        while not reader.accept("@end"):
            method = read_method(reader)
            reader.expect("{")
            reader.balanced("}")
            self.methods += 1
            owner = self.interfaces.get(class_name)
            while owner and not self.declares(owner, method):
                owner = self.interfaces.get(owner.superclass)
            if not owner:
                self.problems.append(f"{source.name}: nothing declares -[{class_name} {method.selector}]")

    def check_state(self, source, reader, class_name):
        if not reader.accept("{"):
            return
        while not reader.accept("}"):
            type = "".join(reader.until(";")[:-1])
            if not re.fullmatch(r"std::weak_ptr<.*>", type):
                self.problems.append(f"{source.name}: {class_name} holds a {type}, not a std::weak_ptr")
            reader.expect(";")

    def declares(self, owner, method):
        return (any((one.selector, one.is_static) == (method.selector, method.is_static) for one in owner.methods)
                or any(method.selector in (one.name, one.getter) for one in owner.properties)
                or any(self.declares(self.protocols[name], method) for name in owner.protocols
                       if name in self.protocols))

    def check_blocks(self, source):
        for reader in source.readers_after("^"):
            reader.until("{", ";", ")")
            if not reader.accept("{"):
                continue
            self.blocks += 1
            for token in reader.balanced("}"):
                if token == "this" or re.fullmatch(r"[a-z]\w*_", token):
                    self.problems.append(f'{source.name}: a block uses "{token}"')

    def check_literals(self, source):
        for token in tokenize(source.text):
            text = re.fullmatch(r'@?"(.*)"', token.value, flags=re.DOTALL)
            is_strange = text[1] not in TEXTS if text else token.value[0].isdigit() and token.value not in NUMBERS
            if is_strange:
                self.problems.append(f"{source.name}:{token.line}: {token.value} is not the adapter's to choose")


def main(adapter_root, declarations_root):
    rules = Rules(read_declarations(declarations_root))
    sources = read_sources(adapter_root)
    rules.check(sources)
    for problem in rules.problems:
        print(f"adapter: {problem}", file=sys.stderr)
    print(f"{rules.classes} Objective-C classes, {rules.methods} methods and {rules.blocks} blocks in "
          f"{len(sources)} files; {len(rules.problems)} problems")
    return 0 if not rules.problems and rules.classes and rules.blocks else 1


if __name__ == "__main__":
    try:
        sys.exit(main(*map(Path, sys.argv[1:3])))
    except ReadingError as error:
        sys.exit(f"adapter: {error}")
