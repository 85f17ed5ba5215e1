// Elements taken whole, as xs:any content, and elements passed over.
#include <algorithm>

#include "lmx/c_xml_reader.h"
#include "lmx/text.h"

namespace rubrica::lmx {

namespace {

void append_pair(std::string& out, const raw_attribute& attribute) {
  out.push_back(' ');
  out.append(attribute.name);
  out.push_back('=');
  out.push_back(attribute.quote);
  out.append(attribute.value);
  out.push_back(attribute.quote);
}

std::string mismatch_text(std::string_view start, std::string_view end) {
  return "Element start tag (" + std::string(start) + ") and end tag (" + std::string(end) + ") do not match";
}

// Attributes of markup compatibility whose values are lists of prefixes.
bool lists_prefixes(std::string_view attribute) {
  const std::string_view local = attribute.substr(attribute.find(':') + 1);
  return local == "Requires" || local == "Ignorable" || local == "MustUnderstand" || local == "ProcessContent";
}

}  // namespace

struct c_xml_reader::capture_state {
  std::size_t outer_bindings;         // how many bindings the elements around it made
  std::string head;                   // "<name" and its own declarations
  std::string body;                   // all that follows
  std::vector<std::size_t> borrowed;  // bindings of the elements around it that it uses
};

void c_xml_reader::note_prefix(capture_state& state, std::string_view prefix) {
  std::size_t index = 0;
  if (find_binding(prefix, index) == nullptr || index >= state.outer_bindings) return;
  if (std::find(state.borrowed.begin(), state.borrowed.end(), index) == state.borrowed.end()) {
    state.borrowed.push_back(index);
  }
}

void c_xml_reader::note_prefixes_of_value(capture_state& state, std::string_view attribute, std::string_view value) {
  const bool list = lists_prefixes(attribute);
  std::size_t begin = 0;
  for (std::size_t i = 0; i <= value.size(); ++i) {
    const int c = i < value.size() ? static_cast<unsigned char>(value[i]) : ' ';
    if (c != ':' && is_name_char(c)) continue;
    if (i > begin && (c == ':' || list)) note_prefix(state, value.substr(begin, i - begin));
    begin = i + 1;
  }
}

std::string c_xml_reader::folded_declarations(const capture_state& state) const {
  std::string text;
  for (const std::size_t index : state.borrowed) {
    const binding& borrowed = _bindings[index];
    const std::string name = borrowed.prefix.empty() ? "xmlns" : "xmlns:" + borrowed.prefix;
    append_pair(text, {name, borrowed.uri, borrowed.uri.find('"') == std::string::npos ? '"' : '\'', false});
  }
  return text;
}

// Writes the start tag that has just been read; afterwards its end is the current event.
bool c_xml_reader::capture_start_tag(capture_state& state) {
  const bool outermost = state.head.empty();
  std::string& tag = outermost ? state.head : state.body;
  tag.push_back('<');
  tag.append(_name);
  for (const raw_attribute& declaration : _declarations) append_pair(tag, declaration);
  const std::size_t colon = _name.find(':');
  note_prefix(state, colon == std::string_view::npos ? std::string_view() : _name.substr(0, colon));
  for (const raw_attribute& attribute : _attributes) {
    append_pair(state.body, attribute);
    if (const std::size_t at = attribute.name.find(':'); at != std::string_view::npos) {
      note_prefix(state, attribute.name.substr(0, at));
    }
    note_prefixes_of_value(state, attribute.name, attribute.value);
  }
  int end = get_attribute_event();
  while (end == TOKEN_NAME) end = get_attribute_event();
  if (end == TOKEN_FAILURE) return false;
  state.body.append(end == TOKEN_START_TAG_END ? ">" : "/>");
  return true;
}

bool c_xml_reader::capture_content(capture_state& state, white_space mode) {
  const std::size_t depth = _depth;
  std::string chunk;
  while (_depth >= depth) {
    leave_fast_lane();
    if (!_layers.read_raw_text(chunk, mode)) return false;
    state.body.append(chunk);
    switch (get_element_event()) {
      case TOKEN_NAME:
        if (!capture_start_tag(state)) return false;
        break;
      case TOKEN_ELEMENT_END:
        if (!_end_matches) {
          fatal(ELMX_NOT_WELL_FORMED, mismatch_text(open_element_name(), _name));
          return false;
        }
        state.body.append("</").append(_name).append(">");
        break;
      default:
        return false;
    }
  }
  return true;
}

bool c_xml_reader::capture_element(any_item& item, white_space mode) {
  if (!_in_start_tag || _depth == 0) return false;
  capture_state state{_open[_depth - 1].bindings, {}, {}, {}};
  const std::string name(open_element_name());
  _name = name;
  item.name = name;
  item.namespace_uri = namespace_uri(namespace_id(true));
  item.attributes.clear();
  for (const raw_attribute& attribute : _attributes) {
    std::string value;
    _layers.expand_value(attribute.value, white_space::keep, value);
    item.attributes.emplace_back(std::string(attribute.name), std::move(value));
  }
  _next_attribute = 0;
  if (!capture_start_tag(state)) return false;
  if (_token == TOKEN_START_TAG_END && !capture_content(state, mode)) return false;
  item.text = state.head + folded_declarations(state) + state.body;
  _name = open_element_name();
  return true;
}

bool c_xml_reader::skip_element() {
  if (!_in_start_tag || _depth == 0) return false;
  const std::size_t depth = _depth;
  while (_depth >= depth) {
    std::string_view text;
    switch (get_element_event()) {
      case TOKEN_NAME:
        break;
      case TOKEN_TEXT:
        if (!get_simple_type_value(text, white_space::keep)) return false;
        break;
      case TOKEN_ELEMENT_END:
        if (!_end_matches) {
          fatal(ELMX_NOT_WELL_FORMED, mismatch_text(open_element_name(), _name));
          return false;
        }
        break;
      default:
        return false;
    }
  }
  return true;
}

}  // namespace rubrica::lmx
