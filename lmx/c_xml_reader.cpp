#include "lmx/c_xml_reader.h"

#include "lmx/limits.h"
#include "lmx/text.h"

namespace rubrica::lmx {

namespace {

// Whether a value already stands as the mode would leave it.
bool is_normal(std::string_view raw, white_space mode) {
  if (mode == white_space::keep || raw.empty()) return true;
  const bool collapse = mode == white_space::collapse;
  if (collapse && (raw.front() == ' ' || raw.back() == ' ')) return false;
  bool after_blank = false;
  for (const char c : raw) {
    if (c != ' ' && is_space(c)) return false;
    if (c == ' ' && after_blank && collapse) return false;
    after_blank = c == ' ';
  }
  return true;
}

std::string_view prefix_of(std::string_view name) {
  const std::size_t colon = find_colon(name);
  return colon == std::string_view::npos ? std::string_view() : name.substr(0, colon);
}

}  // namespace

c_xml_reader::c_xml_reader(c_read& source, c_read_memory* memory)
    : c_xml("<unspecified>", _own_errors),
      _source(source),
      _memory(memory),
      _layers(source, _own_errors),
      _fast_allowed(memory != nullptr) {
  if (memory != nullptr) _lane.set_block(memory->begin(), memory->end());
}

c_xml_reader::~c_xml_reader() = default;

void c_xml_reader::disable_fast_lane() {
  leave_fast_lane();
  _fast_allowed = false;
}

void c_xml_reader::add_namespace_mapping(const namespace_row* table) {
  for (; table->uri != nullptr; ++table) _layers.enter_namespace(table->uri, table->id);
}

std::string_view c_xml_reader::plain_text(int namespace_id, std::size_t depth) const {
  const bool between_events = _fast && !_in_start_tag && _own_errors.fatal_count() == 0;
  const bool fits = _default_namespace == namespace_id && _depth + depth <= kMaxElementDepth;
  return between_events && fits ? _lane.rest() : std::string_view();
}

int c_xml_reader::line() const {
  return _layers.line() + (_fast ? _lane.passed_lines() : 0);
}

void c_xml_reader::enter_fast_lane() {
  std::size_t back = 0;
  if (_fast || !_fast_allowed || !_layers.at_event_boundary() || !_layers.at_plain_position(back, *_memory)) return;
  _layers.drop_push_back();
  _lane.enter(_memory->current() - back);
  _fast = true;
}

void c_xml_reader::leave_fast_lane() {
  if (!_fast) return;
  _memory->set_current(_lane.position());
  _layers.take_position(_lane.passed_lines());
  _fast = false;
}

// Problems carry the layers' line, which stands still while the lane reads.
void c_xml_reader::fatal(elmx_error code, std::string_view text) {
  leave_fast_lane();
  _layers.fatal(code, text);
}

int c_xml_reader::get_element_event() {
  if (_in_start_tag) {
    int token = get_attribute_event();
    while (token == TOKEN_NAME) token = get_attribute_event();
    if (token != TOKEN_START_TAG_END) return token;
  }
  if (_own_errors.fatal_count() > 0) return _token = TOKEN_FAILURE;
  if (_fast) {
    if (pass_expected_end()) return _token;
    const int event = _lane.next_event(_name, _attributes, _declarations, _fast_tag_end);
    if (event == TOKEN_ELEMENT_END) return end_event(true);
    if (event != fast_lane::kRare) _layers.mark_document_started();
    if (event == TOKEN_NAME) return start_event(true);
    if (event == TOKEN_TEXT) return _token = event;
    leave_fast_lane();
  }
  return slow_element_event();
}

int c_xml_reader::slow_element_event() {
  const int event = _layers.next_markup();
  switch (event) {
    case TOKEN_NAME:
      _layers.get_attributes(_attributes);
      _layers.get_declarations(_declarations);
      _name = _layers.tag_name();
      _fast_tag_end = 0;
      return start_event(false);
    case TOKEN_ELEMENT_END:
      _name = _layers.tag_name();
      end_event(true);
      break;
    case TOKEN_END_OF_INPUT:
      if (_depth > 0) _layers.fatal(ELMX_UNEXPECTED_END, "Premature end of file encountered");
      return _token = event;
    case TOKEN_TEXT:
      _token = event;
      break;
    default:
      return _token = TOKEN_FAILURE;
  }
  enter_fast_lane();
  return event;
}

int c_xml_reader::start_event(bool fast) {
  if (_depth == _open.size()) {
    if (_depth >= kMaxElementDepth) {
      fatal(ELMX_XML_BADLY_FORMED, "Elements are nested too deeply");
      return _token = TOKEN_FAILURE;
    }
    _open.emplace_back();
  }
  open_element& element = _open[_depth++];
  element.fast_name = fast ? _name.data() : nullptr;
  element.name_offset = _slow_names_used;
  element.name_size = _name.size();
  element.bindings = _bindings.size();
  element.default_namespace = _default_namespace;
  if (!fast) {
    _slow_names.resize(_slow_names_used);
    _slow_names.append(_name);
    _slow_names_used = _slow_names.size();
  }
  if (!_declarations.empty() && !enter_declarations()) return _token = TOKEN_FAILURE;
  _next_attribute = 0;
  _in_start_tag = true;
  return _token = TOKEN_NAME;
}

int c_xml_reader::end_event(bool from_tag) {
  _token = TOKEN_ELEMENT_END;
  if (_depth == 0) {
    _end_matches = false;
    return _token;
  }
  const open_element& closed = _open[--_depth];
  _end_matches = !from_tag || same_name(name_of(closed), _name);
  close_element(closed);
  return _token;
}

void c_xml_reader::close_element(const open_element& closed) {
  if (_bindings.size() != closed.bindings) {
    _bindings.resize(closed.bindings);
    ++_scope;
  }
  _default_namespace = closed.default_namespace;
  _slow_names_used = closed.name_offset;
}

// The end tag of the innermost element when it stands next: it needs no look at its single characters.
bool c_xml_reader::pass_expected_end() {
  if (_depth == 0 || !_lane.at_end_tag()) return false;
  const open_element& open = _open[_depth - 1];
  if (open.fast_name == nullptr) return false;
  const std::string_view name = _lane.pass_end_tag({open.fast_name, open.name_size});
  if (name.empty()) return false;
  _name = name;
  _token = TOKEN_ELEMENT_END;
  _end_matches = true;
  --_depth;
  close_element(open);
  return true;
}

std::string_view c_xml_reader::name_of(const open_element& element) const {
  if (element.fast_name != nullptr) return {element.fast_name, element.name_size};
  return std::string_view(_slow_names).substr(element.name_offset, element.name_size);
}

std::string_view c_xml_reader::open_element_name() const {
  const bool closed = _token == TOKEN_ELEMENT_END || _depth == 0;
  const std::size_t index = closed ? _depth : _depth - 1;
  return index < _open.size() ? name_of(_open[index]) : std::string_view();
}

bool c_xml_reader::enter_declarations() {
  if (_bindings.size() + _declarations.size() > kMaxNamespacesInScope) {
    fatal(ELMX_XML_BADLY_FORMED, "Too many namespace declarations");
    return false;
  }
  ++_scope;
  for (const raw_attribute& declaration : _declarations) {
    const std::string_view prefix = declaration.name.size() > 6 ? declaration.name.substr(6) : std::string_view();
    const int id = _layers.namespace_id(declaration.value);
    _bindings.push_back({std::string(prefix), name_key(prefix), id, std::string(declaration.value)});
    if (prefix.empty()) _default_namespace = id;
  }
  return true;
}

const c_xml_reader::binding* c_xml_reader::find_binding(std::string_view prefix, std::size_t& index) const {
  const std::uint64_t key = name_key(prefix);
  for (index = _bindings.size(); index-- > 0;) {
    const binding& found = _bindings[index];
    if (found.prefix_key == key && found.prefix.size() == prefix.size() &&
        same_behind_key(found.prefix.data(), prefix.data(), prefix.size())) {
      return &found;
    }
  }
  return nullptr;
}

int c_xml_reader::prefix_id(std::string_view prefix) const {
  if (same_name(prefix, "xml")) return kXmlNamespace;
  std::size_t index = 0;
  const binding* found = find_binding(prefix, index);
  return found == nullptr ? kUndeclaredNamespace : found->id;
}

std::string_view c_xml_reader::local_name() const {
  const std::size_t colon = find_colon(_name);
  return colon == std::string_view::npos ? _name : _name.substr(colon + 1);
}

int c_xml_reader::namespace_id(bool is_element) const {
  if (find_colon(_name) != std::string_view::npos) return prefix_id(prefix_of(_name));
  return is_element ? _default_namespace : kNoNamespace;
}

int c_xml_reader::get_attribute_event() {
  if (!_in_start_tag) {
    if (_layers.errors().fatal_count() == 0) fatal(ELMX_NOT_WELL_FORMED, "XML not well-formed");
    return _token = TOKEN_FAILURE;
  }
  if (next_attribute() != nullptr) return _token;
  _in_start_tag = false;
  int end = _fast_tag_end;
  if (end == 0) {
    end = _layers.start_tag_end();
    if (end != TOKEN_FAILURE) enter_fast_lane();
  }
  if (end == TOKEN_ELEMENT_END) {
    end_event(false);
  } else {
    _token = end;
  }
  _name = open_element_name();
  return end;
}

int c_xml_reader::classify(const name_row* table, bool is_element) const {
  const std::size_t colon = find_colon(_name);
  const bool prefixed = colon != std::string_view::npos;
  const std::string_view local = prefixed ? _name.substr(colon + 1) : _name;
  const int id = prefixed ? prefix_id(_name.substr(0, colon)) : is_element ? _default_namespace : kNoNamespace;
  if (id == kSchemaInstanceNamespace) {
    if (local == "type") return TOKEN_XSI_TYPE;
    if (local == "nil") return TOKEN_XSI_NIL;
    if (local == "schemaLocation") return TOKEN_XSI_SCHEMA_LOCATION;
    if (local == "noNamespaceSchemaLocation") return TOKEN_XSI_NO_NAMESPACE_SCHEMA_LOCATION;
    return TOKEN_UNKNOWN;
  }
  if (table == nullptr) return TOKEN_UNKNOWN;
  const std::uint64_t key = name_key(local);
  for (; table->name != nullptr; ++table) {
    if (is_named(*table, id, key, local)) return table->token;
  }
  return TOKEN_UNKNOWN;
}

// A part has few names, each of them many times.
int c_xml_reader::tokenise(const name_row* table, bool is_element) {
  if (_token != TOKEN_UNKNOWN && _token != TOKEN_NAME && _token < kFirstNameToken) return _token;
  const std::size_t size = _name.size();
  if (size > 2 * kNameKeySize) return _token = classify(table, is_element);
  const std::uint64_t begin = name_key(_name);
  const std::uint64_t end = size > kNameKeySize ? name_key(_name.substr(size - kNameKeySize)) : 0;
  const std::uint64_t context = _scope * 2 + (is_element ? 1 : 0);
  constexpr std::uint64_t kSpread = 0x9E3779B97F4A7C15U;  // 2^64 by the golden ratio
  const std::uint64_t hash = (begin ^ end ^ reinterpret_cast<std::uintptr_t>(table)) * kSpread;
  classified_name& known = _classified[hash >> 32U & (kClassifiedNames - 1)];
  if (known.begin != begin || known.end != end || known.size != size || known.table != table ||
      known.context != context) {
    known = {begin, end, size, table, context, classify(table, is_element)};
  }
  return _token = known.token;
}

bool c_xml_reader::normalise(std::string_view raw, white_space mode, bool has_reference, std::string_view& value) {
  if (!has_reference && is_normal(raw, mode)) {
    value = raw;
    return true;
  }
  if (has_reference && _layers.document_type_seen()) leave_fast_lane();
  const bool good = _layers.expand_value(raw, mode, _value);
  value = _value;
  return good;
}

bool c_xml_reader::get_attribute_value(std::string_view& value, white_space mode) {
  if (_next_attribute == 0 || _next_attribute > _attributes.size()) return false;
  const raw_attribute& attribute = _attributes[_next_attribute - 1];
  if (attribute.plain || (mode == white_space::keep && !attribute.has_reference)) {
    value = attribute.value;
    return true;
  }
  return normalise(attribute.value, mode, attribute.has_reference, value);
}

bool c_xml_reader::get_simple_type_value(std::string_view& value, white_space mode) {
  if (_fast) {
    const char* before = _lane.position();
    std::string_view raw;
    bool has_reference = false;
    bool plain = false;
    // With a document type an entity may hold markup: only the layers can tell.
    if (_lane.next_text(raw, has_reference, plain) && !(has_reference && _layers.document_type_seen())) {
      if (plain || (mode == white_space::keep && !has_reference)) {
        value = raw;
        return true;
      }
      if (normalise(raw, mode, has_reference, value)) return true;
    }
    _lane.set_position(before);
    leave_fast_lane();
  }
  const bool good = _layers.read_text(_value, mode);
  value = _value;
  if (good) enter_fast_lane();
  return good;
}

elmx_error c_xml_reader::report(elmx_error code, std::string_view item_name) {
  return keep_error(code, item_name, line());
}

elmx_error c_xml_reader::report_end(elmx_error code, std::string_view item_name) {
  const elmx_error first = errors().fatal_count() > 0 ? errors().last_code() : code;
  const elmx_error answer = report(first, item_name);
  return answer == ELMX_OK ? first : answer;
}

c_xml_reader_file::c_xml_reader_file(std::u16string_view path)
    : c_xml_reader_file(std::make_unique<c_read_file>(path)) {}

c_xml_reader_file::c_xml_reader_file(std::string_view utf8_path)
    : c_xml_reader_file(std::make_unique<c_read_file>(utf8_path)) {}

c_xml_reader_file::c_xml_reader_file(std::unique_ptr<c_read_file> file)
    : c_xml_reader(*file, nullptr), _file(std::move(file)) {}

c_xml_reader_file::~c_xml_reader_file() = default;

c_xml_reader_memory::c_xml_reader_memory(const char* data, std::size_t size)
    : c_xml_reader_memory(std::make_unique<c_read_memory>(data, size)) {}

c_xml_reader_memory::c_xml_reader_memory(std::unique_ptr<c_read_memory> memory)
    : c_xml_reader(*memory, memory.get()), _block(std::move(memory)) {}

c_xml_reader_memory::~c_xml_reader_memory() = default;

}  // namespace rubrica::lmx
