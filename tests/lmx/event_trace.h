// A whole document as text, one line an event, so that two readers can be compared. Which elements are captured or
// passed over, and how values are read, follows from the document's own bytes and a policy, never from the reader.
#pragma once

#include <string>
#include <string_view>

#include "lmx/c_xml_reader.h"

namespace rubrica::lmx {

namespace trace {

inline unsigned hash_of(std::string_view text) {
  unsigned hash = 2166136261U;
  for (const char c : text) hash = (hash ^ static_cast<unsigned char>(c)) * 16777619U;
  return hash;
}

inline void add_errors(std::string& out, c_xml_reader& reader) {
  const c_error& errors = reader.errors();
  out += " errors " + std::to_string(errors.fatal_count()) + "/" + std::to_string(errors.error_count()) + "/" +
         std::to_string(errors.warning_count()) + " code " + std::to_string(errors.last_code()) + " line " +
         std::to_string(errors.last_line()) + " " + errors.last_text() + "\n";
}

inline bool add_text(std::string& out, c_xml_reader& reader, unsigned mode) {
  std::string_view text;
  const bool good = reader.get_simple_type_value(text, static_cast<white_space>(mode % 3));
  out += good ? " text [" : " bad text [";
  out += std::string(text) + "] line " + std::to_string(reader.line()) + "\n";
  return good;
}

// Reads the attributes and the end of a start tag; false when reading stops.
inline bool add_tag(std::string& out, c_xml_reader& reader, unsigned policy) {
  unsigned count = policy;
  for (;;) {
    const int event = reader.get_attribute_event();
    if (event == TOKEN_NAME) {
      std::string_view value;
      const int id = reader.namespace_id(false);
      out += " @" + std::string(reader.name()) + ":" + std::to_string(id);
      out += reader.get_attribute_value(value, static_cast<white_space>(count++ % 3)) ? "=[" : "!=[";
      out += std::string(value) + "]";
      continue;
    }
    out += " tag end " + std::to_string(event) + " line " + std::to_string(reader.line()) + "\n";
    if (event == TOKEN_FAILURE) return false;
    // Half of the policies read text at once, as simple types do; the others go by events alone.
    return event != TOKEN_START_TAG_END || (policy & 1U) == 0 || add_text(out, reader, policy >> 1U);
  }
}

inline bool add_start(std::string& out, c_xml_reader& reader, unsigned policy) {
  const std::string name(reader.name());
  out += "start " + name + ":" + std::to_string(reader.namespace_id(true)) + " line " + std::to_string(reader.line());
  const unsigned choice = (hash_of(name) ^ policy) % 8;
  if (choice == 0) {
    const bool good = reader.skip_element();
    out += good ? " skipped\n" : " not skipped\n";
    return good;
  }
  if (choice == 1) {
    any_item item;
    const bool good = reader.capture_element(item, white_space::keep);
    out += good ? " captured " : " not captured ";
    out += item.namespace_uri + " [" + (good ? item.text : "") + "]";
    for (const auto& [attribute, value] : item.attributes) {
      out.append(" @").append(attribute).append("=[").append(value).append("]");
    }
    out += " line " + std::to_string(reader.line()) + "\n";
    return good;
  }
  return add_tag(out, reader, policy);
}

}  // namespace trace

inline std::string trace_document(c_xml_reader& reader, unsigned policy) {
  std::string out;
  for (bool going = true; going;) {
    const int event = reader.get_element_event();
    switch (event) {
      case TOKEN_NAME:
        going = trace::add_start(out, reader, policy);
        break;
      case TOKEN_TEXT:
        out += "text";
        going = trace::add_text(out, reader, policy);
        break;
      case TOKEN_ELEMENT_END:
        out += "end " + std::string(reader.name()) + (reader.end_matches_start() ? "" : " (mismatch)") + " line " +
               std::to_string(reader.line()) + "\n";
        break;
      default:
        out += "token " + std::to_string(event) + " line " + std::to_string(reader.line()) + "\n";
        going = false;
    }
  }
  trace::add_errors(out, reader);
  return out;
}

inline std::string trace_memory(std::string_view document, unsigned policy, bool fast) {
  c_xml_reader_memory reader(document.data(), document.size());
  if (!fast) reader.disable_fast_lane();
  return trace_document(reader, policy);
}

}  // namespace rubrica::lmx
