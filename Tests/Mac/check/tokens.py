"""Cuts a declaration header or an adapter source into tokens, and texts at signs outside brackets."""

import re
from dataclasses import dataclass

TOKEN = re.compile(
    r"\s+|//[^\n]*|/\*.*?\*/"  # blanks and comments
    r"|@?[A-Za-z_]\w*|\d[\w.]*"  # names and numbers
    r"""|@?"(?:[^"\\\n]|\\.)*"|'(?:[^'\\\n]|\\.)*'"""  # texts
    r"|::|->|\.\.\.|.",  # signs
    re.ASCII | re.DOTALL,
)
NAME = re.compile(r"[A-Za-z_]\w*", re.ASCII)


class ReadingError(Exception):
    """A source does not keep to the part of the language that is read here."""


@dataclass(frozen=True)
class Token:
    value: str
    line: int


def tokenize(text):
    tokens = []
    line = 1
    for found in TOKEN.finditer(text):
        value = found.group()
        if not (value.isspace() or value.startswith(("//", "/*"))):
            tokens.append(Token(value, line))
        line += value.count("\n")
    return tokens


def is_name(token):
    return token is not None and NAME.fullmatch(token) is not None


def split_top(text, separator):
    """The parts of a text at `separator`, outside all brackets. An arrow is no bracket."""
    parts = []
    depth = start = 0
    for index, sign in enumerate(text):
        if sign in "([{<":
            depth += 1
        if sign in ")]}" or (sign == ">" and text[index - 1 : index] != "="):
            depth -= 1
        if depth == 0 and sign == separator:
            parts.append(text[start:index].strip())
            start = index + 1
    parts.append(text[start:].strip())
    return [part for part in parts if part]


class Reader:
    """Reads tokens one after the other and ends the run at the first that does not fit."""

    def __init__(self, text, name):
        self.tokens = tokenize(text)
        self.name = name
        self.position = 0

    @property
    def done(self):
        return self.position >= len(self.tokens)

    def peek(self, ahead=0):
        index = self.position + ahead
        return self.tokens[index].value if index < len(self.tokens) else None

    def next(self):
        if self.done:
            self.fail("unexpected end of file")
        self.position += 1
        return self.tokens[self.position - 1].value

    def accept(self, value):
        if self.peek() != value:
            return False
        self.position += 1
        return True

    def expect(self, value):
        if not self.accept(value):
            self.fail(f'expected "{value}" before "{self.peek()}"')

    def identifier(self):
        value = self.next()
        if not is_name(value):
            self.fail(f'expected a name instead of "{value}"')
        return value

    def until(self, *ends):
        """The tokens up to one of `ends` outside all brackets; the end itself is left.

        In code, as opposed to declarations, an angle bracket may be a comparison.
        """
        opening, closing = (("([{", ")]}") if "}" in ends else ("([{<", ")]}>"))
        taken = []
        depth = 0
        while depth > 0 or self.peek() not in ends:
            value = self.next()
            if value in opening:
                depth += 1
            if value in closing:
                depth -= 1
            taken.append(value)
        return taken

    def balanced(self, close):
        """The tokens between a bracket that was just read and its partner, which is read too."""
        taken = self.until(close)
        self.expect(close)
        return taken

    def fail(self, message):
        line = self.tokens[min(self.position, len(self.tokens) - 1)].line if self.tokens else 0
        raise ReadingError(f"{self.name}:{line}: {message}")
