"""What a description file says, as Python objects, with the text form's reader and writer.

The text form is described in docs/formats/bindings.md. import_schemas.py writes it, generate_bindings.py reads
it, check_descriptions.py compares it with the schemas.
"""

import re
from dataclasses import dataclass, field
from typing import Optional

UNBOUNDED = -1
EMPTY_DEFAULT = re.compile(r" (required|optional) default$")


@dataclass
class Occurs:
    low: int = 1
    high: int = 1

    def text(self) -> str:
        return {(1, 1): "1", (0, 1): "?", (0, UNBOUNDED): "*", (1, UNBOUNDED): "+"}.get(
            (self.low, self.high),
            "{%d,%s}" % (self.low, "" if self.high == UNBOUNDED else self.high))

    @staticmethod
    def parse(text: str) -> "Occurs":
        known = {"1": (1, 1), "?": (0, 1), "*": (0, UNBOUNDED), "+": (1, UNBOUNDED)}
        if text in known:
            return Occurs(*known[text])
        low, high = text.strip("{}").split(",")
        return Occurs(int(low), int(high) if high else UNBOUNDED)

    @property
    def repeats(self) -> bool:
        return self.high != 1


@dataclass
class SimpleType:
    """A named simple type, flattened down to a built-in one, a list or a union."""
    name: str
    base: str = ""  # built-in type name; "list" or "union" when members are given
    members: list = field(default_factory=list)
    enumeration: list = field(default_factory=list)
    pattern: Optional[str] = None
    # min, max, above, below, length, minLength, maxLength, digits, fraction
    facets: dict = field(default_factory=dict)


@dataclass
class Attribute:
    name: str  # with its prefix when it has one
    type: str
    use: str  # "required" or "optional"
    default: Optional[str] = None
    fixed: Optional[str] = None
    line: int = 0


@dataclass
class Particle:
    kind: str  # element, group, any, choice, sequence, all
    occurs: Occurs
    name: str = ""
    type: str = ""
    children: list = field(default_factory=list)
    line: int = 0


@dataclass
class Class:
    name: str
    text_type: str = ""  # type of the body of an element with text and attributes
    mixed: bool = False
    attributes: list = field(default_factory=list)
    particles: list = field(default_factory=list)
    line: int = 0


@dataclass
class Module:
    name: str = ""
    folder: str = "source/ooxml"  # where its generated headers are included from
    namespaces: list = field(default_factory=list)  # (id, prefix, uri)
    roots: list = field(default_factory=list)  # (element name, class name)
    types: dict = field(default_factory=dict)
    classes: dict = field(default_factory=dict)
    sources: dict = field(default_factory=dict)  # name of a class or type -> description file it stands in


def type_line(t: SimpleType) -> str:
    words = ["type", t.name, t.base] + t.members
    words += ["%s %s" % item for item in t.facets.items()]
    if t.enumeration:
        words += ["enum"] + t.enumeration
    if t.pattern is not None:
        words += ["pattern", t.pattern]
    return " ".join(words)


def particle_lines(p: Particle, depth: int) -> list:
    words = [p.kind]
    if p.kind in ("element", "group"):
        words.append(p.name)
    if p.kind == "element":
        words.append(p.type)
    if (p.occurs.low, p.occurs.high) != (1, 1):
        words.append(p.occurs.text())
    lines = ["  " * depth + " ".join(words)]
    for child in p.children:
        lines += particle_lines(child, depth + 1)
    return lines


def class_lines(c: Class) -> list:
    lines = ["class " + c.name + (" mixed" if c.mixed else "")]
    if c.text_type:
        lines.append("  text " + c.text_type)
    for a in c.attributes:
        line = "  attribute %s %s %s" % (a.name, a.type, a.use)
        if a.default is not None:
            line += " default " + a.default
        if a.fixed is not None:
            line += " fixed " + a.fixed
        lines.append(line.rstrip())
    for p in c.particles:
        lines += particle_lines(p, 1)
    return lines


def parse_type(words: list) -> SimpleType:
    t = SimpleType(words[0], words[1])
    rest = words[2:]
    if t.base in ("list", "union"):
        while rest and rest[0] not in ("enum", "pattern"):
            t.members.append(rest.pop(0))
    while rest:
        key = rest.pop(0)
        if key == "enum":
            t.enumeration, rest = rest, []
        elif key == "pattern":
            t.pattern, rest = " ".join(rest), []
        else:
            t.facets[key] = rest.pop(0)
    return t


def parse_attribute(line: str) -> Attribute:
    words = line.split(" ", 4)
    a = Attribute(words[1], words[2], words[3])
    if len(words) > 4:
        key, _, value = words[4].partition(" ")
        setattr(a, key, value)
    return a


def parse_particle(words: list) -> Particle:
    kind, rest = words[0], words[1:]
    p = Particle(kind, Occurs())
    if kind in ("element", "group"):
        p.name = rest.pop(0)
    if kind == "element":
        p.type = rest.pop(0)
    if rest:
        p.occurs = Occurs.parse(rest.pop(0))
    return p


def parse(text: str, source: str, module: Module) -> None:
    """Adds what one description file says to the module."""
    current = None
    stack = []
    for number, line in enumerate(text.splitlines(), 1):
        body = line.strip()
        if not body or body.startswith("#"):
            continue
        depth = (len(line) - len(line.lstrip())) // 2
        words = body.split()
        key = words[0]
        try:
            if depth == 0 and key == "module":
                module.name = words[1]
            elif depth == 0 and key == "namespace":
                module.namespaces.append((int(words[1]), "" if words[2] == "-" else words[2], words[3]))
            elif depth == 0 and key == "root":
                module.roots.append((words[1], words[2]))
            elif depth == 0 and key == "type":
                module.types[words[1]] = parse_type(words[1:])
                module.sources[words[1]] = source
            elif depth == 0 and key == "class":
                current = Class(words[1], mixed="mixed" in words[2:], line=number)
                module.classes[current.name] = current
                module.sources[current.name] = source
                stack = []
            elif key == "text":
                current.text_type = words[1]
            elif key == "attribute":
                current.attributes.append(parse_attribute(body + (" " if EMPTY_DEFAULT.search(body) else "")))
                current.attributes[-1].line = number
            else:
                p = parse_particle(words)
                p.line = number
                del stack[depth - 1:]
                (stack[-1].children if stack else current.particles).append(p)
                stack.append(p)
        except (IndexError, ValueError, AttributeError) as error:
            raise SystemExit("%s:%d: cannot read '%s' (%s)" % (source, number, body, error)) from error
