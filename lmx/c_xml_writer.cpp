#include "lmx/c_xml_writer.h"

#include <locale>

namespace rubrica::lmx {

namespace {

constexpr std::size_t kStreamBlock = 64 * 1024;  // bytes held back before a stream gets them

// A short tag or attribute opening in one append, which for a string costs as much as its bytes.
void append_name(std::string& out, std::string_view before, const char* name, std::string_view after) {
  constexpr std::size_t kRoom = 64;
  char joined[kRoom];
  std::size_t size = 0;
  for (const char c : before) joined[size++] = c;
  while (*name != '\0' && size < kRoom - after.size()) joined[size++] = *name++;
  if (*name != '\0') {
    out.append(joined, size).append(name).append(after);
    return;
  }
  for (const char c : after) joined[size++] = c;
  out.append(joined, size);
}

std::string text_or(const char* text, const std::string& otherwise) {
  return text == nullptr ? otherwise : std::string(text);
}

}  // namespace

c_xml_writer::c_xml_writer(std::string& target, unsigned flags, const writer_layout& strings)
    : c_xml("(not set)", _own_errors), _out(target), _stream(nullptr) {
  prepare(flags, strings);
}

c_xml_writer::c_xml_writer(std::ostream& target, unsigned flags, const writer_layout& strings)
    : c_xml("(not set)", _own_errors), _out(_buffer), _stream(&target) {
  target.imbue(std::locale::classic());
  prepare(flags, strings);
}

c_xml_writer::~c_xml_writer() {
  flush();
}

void c_xml_writer::prepare(unsigned flags, const writer_layout& strings) {
  _tab = text_or(strings.tab, "");
  _nl = text_or(strings.nl, "");
  _attribute_tab = text_or(strings.attribute_tab, _tab);
  _attribute_nl = text_or(strings.attribute_nl, _nl);
  if (flags != kNoDeclaration) {
    _out.append(R"(<?xml version="1.0" encoding="UTF-8")");
    if (flags == kStandaloneDeclaration) _out.append(" standalone=\"yes\"");
    _out.append("?>").append(_nl);
  }
  flush();
}

void c_xml_writer::flush() {
  if (_stream == nullptr || _out.empty()) return;
  _stream->write(_out.data(), static_cast<std::streamsize>(_out.size()));
  _out.clear();
}

void c_xml_writer::indent(int depth) {
  if (_tab.empty()) return;
  for (int i = 0; i < depth; ++i) _out.append(_tab);
}

void c_xml_writer::set_namespaces(const namespace_row* table) {
  if (_namespaces == nullptr) _namespaces = table;
}

void c_xml_writer::add_namespace(std::string_view prefix, std::string_view uri) {
  _extra_namespaces.emplace_back(prefix, uri);
}

void c_xml_writer::add_schema_location(std::string_view uri, std::string_view location) {
  _schema_locations.emplace_back(uri, location);
}

// The parent's start tag ends where its first child begins.
void c_xml_writer::start_child() {
  frame* parent = _top == nullptr ? nullptr : _top->_parent;
  if (parent == nullptr) return;
  if (!parent->_body_started) {
    _out.push_back('>');
    if (!_nl.empty()) _out.append(_nl);
  }
  parent->_body_started = true;
  parent->_has_child_elements = true;
}

void c_xml_writer::start_element(const char* name) {
  start_child();
  if (_stream != nullptr && _out.size() >= kStreamBlock) flush();
  indent(_depth);
  append_name(_out, "<", name, "");
  ++_depth;
  _first_attribute = true;
}

void c_xml_writer::write_namespaces(bool force_xsi) {
  if (_namespaces_written) return;
  const auto declare = [this](std::string_view prefix, std::string_view uri) {
    write_attribute_separator();
    _out.append("xmlns");
    if (!prefix.empty()) _out.append(":").append(prefix);
    _out.append("=\"").append(uri).append("\"");
  };
  for (const namespace_row* row = _namespaces; row != nullptr && row->uri != nullptr; ++row) {
    declare(row->prefix, row->uri);
  }
  for (const auto& [prefix, uri] : _extra_namespaces) declare(prefix, uri);
  if (force_xsi || !_schema_locations.empty()) declare("xsi", "http://www.w3.org/2001/XMLSchema-instance");
  if (!_schema_locations.empty()) {
    write_attribute_separator();
    if (_schema_locations.front().first.empty()) {
      _out.append("xsi:noNamespaceSchemaLocation=\"").append(_schema_locations.front().second);
    } else {
      _out.append("xsi:schemaLocation=\"");
      bool first = true;
      for (const auto& [uri, location] : _schema_locations) {
        if (!first) _out.push_back(' ');
        _out.append(uri).append(" ").append(location);
        first = false;
      }
    }
    close_attribute();
  }
  _namespaces_written = true;
}

void c_xml_writer::write_attribute_separator() {
  if (_first_attribute || (_attribute_nl.empty() && _attribute_tab.empty())) {
    _out.push_back(' ');
  } else if (_attribute_nl.empty()) {
    _out.append(_attribute_tab);
  } else {
    _out.append(_attribute_nl);
    for (int i = 0; i <= _depth; ++i) _out.append(_attribute_tab);
  }
  _first_attribute = false;
}

void c_xml_writer::open_attribute(const char* name) {
  write_attribute_separator();
  append_name(_out, "", name, "=\"");
}

void c_xml_writer::write_attribute(const char* name, std::string_view value) {
  open_attribute(name);
  append_escaped(_out, value);
  close_attribute();
}

void c_xml_writer::write_attribute(const char* name, std::u16string_view value) {
  open_attribute(name);
  append_escaped(_out, value);
  close_attribute();
}

void c_xml_writer::write_attribute(const char* name, double value) {
  open_attribute(name);
  append_number(_out, value);
  close_attribute();
}

void c_xml_writer::write_attribute(const char* name, const simple_type& type, const void* value, bool is_value_set) {
  if (!is_value_set) return;
  open_attribute(name);
  append_value(_out, type, value);
  close_attribute();
}

void c_xml_writer::write_list_attribute(const char* name, const simple_type& type, const void* values,
                                        bool is_value_set) {
  if (!is_value_set) return;
  open_attribute(name);
  append_list(_out, type, values);
  close_attribute();
}

void c_xml_writer::start_body() {
  if (_top == nullptr || _top->_body_started) return;
  _out.push_back('>');
  _top->_body_started = true;
}

bool c_xml_writer::start_raw_children() {
  const bool has_layout = !_nl.empty() || !_tab.empty() || !_attribute_nl.empty() || !_attribute_tab.empty();
  if (_top == nullptr || has_layout || !_namespaces_written) return false;
  start_body();
  _top->_has_child_elements = true;
  if (_stream != nullptr && _out.size() >= kStreamBlock) flush();
  return true;
}

void c_xml_writer::write_element_body(std::string_view value) {
  start_body();
  append_escaped(_out, value);
}

void c_xml_writer::write_element_body(std::u16string_view value) {
  start_body();
  append_escaped(_out, value);
}

void c_xml_writer::write_element_body(double value) {
  start_body();
  append_number(_out, value);
}

void c_xml_writer::write_element_body(const simple_type& type, const void* value) {
  start_body();
  append_value(_out, type, value);
}

void c_xml_writer::write_simple_elements(const char* name, const simple_type& type, const void* values,
                                         const namespace_row* namespaces) {
  const std::size_t count = list_size(type.kind, values);
  for (std::size_t i = 0; i < count; ++i) {
    frame item(*this);
    start_element(name);
    if (namespaces != nullptr) {
      set_namespaces(namespaces);
      write_namespaces(false);
    }
    start_body();
    append_list_item(_out, type, values, i);
    end_element(name);
  }
}

void c_xml_writer::end_element(const char* name) {
  --_depth;
  if (_top != nullptr && _top->_body_started) {
    if (_top->_has_child_elements && _depth > 0) indent(_depth);
    append_name(_out, "</", name, ">");
  } else {
    _out.append("/>");
  }
  if (!_nl.empty()) _out.append(_nl);
  if (_depth == 0) flush();
}

void c_xml_writer::write_any_text(const any_item& item) {
  if (_top != nullptr) {
    if (!_top->_body_started) _out.append(">").append(_nl);
    _top->_body_started = true;
    _top->_has_child_elements = true;
  }
  indent(_depth);
  _out.append(item.text).append(_nl);
}

}  // namespace rubrica::lmx
