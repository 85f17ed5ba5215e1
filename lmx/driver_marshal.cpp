// How an object becomes an element: its members in the order of the rows, what is not set passed over.
#include <algorithm>
#include <memory>
#include <string>

#include "lmx/c_xml_writer.h"
#include "lmx/driver.h"
#include "lmx/member_access.h"
#include "lmx/value.h"

namespace rubrica::lmx {

bool has_content(const class_descriptor& type, const void* fields, const particle& row) {
  switch (row.kind) {
    case particle_kind::value:
      return is_set(type, fields, row.bit);
    case particle_kind::values:
      return list_size(row.type->kind, &member<char>(fields, row.offset)) > 0;
    case particle_kind::child:
    case particle_kind::group:
      return static_cast<bool>(member<owned>(fields, row.offset));
    case particle_kind::children:
    case particle_kind::groups:
      return !member<std::vector<owned>>(fields, row.offset).empty();
    case particle_kind::block:
      return row.target->block->size(&member<char>(fields, row.offset)) > 0;
    case particle_kind::any:
      return !member<std::vector<any_item>>(fields, row.offset).empty();
    case particle_kind::sequence:
    case particle_kind::choice:
      break;
  }
  for (const particle* inner = &row + 1; inner != next_row(&row); inner = next_row(inner)) {
    if (has_content(type, fields, *inner)) return true;
  }
  return false;
}

bool may_all_be_empty(const particle* begin, const particle* end) {
  for (const particle* row = begin; row != end; row = next_row(row)) {
    if (!may_be_empty(*row)) return false;
  }
  return true;
}

bool may_be_empty(const particle& row) {
  if (row.min_occurs == 0) return true;
  switch (row.kind) {
    case particle_kind::group:
    case particle_kind::groups:
      return may_all_be_empty(rows_begin(*row.target), rows_end(*row.target));
    case particle_kind::sequence:
      return may_all_be_empty(&row + 1, next_row(&row));
    case particle_kind::choice:
      for (const particle* branch = &row + 1; branch != next_row(&row); branch = next_row(branch)) {
        if (may_be_empty(*branch)) return true;
      }
      return false;
    default:
      return false;
  }
}

namespace {

// Makes room for the text of a long list by what its first children took, so that a text of many megabytes isn't copied
// at each doubling. It looks ahead to eight times what stands, no further, so that the room asked for stays in
// proportion to the text whatever the first children are like.
class room_for_children {
 public:
  room_for_children(std::string& text, std::size_t count) : _text(text), _count(count), _before(text.size()) {}

  void count_one() {
    if (++_written != _next || _text.size() <= _before) return;  // a writer to a stream takes its text away
    _next *= kAhead;
    const std::size_t ahead = std::min(_next, _count) - _written;
    constexpr std::size_t kSpare = 8;  // later children are longer by an eighth at most, in most lists
    const std::size_t each = (_text.size() - _before) / _written + 1;
    const std::size_t wanted = _text.size() + each * ahead + each * ahead / kSpare;
    if (wanted > _text.capacity()) _text.reserve(wanted);
  }

 private:
  static constexpr std::size_t kAhead = 8;

  std::string& _text;
  std::size_t _count;
  std::size_t _before;
  std::size_t _written = 0;
  std::size_t _next = 64;  // shorter lists are not worth it
};

class c_marshal_helper {
 public:
  c_marshal_helper(const object& self, c_xml_writer& writer)
      : _writer(writer), _type(self.descriptor()), _fields(self.field_base()) {}

  elmx_error marshal(const char* element_name) {
    c_xml_writer::frame frame(_writer);
    _writer.start_element(element_name);
    if (_type.module != nullptr) _writer.set_namespaces(_type.module->namespaces);
    _writer.write_namespaces(false);
    write_attributes();
    if (_type.body != nullptr) {
      write_body(*_type.body);
    } else if (const elmx_error code = marshal_in_place(); code != ELMX_OK) {
      return code;
    }
    _writer.end_element(element_name);
    return ELMX_OK;
  }

  elmx_error marshal_in_place() { return write_rows(rows_begin(_type), rows_end(_type)); }

 private:
  void write_attributes() {
    for (std::uint16_t i = 0; i < _type.attribute_count; ++i) {
      const attribute& row = _type.attributes[i];
      const bool is_value_set = is_set(_type, _fields, row.bit);
      if ((row.flags & kList) != 0) {
        _writer.write_list_attribute(row.name, *row.type, address(row.offset), is_value_set);
      } else {
        _writer.write_attribute(row.name, *row.type, address(row.offset), is_value_set);
      }
    }
    if ((_type.flags & kAnyAttribute) == 0) return;
    for (const auto& [name, value] : member<any_item>(_fields, _type.any_attribute_offset).attributes) {
      _writer.write_attribute(name.c_str(), std::string_view(value));
    }
  }

  void write_body(const simple_body& body) {
    if (!is_set(_type, _fields, body.bit)) return;
    if ((body.flags & kList) != 0) {
      _writer.start_body();
      append_list(_writer.raw(), *body.type, address(body.offset));
    } else {
      _writer.write_element_body(*body.type, address(body.offset));
    }
  }

  elmx_error write_rows(const particle* begin, const particle* end) {
    for (const particle* row = begin; row != end; row = next_row(row)) {
      if (const elmx_error code = write_row(*row); code != ELMX_OK) return code;
    }
    return ELMX_OK;
  }

  elmx_error write_row(const particle& row);
  elmx_error write_value(const particle& row);
  elmx_error write_child(const particle& row, const owned& child);
  elmx_error write_list(const particle& row);
  elmx_error write_block(const particle& row);
  elmx_error write_choice(const particle& row);

  elmx_error outside_bounds(const particle& row) {
    _writer.set_program_line(row.line);
    return _writer.report_error(ELMX_OCCURS_ON_MARSHAL, row.name != nullptr ? row.name : _type.name);
  }
  elmx_error check_count(const particle& row, std::size_t count) {
    return count < row.min_occurs || count > row.max_occurs ? outside_bounds(row) : ELMX_OK;
  }
  const void* address(std::uint32_t offset) const { return &member<char>(_fields, offset); }

  c_xml_writer& _writer;
  const class_descriptor& _type;
  const void* _fields;
};

elmx_error c_marshal_helper::write_value(const particle& row) {
  if (!is_set(_type, _fields, row.bit)) return row.min_occurs > 0 ? outside_bounds(row) : ELMX_OK;
  c_xml_writer::frame frame(_writer);
  _writer.start_element(row.name);
  _writer.write_element_body(*row.type, address(row.offset));
  _writer.end_element(row.name);
  return ELMX_OK;
}

// A required child that nobody asked for is written as it would be created.
elmx_error c_marshal_helper::write_child(const particle& row, const owned& child) {
  const bool in_place = row.kind == particle_kind::group || row.kind == particle_kind::groups;
  if (!child && may_be_empty(row)) return ELMX_OK;
  std::unique_ptr<object> fresh;
  if (!child) fresh.reset(row.target->create());
  const object& written = child ? *child.get() : *fresh;
  return in_place ? c_marshal_helper(written, _writer).marshal_in_place() : lmx::marshal(written, _writer, row.name);
}

elmx_error c_marshal_helper::write_list(const particle& row) {
  if (row.kind == particle_kind::values) {
    const void* values = address(row.offset);
    const elmx_error code = check_count(row, list_size(row.type->kind, values));
    if (code == ELMX_OK) _writer.write_simple_elements(row.name, *row.type, values);
    return code;
  }
  if (row.kind == particle_kind::any) {
    const auto& items = member<std::vector<any_item>>(_fields, row.offset);
    const elmx_error code = check_count(row, items.size());
    if (code != ELMX_OK) return code;
    for (const any_item& item : items) _writer.write_any_text(item);
    return ELMX_OK;
  }
  const auto& children = member<std::vector<owned>>(_fields, row.offset);
  if (!children.empty() || !may_be_empty(row)) {
    if (const elmx_error code = check_count(row, children.size()); code != ELMX_OK) return code;
  }
  room_for_children room(_writer.raw(), children.size());
  for (const owned& child : children) {
    if (const elmx_error code = write_child(row, child); code != ELMX_OK) return code;
    room.count_one();
  }
  return ELMX_OK;
}

elmx_error c_marshal_helper::write_block(const particle& row) {
  const block_hooks& block = *row.target->block;
  const void* objects = address(row.offset);
  const std::size_t count = block.size(objects);
  elmx_error code = check_count(row, count);
  for (std::size_t i = 0; i < count && code == ELMX_OK; ++i) {
    if (block.write_plain != nullptr) i += block.write_plain(objects, i, _writer);
    if (i < count) code = lmx::marshal(block.at(objects, i), _writer, row.name);
  }
  return code;
}

elmx_error c_marshal_helper::write_choice(const particle& row) {
  const particle* chosen = nullptr;
  bool emptiable = row.min_occurs == 0;
  for (const particle* branch = &row + 1; branch != next_row(&row); branch = next_row(branch)) {
    emptiable = emptiable || may_be_empty(*branch);
    if (!has_content(_type, _fields, *branch)) continue;
    if (chosen != nullptr) return outside_bounds(row);
    chosen = branch;
  }
  if (chosen != nullptr) return write_row(*chosen);
  return emptiable ? ELMX_OK : outside_bounds(row);
}

elmx_error c_marshal_helper::write_row(const particle& row) {
  switch (row.kind) {
    case particle_kind::value:
      return write_value(row);
    case particle_kind::child:
    case particle_kind::group:
      return write_child(row, member<owned>(_fields, row.offset));
    case particle_kind::values:
    case particle_kind::children:
    case particle_kind::groups:
    case particle_kind::any:
      return write_list(row);
    case particle_kind::block:
      return write_block(row);
    case particle_kind::choice:
      return write_choice(row);
    case particle_kind::sequence:
      break;
  }
  if (row.min_occurs == 0 && !has_content(_type, _fields, row)) return ELMX_OK;
  return write_rows(&row + 1, next_row(&row));
}

}  // namespace

elmx_error marshal(const object& self, c_xml_writer& writer, const char* element_name) {
  const class_descriptor& type = self.descriptor();
  if (type.hooks != nullptr && type.hooks->marshal != nullptr) return type.hooks->marshal(self, writer, element_name);
  return c_marshal_helper(self, writer).marshal(element_name);
}

}  // namespace rubrica::lmx
