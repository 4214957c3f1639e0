"""Reads the declaration headers. They keep to a small part of the language; anything else is an error."""

import re
from dataclasses import dataclass, field

from tokens import Reader, ReadingError, is_name

IGNORED_MARKS = {"nullable", "nonnull", "_Nullable", "_Nonnull", "__unsafe_unretained", "const", "struct"}
PROPERTY_MARKS = {"readonly", "class", "nullable", "copy", "strong", "weak", "assign", "nonatomic",
                  "unsafe_unretained", "null_resettable"}
DIRECTIVE = re.compile(
    r"#(pragma once|pragma clang assume_nonnull (begin|end)|import <\w+/\w+\.h>|include <std\w+\.h>)")


@dataclass(frozen=True)
class Named:
    """A type's name, a struct's field, or a constant; a constant that is given a value here has one."""
    name: str
    type: str
    value: float | None = None


@dataclass(frozen=True)
class Enumeration:
    name: str
    enumerators: list[Named]


@dataclass(frozen=True)
class Struct:
    name: str
    fields: list[Named]


@dataclass(frozen=True)
class Function:
    name: str
    parameters: list[str]
    result: str


@dataclass(frozen=True)
class Method:
    is_static: bool
    selector: str
    parameters: list[str]
    result: str


@dataclass(frozen=True)
class Property:
    name: str
    type: str
    getter: str | None
    is_static: bool
    is_read_only: bool


@dataclass
class Owner:
    """An interface, a category or a protocol."""
    name: str
    category: str | None = None
    superclass: str | None = None
    generics: list[str] = field(default_factory=list)
    protocols: list[str] = field(default_factory=list)
    methods: list[Method] = field(default_factory=list)
    properties: list[Property] = field(default_factory=list)


@dataclass
class Declarations:
    enums: list[Enumeration] = field(default_factory=list)
    structs: list[Struct] = field(default_factory=list)
    typedefs: list[Named] = field(default_factory=list)
    constants: list[Named] = field(default_factory=list)
    functions: list[Function] = field(default_factory=list)
    interfaces: list[Owner] = field(default_factory=list)
    protocols: list[Owner] = field(default_factory=list)
    forward: list[str] = field(default_factory=list)
    macros: list[str] = field(default_factory=list)


def type_text(tokens):
    """A type as text: without nullability, and without the name of what has the type."""
    return " ".join(token for token in tokens if token not in IGNORED_MARKS)


def type_and_name(reader, tokens):
    """"unsigned long name" as name and type. The name of a block or function pointer stands after its caret or star."""
    for index in range(1, len(tokens) - 1):
        if tokens[index] in ("^", "*") and tokens[index - 1] == "(":
            if not is_name(tokens[index + 1]):
                break
            return Named(tokens[index + 1], type_text(tokens[: index + 1] + tokens[index + 2 :]))
    is_array = "[" in tokens
    end = tokens.index("[") if is_array else len(tokens)
    if end < 2 or not is_name(tokens[end - 1]):
        reader.fail(f'no name in "{" ".join(tokens)}"')
    return Named(tokens[end - 1], type_text(tokens[: end - 1]) + (" *" if is_array else ""))


def split_list(tokens):
    """The comma-separated parts outside brackets; none for nothing and for "void"."""
    parts = [[]]
    depth = 0
    for token in tokens:
        if token in ("(", "[", "{", "<"):
            depth += 1
        if token in (")", "]", "}", ">"):
            depth -= 1
        if token == "," and depth == 0:
            parts.append([])
        else:
            parts[-1].append(token)
    return [part for part in parts if part and part != ["void"]]


def number(reader, tokens):
    text = re.sub(r"u?l*$", "", "".join(tokens), flags=re.IGNORECASE)
    if not re.fullmatch(r"-?(0x[0-9a-f]+|\d+(\.\d+)?)", text, flags=re.IGNORECASE):
        reader.fail(f"{' '.join(tokens)} is no number")
    return float(text) if "." in text else int(text, 0)


def read_enumerators(reader):
    reader.expect("{")
    enumerators = []
    for part in split_list(reader.balanced("}")):
        if len(part) < 3 or part[1] != "=":
            reader.fail(f"an enumerator needs a name and a value: {' '.join(part)}")
        enumerators.append(Named(part[0], "int", number(reader, part[2:])))
    return enumerators


def read_fields(reader):
    reader.expect("{")
    fields = []
    while not reader.accept("}"):
        fields.append(type_and_name(reader, reader.until(";")))
        reader.expect(";")
    return fields


def read_typedef(reader, found):
    if reader.accept("NS_ENUM") or reader.accept("NS_OPTIONS"):
        reader.expect("(")
        _, [name] = split_list(reader.balanced(")"))
        found.enums.append(Enumeration(name, read_enumerators(reader)))
    elif reader.peek() == "struct" and reader.peek(1) == "{":
        reader.next()
        fields = read_fields(reader)
        found.structs.append(Struct(reader.identifier(), fields))
    else:
        one = type_and_name(reader, reader.until(";"))
        if one.name != one.type:
            found.typedefs.append(one)
    reader.expect(";")


def read_method(reader):
    is_static = reader.next() == "+"
    reader.expect("(")
    result = type_text(reader.balanced(")"))
    selector = reader.identifier()
    parameters = []
    while reader.accept(":"):
        selector += ":"
        reader.expect("(")
        parameters.append(type_text(reader.balanced(")")))
        reader.identifier()
        if is_name(reader.peek()):
            selector += reader.identifier()
    return Method(is_static, selector, parameters, result)


def read_property(reader):
    marks = split_list(reader.balanced(")")) if reader.accept("(") else []
    getter = None
    for mark in marks:
        if mark[0] == "getter" and len(mark) == 3:
            getter = mark[2]
        elif len(mark) != 1 or mark[0] not in PROPERTY_MARKS:
            reader.fail(f"unknown property mark {''.join(mark)}")
    one = type_and_name(reader, reader.until(";"))
    reader.expect(";")
    return Property(one.name, one.type, getter, is_static=["class"] in marks, is_read_only=["readonly"] in marks)


def read_members(reader, owner):
    """The body of an interface or a protocol."""
    while not reader.accept("@end"):
        if reader.accept("@optional") or reader.accept("@required"):
            continue
        if reader.accept("@property"):
            owner.properties.append(read_property(reader))
        elif reader.peek() in ("-", "+"):
            owner.methods.append(read_method(reader))
            reader.expect(";")
        else:
            reader.fail(f'"{reader.peek()}" declares no method and no property')
    return owner


def read_interface(reader):
    owner = Owner(reader.identifier())
    if reader.accept("("):
        owner.category = reader.identifier()
        reader.expect(")")
        return read_members(reader, owner)
    if reader.accept("<"):
        owner.generics = [part[-1] for part in split_list(reader.balanced(">"))]
    # Without a superclass, what stands in the brackets are the protocols of a root class.
    owner.protocols = owner.generics
    if reader.accept(":"):
        owner.superclass = reader.identifier()
        owner.protocols = names(reader.balanced(">")) if reader.accept("<") else []
    return read_members(reader, owner)


def names(tokens):
    return [" ".join(part) for part in split_list(tokens)]


def read_protocol(reader, found):
    owner = Owner(reader.identifier())
    if reader.accept(";"):
        return
    if reader.accept("<"):
        owner.protocols = names(reader.balanced(">"))
    found.protocols.append(read_members(reader, owner))


def read_function_or_constant(reader, found):
    reader.accept("static")
    is_extern = reader.accept("extern")
    head = reader.until(";", "=")
    if reader.accept("="):
        one = type_and_name(reader, head)
        found.constants.append(Named(one.name, one.type, number(reader, reader.until(";"))))
    elif is_extern:
        found.constants.append(type_and_name(reader, head))
    else:
        opening = head.index("(") if "(" in head else 0
        if opening < 2 or head[-1] != ")":
            reader.fail(f'"{" ".join(head)}" is no function')
        one = type_and_name(reader, head[:opening])
        parameters = [type_and_name(reader, part).type for part in split_list(head[opening + 1 : -1])]
        found.functions.append(Function(one.name, parameters, one.type))
    reader.expect(";")


def read_declaration(reader, found):
    if reader.accept("typedef"):
        read_typedef(reader, found)
    elif reader.accept("@protocol"):
        read_protocol(reader, found)
    elif reader.accept("@interface"):
        found.interfaces.append(read_interface(reader))
    elif reader.accept("@class"):
        found.forward += [part[0] for part in split_list(reader.until(";"))]
        reader.expect(";")
    elif reader.accept("__attribute__"):
        reader.expect("(")
        reader.balanced(")")
    elif reader.accept("enum"):
        if reader.accept(":"):
            reader.until("{")
        found.constants += read_enumerators(reader)
        reader.expect(";")
    elif reader.peek() == "struct" and reader.peek(2) == "{":
        reader.next()
        found.structs.append(Struct(reader.identifier(), read_fields(reader)))
        reader.expect(";")
    else:
        read_function_or_constant(reader, found)


def read_header(path, found):
    lines = []
    for line in path.read_text().replace("\\\n", "").split("\n"):
        if line.startswith("#"):
            macro = re.match(r"#define (\w+)", line)
            if macro:
                found.macros.append(macro[1])
            elif not DIRECTIVE.fullmatch(line):
                raise ReadingError(f"{path}: unknown directive: {line}")
            line = ""
        lines.append(line)
    reader = Reader("\n".join(lines), path)
    while not reader.done:
        read_declaration(reader, found)


def read_declarations(root):
    """Everything that the headers below `root` declare, and what each macro of theirs is called."""
    found = Declarations()
    for folder in sorted(root.iterdir()):
        read_header(folder / f"{folder.name}.h", found)
    return found
