// The markup beside elements and text: comments, processing instructions, the XML declaration, the document type.
#include "lmx/c_get_for_xml.h"
#include "lmx/text.h"

namespace rubrica::lmx {

bool c_get_for_xml::skip_to(char end) {
  for (;;) {
    const int c = get();
    if (c == end) return true;
    if (c < 0) return premature_end();
  }
}

// Behind "<!--". Two dashes or more before '>' end a comment; dashes elsewhere in it are no fault.
bool c_get_for_xml::skip_comment() {
  std::size_t dashes = 0;
  for (;;) {
    const int c = get();
    if (c < 0) return premature_end();
    if (c == '-') {
      ++dashes;
    } else if (c == '>' && dashes >= 2) {
      if (dashes > 2) problem(severity::warning, ELMX_BAD_COMMENT, "End of comment not Well-Formed");
      return true;
    } else {
      dashes = 0;
    }
  }
}

bool c_get_for_xml::skip_instruction_rest() {
  bool question = false;
  for (;;) {
    const int c = get();
    if (c < 0) return premature_end();
    if (c == '>' && question) return true;
    question = c == '?';
  }
}

bool c_get_for_xml::read_declaration(bool& text) {
  const int c = get();
  if (c == '-') {
    if (get() == '-') return skip_comment();
  } else if (c == '[') {
    if (expect("CDATA[")) {
      _in_cdata = true;
      text = true;
      return true;
    }
  } else if (c == 'D') {
    if (expect("OCTYPE")) return read_document_type();
  }
  if (c < 0) return premature_end();
  return malformed(ELMX_NOT_WELL_FORMED, "XML not Well-Formed");
}

// Behind "<?". Only "<?xml" with white space after it is the declaration.
bool c_get_for_xml::read_instruction() {
  std::string target;
  const int c = get();
  if (is_name_start(c)) {
    read_name(c, target);
  } else {
    unget(c);
  }
  if (target != "xml") return skip_instruction_rest();
  const int next = get();
  if (!is_space(next)) {
    unget(next);
    return skip_instruction_rest();
  }
  if (_document_started) return malformed(ELMX_BAD_XML_DECL, "XML declaration not at start of document");
  return read_xml_declaration();
}

bool c_get_for_xml::read_quoted(std::string& value) {
  value.clear();
  const int quote = skip_space(get());
  if (quote != '"' && quote != '\'') {
    unget(quote);
    return false;
  }
  for (;;) {
    const int c = get();
    if (c < 0) return premature_end();
    if (c == quote) return true;
    value.push_back(static_cast<char>(c));
  }
}

bool c_get_for_xml::read_xml_declaration() {
  std::string name;
  std::string content;
  bool first = true;
  for (;;) {
    int c = skip_space(get());
    if (c < 0) return premature_end();
    if (!is_name_start(c)) {
      unget(c);
      break;
    }
    read_name(c, name);
    if (first && name != "version") {
      problem(severity::error, ELMX_BAD_XML_DECL, "Version not present in XML Decl");
    }
    c = skip_space(get());
    if (c != '=' || !read_quoted(content)) {
      if (errors().fatal_count() > 0) return false;
      problem(severity::error, ELMX_BAD_XML_DECL, "XML declaration not Well-Formed");
      if (c != '=') unget(c);
      first = false;
      break;
    }
    if (first && name == "version" && content != "1.0" && content != "1.1") {
      problem(severity::error, ELMX_BAD_XML_VERSION, "XML version " + content + " not understood");
    }
    if (name == "encoding") {
      declare_encoding(content);
      if (errors().fatal_count() > 0) return false;
    }
    first = false;
  }
  if (first) problem(severity::error, ELMX_BAD_XML_DECL, "Version not present in XML Decl");
  return skip_instruction_rest();
}

bool c_get_for_xml::read_document_type() {
  if (_document_started) return malformed(ELMX_BAD_DTD, "Document Type Declaration not at start of document");
  if (_dtd_seen) return malformed(ELMX_BAD_DTD, "Document Type Declaration already read");
  _dtd_seen = true;
  for (;;) {
    const int c = get();
    if (c < 0) return premature_end();
    if (c == '>') return true;
    if (c == '[') return read_internal_subset();
  }
}

bool c_get_for_xml::read_internal_subset() {
  for (;;) {
    int c = skip_space(get());
    if (c < 0) return premature_end();
    if (c == '%') {
      if (!expand_parameter(true, nullptr)) return false;
    } else if (c == ']') {
      c = get();
      if (c == '>') return true;
      if (c < 0) return premature_end();
      return malformed(ELMX_BAD_DTD,
                       std::string("DTD not Well Formed (expected '>', got ") + static_cast<char>(c) + ")");
    } else if (c == '<') {
      if (!read_subset_declaration()) return false;
    } else {
      return malformed(ELMX_BAD_DTD, std::string("DTD not Well Formed (got ") + static_cast<char>(c) + ")");
    }
  }
}

bool c_get_for_xml::read_subset_declaration() {
  int c = get();
  if (c == '?') return skip_instruction_rest();
  if (c < 0) return premature_end();
  if (c != '!') return malformed(ELMX_BAD_DTD, std::string("DTD not Well Formed (got ") + static_cast<char>(c) + ")");
  c = get();
  if (c == '-') {
    c = get();
    if (c == '-') return skip_comment();
    unget(c);
    return skip_to('>');
  }
  std::string keyword;
  if (is_name_start(c)) {
    read_name(c, keyword);
  } else {
    unget(c);
  }
  return keyword == "ENTITY" ? read_entity_definition() : skip_to('>');
}

bool c_get_for_xml::read_entity_definition() {
  std::string name;
  int c = skip_space(get());
  const bool parameter = c == '%';
  if (parameter) c = skip_space(get());
  if (!is_name_start(c)) {
    if (c < 0) return premature_end();
    return malformed(ELMX_BAD_DTD, std::string("DTD not Well Formed (got ") + static_cast<char>(c) + ")");
  }
  read_name(c, name);
  c = skip_space(get());
  if (c == '"' || c == '\'') {
    std::string content;
    if (!read_entity_value(c, content)) return false;
    if (parameter) {
      define_parameter(name, std::move(content));
    } else {
      define_general(name, std::move(content));
    }
  } else {
    if (c < 0) return premature_end();
    std::string word;
    for (; c >= 0 && !is_space(c) && c != '>'; c = get()) word.push_back(static_cast<char>(c));
    unget(c);
    if (word != "SYSTEM" && word != "PUBLIC") {
      return malformed(ELMX_UNEXPECTED_ENTITY, "Unexpected value in Entity definition: " + word);
    }
    problem(severity::warning, ELMX_EXTERNAL_ENTITY, "External Entity definitions not supported");
  }
  return skip_to('>');
}

// A quoted value: parameter entities and character references count at once, general entities when they are used.
bool c_get_for_xml::read_entity_value(int quote, std::string& content) {
  for (;;) {
    const int c = get();
    if (c < 0) return premature_end();
    if (c == quote) return true;
    if (c == '%') {
      if (!expand_parameter(false, &content)) return false;
      continue;
    }
    if (c == '&') {
      const int next = get();
      if (next == '#') {
        c_entity_name_reader_for_c_get in(*this);
        const long number = read_character_reference(in);
        if (number < 0) return malformed(ELMX_BAD_DTD, "DTD not Well Formed (bad character reference)");
        append_utf8(content, static_cast<std::uint32_t>(number));
        continue;
      }
      unget(next);
    }
    content.push_back(static_cast<char>(c));
  }
}

// Behind '%': into the stream, or at once into a value.
bool c_get_for_xml::expand_parameter(bool push, std::string* content) {
  std::string name;
  int c = get();
  for (; is_name_char(c); c = get()) name.push_back(static_cast<char>(c));
  if (c != ';') {
    if (c < 0) return premature_end();
    return malformed(ELMX_BAD_DTD, std::string("DTD not Well Formed (got ") + static_cast<char>(c) + ")");
  }
  const std::string* text = find_parameter(name);
  if (text == nullptr) return false;
  if (push) return push_entity(name, *text, true);
  if (!charge_expansion(text->size())) return false;
  content->append(*text);
  return true;
}

}  // namespace rubrica::lmx
