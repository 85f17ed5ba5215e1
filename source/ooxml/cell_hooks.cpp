#include "source/ooxml/cell_hooks.h"

#include "lmx/c_xml_reader.h"
#include "lmx/c_xml_writer.h"
#include "lmx/value.h"
#include "source/ooxml/cell_address.h"

namespace rubrica::ooxml {

namespace {

using lmx::elmx_error;
using lmx::ELMX_OK;
using lmx::kFirstNameToken;

// The attributes of CT_Cell in the order of its description, which is that of their tokens.
enum class cell_attribute { r, s, t, cm, vm, ph };

class cell_reader {
 public:
  cell_reader(packed_cell& cell, lmx::c_xml_reader& reader, std::string_view element_name,
              const lmx::class_descriptor& described, make_cell_child make)
      : _cell(cell), _reader(reader), _element_name(element_name), _described(described), _make(make) {}

  elmx_error read() {
    elmx_error code = readAttributes();
    if (code != ELMX_OK || _empty) return code;
    code = readMembers();
    return code != ELMX_OK ? code : passOverRest();
  }

 private:
  elmx_error readAttributes() {
    for (;;) {
      const int event = _reader.get_attribute_event();
      if (event == lmx::TOKEN_START_TAG_END || event == lmx::TOKEN_ELEMENT_END) {
        _empty = event == lmx::TOKEN_ELEMENT_END;
        return ELMX_OK;
      }
      if (event != lmx::TOKEN_NAME) {
        _reader.set_program_line(_described.line);
        return _reader.report_end(lmx::ELMX_XML_BADLY_FORMED, _described.name);
      }
      const int token = _reader.tokenise(_described.attribute_names, false);
      if (token < kFirstNameToken) continue;
      if (const elmx_error code = readAttribute(token - kFirstNameToken); code != ELMX_OK) return code;
    }
  }

  elmx_error readAttribute(int index) {
    const lmx::attribute& row = _described.attributes[index];
    _reader.set_program_line(row.line);
    const unsigned bit = 1U << static_cast<unsigned>(index);
    if (_seen & bit) return reportAttribute(lmx::ELMX_ATTRIBUTE_ALREADY_READ, row);
    std::string_view text;
    if (!_reader.get_attribute_value(text, row.type->space)) {
      return reportAttribute(lmx::ELMX_UNABLE_TO_READ_ATTRIBUTE_VALUE, row);
    }
    elmx_error code = takeAttribute(static_cast<cell_attribute>(index), *row.type, text);
    if (code != ELMX_OK) code = reportAttribute(code, row);
    if (code == ELMX_OK) _seen |= bit;
    return code;
  }

  elmx_error takeAttribute(cell_attribute which, const lmx::simple_type& type, std::string_view text) {
    if (which == cell_attribute::r) {
      _cell.set_r(text);
      return ELMX_OK;
    }
    if (which == cell_attribute::t) return takeType(type, text);
    if (which == cell_attribute::ph) {
      bool shown = false;
      const elmx_error code = lmx::parse_value(type, text, &shown);
      if (code == ELMX_OK) _cell.set_ph(shown);
      return code;
    }
    std::uint32_t number = 0;
    const elmx_error code = lmx::parse_value(type, text, &number);
    if (code != ELMX_OK) return code;
    if (which == cell_attribute::s) _cell.set_s(number);
    if (which == cell_attribute::cm) _cell.set_cm(number);
    if (which == cell_attribute::vm) _cell.set_vm(number);
    return ELMX_OK;
  }

  elmx_error takeType(const lmx::simple_type& type, std::string_view text) {
    for (const char* const* token = type.enumeration; *token; ++token) {
      if (text == *token) return _cell.set_t(text) ? ELMX_OK : lmx::ELMX_VALUE_NOT_IN_ENUMERATION;
    }
    return lmx::ELMX_VALUE_NOT_IN_ENUMERATION;
  }

  // The members in their order, until something else comes.
  elmx_error readMembers() {
    if (const elmx_error code = advance(); code != ELMX_OK) return code;
    while (_token >= kFirstNameToken + _next) {
      const auto member = static_cast<cell_member>(_token - kFirstNameToken);
      _next = _token - kFirstNameToken + 1;
      elmx_error code = member == cell_member::v ? readValue() : readChild(member);
      if (code == ELMX_OK) code = advance();
      if (code != ELMX_OK) return code;
    }
    return ELMX_OK;
  }

  elmx_error readChild(cell_member member) {
    const lmx::particle& row = _described.particles[static_cast<int>(member)];
    _reader.set_program_line(row.line);
    return lmx::unmarshal(_make(_cell, member), _reader, row.name);
  }

  elmx_error readValue() {
    const lmx::particle& row = _described.particles[static_cast<int>(cell_member::v)];
    _reader.set_program_line(row.line);
    int event = _reader.get_attribute_event();
    while (event == lmx::TOKEN_NAME) event = _reader.get_attribute_event();
    if (event == lmx::TOKEN_FAILURE) return _reader.report_end(lmx::ELMX_XML_BADLY_FORMED, row.name);
    std::string_view text;
    if (event == lmx::TOKEN_ELEMENT_END) {
      _cell.set_v(text);
      return ELMX_OK;
    }
    if (!_reader.get_simple_type_value(text, row.type->space)) {
      return _reader.report_end(lmx::ELMX_UNABLE_TO_READ_ELEMENT_VALUE, row.name);
    }
    _cell.set_v(text);
    return expectEnd(row.name);
  }

  elmx_error expectEnd(std::string_view name) {
    for (;;) {
      const int event = _reader.get_element_event();
      if (event == lmx::TOKEN_ELEMENT_END) break;
      if (event == lmx::TOKEN_END_OF_INPUT || event == lmx::TOKEN_FAILURE) {
        return _reader.report_end(lmx::ELMX_UNEXPECTED_END, name);
      }
      if (const elmx_error code = _reader.report(lmx::ELMX_BAD_END_OF_ELEMENT, name); code != ELMX_OK) return code;
      if (!passOver(event)) return _reader.report_end(lmx::ELMX_UNABLE_TO_READ_ELEMENT_VALUE, name);
    }
    return _reader.end_matches_start() ? ELMX_OK : _reader.report(lmx::ELMX_BAD_END_OF_ELEMENT, name);
  }

  // Elements behind the last member are passed over, unless a member stands behind a foreign one.
  elmx_error passOverRest() {
    bool foreign = false;
    while (_token != lmx::TOKEN_ELEMENT_END) {
      const bool could_still_come = _token >= kFirstNameToken + _next;
      if (_token != lmx::TOKEN_TEXT && foreign && could_still_come) {
        const elmx_error code = report(lmx::ELMX_BAD_END_OF_ELEMENT);
        if (code != ELMX_OK) return code;
      }
      foreign = foreign || _token < kFirstNameToken;
      if (!passOver(_token)) return _reader.report_end(lmx::ELMX_UNABLE_TO_READ_ELEMENT_VALUE, _element_name);
      if (const elmx_error code = advance(); code != ELMX_OK) return code;
    }
    return _reader.end_matches_start() ? ELMX_OK : report(lmx::ELMX_BAD_END_OF_ELEMENT);
  }

  bool passOver(int token) {
    std::string_view text;
    return token == lmx::TOKEN_TEXT ? _reader.get_simple_type_value(text, lmx::white_space::keep)
                                    : _reader.skip_element();
  }

  elmx_error advance() {
    const int event = _reader.get_element_event();
    if (event == lmx::TOKEN_END_OF_INPUT || event == lmx::TOKEN_FAILURE) {
      return _reader.report_end(lmx::ELMX_UNEXPECTED_END, _element_name);
    }
    _token = event == lmx::TOKEN_NAME ? _reader.tokenise(_described.element_names, true) : event;
    return ELMX_OK;
  }

  elmx_error report(elmx_error code) {
    _reader.set_program_line(_described.line);
    return _reader.report(code, _element_name);
  }

  elmx_error reportAttribute(elmx_error code, const lmx::attribute& row) {
    return _reader.report(code, "@" + std::string(row.name));
  }

  packed_cell& _cell;
  lmx::c_xml_reader& _reader;
  std::string_view _element_name;
  const lmx::class_descriptor& _described;
  make_cell_child _make;
  int _token = lmx::TOKEN_NAME;
  int _next = 0;  // the first member that may still come
  unsigned _seen = 0;
  bool _empty = false;
};

void writeAttributes(const packed_cell& cell, lmx::c_xml_writer& writer) {
  if (cell.isset_r()) {
    writer.write_attribute_separator();
    std::string& out = writer.raw();
    out.append("r=\"");
    appendCellAddress(out, cell.row(), cell.column());
    out.push_back('"');
  }
  if (cell.isset_s()) writer.write_attribute("s", cell.get_s());
  if (cell.isset_t()) writer.write_attribute("t", cell.get_t());
  if (cell.isset_cm()) writer.write_attribute("cm", cell.get_cm());
  if (cell.isset_vm()) writer.write_attribute("vm", cell.get_vm());
  if (cell.isset_ph()) writer.write_attribute("ph", cell.get_ph());
}

void writeText(std::string_view text, lmx::c_xml_writer& writer, const char* element_name) {
  lmx::c_xml_writer::frame frame(writer);
  writer.start_element(element_name);
  writer.write_element_body(text);
  writer.end_element(element_name);
}

// The text of a member that is text alone.
optional_text textOf(const packed_cell& cell, cell_member member, packed_cell::value_buffer& buffer) {
  if (member == cell_member::f) return cell.view_f();
  return member == cell_member::v && cell.isset_v() ? optional_text(cell.view_v(buffer)) : std::nullopt;
}

}  // namespace

elmx_error readCell(packed_cell& cell, lmx::c_xml_reader& reader, std::string_view element_name,
                    const lmx::class_descriptor& described, make_cell_child make) {
  return cell_reader(cell, reader, element_name, described, make).read();
}

elmx_error writeCell(const packed_cell& cell, lmx::c_xml_writer& writer, const char* element_name,
                     const lmx::class_descriptor& described, find_cell_child find) {
  lmx::c_xml_writer::frame frame(writer);
  writer.start_element(element_name);
  writer.set_namespaces(described.module->namespaces);
  writer.write_namespaces(false);
  writeAttributes(cell, writer);
  packed_cell::value_buffer buffer;
  for (int i = 0; i < described.particle_count; ++i) {
    const auto member = static_cast<cell_member>(i);
    const char* const name = described.particles[i].name;
    if (const optional_text text = textOf(cell, member, buffer)) {
      writeText(*text, writer, name);
    } else if (const lmx::object* child = member == cell_member::v ? nullptr : find(cell, member)) {
      const elmx_error code = lmx::marshal(*child, writer, name);
      if (code != ELMX_OK) return code;
    }
  }
  writer.end_element(element_name);
  return ELMX_OK;
}

}  // namespace rubrica::ooxml
