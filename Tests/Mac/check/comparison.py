"""Compares a declared type with the typings' type, as far as the typings tell types apart."""

import re

from tokens import split_top

NUMERIC = re.compile(r"((unsigned|signed|long|short|int|char|double|float|size_t|u?int(8|16|32|64)_t) )+")
PLAIN = {"void": "void", "bool": "boolean", "instancetype": "self", "Class": "object", "id": "object",
         "SEL": "string", "NSString *": "string", "char *": "string", "void *": "pointer"}


def parameter_count(text):
    return len(split_top(text, ","))


class TypeComparison:
    def __init__(self, declarations):
        self.typedefs = {one.name: one.type for one in declarations.typedefs}
        self.enums = {one.name for one in declarations.enums}
        self.structs = {one.name for one in declarations.structs}
        self.classes = {*declarations.forward, *(one.name for one in declarations.interfaces)}
        self.generics = {generic for one in declarations.interfaces for generic in one.generics}

    def declared(self, type):
        """What a declared type is: a word, and for some a name or a number of parameters."""
        if type in self.enums:
            return "enum", type
        if type in self.structs:
            return "struct", type
        if type in self.generics:
            return "object", None
        if type in self.typedefs:
            return self.declared(self.typedefs[type])
        if "( ^" in type or "( *" in type:
            parameters = type[type.rindex(") (") + 3 : -1].strip()
            return "call", 0 if parameters == "void" else parameter_count(parameters)
        if type in PLAIN:
            return PLAIN[type], None
        if NUMERIC.fullmatch(type + " "):
            return "number", None
        if protocol := re.fullmatch(r"id < (\w+) >", type):
            return "object", protocol[1]
        named = re.fullmatch(r"(\w+)( <.*>)? \*", type)
        if named and named[1] in self.classes:
            return "object", named[1]
        return "pointer", None

    def matches(self, type, text, owner):
        """Whether the typings' `text` says the same as `type`, as a member of `owner`."""
        kind, name = self.declared(type)
        bare = next(iter(split_top(text, "|")), "")
        is_self = bare in ("this", "InstanceType<This>")
        is_any = bare == "interop.Object"
        is_pointer = bare.startswith("interop.Pointer")
        match kind:
            case "enum":
                return bare == f"interop.Enum<typeof {name}>"
            case "struct":
                return bare == name
            case "self":
                return is_self or is_any or bare == owner
            case "string":
                return bare == "string" or is_pointer
            case "pointer":
                # Core Foundation's objects are pointers here and objects there.
                return is_pointer or is_any or bare.startswith("unknown")
            case "call":
                return "=>" in bare and parameter_count(bare[1 : bare.find(") =>")]) == name
            case "object" if name is None:
                return is_any or re.fullmatch(r"[A-Z]\w*", bare) is not None
            case "object":
                return re.sub(r"<.*>$", "", bare) == name or (is_self and owner == name)
        return bare == kind
