"""Reads the machine-made typings of the frameworks. They have one declaration a line, and so does this."""

import re
from dataclasses import dataclass, field

from tokens import split_top

ENUM = re.compile(r"declare const (\w+): \{")
CONSTANT = re.compile(r"declare const (\w+): (.*);")
FUNCTION = re.compile(r"declare function (\w+)(\(.*);")
TYPE = re.compile(r"declare (class|interface) (\w+)(.*)\{")
ENUMERATOR = re.compile(r"  (\w+): (-?\d+),")
MEMBER = re.compile(r"\s*(static )?(readonly )?([\w$]+)\??(.*);")


@dataclass(frozen=True)
class Member:
    name: str
    is_method: bool
    fact: str


@dataclass
class Type:
    kinds: set[str] = field(default_factory=set)
    parents: list[str] = field(default_factory=list)
    members: list[Member] = field(default_factory=list)


def signature(text):
    """"(a: T, b: U): R" without the names of the parameters."""
    parameters, *result = split_top(text, ":")
    # A class method that makes an instance of the class it is sent to names that class first.
    typed = (one.partition(":") for one in split_top(parameters[1:-1], ",") if not one.startswith("this:"))
    return f"({', '.join(type.strip() for _, _, type in typed)}): {': '.join(result)}"


def read_member(line):
    found = MEMBER.fullmatch(line)
    if not found:
        return None
    static, readonly, name, rest = found.groups(default="")
    call = rest[rest.index(">(") + 1 :] if rest.startswith("<") else rest
    if call.startswith("("):
        return Member(name, True, f"{static}method {signature(call)}")
    return Member(name, False, f"{static}{readonly}property {rest.removeprefix(':').strip()}")


class Typings:
    def __init__(self, root):
        self.enums = {}
        self.constants = {}
        self.functions = {}
        self.types = {}
        for path in sorted((root / "types").glob("*.d.ts")):
            self.read_lines(iter(path.read_text().split("\n")))

    def read_lines(self, lines):
        for line in lines:
            if not line.startswith("declare "):
                continue
            if found := ENUM.fullmatch(line):
                self.read_enum(found[1], lines)
            elif found := CONSTANT.fullmatch(line):
                self.constants[found[1]] = found[2]
            elif found := FUNCTION.fullmatch(line):
                self.functions[found[1]] = found[2]
            elif found := TYPE.fullmatch(line):
                self.read_type(*found.groups(), lines)

    def read_enum(self, name, lines):
        values = self.enums[name] = {}
        while (line := next(lines)) != "};":
            found = ENUMERATOR.fullmatch(line)
            if not found:
                raise ValueError(f"typings of {name}: {line}")
            values[found[1]] = found[2]

    def read_type(self, kind, name, tail, lines):
        one = self.types.setdefault(name, Type())
        one.kinds.add(kind)
        parents = re.split(r"\bextends\b|\bimplements\b|,", re.sub(r"<[^{]*?>", "", tail))
        one.parents += [parent.strip() for parent in parents if parent.strip()]
        while (line := next(lines)) != "}":
            if member := read_member(line):
                one.members.append(member)

    def with_ancestors(self, name):
        """The names of a type, its superclasses and their protocols, nearest first."""
        found = [name]
        for one in found:
            parents = self.types[one].parents if one in self.types else []
            found += [parent for parent in dict.fromkeys(parents) if parent not in found]
        return found

    def answer(self, kind, name):
        """What the typings tell of a name, in the words of the facts; nothing when they have no such thing."""
        return getattr(self, f"answer_{kind}")(name)

    def answer_type(self, name):
        if name not in self.types:
            return []
        return [" ".join([kind, *sorted(self.with_ancestors(name)[1:])]) for kind in sorted(self.types[name].kinds)]

    def answer_struct(self, name):
        if name not in self.types:
            return []
        fields = [f"{member.name}: {member.fact.split('property ', 1)[1]}" for member in self.types[name].members
                  if not member.is_method]
        return [f"struct {{{', '.join(fields)}}}"]

    def answer_enum(self, name):
        return [f"enumerator {one} {value}" for one, value in self.enums.get(name, {}).items()]

    def answer_constant(self, name):
        return [f"constant {self.constants[name]}"] if name in self.constants else []

    def answer_function(self, name):
        return [f"function {signature(self.functions[name])}"] if name in self.functions else []

    def answer_member(self, name):
        owner, _, member_name = name.partition(".")
        owners = [self.types[one] for one in self.with_ancestors(owner) if one in self.types]
        facts = [member.fact for one in owners for member in one.members if member.name == member_name]
        return list(dict.fromkeys(facts))
