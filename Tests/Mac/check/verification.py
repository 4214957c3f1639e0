"""Holds everything that the declaration headers declare against the facts: it exists in the real frameworks under the
same name, with the same number of arguments, of the same kind and, where the typings have values, with the same value.
"""

from comparison import TypeComparison
from declarations import read_declarations
from facts import UnknownFact

# What may follow in the name of an enumeration, after what its enumerators have in common with it: words that only say
# what kind of thing it is.
KIND_WORDS = {"", "s", "Type", "t", "_t"}


def read_exceptions(text):
    """ "name: reason" a line."""
    lines = (line for line in text.splitlines() if line and not line.startswith("#"))
    return {name: reason.strip() for name, _, reason in (line.partition(":") for line in lines)}


def run_together(selector):
    """The typings run the parts of a selector together: initWithFilter:delegate: is initWithFilterDelegate."""
    first, *others = (part for part in selector.split(":") if part)
    return first + "".join(part[0].upper() + part[1:] for part in others)


def is_stem(stem, name):
    """Whether an enumeration of that name may have left out that beginning of its enumerators."""
    bare = stem.removesuffix("_")
    return name.lower().startswith(bare.lower()) and name[len(bare) :] in KIND_WORDS


class Verification:
    def __init__(self, root, facts):
        self.declared = read_declarations(root / "Tests/Mac/declarations")
        self.exceptions = read_exceptions((root / "Tests/Mac/not-in-typings.txt").read_text())
        self.facts = facts
        self.types = TypeComparison(self.declared)
        self.problems = []
        self.missing = set()
        self.proved = 0
        self.values = 0

    def run(self):
        declared = self.declared
        self.each(self.forward, declared.forward)
        self.each(self.struct, declared.structs)
        self.each(self.enum, declared.enums)
        self.each(self.constant, declared.constants)
        self.each(self.function, declared.functions)
        self.each(self.macro, declared.macros)
        for owner in declared.protocols:
            # The typings call the protocol so, to tell it from the class.
            is_root = owner.name == "NSObject"
            if not is_root:
                self.each(self.protocol, [owner])
            self.members("NSObjectProtocol" if is_root else owner.name, owner)
        for owner in declared.interfaces:
            if not owner.category:
                self.each(self.interface, [owner])
            self.members(owner.name, owner)
        for name in self.exceptions:
            if name not in self.missing:
                self.problems.append(f"{name} is listed as not in the typings, but is there or is not declared")

    def each(self, verify, declared):
        for one in declared:
            try:
                verify(one)
            except UnknownFact as unknown:
                self.missing.add(unknown.name)
                self.problems.append(str(unknown))

    def absent(self, name):
        self.missing.add(name)
        if name not in self.exceptions:
            self.problems.append(f"{name} is not in the typings")

    def compare(self, where, type, text, owner=None):
        if not self.types.matches(type, text, owner):
            self.problems.append(f'{where} has the type "{type}", in the typings "{text}"')

    def call(self, where, call, real, owner=None):
        ours, theirs = len(call.parameters), len(real.parameters)
        if ours != theirs:
            self.problems.append(f"{where} takes {ours} arguments, in the typings {theirs}")
            return
        for index, (type, text) in enumerate(zip(call.parameters, real.parameters), 1):
            self.compare(f"argument {index} of {where}", type, text, owner)
        self.compare(f"the result of {where}", call.result, real.result, owner)
        self.proved += 1

    def forward(self, name):
        if not self.facts.type(name).kinds:
            self.absent(name)

    def struct(self, struct):
        real = self.facts.struct(struct.name)
        if real is None:
            self.absent(struct.name)
            return
        ours = [field.name for field in struct.fields]
        if ours != list(real):
            self.problems.append(f"{struct.name} has the fields {', '.join(ours)}, in the typings {', '.join(real)}")
        for field, text in zip(struct.fields, real.values()):
            self.compare(f"{struct.name}.{field.name}", field.type, text)
        self.proved += 1

    def enum(self, enum):
        real = self.facts.enum(enum.name)
        if not real:
            self.absent(enum.name)
            return
        for enumerator in enum.enumerators:
            self.enumerator(enum, enumerator, real)

    def enumerator(self, enum, enumerator, real):
        # The typings leave out what the enumerators have in common with the name of their enumeration.
        key = max((one for one in real if enumerator.name.endswith(one)), key=len, default=None)
        stands_for_it = key is not None and is_stem(enumerator.name.removesuffix(key), enum.name)
        if key is None or not (stands_for_it or enumerator.name in self.exceptions):
            self.problems.append(f"{enumerator.name} is not in the typings of {enum.name}")
            return
        if not stands_for_it:
            self.missing.add(enumerator.name)
        if real[key] != enumerator.value:
            self.problems.append(f"{enumerator.name} is {enumerator.value}, in the typings {real[key]}")
        self.proved += 1
        self.values += 1

    def constant(self, constant):
        text = self.facts.constant(constant.name)
        if text is None:
            self.absent(constant.name)
            return
        self.compare(constant.name, constant.type, text)
        self.proved += 1

    def macro(self, name):
        if self.facts.constant(name) is None:
            self.absent(name)
        else:
            self.proved += 1

    def function(self, function):
        real = self.facts.function(function.name)
        if real is None:
            self.absent(function.name)
        else:
            self.call(f"{function.name}()", function, real)

    def protocol(self, owner):
        parents = ["NSObjectProtocol" if parent == "NSObject" else parent for parent in owner.protocols]
        self.type(owner.name, "interface", parents)

    def interface(self, owner):
        self.type(owner.name, "class", [owner.superclass] if owner.superclass else [])

    def type(self, name, kind, parents):
        real = self.facts.type(name)
        if kind not in real.kinds:
            self.absent(name)
            return
        self.proved += 1
        for parent in parents:
            if parent not in real.ancestors:
                self.problems.append(f"{name} is no {parent} in the typings")

    def members(self, name, owner):
        self.each(lambda method: self.method(name, method), owner.methods)
        self.each(lambda property: self.property(name, property), owner.properties)

    def method(self, owner, method):
        where = f"{'+' if method.is_static else '-'}[{owner} {method.selector}]"
        candidates = [one for one in self.facts.members(owner, run_together(method.selector))
                      if one.is_static == method.is_static]
        signatures = [one.signature for one in candidates if one.signature]
        if not candidates:
            self.absent(where)
        elif signatures:
            self.call(where, method, signatures[0], owner)
        elif method.parameters:
            self.problems.append(f"{where} is a property in the typings")
        else:
            self.proved += 1

    def property(self, owner, property):
        where = f"{owner}.{property.name}"
        candidates = [one for one in self.facts.members(owner, property.name) if one.is_static == property.is_static]
        if not candidates:
            self.absent(where)
            return
        real = candidates[0]
        if real.signature:
            self.problems.append(f"{where} is a method in the typings")
            return
        if real.is_read_only and not property.is_read_only:
            self.problems.append(f"{where} can only be read in the typings")
        self.compare(where, property.type, real.type, owner)
        if property.getter and not self.facts.members(owner, property.getter):
            self.absent(f"{owner}.{property.getter}")
        self.proved += 1
