"""Prints the C++ headers of a module: one per description file, one for the simple types, one for the roots."""

NOTICE = "// Generated from %s by scripts/generate_bindings.py; change that description instead.\n#pragma once\n\n"


def class_header(module, stem, plans, elsewhere, complete) -> str:
    """The classes of one description file. `elsewhere` names the classes that only need to be declared, `complete` the
    other files whose classes this one holds by value."""
    lines = [NOTICE % (stem + ".desc"), "#include <cstddef>", "#include <cstdint>", "#include <string>",
             "#include <string_view>", "#include <utility>", "#include <vector>", "",
             '#include "lmx/descriptor.h"']
    lines += ['#include "%s"' % p.packed.how.header for p in plans if p.packed]
    lines += ['#include "%s/%s.h"' % (module.folder, other) for other in complete]
    lines += ["", "namespace rubrica::%s {" % module.name, ""]
    lines += ["class %s;" % name for name in sorted(elsewhere | {p.name for p in plans})]
    for plan in plans:
        lines += [""] + class_lines(plan, "")
        if plan.packed:
            lines += [""] + packed_lines(plan)
    return "\n".join(lines + ["", "}  // namespace rubrica::" + module.name, ""])


def class_lines(plan, indent) -> list:
    lines = ["class %s : public lmx::object {" % plan.name, " public:"]
    for nested in plan.nested:
        lines += ["  " + line for line in class_lines(nested, "")]
    lines += ["  using %s = %s;" % alias for alias in plan.aliases]
    lines += fields_lines(plan)
    lines += ["  static const lmx::class_descriptor kDescriptor;",
              "  lmx::object* clone() const override;",
              "  const lmx::class_descriptor& descriptor() const override { return kDescriptor; }",
              "  void* field_base() override { return &_f; }",
              "  lmx::elmx_error marshal(lmx::c_xml_writer& writer, const char* element_name) const;",
              "  lmx::elmx_error unmarshal(lmx::c_xml_reader& reader, std::string_view element_name);"]
    for member in plan.members:
        lines += accessor_lines(member)
    lines += [" protected:", "  fields _f;", "};"]
    return [indent + line for line in lines]


def packed_lines(plan) -> list:
    packed = plan.packed
    arguments = ", ".join([packed.name, plan.name] + packed.arguments)
    return ["class %s final : public %s<%s> {" % (packed.name, packed.how.base, arguments), " public:",
            "  static const lmx::class_descriptor kDescriptor;",
            "  const lmx::class_descriptor& descriptor() const override;",
            "  lmx::elmx_error marshal(lmx::c_xml_writer& writer, const char* element_name) const;",
            "  lmx::elmx_error unmarshal(lmx::c_xml_reader& reader, std::string_view element_name);",
            "};"]


def field_type(member) -> str:
    if member.kind in ("child", "group"):
        return "lmx::owned"
    if member.kind in ("children", "groups"):
        return "std::vector<lmx::owned>"
    if member.kind in ("list", "values", "any", "block"):
        return "std::vector<%s>" % element_type(member)
    return member.cpp


def element_type(member) -> str:
    """What a vector of this member holds; a vector of bool would have no addresses."""
    return "std::uint8_t" if member.cpp == "bool" else member.cpp


def fields_lines(plan) -> list:
    lines = ["  struct fields {"]
    if plan.bits:
        lines.append("    std::uint32_t present[%d] = {};" % ((plan.bits + 31) // 32))
    for m in plan.members:
        scalar = m.kind in ("attribute", "value", "body")
        initial = " = " + m.initial if scalar and m.initial else ""
        lines.append("    %s %s%s;" % (field_type(m), m.field, initial))
    return lines + ["  };"]


def accessor_lines(m) -> list:
    table = {"child": child, "group": child, "children": children, "groups": children, "block": block,
             "values": values, "any": values}
    return table.get(m.kind, single)(m)


def single(m) -> list:
    n, f, t = m.accessor, "_f." + m.field, field_type(m)
    by_value = not t.startswith(("std::", "lmx::")) or t.startswith(("std::int", "std::uint"))
    empty = "%s = %s;" % (f, m.initial) if m.initial and m.kind != "list" else "%s = {};" % f
    passed = "value" if by_value else "std::move(value)"
    return ["  %s get_%s() const { return %s; }" % (t if by_value else "const %s&" % t, n, f),
            "  void set_%s(%s value) { %s = %s; lmx::set_present(_f.present, %d); }" % (n, t, f, passed, m.bit),
            "  void unset_%s() { %s lmx::set_present(_f.present, %d, false); }" % (n, empty, m.bit),
            "  bool isset_%s() const { return lmx::is_present(_f.present, %d); }" % (n, m.bit)]


def child(m) -> list:
    n, f, t = m.accessor, "_f." + m.field, m.cpp
    return ["  %s& get_%s();" % (t, n),
            "  %s* find_%s();" % (t, n),
            "  const %s* find_%s() const;" % (t, n),
            "  void set_%s(const %s& value);" % (n, t),
            "  void unset_%s() { %s.reset(); }" % (n, f),
            "  bool isset_%s() const { return static_cast<bool>(%s); }" % (n, f)]


def children(m) -> list:
    n, f, t = m.accessor, "_f." + m.field, m.cpp
    return ["  std::size_t size_%s() const { return %s.size(); }" % (n, f),
            "  %s& get_%s(std::size_t index);" % (t, n),
            "  const %s& get_%s(std::size_t index) const;" % (t, n),
            "  %s& append_%s();" % (t, n),
            "  %s& insert_%s(std::size_t index);" % (t, n),
            "  void erase_%s(std::size_t index);" % n,
            "  void clear_%s() { %s.clear(); }" % (n, f)]


def block(m) -> list:
    """Objects that stand in the vector themselves: a reference to one is good until the vector changes."""
    n, f, t = m.accessor, "_f." + m.field, m.cpp
    at = f + ".begin() + static_cast<std::ptrdiff_t>(index)"
    return ["  std::size_t size_%s() const { return %s.size(); }" % (n, f),
            "  %s& get_%s(std::size_t index) { return %s[index]; }" % (t, n, f),
            "  const %s& get_%s(std::size_t index) const { return %s[index]; }" % (t, n, f),
            "  %s& append_%s() { return %s.emplace_back(); }" % (t, n, f),
            "  %s& insert_%s(std::size_t index) { return *%s.emplace(%s); }" % (t, n, f, at),
            "  void reserve_%s(std::size_t count) { %s.reserve(count); }" % (n, f),
            "  void erase_%s(std::size_t index) { %s.erase(%s); }" % (n, f, at),
            "  void clear_%s() { %s.clear(); }" % (n, f)]


def values(m) -> list:
    n, f, t = m.accessor, "_f." + m.field, element_type(m)
    at = f + ".begin() + static_cast<std::ptrdiff_t>(index)"
    return ["  std::size_t size_%s() const { return %s.size(); }" % (n, f),
            "  const %s& get_%s(std::size_t index) const { return %s[index]; }" % (t, n, f),
            "  void set_%s(std::size_t index, %s value) { %s[index] = std::move(value); }" % (n, t, f),
            "  void append_%s(%s value) { %s.push_back(std::move(value)); }" % (n, t, f),
            "  void insert_%s(std::size_t index, %s value) { %s.insert(%s, std::move(value)); }" % (n, t, f, at),
            "  void erase_%s(std::size_t index) { %s.erase(%s); }" % (n, f, at),
            "  void clear_%s() { %s.clear(); }" % (n, f)]


def types_header(module, stem) -> str:
    lines = [NOTICE % (stem + ".desc"), '#include "lmx/descriptor.h"', '#include "source/ooxml/xsd_types.h"', "",
             "namespace rubrica::%s {" % module.name, "",
             "extern const lmx::namespace_row kNamespaces[];", "", "namespace types {"]
    lines += ["extern const lmx::simple_type %s;" % name for name in module.types]
    return "\n".join(lines + ["}  // namespace types", "", "}  // namespace rubrica::" + module.name, ""])


def root_header(module, stem, includes) -> str:
    lines = [NOTICE % (stem + ".desc"), "#include <span>", "#include <string>", "", '#include "lmx/driver.h"']
    lines += ['#include "%s/%s.h"' % (module.folder, name) for name in includes]
    lines += ["", "namespace rubrica::%s {" % module.name, "",
              "// Every class of a type or group of this module, and every root element.",
              "std::span<const lmx::class_descriptor* const> classes();",
              "std::span<const lmx::root_descriptor* const> roots();"]
    for element, described in module.roots:
        lines += [""] + root_lines(element.rpartition(":")[2], "c_" + described)
    return "\n".join(lines + ["", "}  // namespace rubrica::" + module.name, ""])


def root_lines(element, base) -> list:
    record = "lmx::c_error_record* out = nullptr"
    return ["class c_%s : public %s {" % (element, base), " public:",
            "  static const lmx::root_descriptor kRoot;",
            "  lmx::object* clone() const override;",
            "  using %s::marshal;" % base,
            "  using %s::unmarshal;" % base,
            "  lmx::elmx_error marshal(lmx::c_xml_writer& writer) const;",
            "  lmx::elmx_error marshal(std::string& text, %s) const;" % record,
            "  lmx::elmx_error marshal(const char* path, %s) const;" % record,
            "  lmx::elmx_error unmarshal(lmx::c_xml_reader& reader);",
            "  lmx::elmx_error unmarshal(const char* data, std::size_t size, %s);" % record,
            "  lmx::elmx_error unmarshal(const char* path, %s);" % record,
            "};"]
