"""Prints the C++ sources of a module: the constant tables, and the functions that need complete classes."""

from .plan import BUILT_IN, cpp_string

FIRST_NAME_TOKEN = 13  # lmx::kFirstNameToken
NO_NAMESPACE, XML_NAMESPACE = 1, 2
UNBOUNDED = -1


def class_source(module, stem, plans) -> str:
    """The classes and simple types of one description file."""
    types = [t for t in module.types.values() if module.sources[t.name] == stem]
    has_pattern = any(t.pattern is not None for t in types)
    lines = ["// Generated from %s.desc by scripts/generate_bindings.py." % stem,
             '#include "%s/%s.h"' % (module.folder, module.name), "", "#include <cstddef>", "",
             '#include "lmx/driver.h"']
    lines += ['#include "lmx/c_regex.h"'] if has_pattern else []
    lines += ['#include "%s/%s_types.h"' % (module.folder, module.name)]
    lines += ['#include "%s"' % p.packed.how.hooks_header for p in plans if p.packed]
    lines += ["", "namespace rubrica::%s {" % module.name, "", "namespace types {", ""]
    for t in types:
        lines += simple_type_lines(t)
    lines += ["", "}  // namespace types", "", "namespace {", "",
              "constexpr lmx::module_descriptor kModule = {kNamespaces, %s};" % cpp_string("source/ooxml/" + stem)]
    lines += ["", "}  // namespace"]
    ids = {prefix: number for number, prefix, _ in module.namespaces}
    ids["xml"] = XML_NAMESPACE
    for plan in plans:
        lines += class_tables(plan, ids)
    return "\n".join(lines + ["", "}  // namespace rubrica::" + module.name, ""])


def simple_type_lines(t) -> list:
    lines = []
    kind, _, space = BUILT_IN[t.base]
    fields = [".name = %s" % cpp_string(t.name), ".kind = lmx::value_kind::" + kind,
              ".space = lmx::white_space::" + space]
    if t.facets:
        lines.append("static constexpr lmx::facets k%s_facets = {%s};" % (t.name, facet_fields(t)))
        fields.append(".limits = &k%s_facets" % t.name)
    if t.enumeration:
        tokens = ", ".join(cpp_string(token) for token in token_texts(t))
        lines.append("static constexpr const char* k%s_tokens[] = {%s, nullptr};" % (t.name, tokens))
        fields.append(".enumeration = k%s_tokens" % t.name)
    if t.pattern is not None:
        lines.append("static const lmx::c_regex k%s_pattern(R\"re(%s)re\");" % (t.name, t.pattern))
        fields.append(".pattern = &k%s_pattern" % t.name)
    if t.base == "union":
        members = ", ".join("&" + (m if m not in BUILT_IN else "ooxml::xsd_" + m) for m in t.members)
        lines.append("static const lmx::simple_type* const k%s_members[] = {%s, nullptr};" % (t.name, members))
        fields.append(".members = k%s_members" % t.name)
    return lines + ["const lmx::simple_type %s = {%s};" % (t.name, ", ".join(fields))]


def token_texts(t) -> list:
    """Numbers of an enumeration are the same number however written, and are written in their shortest form."""
    if BUILT_IN[t.base][0] == "text":
        return t.enumeration
    return list(dict.fromkeys(t.enumeration + [str(int(token)) for token in t.enumeration]))


def facet_fields(t) -> str:
    """In the order of the members of lmx::facets; exclusive bounds become the inclusive neighbour."""
    f = t.facets
    low = f.get("min", str(int(f["above"]) + 1) if "above" in f else None)
    high = f.get("max", str(int(f["below"]) - 1) if "below" in f else None)
    fields = [(".min", low), (".max", high), (".has_min", "true" if low else None),
              (".has_max", "true" if high else None), (".min_length", f.get("length", f.get("minLength"))),
              (".max_length", f.get("length", f.get("maxLength"))), (".total_digits", f.get("digits")),
              (".fraction_digits", f.get("fraction"))]
    return ", ".join("%s = %s" % item for item in fields if item[1] is not None)


def class_tables(plan, ids) -> list:
    lines = []
    for nested in plan.nested:
        lines += class_tables(nested, ids)
    key = plan.qualified.replace("::", "_")
    name = plan.qualified
    fields = name + "::fields"
    elements = list(dict.fromkeys(r.member.name for r in plan.rows if is_element(r)))
    tables = []
    if plan.attributes:
        tables += names_table(key + "_attribute_names", [m.name for m in plan.attributes], ids, NO_NAMESPACE)
        tables += attributes_table(key, plan, fields)
    if elements:
        tables += names_table(key + "_element_names", elements, ids, None)
    if plan.body:
        tables.append("constexpr lmx::simple_body k%s_body = {.type = &%s, .offset = offsetof(%s, %s), .bit = %d, "
                      ".line = %d};" % (key, plan.body.type, fields, plan.body.field, plan.body.bit, plan.body.line))
    if plan.rows:
        tables += particles_table(key, plan, fields, elements)
    if tables:
        lines += ["", "namespace {", ""] + tables + ["", "}  // namespace"]
    lines += ["", descriptor(key, plan, fields, elements)]
    lines += functions(plan)
    if plan.packed:
        lines += packed_functions(plan)
    return lines


def packed_functions(plan) -> list:
    q, hooks = plan.packed.name, plan.packed.how.hooks
    return ["", "namespace {",
            "constexpr lmx::class_hooks k%s_hooks = %sHooks<%s, %s>();" % (q, hooks, q, plan.qualified),
            "constexpr lmx::block_hooks k%s_block = %sBlockHooks<%s, %s>();" % (q, hooks, q, plan.qualified),
            "}  // namespace", "",
            "const lmx::class_descriptor %s::kDescriptor = {" % q,
            "    .name = %s," % cpp_string(plan.described),
            "    .construct = &lmx::construct<%s>," % q,
            "    .size = sizeof(%s)," % q,
            "    .module = &kModule,",
            "    .hooks = &k%s_hooks," % q,
            "    .block = &k%s_block," % q,
            "    .line = %d};" % plan.line, "",
            "const lmx::class_descriptor& %s::descriptor() const { return kDescriptor; }" % q] + forwarding(q)


def forwarding(q) -> list:
    return ["lmx::elmx_error %s::marshal(lmx::c_xml_writer& writer, const char* element_name) const {" % q,
            "  return lmx::marshal(*this, writer, element_name);", "}",
            "lmx::elmx_error %s::unmarshal(lmx::c_xml_reader& reader, std::string_view element_name) {" % q,
            "  return lmx::unmarshal(*this, reader, element_name);", "}"]


def is_element(row) -> bool:
    return row.kind in ("value", "values", "child", "children", "block")


def names_table(key, names, ids, unprefixed) -> list:
    rows = []
    for number, name in enumerate(names):
        prefix, _, local = name.rpartition(":")
        namespace = unprefixed if unprefixed is not None and not prefix else ids[prefix]
        rows.append("{%d, %d, %d, %s}" % (namespace, len(local), FIRST_NAME_TOKEN + number, cpp_string(local)))
    return ["constexpr lmx::name_row k%s[] = {%s, {}};" % (key, ", ".join(rows))]


def attributes_table(key, plan, fields) -> list:
    lines = ["constexpr lmx::attribute k%s_attributes[] = {" % key]
    for m in plan.attributes:
        cells = [".name = " + cpp_string(m.name), ".type = &" + m.type]
        if m.default_text is not None:
            cells.append(".default_text = " + cpp_string(m.default_text))
        cells += [".offset = offsetof(%s, %s)" % (fields, m.field), ".bit = %d" % m.bit]
        if m.flags:
            cells.append(".flags = " + " | ".join(m.flags))
        cells.append(".line = %d" % m.line)
        lines.append("    {%s}," % ", ".join(cells))
    return lines + ["};"]


def particles_table(key, plan, fields, elements) -> list:
    lines = ["const lmx::particle k%s_particles[] = {" % key]
    for row in plan.rows:
        m = row.member
        cells = [".kind = lmx::particle_kind::" + row.kind]
        if m and m.flags:
            cells.append(".flags = " + " | ".join(m.flags))
        if not m:
            cells.append(".span = %d" % row.span)
        if is_element(row):
            cells.append(".token = %d" % (FIRST_NAME_TOKEN + elements.index(m.name)))
        if m:
            cells.append(".name = " + cpp_string(m.name))
        if row.kind in ("value", "values"):
            cells.append(".type = &" + m.type)
        elif m and row.kind != "any":
            cells.append(".target = &%s::kDescriptor" % m.cpp)
        if row.occurs.low != 1:
            cells.append(".min_occurs = %d" % row.occurs.low)
        if row.occurs.high != 1:
            high = "lmx::kUnbounded" if row.occurs.high == UNBOUNDED else str(row.occurs.high)
            cells.append(".max_occurs = " + high)
        if m:
            cells.append(".offset = offsetof(%s, %s)" % (fields, m.field))
        if row.kind == "value":
            cells.append(".bit = %d" % m.bit)
        cells.append(".line = %d" % row.line)
        lines.append("    {%s}," % ", ".join(cells))
    return lines + ["};"]


def descriptor(key, plan, fields, elements) -> str:
    cells = [".name = " + cpp_string(plan.described),
             ".construct = &lmx::construct<%s>" % plan.qualified, ".size = sizeof(%s)" % plan.qualified,
             ".module = &kModule"]
    if plan.attributes:
        cells += [".attribute_names = k%s_attribute_names" % key, ".attributes = k%s_attributes" % key]
    if elements:
        cells.append(".element_names = k%s_element_names" % key)
    if plan.rows:
        cells.append(".particles = k%s_particles" % key)
    if plan.body:
        cells.append(".body = &k%s_body" % key)
    if plan.attributes:
        cells.append(".attribute_count = %d" % len(plan.attributes))
    if plan.rows:
        cells.append(".particle_count = %d" % len(plan.rows))
    if plan.bits:
        cells.append(".present_offset = offsetof(%s, present)" % fields)
    cells.append(".line = %d" % plan.line)
    has_required = any("lmx::kRequired" in m.flags for m in plan.attributes)
    flags = plan.flags if has_required else plan.flags + ["lmx::kAllOptional"]
    if flags:
        cells.append(".flags = " + " | ".join(flags))
    return "const lmx::class_descriptor %s::kDescriptor = {\n    %s};" % (plan.qualified, ",\n    ".join(cells))


def functions(plan) -> list:
    q = plan.qualified
    lines = ["", "lmx::object* %s::clone() const { return new %s(*this); }" % (q, q)] + forwarding(q)
    for m in plan.members:
        if m.kind in ("child", "group"):
            lines += child_functions(q, m)
        elif m.kind in ("children", "groups"):
            lines += children_functions(q, m)
    return lines


def child_functions(q, m) -> list:
    t, n, f = m.cpp, m.accessor, "_f." + m.field
    return ["%s& %s::get_%s() { return %s.need<%s>(); }" % (t, q, n, f, t),
            "%s* %s::find_%s() { return %s.as<%s>(); }" % (t, q, n, f, t),
            "const %s* %s::find_%s() const { return %s.as<%s>(); }" % (t, q, n, f, t),
            "void %s::set_%s(const %s& value) { %s.reset(value.clone()); }" % (q, n, t, f)]


def children_functions(q, m) -> list:
    t, n, f = m.cpp, m.accessor, "_f." + m.field
    at = f + ".begin() + static_cast<std::ptrdiff_t>(index)"
    return ["%s& %s::get_%s(std::size_t index) { return *%s[index].as<%s>(); }" % (t, q, n, f, t),
            "const %s& %s::get_%s(std::size_t index) const { return *%s[index].as<%s>(); }" % (t, q, n, f, t),
            "%s& %s::append_%s() { return *%s.emplace_back(lmx::owned(new %s)).as<%s>(); }" % (t, q, n, f, t, t),
            "%s& %s::insert_%s(std::size_t index) { return *%s.emplace(%s, lmx::owned(new %s))->as<%s>(); }"
            % (t, q, n, f, at, t, t),
            "void %s::erase_%s(std::size_t index) { %s.erase(%s); }" % (q, n, f, at)]


def root_source(module, stem, plans) -> str:
    names = ["&%s::kDescriptor" % p.qualified for p in plans]
    names += ["&%s::kDescriptor" % p.packed.name for p in plans if p.packed]
    lines = ["// Generated from %s.desc by scripts/generate_bindings.py." % stem,
             '#include "%s/%s.h"' % (module.folder, module.name),
             '#include "%s/%s_types.h"' % (module.folder, module.name)]
    lines += ["", "namespace rubrica::%s {" % module.name, "", "const lmx::namespace_row kNamespaces[] = {"]
    lines += ["    {%d, %s, %s}," % (number, cpp_string(prefix), cpp_string(uri))
              for number, prefix, uri in module.namespaces]
    lines += ["    {}};", "", "namespace {",
              "constexpr const lmx::class_descriptor* kClasses[] = {%s};" % ",\n    ".join(names),
              "constexpr const lmx::root_descriptor* kRoots[] = {%s};" %
              ", ".join("&c_%s::kRoot" % element.rpartition(":")[2] for element, _ in module.roots),
              "}  // namespace", "",
              "std::span<const lmx::class_descriptor* const> classes() { return kClasses; }",
              "std::span<const lmx::root_descriptor* const> roots() { return kRoots; }"]
    ids = {prefix: number for number, prefix, _ in module.namespaces}
    for element, described in module.roots:
        lines += root_functions(element, "c_" + described, ids)
    return "\n".join(lines + ["", "}  // namespace rubrica::" + module.name, ""])


def root_functions(element, base, ids) -> list:
    prefix, _, local = element.rpartition(":")
    q, record = "c_" + local, "lmx::c_error_record* out"
    return ["", "const lmx::root_descriptor %s::kRoot = {&%s::kDescriptor, %s, %d};"
            % (q, base, cpp_string(element), ids[prefix]),
            "lmx::object* %s::clone() const { return new %s(*this); }" % (q, q),
            "lmx::elmx_error %s::marshal(lmx::c_xml_writer& writer) const {" % q,
            "  return lmx::marshal_root(*this, kRoot, writer);", "}",
            "lmx::elmx_error %s::marshal(std::string& text, %s) const {" % (q, record),
            "  return lmx::marshal_root(*this, kRoot, text, out);", "}",
            "lmx::elmx_error %s::marshal(const char* path, %s) const {" % (q, record),
            "  return lmx::marshal_root_file(*this, kRoot, path, out);", "}",
            "lmx::elmx_error %s::unmarshal(lmx::c_xml_reader& reader) {" % q,
            "  return lmx::unmarshal_root(*this, kRoot, reader);", "}",
            "lmx::elmx_error %s::unmarshal(const char* data, std::size_t size, %s) {" % (q, record),
            "  return lmx::unmarshal_root(*this, kRoot, data, size, out);", "}",
            "lmx::elmx_error %s::unmarshal(const char* path, %s) {" % (q, record),
            "  return lmx::unmarshal_root_file(*this, kRoot, path, out);", "}"]
