"""What is known of the frameworks: the answers to the questions that the check of the declarations asks.

The file of the facts has one answer a line, "name: fact", sorted by name. A question is a kind of thing and a name; the
first words of a fact tell which kind of question it answers:

    class A B, interface A B             what a type is; its superclasses and protocols, near and far
    struct {field: type, ...}            the fields in their order
    enumerator NAME VALUE                one of an enumeration; short of what all have in common with its name
    constant TYPE
    function (TYPE, ...): TYPE
    [static] method (TYPE, ...): TYPE    of the name's type, or inherited; the nearest first
    [static] [readonly] property TYPE
    no KIND                              there is none of that name

The types are those of the typings.
"""

import json
import re
from dataclasses import dataclass

from tokens import split_top

PATH = "Tests/Mac/facts.txt"
KINDS = {"class": "type", "interface": "type", "enumerator": "enum", "static": "member", "readonly": "member",
         "method": "member", "property": "member"}
MEMBER = re.compile(r"(static )?(readonly )?(method|property) (.*)")


class UnknownFact(Exception):
    """The facts do not tell of a name: neither what it is nor that there is none."""

    def __init__(self, name):
        super().__init__(f"{PATH} does not tell of {name}: run Scripts/mac-facts")
        self.name = name


@dataclass(frozen=True)
class Type:
    kinds: set[str]
    ancestors: set[str]


@dataclass(frozen=True)
class Signature:
    parameters: list[str]
    result: str


@dataclass(frozen=True)
class Member:
    """A method has a signature, a property a type."""
    is_static: bool
    is_read_only: bool
    signature: Signature | None
    type: str | None


def read_signature(text):
    """"(T, U): R" """
    parameters, *result = split_top(text, ":")
    return Signature(split_top(parameters[1:-1], ","), ": ".join(result))


def read_member(text):
    static, readonly, kind, rest = MEMBER.fullmatch(text).groups()
    is_method = kind == "method"
    return Member(static is not None, readonly is not None, read_signature(rest) if is_method else None,
                  None if is_method else rest)


def heading(root):
    """The first lines of the file: which package it is made from, as the manifest has it, and how."""
    manifest = json.loads((root / "Tests/Mac/package.json").read_text())
    [(package, version)] = manifest["devDependencies"].items()
    return (f"# What the typings in the npm package {package} {version} tell of the names in Tests/Mac/declarations.\n"
            "# Made by Scripts/mac-facts, which makes it anew; Tests/Mac/check/facts.py says how to read it.\n")


class Facts:
    """The facts of a file, or those that the typings are asked for and that become one."""

    def __init__(self, source=None):
        self.answers = {}
        self.source = source

    def ask(self, kind, name):
        """The facts, as text; none when there is no such thing."""
        if (kind, name) not in self.answers:
            if self.source is None:
                raise UnknownFact(name)
            self.answers[kind, name] = self.source.answer(kind, name) or [f"no {kind}"]
        answer = self.answers[kind, name]
        return [] if answer == [f"no {kind}"] else answer

    def type(self, name):
        answer = [text.split() for text in self.ask("type", name)]
        return Type({kind for kind, *_ in answer}, {one for _, *ancestors in answer for one in ancestors})

    def struct(self, name):
        """The types of the fields by name, in their order; None when there is no such type."""
        answer = self.ask("struct", name)
        if not answer:
            return None
        fields = split_top(answer[0].removeprefix("struct ")[1:-1], ",")
        return dict(field.split(": ", 1) for field in fields)

    def enum(self, name):
        """The values by name."""
        words = (text.split() for text in self.ask("enum", name))
        return {enumerator: int(value) for _, enumerator, value in words}

    def constant(self, name):
        answer = self.ask("constant", name)
        return answer[0].removeprefix("constant ") if answer else None

    def function(self, name):
        answer = self.ask("function", name)
        return read_signature(answer[0].removeprefix("function ")) if answer else None

    def members(self, owner, name):
        """Every member of that name of a type, its superclasses and their protocols, nearest first."""
        return [read_member(text) for text in self.ask("member", f"{owner}.{name}")]

    def read(self, root):
        text = (root / PATH).read_text()
        if not text.startswith(heading(root)):
            raise UnknownFact("the package that Tests/Mac/package.json names")
        for line in text.removeprefix(heading(root)).splitlines():
            name, fact = line.split(": ", 1)
            first, second, *_ = fact.split(" ")
            kind = second if first == "no" else KINDS.get(first, first)
            self.answers.setdefault((kind, name), []).append(fact)

    def write(self, root):
        questions = sorted(self.answers, key=lambda question: question[::-1])
        lines = [f"{name}: {fact}\n" for kind, name in questions for fact in self.answers[kind, name]]
        (root / PATH).write_text(heading(root) + "".join(lines))
        return len(lines)
