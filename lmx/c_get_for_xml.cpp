#include "lmx/c_get_for_xml.h"

#include "lmx/limits.h"
#include "lmx/text.h"

namespace rubrica::lmx {

namespace {

constexpr std::size_t kTagBufferSize = 150;  // bytes reserved for the attributes of a start tag

}  // namespace

c_get_for_xml::c_get_for_xml(c_read& source, c_error& errors) : c_get_with_entities(source, errors, true) {
  enter_namespace("http://www.w3.org/2001/XMLSchema-instance", kSchemaInstanceNamespace);
  enter_namespace("http://www.w3.org/XML/1998/namespace", kXmlNamespace);
  _attributes.text.reserve(kTagBufferSize);
  _declarations.text.reserve(kTagBufferSize);
}

int c_get_for_xml::namespace_id(std::string_view uri) {
  if (uri.empty()) return kNoNamespace;  // xmlns="" takes a default away
  if (const int* id = _namespaces.find(uri); id != nullptr) return *id;
  const int id = _next_namespace++;
  _namespaces.enter(uri, id);
  return id;
}

void c_get_for_xml::enter_namespace(std::string_view uri, int id) {
  _namespaces.enter(uri, id);
  if (id >= _next_namespace) _next_namespace = id + 1;
}

std::string_view c_get_for_xml::namespace_uri(int id) const {
  for (const auto& [uri, known] : _namespaces) {
    if (known == id) return uri;
  }
  return {};
}

void c_get_for_xml::list(const pair_buffer& buffer, std::vector<raw_attribute>& out) {
  out.clear();
  const std::string_view text = buffer.text;
  for (const pair_buffer::entry& entry : buffer.entries) {
    const std::string_view value = text.substr(entry.value, entry.value_size);
    const bool has_reference = value.find('&') != std::string_view::npos;
    out.push_back({text.substr(entry.name, entry.name_size), value, entry.quote, has_reference});
  }
}

bool c_get_for_xml::premature_end() {
  return malformed(ELMX_UNEXPECTED_END, "Premature end of file encountered");
}

int c_get_for_xml::skip_space(int c) {
  while (is_space(c)) c = get();
  return c;
}

bool c_get_for_xml::expect(std::string_view text) {
  for (const char wanted : text) {
    const int c = get();
    if (c != wanted) {
      unget(c);
      return false;
    }
  }
  return true;
}

void c_get_for_xml::read_name(int first, std::string& name) {
  name.clear();
  int c = first;
  for (; is_name_char(c); c = get()) name.push_back(static_cast<char>(c));
  unget(c);
}

int c_get_for_xml::next_markup() {
  if (_in_cdata) {
    std::string unread;
    if (!read_cdata(&unread)) return TOKEN_FAILURE;
  }
  for (;;) {
    int c = skip_space(get());
    if (c < 0) return errors().fatal_count() > 0 ? TOKEN_FAILURE : TOKEN_END_OF_INPUT;
    if (c != '<') {
      unget(c);
      _document_started = true;
      return TOKEN_TEXT;
    }
    c = get();
    bool text = false;
    if (is_name_start(c)) {
      _document_started = true;
      return read_start_tag(c) ? TOKEN_NAME : TOKEN_FAILURE;
    }
    if (c == '/') return read_end_tag() ? TOKEN_ELEMENT_END : TOKEN_FAILURE;
    if (c == '!') {
      if (!read_declaration(text)) return TOKEN_FAILURE;
      if (text) {
        _document_started = true;
        return TOKEN_TEXT;
      }
    } else if (c == '?') {
      if (!read_instruction()) return TOKEN_FAILURE;
    } else {
      if (c < 0) {
        premature_end();
      } else {
        malformed(ELMX_NOT_WELL_FORMED, "XML not Well-Formed");
      }
      return TOKEN_FAILURE;
    }
  }
}

bool c_get_for_xml::read_start_tag(int first) {
  read_name(first, _tag_name);
  _attributes.clear();
  _declarations.clear();
  for (;;) {
    const int c = skip_space(get());
    if (c == '>' || c == '/') {
      unget(c);
      return true;
    }
    if (!read_attribute(c)) return false;
  }
}

bool c_get_for_xml::read_attribute(int first) {
  if (first < 0) return malformed(ELMX_UNEXPECTED_END, "Unexpected end of file");
  std::string& text = _attributes.text;
  pair_buffer::entry entry{text.size(), 0, 0, 0, '"'};
  int c = first;
  if (is_name_start(c)) {
    for (; is_name_char(c); c = get()) text.push_back(static_cast<char>(c));
  }
  entry.name_size = text.size() - entry.name;
  text.push_back('\0');
  c = skip_space(c);
  if (c < 0) return malformed(ELMX_UNEXPECTED_END, "Unexpected end of file");
  if (c != '=' || entry.name_size == 0) {
    return malformed(ELMX_NOT_WELL_FORMED,
                     std::string("Schema is not Well Formed (expected '=', got '") + static_cast<char>(c));
  }
  c = skip_space(get());
  if (c < 0) return malformed(ELMX_UNEXPECTED_END, "Unexpected end of file");
  if (c != '"' && c != '\'') {
    return malformed(ELMX_NOT_WELL_FORMED,
                     std::string("Schema is not Well Formed (expected '\"' or ''', got ") + static_cast<char>(c));
  }
  entry.quote = static_cast<char>(c);
  entry.value = text.size();
  for (c = get(); c != entry.quote; c = get()) {
    if (c < 0) return malformed(ELMX_UNEXPECTED_END, "Unexpected end of file");
    text.push_back(static_cast<char>(c));
  }
  entry.value_size = text.size() - entry.value;
  text.push_back('\0');
  if (is_namespace_declaration(std::string_view(text).substr(entry.name, entry.name_size))) {
    const std::size_t base = _declarations.text.size();
    _declarations.text.append(text, entry.name);
    _declarations.entries.push_back(
        {base, entry.name_size, base + entry.value - entry.name, entry.value_size, entry.quote});
    text.resize(entry.name);
  } else {
    _attributes.entries.push_back(entry);
  }
  return true;
}

int c_get_for_xml::start_tag_end() {
  int c = get();
  if (c == '>') return TOKEN_START_TAG_END;
  if (c == '/') {
    c = skip_space(get());
    if (c == '>') return TOKEN_ELEMENT_END;
    if (c < 0) {
      premature_end();
    } else {
      malformed(ELMX_BAD_END_TAG, std::string("Illegal character(s) after / at end of tag - ") + static_cast<char>(c));
    }
    return TOKEN_FAILURE;
  }
  malformed(ELMX_NOT_WELL_FORMED, "XML not well-formed");
  return TOKEN_FAILURE;
}

bool c_get_for_xml::read_end_tag() {
  const int c = get();
  if (is_name_start(c)) {
    read_name(c, _tag_name);
    if (skip_space(get()) == '>') return true;
  }
  return malformed(ELMX_NOT_WELL_FORMED, "XML not Well-Formed");
}

// Behind "<" within text: a comment, a processing instruction and the start of a CDATA section belong to it; a tag ends
// it and is put back.
bool c_get_for_xml::read_markup_in_text(bool& ends) {
  const int c = get();
  bool more_text = false;
  if (c == '!') return read_declaration(more_text);
  if (c == '?') return read_instruction();
  unget(c);
  unget('<');
  ends = true;
  return true;
}

bool c_get_for_xml::read_text(std::string& text, white_space mode) {
  value().begin(text, mode);
  for (bool ends = false; !ends;) {
    if (_in_cdata && !read_cdata(nullptr)) return false;
    const int c = get();
    if (c < 0) break;
    if (c == '&') {
      if (!read_stream_reference()) return false;
    } else if (c != '<') {
      value().put(static_cast<char>(c));
    } else if (!read_markup_in_text(ends)) {
      return false;
    }
  }
  return errors().fatal_count() == 0;
}

bool c_get_for_xml::read_raw_text(std::string& text, white_space mode) {
  value().begin(text, mode);
  for (bool ends = false; !ends;) {
    if (_in_cdata) {
      value().put_bytes("<![CDATA[");
      if (!read_cdata(&text)) return false;
      value().put_bytes("]]>");
    }
    const int c = get();
    if (c < 0) break;
    if (c == '&') {
      if (!put_raw_reference()) return false;
    } else if (c != '<') {
      value().put(static_cast<char>(c));
    } else if (!read_markup_in_text(ends)) {
      return false;
    }
  }
  return errors().fatal_count() == 0;
}

// References that any reader knows stay as they are; those that this document defines would lose their meaning outside
// of it and are expanded.
bool c_get_for_xml::put_raw_reference() {
  std::string name;
  int c = get();
  if (c == '#') {
    name.push_back('#');
    c = get();
  }
  for (; is_name_char(c); c = get()) name.push_back(static_cast<char>(c));
  if (c != ';') {
    unget(c);
    return false;
  }
  if (name.starts_with('#')) {
    c_entity_name_reader_for_c_str digits(std::string_view(name).substr(1));
    if (read_character_reference(digits) < 0 || digits.get() >= 0) return false;
  } else if (builtin_entity(name) == '\0') {
    const std::string* expansion = find_general(name);
    return expansion != nullptr && push_entity(name, *expansion, false);
  }
  value().put_bytes("&" + name + ";");
  return true;
}

// The content of a CDATA section whose opening has been read, into the value under construction, or as it stands into
// `raw`.
bool c_get_for_xml::read_cdata(std::string* raw) {
  _in_cdata = false;
  std::size_t brackets = 0;
  const auto put = [&](char c) {
    if (raw != nullptr) {
      raw->push_back(c);
    } else {
      value().put(c);
    }
  };
  for (;;) {
    const int c = get();
    if (c < 0) return premature_end();
    if (c == ']') {
      ++brackets;
      continue;
    }
    const bool closed = c == '>' && brackets >= 2;
    for (std::size_t i = closed ? 2 : 0; i < brackets; ++i) put(']');
    if (closed) return true;
    brackets = 0;
    put(static_cast<char>(c));
  }
}

}  // namespace rubrica::lmx
