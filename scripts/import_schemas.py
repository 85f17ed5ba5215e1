#!/usr/bin/env python3
"""Reads the published OOXML schema files and writes the descriptions in source/ooxml that the bindings are made from.

    import_schemas.py SCHEMAS OUTPUT

SCHEMAS holds the folders transitional-1st-edition, strict and opc; OUTPUT receives one .desc file per module part.
A module takes every complex type that can be reached from its roots, in the order of first use.
"""

import dataclasses
import os
import sys
import xml.etree.ElementTree as ET

from bindings import model
from bindings.modules import MODULES, PATTERNS, file_stems

XS = "{http://www.w3.org/2001/XMLSchema}"
XML_NAMESPACE = "http://www.w3.org/XML/1998/namespace"
SPACE_STRING = "ST_Xstring_space"
FACETS = {"minInclusive": "min", "maxInclusive": "max", "minExclusive": "above", "maxExclusive": "below",
          "length": "length", "minLength": "minLength", "maxLength": "maxLength", "totalDigits": "digits",
          "fractionDigits": "fraction"}


class Definition:
    """A global component with what is needed to resolve the names inside it."""

    def __init__(self, element, prefixes, target):
        self.element, self.prefixes, self.target = element, prefixes, target

    def resolve(self, name):
        prefix, _, local = name.rpartition(":")
        return self.prefixes.get(prefix, self.target), local


def local(element):
    return element.tag[len(XS):]


def children(element):
    return [c for c in element if c.tag.startswith(XS) and local(c) != "annotation"]


class Schemas:
    """All schema files that the given one includes or imports, indexed by kind, namespace and name."""

    def __init__(self, path):
        self.loaded, self.index, self.root_path = set(), {}, os.path.normpath(path)
        self._load(self.root_path)

    def _load(self, path):
        if path in self.loaded or not os.path.exists(path):
            return
        self.loaded.add(path)
        prefixes, root = {}, None
        for event, item in ET.iterparse(path, ("start-ns", "end")):
            if event == "start-ns":
                prefixes.setdefault(*item)
            else:
                root = item
        target = root.get("targetNamespace")
        for element in children(root):
            if local(element) in ("include", "import"):
                if element.get("schemaLocation"):
                    self._load(os.path.normpath(os.path.join(os.path.dirname(path), element.get("schemaLocation"))))
            else:
                self.index.setdefault((local(element), target, element.get("name")),
                                      Definition(element, prefixes, target))
        if path == self.root_path:
            self.target = target

    def find(self, kind, qualified):
        return self.index.get((kind,) + qualified)


class Importer:
    def __init__(self, source, schemas):
        self.source, self.schemas = source, schemas
        self.module = model.Module(name=source.namespace, namespaces=source.namespaces)
        self.prefix_of = {uri: prefix for _, prefix, uri in source.namespaces}
        self.prefix_of[XML_NAMESPACE] = "xml"
        self.owner_of_type = {}

    def run(self):
        for root in self.source.roots:
            definition = self.schemas.find("element", (self.schemas.target, root))
            self.module.roots.append((self.name(self.schemas.target, root),
                                      self.class_of(definition.resolve(definition.element.get("type")))))
        if self.source.space_strings:
            self.add_space_string()
        return self.module

    def name(self, namespace, local_name):
        prefix = self.prefix_of[namespace]
        return prefix + ":" + local_name if prefix else local_name

    def add_space_string(self):
        self.module.types["ST_Space"] = model.SimpleType("ST_Space", "token", enumeration=["default", "preserve"])
        self.module.classes[SPACE_STRING] = model.Class(
            SPACE_STRING, text_type="string",
            attributes=[model.Attribute("xml:space", "ST_Space", "optional")])

    # Complex types and groups

    def claim(self, name, qualified):
        owner = self.owner_of_type.setdefault(name, qualified)
        if owner != qualified:
            raise SystemExit("%s: two types are called %s" % (self.source.namespace, name))

    def class_of(self, qualified):
        name = qualified[1]
        self.claim(name, qualified)
        if name not in self.module.classes:
            definition = self.schemas.find("complexType", qualified)
            result = model.Class(name, mixed=definition.element.get("mixed") == "true")
            self.module.classes[name] = result
            self.fill(result, definition, definition.element)
        return name

    def fill(self, result, definition, element):
        for child in children(element):
            kind = local(child)
            if kind == "simpleContent":
                extension = children(child)[0]
                result.text_type = self.type_of(definition, extension.get("base"))
                self.fill(result, definition, extension)
            elif kind == "attribute":
                result.attributes.append(self.attribute(definition, child))
            elif kind == "attributeGroup":
                group = self.schemas.find("attributeGroup", definition.resolve(child.get("ref")))
                self.fill(result, group, group.element)
            elif kind in ("sequence", "choice", "all", "group"):
                result.particles += self.particle(result.name, definition, child, "sequence")
            else:
                raise SystemExit("%s: %s is not understood" % (result.name, kind))

    def attribute(self, definition, element):
        declared, stated, name = definition, element, element.get("name")
        if element.get("ref"):
            namespace, local_name = definition.resolve(element.get("ref"))
            declared = self.schemas.find("attribute", (namespace, local_name))
            stated = declared.element
            name = self.name(namespace, local_name)
        type_name = self.type_of(declared, stated.get("type"))
        use = "required" if element.get("use") == "required" else "optional"
        default = element.get("default", stated.get("default"))
        return model.Attribute(name, type_name, use, None if use == "required" else default, element.get("fixed"))

    def particle(self, owner, definition, element, parent):
        """The particles one schema node stands for, inside a parent compositor of the given kind."""
        kind = local(element)
        occurs = model.Occurs(int(element.get("minOccurs", "1")), self.high(element.get("maxOccurs", "1")))
        if kind == "element":
            return [self.element(owner, definition, element, occurs)]
        if kind == "any":
            return [model.Particle("any", occurs)]
        if kind == "group":
            return self.group(owner, definition, element, occurs, parent)
        return self.compositor(owner, definition, element, kind, occurs, parent)

    @staticmethod
    def high(text):
        return model.UNBOUNDED if text == "unbounded" else int(text)

    def compositor(self, owner, definition, element, kind, occurs, parent):
        inner = [p for c in children(element) for p in self.particle(owner, definition, c, kind)]
        # A plain compositor in one of its own kind, or one that holds a single choice, adds nothing.
        if (occurs.low, occurs.high) == (1, 1) and (kind == parent or len(inner) == 1):
            return inner
        if not inner:
            return []
        if len(inner) == 1 and inner[0].kind == "element":  # a repeated compositor around a single element
            only = inner[0]
            high = model.UNBOUNDED if model.UNBOUNDED in (only.occurs.high, occurs.high) else \
                only.occurs.high * occurs.high
            only.occurs = model.Occurs(only.occurs.low * occurs.low, high)
            return inner
        return [model.Particle(kind, occurs, children=inner)]

    def group(self, owner, definition, element, occurs, parent):
        qualified = definition.resolve(element.get("ref"))
        group = self.schemas.find("group", qualified)
        content = children(group.element)[0]
        if local(content) == "choice":
            inner = self.particle(owner, group, content, parent)
            if (occurs.low, occurs.high) == (1, 1):
                return inner
            if len(inner) == 1 and inner[0].kind == "choice" and inner[0].occurs == model.Occurs():
                inner[0].occurs = occurs
                return inner
            raise SystemExit("%s: group %s is repeated in a way that is not understood" % (owner, qualified[1]))
        name = qualified[1]
        self.claim(name, qualified)
        if name not in self.module.classes:
            result = model.Class(name)
            self.module.classes[name] = result
            result.particles = self.particle(name, group, content, "sequence")
        return [model.Particle("group", occurs, name)]

    def element(self, owner, definition, element, occurs):
        declared, reference = definition, element.get("type")
        namespace, name = definition.target, element.get("name")
        if element.get("ref"):
            namespace, name = definition.resolve(element.get("ref"))
            declared = self.schemas.find("element", (namespace, name))
            reference = declared.element.get("type")
        qualified = declared.resolve(reference)
        if self.schemas.find("complexType", qualified):
            type_name = self.class_of(qualified)
        else:
            type_name = self.type_of(declared, reference)
            if self.source.space_strings and name == "t" and type_name == "ST_Xstring":
                type_name = SPACE_STRING
        return model.Particle("element", occurs, self.name(namespace, name), type_name)

    # Simple types

    def type_of(self, definition, reference):
        qualified = definition.resolve(reference)
        if qualified[0] == XS[1:-1]:
            return qualified[1]
        name = qualified[1]
        while self.owner_of_type.setdefault(name, qualified) != qualified:
            name += "_base"  # a type that restricts or joins its namesake in the shared types
        found = self.schemas.find("simpleType", qualified)
        if name not in self.module.types:
            self.module.types[name] = self.simple(name, found, found.element)
        return name

    def simple(self, name, definition, element):
        body = children(element)[0]
        if local(body) == "list":
            return model.SimpleType(name, "list", [self.type_of(definition, body.get("itemType"))])
        if local(body) == "union":
            members = [self.type_of(definition, m) for m in (body.get("memberTypes") or "").split()]
            for number, inline in enumerate(children(body), 1):
                inline_name = "%s_%d" % (name, number)
                self.module.types[inline_name] = self.simple(inline_name, definition, inline)
                members.append(inline_name)
            if len(members) == 1:
                return self.alias(name, members[0])
            return model.SimpleType(name, "union", members)
        return self.restriction(name, definition, body)

    def alias(self, name, target):
        """A union of one is that one."""
        known = self.module.types.get(target, model.SimpleType(target, target))
        return dataclasses.replace(known, name=name)

    def restriction(self, name, definition, body):
        qualified = definition.resolve(body.get("base"))
        if qualified[0] == XS[1:-1]:
            result = model.SimpleType(name, qualified[1])
        else:
            base = self.schemas.find("simpleType", qualified)
            inherited = self.simple(name, base, base.element)
            result = model.SimpleType(name, inherited.base, inherited.members, inherited.enumeration,
                                      inherited.pattern, dict(inherited.facets))
        tokens = [f.get("value") for f in children(body) if local(f) == "enumeration"]
        if any(len(token.split()) != 1 for token in tokens):
            raise SystemExit("%s: a token that is no single word does not fit the text form" % name)
        result.enumeration = tokens or result.enumeration
        for facet in children(body):
            if local(facet) == "pattern" and facet.get("value") in PATTERNS:
                result.pattern = PATTERNS[facet.get("value")] or facet.get("value")
            elif local(facet) in FACETS:
                result.facets[FACETS[local(facet)]] = facet.get("value")
        return result


def used_types(module, classes):
    """The named simple types the given classes use, in the order of first use, members before their users."""
    found = {}

    def use(name):
        if name in module.types and name not in found:
            for member in module.types[name].members:
                use(member)
            found[name] = module.types[name]

    def walk(particles):
        for p in particles:
            if p.kind == "element":
                use(p.type)
            walk(p.children)

    for c in classes:
        use(c.text_type)
        for a in c.attributes:
            use(a.type)
        walk(c.particles)
    return list(found.values())


def describe(source, module):
    """The description files of a module: file stem to text. Each file repeats no type of an earlier one."""
    classes = sorted(module.classes.values(), key=lambda c: c.name)
    total = sum(len(model.class_lines(c)) for c in classes)
    parts, filled = [[]], 0
    for c in classes:
        if filled > total * len(parts) / source.files and len(parts) < source.files:
            parts.append([])
        parts[-1].append(c)
        filled += len(model.class_lines(c))
    texts, written = {}, set()
    for number, (stem, part) in enumerate(zip(file_stems(source), parts)):
        lines = ["# Binding classes of module %s, from %s by scripts/import_schemas.py."
                 % (module.name, os.path.basename(source.schema)), "module " + module.name]
        if number == 0:
            lines += ["namespace %d %s %s" % (i, p or "-", u) for i, p, u in module.namespaces]
            lines += ["root %s %s" % root for root in module.roots]
        types = [t for t in used_types(module, part) if t.name not in written]
        written.update(t.name for t in types)
        lines += [""] + [model.type_line(t) for t in types] if types else []
        for c in part:
            lines += [""] + model.class_lines(c)
        texts[stem] = "\n".join(lines) + "\n"
    return texts


def import_all(schemas_folder):
    """Every description file, as file name to text."""
    result = {}
    for source in MODULES:
        schemas = Schemas(os.path.join(schemas_folder, source.schema))
        module = Importer(source, schemas).run()
        result.update({stem + ".desc": text for stem, text in describe(source, module).items()})
    return result


def main():
    if len(sys.argv) != 3:
        raise SystemExit(__doc__)
    for name, text in import_all(sys.argv[1]).items():
        with open(os.path.join(sys.argv[2], name), "w", encoding="utf-8") as file:
            file.write(text)


if __name__ == "__main__":
    main()
