"""Turns a described module into the plan of its C++ classes: which member a description row becomes, its type, its
names and the bit of its presence flag. emit_header.py and emit_source.py print what stands here.
"""

from dataclasses import dataclass, field
from typing import Optional

from . import model

# Built-in type: what a value is in memory, its C++ type and its white-space mode.
BUILT_IN = {
    "string": ("text", "std::string", "keep"),
    "token": ("text", "std::string", "collapse"),
    "anyURI": ("text", "std::string", "collapse"),
    "ID": ("text", "std::string", "collapse"),
    "boolean": ("boolean", "bool", "collapse"),
    "byte": ("int8", "std::int8_t", "collapse"),
    "unsignedByte": ("uint8", "std::uint8_t", "collapse"),
    "short": ("int16", "std::int16_t", "collapse"),
    "unsignedShort": ("uint16", "std::uint16_t", "collapse"),
    "int": ("int32", "std::int32_t", "collapse"),
    "unsignedInt": ("uint32", "std::uint32_t", "collapse"),
    "long": ("int64", "std::int64_t", "collapse"),
    "unsignedLong": ("uint64", "std::uint64_t", "collapse"),
    "integer": ("int64", "std::int64_t", "collapse"),
    "double": ("float64", "double", "collapse"),
    "base64Binary": ("base64", "lmx::c_binary", "collapse"),
    "hexBinary": ("hex", "lmx::c_binary", "collapse"),
    "dateTime": ("datetime", "lmx::c_datetime", "collapse"),
    "list": ("text", "std::string", "collapse"),
    "union": ("text", "std::string", "collapse"),
}

KEYWORDS = {"auto", "bool", "char", "class", "default", "delete", "double", "float", "int", "long", "new", "operator",
            "private", "public", "register", "short", "signed", "static", "struct", "switch", "template", "this",
            "union", "unsigned", "void", "extern", "do", "if", "in", "not", "and", "or", "xor", "compl"}

WORKER = "_Worker"  # the suffix of a class generated from a type that has a class laid out by hand beside it


@dataclass
class HandLaid:
    """What makes the class of a type that is laid out by hand, since there may be very many of them."""
    header: str
    base: str
    arguments: list  # the types that the base is a template over, after the class itself and the generated one
    hooks_header: str
    hooks: str  # how the functions begin that make its hooks
    modules: tuple  # where there may be many


HAND_LAID = {
    "CT_Cell": HandLaid("source/ooxml/packed_cell.h", "ooxml::cell_of",
                        ["CT_CellFormula", "CT_Rst", "CT_ExtensionList"],
                        "source/ooxml/cell_hooks.h", "ooxml::cell", ("sheet", "strict")),
    "CT_Rst": HandLaid("source/ooxml/packed_string.h", "ooxml::string_of", ["ST_Xstring_space", "CT_RElt"],
                       "source/ooxml/string_hooks.h", "ooxml::string", ("sharedStringTable",)),
}


@dataclass
class Member:
    name: str  # as written in a document, prefix included
    accessor: str
    field: str
    kind: str  # a particle kind of the driver, "attribute", "list" or "body"
    line: int
    type: str = ""  # simple type expression
    cpp: str = ""  # C++ type of a value, class of a child
    initial: str = ""
    default_text: Optional[str] = None
    bit: int = 0
    flags: list = field(default_factory=list)
    occurs: model.Occurs = field(default_factory=model.Occurs)


@dataclass
class Row:
    """One row of the particle table; sequences and choices have no member."""
    kind: str
    member: Optional[Member] = None
    occurs: model.Occurs = field(default_factory=model.Occurs)
    span: int = 0
    line: int = 0


@dataclass
class PackedClass:
    """The hand-laid class beside a generated one."""
    name: str
    how: HandLaid

    @property
    def arguments(self) -> list:
        return ["c_" + name for name in self.how.arguments]


@dataclass
class ClassPlan:
    described: str  # name in the description
    name: str  # unqualified C++ name
    scope: str = ""  # enclosing class with "::"
    line: int = 0
    attributes: list = field(default_factory=list)
    body: Optional[Member] = None
    rows: list = field(default_factory=list)
    nested: list = field(default_factory=list)
    flags: list = field(default_factory=list)
    aliases: list = field(default_factory=list)
    packed: Optional[PackedClass] = None
    bits: int = 0

    @property
    def qualified(self) -> str:
        return self.scope + self.name

    @property
    def members(self) -> list:
        found = list(self.attributes) + ([self.body] if self.body else [])
        return found + [r.member for r in self.rows if r.member]

    @property
    def used_classes(self) -> set:
        """Unqualified names of the classes that members of this class and of nested ones are of."""
        found = {m.cpp for m in self.members} | {target for _, target in self.aliases}
        return found.union(*(nested.used_classes for nested in self.nested))

    def next_bit(self) -> int:
        self.bits += 1
        return self.bits - 1


class Planner:
    def __init__(self, module, plain):
        self.module = module
        self.packed = set() if plain else {name for name, how in HAND_LAID.items() if module.name in how.modules}

    def run(self) -> list:
        return [self.class_plan(c) for c in self.module.classes.values()]

    def class_name(self, described) -> str:
        """The class that members of this type are of."""
        return "c_" + described

    def class_plan(self, described) -> ClassPlan:
        suffix = WORKER if described.name in self.packed else ""
        plan = ClassPlan(described.name, "c_" + described.name + suffix, line=described.line)
        if described.name.startswith("EG_"):
            plan.flags.append("lmx::kAnonymous")
        if described.mixed:
            plan.flags.append("lmx::kMixed")
        for a in described.attributes:
            plan.attributes.append(self.attribute(plan, a))
        if described.text_type:
            plan.body = self.value(plan, "value", "body", described.text_type, None, described.line)
            plan.body.accessor = "value"
        self.add_rows(plan, described.particles)
        if described.name == "CT_Cell":
            plan.aliases.append(("c_f", "c_CT_CellFormula"))
        if described.name in self.packed:
            plan.packed = PackedClass("c_" + described.name, HAND_LAID[described.name])
        self.check_names(plan)
        return plan

    @staticmethod
    def check_names(plan):
        names = [m.accessor for m in plan.members]
        twice = {n for n in names if names.count(n) > 1}
        if twice:
            raise SystemExit("%s: members of the same name: %s" % (plan.qualified, ", ".join(sorted(twice))))

    def base_of(self, type_name):
        known = self.module.types.get(type_name)
        return known.base if known else type_name

    def type_expression(self, type_name):
        return "types::" + type_name if type_name in self.module.types else "ooxml::xsd_" + type_name

    def value(self, plan, name, kind, type_name, default, line) -> Member:
        accessor = name.replace(":", "_") if kind == "attribute" else name.rpartition(":")[2]
        result = Member(name, accessor, accessor + "_" if accessor in KEYWORDS else accessor, kind, line)
        known = self.module.types.get(type_name)
        if known and known.base == "list":
            result.kind = "list"
            type_name = known.members[0]
            result.flags.append("lmx::kList")
        base = self.base_of(type_name)
        result.type = self.type_expression(type_name)
        result.cpp = BUILT_IN[base][1]
        result.default_text = default
        result.initial = self.initial(base, default)
        if kind != "values":
            result.bit = plan.next_bit()
        return result

    @staticmethod
    def initial(base, default) -> str:
        cpp = BUILT_IN[base][1]
        if cpp == "std::string":
            return cpp_string(default) if default else ""
        if cpp == "bool":
            return "true" if default in ("true", "1") else "false"
        if cpp == "lmx::c_binary":
            if not default:
                return ""
            return "{{" + ", ".join("0x" + default[i:i + 2] for i in range(0, len(default), 2)) + "}}"
        if cpp == "lmx::c_datetime":
            return "{%s}" % cpp_string(default) if default else ""
        return default or "0"

    def attribute(self, plan, described) -> Member:
        result = self.value(plan, described.name, "attribute", described.type, described.default, described.line)
        if described.use == "required":
            result.flags.append("lmx::kRequired")
        if described.fixed is not None:
            result.default_text = described.fixed
            result.flags.append("lmx::kFixed")
        return result

    def add_rows(self, plan, particles):
        for p in particles:
            if p.kind in ("choice", "sequence", "all"):
                self.add_compositor(plan, p)
            else:
                plan.rows.append(self.member_row(plan, p))

    def add_compositor(self, plan, p):
        if p.occurs.repeats:
            plan.rows.append(self.repeated_compositor(plan, p))
            return
        if p.kind == "all":
            raise SystemExit("%s: xs:all is not planned for" % plan.described)
        row = Row(p.kind, occurs=p.occurs, line=p.line)
        plan.rows.append(row)
        first = len(plan.rows)
        self.add_rows(plan, p.children)
        row.span = len(plan.rows) - first

    def repeated_compositor(self, plan, p) -> Row:
        """A compositor that repeats is a vector of objects of a nested class, one for each time it occurs."""
        number = len(plan.nested) + 1
        name = "c_" + p.kind + (str(number) if number > 1 else "")
        nested = ClassPlan(plan.described, name, plan.qualified + "::", line=p.line, flags=["lmx::kAnonymous"])
        self.add_rows(nested, [model.Particle(p.kind, model.Occurs(), children=p.children, line=p.line)])
        self.check_names(nested)
        plan.nested.append(nested)
        return Row("groups", self.complex_member(name[2:], "groups", p, plan.qualified + "::" + name), p.occurs,
                   line=p.line)

    @staticmethod
    def complex_member(name, kind, p, cpp) -> Member:
        accessor = name.rpartition(":")[2]
        return Member(name, accessor, accessor + "_" if accessor in KEYWORDS else accessor, kind, p.line, cpp=cpp,
                      occurs=p.occurs)

    def member_row(self, plan, p) -> Row:
        many = "s" if p.occurs.repeats else ""
        if p.kind == "any":
            member = self.complex_member("any", "any", p, "lmx::any_item")
        elif p.kind == "group":
            member = self.complex_member(p.name, "group" + many, p, self.class_name(p.name))
        elif p.type in self.module.classes:
            one_by_one = "children" if many else "child"
            kind = "block" if many and p.type in self.packed else one_by_one
            member = self.complex_member(p.name, kind, p, self.class_name(p.type))
        else:
            member = self.value(plan, p.name, "value" + many, p.type, None, p.line)
            member.occurs = p.occurs
        return Row(member.kind, member, p.occurs, line=p.line)


def cpp_string(text) -> str:
    return '"' + text.replace("\\", "\\\\").replace('"', '\\"') + '"'
