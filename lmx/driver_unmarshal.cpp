// How an element becomes an object. Attributes first, each checked in a fixed order (read twice, unreadable, form,
// value); then the rows of the class against the events, one look ahead; what stands behind the last member is passed
// over.
#include <memory>

#include "lmx/c_xml_reader.h"
#include "lmx/driver.h"
#include "lmx/member_access.h"
#include "lmx/value.h"

namespace rubrica::lmx {

namespace {

bool is_element_start(int token) {
  return token == TOKEN_UNKNOWN || (token >= TOKEN_XSI_TYPE && token <= TOKEN_XSI_NO_NAMESPACE_SCHEMA_LOCATION) ||
         token >= kFirstNameToken;
}

// Kinds of rows that are one element, by name.
bool is_element(particle_kind kind) {
  return kind <= particle_kind::block;
}

bool can_start(c_xml_reader& reader, const class_descriptor& type, const particle& row);

// Whether the current element may be the first of these rows. The current name is classified by `type` before and
// after.
bool any_can_start(c_xml_reader& reader, const class_descriptor& type, const particle* begin, const particle* end,
                   bool choice) {
  for (const particle* row = begin; row != end; row = next_row(row)) {
    const bool starts = is_element(row->kind) ? row->token == reader.current_token() : can_start(reader, type, *row);
    if (starts) return true;
    if (!choice && !may_be_empty(*row)) return false;
  }
  return false;
}

bool can_start(c_xml_reader& reader, const class_descriptor& type, const particle& row) {
  const int token = reader.current_token();
  if (!is_element_start(token)) return false;
  switch (row.kind) {
    case particle_kind::any:
      return true;
    case particle_kind::group:
    case particle_kind::groups: {
      const class_descriptor& inner = *row.target;
      reader.tokenise(inner.element_names, true);
      const bool starts = any_can_start(reader, inner, rows_begin(inner), rows_end(inner), false);
      reader.tokenise(type.element_names, true);
      return starts;
    }
    case particle_kind::sequence:
    case particle_kind::choice:
      return any_can_start(reader, type, &row + 1, next_row(&row), row.kind == particle_kind::choice);
    default:
      return token == row.token;
  }
}

// The name of an element for reports, measured when there is one.
class name_for_reports {
 public:
  name_for_reports(const char* text) : _text(text) {}
  name_for_reports(std::string_view name) : _text(name.data()), _size(name.size()) {}
  operator std::string_view() const {
    return _size == kUnmeasured ? std::string_view(_text) : std::string_view(_text, _size);
  }

 private:
  static constexpr std::size_t kUnmeasured = std::string_view::npos;

  const char* _text;
  std::size_t _size = kUnmeasured;
};

elmx_error unmarshal_as(const class_descriptor& type, object& self, c_xml_reader& reader,
                        name_for_reports element_name);

// A place at the end of a list. The first is made with room for as many as take no more from the heap than one does,
// since most lists are short.
owned& append_to(std::vector<owned>& list) {
  constexpr std::size_t kShortList = 3;
  if (list.capacity() == 0) list.reserve(kShortList);
  return list.emplace_back();
}

// Drives one object.
class c_unmarshal_helper {
 public:
  c_unmarshal_helper(object& self, const class_descriptor& type, c_xml_reader& reader, name_for_reports element_name)
      : _reader(reader), _type(type), _fields(self.field_base()), _element_name(element_name) {}

  elmx_error unmarshal() {
    elmx_error code = read_attributes();
    if (code == ELMX_OK) code = check_attributes();
    if (code != ELMX_OK) return code;
    return _type.body != nullptr ? read_simple_body() : read_complex_body();
  }

  // The rows of a class that has no element of its own, from the current event on, which has been classified by the
  // names of that class.
  elmx_error unmarshal_in_place() {
    _token = _reader.current_token();
    return read_rows(rows_begin(_type), rows_end(_type));
  }

 private:
  elmx_error read_attributes();
  int classify_attribute(const raw_attribute& read, const name_row*& next);
  elmx_error read_attribute(const attribute& row, const raw_attribute& read);
  elmx_error keep_any_attribute();
  elmx_error check_attributes();
  elmx_error read_simple_body();
  elmx_error read_complex_body();
  elmx_error read_rows(const particle* begin, const particle* end);
  elmx_error read_row(const particle& row);
  elmx_error read_value(const particle& row);
  elmx_error read_values(const particle& row);
  elmx_error read_child(const particle& row);
  elmx_error read_children(const particle& row);
  elmx_error read_block(const particle& row);
  void read_plain(const particle& row);
  elmx_error read_anonymous(const particle& row, owned& slot);
  elmx_error read_group(const particle& row);
  elmx_error read_groups(const particle& row);
  elmx_error read_any(const particle& row);
  elmx_error read_choice(const particle& row);
  elmx_error read_new(const particle& row, owned& slot);
  elmx_error read_simple_element(const particle& row, bool repeated);
  elmx_error pass_over_rest();
  bool could_still_come() const;

  // Goes to the next event and classifies it.
  elmx_error advance();
  // The element's end, behind a simple value.
  elmx_error expect_end();
  int classify() {
    const int token = _reader.current_token();
    return is_element_start(token) || token == TOKEN_NAME ? _reader.tokenise(_type.element_names, true) : token;
  }
  bool starts(const particle& row) const {
    return is_element(row.kind) ? row.token == _reader.current_token() : can_start(_reader, _type, row);
  }
  // Whether there is nothing to do for a row, as for most of them.
  bool is_absent(const particle& row) const {
    return row.min_occurs == 0 && is_element(row.kind) && row.kind != particle_kind::block &&
           row.token != _reader.current_token();
  }
  elmx_error missing(const particle& row) {
    if (row.min_occurs == 0) return ELMX_OK;
    return report(ELMX_MANDATORY_ELEMENT_MISSING, row.name != nullptr ? row.name : _type.name, row.line);
  }
  elmx_error too_many(const particle& row) {
    return report(ELMX_MAX_OCCURS_EXCEEDED, row.name != nullptr ? row.name : _type.name, row.line);
  }
  elmx_error report(elmx_error code, std::string_view item, int line) {
    _reader.set_program_line(line);
    return _reader.report(code, item);
  }
  elmx_error report_attribute(elmx_error code, const attribute& row) {
    return report(code, attribute_item(row.name), row.line);
  }
  template <class T>
  T& at(std::uint32_t offset) {
    return member<T>(_fields, offset);
  }

  c_xml_reader& _reader;
  const class_descriptor& _type;
  void* _fields;
  name_for_reports _element_name;
  int _token = TOKEN_NAME;
  bool _empty = false;                   // the start tag ended in "/>"
  unsigned _events = 0;                  // passed in the body
  const particle* _last_read = nullptr;  // the outermost row that took an event last
};

elmx_error c_unmarshal_helper::read_attributes() {
  const name_row* next = _type.attribute_names;
  while (const raw_attribute* read = _reader.next_attribute()) {
    const int token = classify_attribute(*read, next);
    elmx_error code = ELMX_OK;
    if (token >= kFirstNameToken) {
      code = read_attribute(_type.attributes[token - kFirstNameToken], *read);
    } else if (token == TOKEN_UNKNOWN && (_type.flags & kAnyAttribute) != 0) {
      code = keep_any_attribute();
    }
    if (code != ELMX_OK) return code;
  }
  const int event = _reader.get_attribute_event();
  if (event == TOKEN_START_TAG_END || event == TOKEN_ELEMENT_END) {
    _empty = event == TOKEN_ELEMENT_END;
    return ELMX_OK;
  }
  _reader.set_program_line(_type.line);
  return _reader.report_end(ELMX_XML_BADLY_FORMED, _type.name);
}

// The token of an attribute. They mostly come in the order of the table, so it is looked at from `next` on first, which
// then stands behind what was found; only a name without a prefix can be the same as one of the table's.
int c_unmarshal_helper::classify_attribute(const raw_attribute& read, const name_row*& next) {
  if (next != nullptr) {
    const std::uint64_t key = name_key(read.name);
    for (const name_row* row = next; row->name != nullptr; ++row) {
      if (!is_named(*row, kNoNamespace, key, read.name)) continue;
      next = row + 1;
      return row->token;
    }
  }
  const int token = _reader.tokenise(_type.attribute_names, false);
  if (token >= kFirstNameToken) next = _type.attribute_names + (token - kFirstNameToken) + 1;
  return token;
}

elmx_error c_unmarshal_helper::read_attribute(const attribute& row, const raw_attribute& read) {
  _reader.set_program_line(row.line);
  if (is_set(_type, _fields, row.bit)) return report_attribute(ELMX_ATTRIBUTE_ALREADY_READ, row);
  std::string_view text = read.value;
  if (!read.plain && !_reader.get_attribute_value(text, row.type->space)) {
    return report_attribute(ELMX_UNABLE_TO_READ_ATTRIBUTE_VALUE, row);
  }
  void* target = &at<char>(row.offset);
  elmx_error code =
      (row.flags & kList) != 0 ? parse_list(*row.type, text, target) : parse_value(*row.type, text, target);
  if (code == ELMX_OK && (row.flags & kFixed) != 0 && text != row.default_text) code = ELMX_FIXED_VALUE_MISMATCH;
  if (code != ELMX_OK) {
    code = report_attribute(code, row);
    if (code != ELMX_OK) return code;
  }
  set(_type, _fields, row.bit);
  return ELMX_OK;
}

elmx_error c_unmarshal_helper::keep_any_attribute() {
  const std::string name(_reader.name());
  std::string_view text;
  if (!_reader.get_attribute_value(text, white_space::keep)) {
    return report(ELMX_UNABLE_TO_READ_ATTRIBUTE_VALUE, attribute_item(name), _type.line);
  }
  at<any_item>(_type.any_attribute_offset).attributes.emplace_back(name, std::string(text));
  return ELMX_OK;
}

elmx_error c_unmarshal_helper::check_attributes() {
  if ((_type.flags & kAllOptional) != 0) return ELMX_OK;
  for (std::uint16_t i = 0; i < _type.attribute_count; ++i) {
    const attribute& row = _type.attributes[i];
    if ((row.flags & kRequired) == 0 || is_set(_type, _fields, row.bit)) continue;
    return report(ELMX_REQUIRED_ATTRIBUTES_MISSING, _type.name, _type.line);
  }
  return ELMX_OK;
}

elmx_error c_unmarshal_helper::expect_end() {
  for (;;) {
    const int event = _reader.get_element_event();
    if (event == TOKEN_ELEMENT_END) break;
    if (event == TOKEN_END_OF_INPUT || event == TOKEN_FAILURE) {
      return _reader.report_end(ELMX_UNEXPECTED_END, _element_name);
    }
    const elmx_error code = _reader.report(ELMX_BAD_END_OF_ELEMENT, _element_name);
    if (code != ELMX_OK) return code;
    std::string_view text;
    const bool passed =
        event == TOKEN_NAME ? _reader.skip_element() : _reader.get_simple_type_value(text, white_space::keep);
    if (!passed) return _reader.report_end(ELMX_UNABLE_TO_READ_ELEMENT_VALUE, _element_name);
  }
  return _reader.end_matches_start() ? ELMX_OK : _reader.report(ELMX_BAD_END_OF_ELEMENT, _element_name);
}

elmx_error c_unmarshal_helper::read_simple_body() {
  const simple_body& body = *_type.body;
  _reader.set_program_line(body.line);
  std::string_view text;
  if (_empty && body.type->kind == value_kind::text) return ELMX_OK;  // "<f/>" has no text, "<f></f>" an empty one
  if (!_empty && !_reader.get_simple_type_value(text, body.type->space)) {
    return _reader.report_end(ELMX_UNABLE_TO_READ_ELEMENT_VALUE, _element_name);
  }
  void* target = &at<char>(body.offset);
  const elmx_error code =
      (body.flags & kList) != 0 ? parse_list(*body.type, text, target) : parse_value(*body.type, text, target);
  if (code != ELMX_OK) {
    const elmx_error answer = _reader.report(code, _element_name);
    if (answer != ELMX_OK) return answer;
  }
  set(_type, _fields, body.bit);
  return _empty ? ELMX_OK : expect_end();
}

elmx_error c_unmarshal_helper::advance() {
  ++_events;
  for (;;) {
    const int event = _reader.get_element_event();
    if (event == TOKEN_TEXT && (_type.flags & kMixed) != 0) {
      std::string_view text;
      if (_reader.get_simple_type_value(text, white_space::keep)) continue;
      return _reader.report_end(ELMX_UNABLE_TO_READ_ELEMENT_VALUE, _element_name);
    }
    if (event == TOKEN_END_OF_INPUT || event == TOKEN_FAILURE) {
      return _reader.report_end(ELMX_UNEXPECTED_END, _element_name);
    }
    _token = classify();
    return ELMX_OK;
  }
}

elmx_error c_unmarshal_helper::read_complex_body() {
  if (_empty) {
    _token = TOKEN_ELEMENT_END;
  } else {
    if (_type.particle_count > 0 && _type.particles[0].kind == particle_kind::block) read_plain(_type.particles[0]);
    if (const elmx_error code = advance(); code != ELMX_OK) return code;
  }
  _events = 0;
  for (const particle* row = rows_begin(_type); row != rows_end(_type); row = next_row(row)) {
    if (is_absent(*row)) continue;
    const unsigned before = _events;
    if (const elmx_error code = read_row(*row); code != ELMX_OK) return code;
    if (_events != before) _last_read = row;
  }
  return pass_over_rest();
}

// Whether the current element could have been read, had nothing foreign stood before it.
bool c_unmarshal_helper::could_still_come() const {
  const particle* row = rows_begin(_type);
  if (_last_read != nullptr) row = _last_read->max_occurs > 1 ? _last_read : next_row(_last_read);
  for (; row != rows_end(_type); row = next_row(row)) {
    if (starts(*row)) return true;
  }
  return false;
}

// Elements behind the last member are passed over, known or not. But a foreign one that stands before a member which
// could have followed would cost that member, and is an error instead.
elmx_error c_unmarshal_helper::pass_over_rest() {
  bool foreign = false;
  while (_token != TOKEN_ELEMENT_END) {
    bool passed = true;
    if (_token == TOKEN_TEXT) {
      std::string_view text;
      passed = _reader.get_simple_type_value(text, white_space::keep);
      foreign = true;
    } else {
      elmx_error code = ELMX_OK;
      if ((_type.flags & kNoForeignTail) != 0) {
        code = report(ELMX_UNKNOWN_ELEMENT_IN_COMPLEX_CONTENT, _reader.name(), _type.line);
      } else if (foreign && could_still_come()) {
        code = report(ELMX_BAD_END_OF_ELEMENT, _element_name, _type.line);
      }
      if (code != ELMX_OK) return code;
      foreign = foreign || _token < kFirstNameToken;
      passed = _reader.skip_element();
    }
    if (!passed) return _reader.report_end(ELMX_UNABLE_TO_READ_ELEMENT_VALUE, _element_name);
    if (const elmx_error code = advance(); code != ELMX_OK) return code;
  }
  return _reader.end_matches_start() ? ELMX_OK : report(ELMX_BAD_END_OF_ELEMENT, _element_name, _type.line);
}

elmx_error c_unmarshal_helper::read_rows(const particle* begin, const particle* end) {
  for (const particle* row = begin; row != end; row = next_row(row)) {
    if (is_absent(*row)) continue;
    if (const elmx_error code = read_row(*row); code != ELMX_OK) return code;
  }
  return ELMX_OK;
}

elmx_error c_unmarshal_helper::read_row(const particle& row) {
  switch (row.kind) {
    case particle_kind::value:
      return read_value(row);
    case particle_kind::values:
      return read_values(row);
    case particle_kind::child:
      return read_child(row);
    case particle_kind::children:
      return read_children(row);
    case particle_kind::block:
      return read_block(row);
    case particle_kind::group:
      return read_group(row);
    case particle_kind::groups:
      return read_groups(row);
    case particle_kind::any:
      return read_any(row);
    case particle_kind::choice:
      return read_choice(row);
    case particle_kind::sequence:
      break;
  }
  if (row.min_occurs == 0 && !starts(row)) return ELMX_OK;
  return read_rows(&row + 1, next_row(&row));
}

elmx_error c_unmarshal_helper::read_choice(const particle& row) {
  bool emptiable = row.min_occurs == 0;
  for (const particle* branch = &row + 1; branch != next_row(&row); branch = next_row(branch)) {
    if (starts(*branch)) return read_row(*branch);
    emptiable = emptiable || may_be_empty(*branch);
  }
  return emptiable ? ELMX_OK : report(ELMX_BAD_CHOICE, _element_name, row.line);
}

elmx_error c_unmarshal_helper::read_simple_element(const particle& row, bool repeated) {
  _reader.set_program_line(row.line);
  int event = _reader.get_attribute_event();
  while (event == TOKEN_NAME) event = _reader.get_attribute_event();
  if (event == TOKEN_FAILURE) return _reader.report_end(ELMX_XML_BADLY_FORMED, row.name);
  std::string_view text;
  const bool empty = event == TOKEN_ELEMENT_END;
  if (!empty && !_reader.get_simple_type_value(text, row.type->space)) {
    return _reader.report_end(ELMX_UNABLE_TO_READ_ELEMENT_VALUE, row.name);
  }
  void* target = &at<char>(row.offset);
  elmx_error code = repeated ? parse_list_item(*row.type, text, target) : parse_value(*row.type, text, target);
  if (code == ELMX_OK && (row.flags & kFixed) != 0 && text != row.default_text) code = ELMX_FIXED_VALUE_MISMATCH;
  if (code != ELMX_OK) code = _reader.report(code, row.name);
  if (code != ELMX_OK) return code;
  if (!repeated) set(_type, _fields, row.bit);
  if (!empty) {
    const name_for_reports outer = _element_name;
    _element_name = row.name;
    code = expect_end();
    _element_name = outer;
    if (code != ELMX_OK) return code;
  }
  return advance();
}

elmx_error c_unmarshal_helper::read_value(const particle& row) {
  return starts(row) ? read_simple_element(row, false) : missing(row);
}

elmx_error c_unmarshal_helper::read_values(const particle& row) {
  std::uint32_t count = 0;
  for (; starts(row); ++count) {
    elmx_error code = count == row.max_occurs ? too_many(row) : ELMX_OK;
    if (code == ELMX_OK) code = read_simple_element(row, true);
    if (code != ELMX_OK) return code;
  }
  return count < row.min_occurs ? missing(row) : ELMX_OK;
}

elmx_error c_unmarshal_helper::read_new(const particle& row, owned& slot) {
  slot = make_owned(*row.target, _reader.objects());
  _reader.set_program_line(row.line);
  const elmx_error code = unmarshal_as(*row.target, *slot.get(), _reader, row.name);
  return code != ELMX_OK ? code : advance();
}

elmx_error c_unmarshal_helper::read_child(const particle& row) {
  return starts(row) ? read_new(row, at<owned>(row.offset)) : missing(row);
}

elmx_error c_unmarshal_helper::read_children(const particle& row) {
  auto& children = at<std::vector<owned>>(row.offset);
  std::uint32_t count = 0;
  for (; starts(row); ++count) {
    elmx_error code = count == row.max_occurs ? too_many(row) : ELMX_OK;
    if (code == ELMX_OK) code = read_new(row, append_to(children));
    if (code != ELMX_OK) return code;
    if (!_reader.keeps(*children.back().get())) children.pop_back();
  }
  return count < row.min_occurs ? missing(row) : ELMX_OK;
}

// Instead of the next events, as far as it goes; advance() is due afterwards as before.
void c_unmarshal_helper::read_plain(const particle& row) {
  const block_hooks& block = *row.target->block;
  if (block.read_plain == nullptr || row.max_occurs != kUnbounded) return;
  block.read_plain(&at<char>(row.offset), _reader, _reader.last_count());
}

elmx_error c_unmarshal_helper::read_block(const particle& row) {
  const block_hooks& block = *row.target->block;
  void* objects = &at<char>(row.offset);
  while (starts(row)) {
    elmx_error code = block.size(objects) == row.max_occurs ? too_many(row) : ELMX_OK;
    if (code != ELMX_OK) return code;
    _reader.set_program_line(row.line);
    code = lmx::unmarshal(block.append(objects), _reader, row.name);
    if (code == ELMX_OK) read_plain(row);
    if (code == ELMX_OK) code = advance();
    if (code != ELMX_OK) return code;
  }
  block.finish(objects);
  const std::size_t count = block.size(objects);
  _reader.set_last_count(count);
  return count < row.min_occurs ? missing(row) : ELMX_OK;
}

elmx_error c_unmarshal_helper::read_anonymous(const particle& row, owned& slot) {
  slot = make_owned(*row.target, _reader.objects());
  const elmx_error code = c_unmarshal_helper(*slot.get(), *row.target, _reader, _element_name).unmarshal_in_place();
  ++_events;
  return code;
}

elmx_error c_unmarshal_helper::read_group(const particle& row) {
  if (!starts(row) && may_be_empty(row)) return ELMX_OK;
  _reader.tokenise(row.target->element_names, true);
  const elmx_error code = read_anonymous(row, at<owned>(row.offset));
  _token = classify();
  return code;
}

// From the first group to behind the last one, events are classified by the names of the groups' class alone.
elmx_error c_unmarshal_helper::read_groups(const particle& row) {
  const class_descriptor& inner = *row.target;
  auto& groups = at<std::vector<owned>>(row.offset);
  std::uint32_t count = 0;
  elmx_error code = ELMX_OK;
  _reader.tokenise(inner.element_names, true);
  for (; any_can_start(_reader, inner, rows_begin(inner), rows_end(inner), false); ++count) {
    if (count == row.max_occurs) code = too_many(row);
    if (code == ELMX_OK) code = read_anonymous(row, append_to(groups));
    if (code != ELMX_OK) break;
  }
  _token = classify();
  if (code != ELMX_OK) return code;
  if (count >= row.min_occurs || may_all_be_empty(rows_begin(inner), rows_end(inner))) return ELMX_OK;
  return count == 0 && rows_begin(inner)->kind == particle_kind::choice
             ? report(ELMX_BAD_CHOICE, _element_name, row.line)
             : missing(row);
}

elmx_error c_unmarshal_helper::read_any(const particle& row) {
  auto& items = at<std::vector<any_item>>(row.offset);
  std::uint32_t count = 0;
  for (; starts(row) && count < row.max_occurs; ++count) {
    _reader.set_program_line(row.line);
    if (!_reader.capture_element(items.emplace_back(), white_space::keep)) {
      return _reader.report_end(ELMX_UNABLE_TO_READ_ELEMENT_VALUE, _element_name);
    }
    if (const elmx_error code = advance(); code != ELMX_OK) return code;
  }
  return count < row.min_occurs ? missing(row) : ELMX_OK;
}

// The type is the object's own, which whoever made it knows.
elmx_error unmarshal_as(const class_descriptor& type, object& self, c_xml_reader& reader,
                        name_for_reports element_name) {
  if (type.hooks != nullptr && type.hooks->unmarshal != nullptr) {
    return type.hooks->unmarshal(self, reader, element_name);
  }
  return c_unmarshal_helper(self, type, reader, element_name).unmarshal();
}

}  // namespace

elmx_error unmarshal(object& self, c_xml_reader& reader, std::string_view element_name) {
  return unmarshal_as(self.descriptor(), self, reader, element_name);
}

}  // namespace rubrica::lmx
