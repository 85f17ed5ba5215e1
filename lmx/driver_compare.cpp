// Objects looked at without reading or writing: equality, and the checks that a reader would make.
#include <algorithm>
#include <memory>

#include "lmx/driver.h"
#include "lmx/member_access.h"
#include "lmx/value.h"

namespace rubrica::lmx {

namespace {

bool equal_owned(const owned& left, const owned& right) {
  if (!left || !right) return !left && !right;
  return equal(*left.get(), *right.get());
}

bool equal_member(const simple_type& type, bool list, const void* left, const void* right) {
  return list ? equal_lists(type.kind, left, right) : equal_values(type.kind, left, right);
}

bool equal_blocks(const block_hooks& block, const void* left, const void* right) {
  const std::size_t count = block.size(left);
  if (count != block.size(right)) return false;
  for (std::size_t i = 0; i < count; ++i) {
    if (!equal(block.at(left, i), block.at(right, i))) return false;
  }
  return true;
}

bool equal_row(const class_descriptor& type, const particle& row, const void* left, const void* right) {
  const void* a = &member<char>(left, row.offset);
  const void* b = &member<char>(right, row.offset);
  switch (row.kind) {
    case particle_kind::value:
      if (is_set(type, left, row.bit) != is_set(type, right, row.bit)) return false;
      return !is_set(type, left, row.bit) || equal_values(row.type->kind, a, b);
    case particle_kind::values:
      return equal_lists(row.type->kind, a, b);
    case particle_kind::child:
    case particle_kind::group:
      return equal_owned(*static_cast<const owned*>(a), *static_cast<const owned*>(b));
    case particle_kind::children:
    case particle_kind::groups: {
      const auto& x = *static_cast<const std::vector<owned>*>(a);
      const auto& y = *static_cast<const std::vector<owned>*>(b);
      return std::equal(x.begin(), x.end(), y.begin(), y.end(), equal_owned);
    }
    case particle_kind::block:
      return equal_blocks(*row.target->block, a, b);
    case particle_kind::any:
      return *static_cast<const std::vector<any_item>*>(a) == *static_cast<const std::vector<any_item>*>(b);
    case particle_kind::sequence:
    case particle_kind::choice:
      break;
  }
  return true;
}

class checker {
 public:
  checker(const object& self, std::string& item_name)
      : _type(self.descriptor()), _fields(self.field_base()), _item_name(item_name) {}

  elmx_error check() {
    for (std::uint16_t i = 0; i < _type.attribute_count; ++i) {
      const attribute& row = _type.attributes[i];
      if (!is_set(_type, _fields, row.bit)) {
        if ((row.flags & kRequired) != 0) return fail(ELMX_REQUIRED_ATTRIBUTES_MISSING, _type.name);
        continue;
      }
      const elmx_error code = check_member(*row.type, (row.flags & kList) != 0, address(row.offset));
      if (code != ELMX_OK) return fail(code, attribute_item(row.name));
    }
    if (_type.body != nullptr) {
      const simple_body& body = *_type.body;
      if (!is_set(_type, _fields, body.bit)) return ELMX_OK;
      const elmx_error code = check_member(*body.type, (body.flags & kList) != 0, address(body.offset));
      return code == ELMX_OK ? code : fail(code, _type.name);
    }
    return check_rows(rows_begin(_type), rows_end(_type));
  }

 private:
  static elmx_error check_member(const simple_type& type, bool list, const void* value) {
    return list ? check_list(type, value) : check_value(type, value);
  }
  elmx_error fail(elmx_error code, std::string_view item) {
    _item_name = item;
    return code;
  }
  const char* name_of(const particle& row) const { return row.name != nullptr ? row.name : _type.name; }
  const void* address(std::uint32_t offset) const { return &member<char>(_fields, offset); }

  elmx_error check_rows(const particle* begin, const particle* end) {
    for (const particle* row = begin; row != end; row = next_row(row)) {
      if (const elmx_error code = check_row(*row); code != ELMX_OK) return code;
    }
    return ELMX_OK;
  }

  elmx_error check_count(const particle& row, std::size_t count) {
    if (count > row.max_occurs) return fail(ELMX_MAX_OCCURS_EXCEEDED, name_of(row));
    const bool few = count < row.min_occurs && !(count == 0 && may_be_empty(row));
    return few ? fail(ELMX_MANDATORY_ELEMENT_MISSING, name_of(row)) : ELMX_OK;
  }

  elmx_error check_child(const particle& row, const owned& child) {
    if (child) return lmx::check(*child.get(), _item_name);
    if (may_be_empty(row)) return ELMX_OK;
    const std::unique_ptr<object> fresh(row.target->create());
    return lmx::check(*fresh, _item_name);
  }

  elmx_error check_block(const particle& row) {
    const block_hooks& block = *row.target->block;
    const void* objects = address(row.offset);
    const std::size_t count = block.size(objects);
    elmx_error code = check_count(row, count);
    for (std::size_t i = 0; i < count && code == ELMX_OK; ++i) code = lmx::check(block.at(objects, i), _item_name);
    return code;
  }

  elmx_error check_choice(const particle& row) {
    const particle* chosen = nullptr;
    for (const particle* branch = &row + 1; branch != next_row(&row); branch = next_row(branch)) {
      if (!has_content(_type, _fields, *branch)) continue;
      if (chosen != nullptr) return fail(ELMX_BAD_CHOICE, _type.name);
      chosen = branch;
    }
    if (chosen != nullptr) return check_row(*chosen);
    return may_be_empty(row) ? ELMX_OK : fail(ELMX_BAD_CHOICE, _type.name);
  }

  elmx_error check_row(const particle& row) {
    elmx_error code = ELMX_OK;
    switch (row.kind) {
      case particle_kind::value:
        code = check_count(row, is_set(_type, _fields, row.bit) ? 1 : 0);
        if (code != ELMX_OK || !is_set(_type, _fields, row.bit)) return code;
        code = check_value(*row.type, address(row.offset));
        return code == ELMX_OK ? code : fail(code, row.name);
      case particle_kind::values:
        code = check_count(row, list_size(row.type->kind, address(row.offset)));
        if (code != ELMX_OK) return code;
        code = check_list(*row.type, address(row.offset));
        return code == ELMX_OK ? code : fail(code, row.name);
      case particle_kind::child:
      case particle_kind::group:
        return check_child(row, member<owned>(_fields, row.offset));
      case particle_kind::children:
      case particle_kind::groups: {
        const auto& children = member<std::vector<owned>>(_fields, row.offset);
        code = check_count(row, children.size());
        for (std::size_t i = 0; i < children.size() && code == ELMX_OK; ++i) code = check_child(row, children[i]);
        return code;
      }
      case particle_kind::block:
        return check_block(row);
      case particle_kind::any:
        return check_count(row, member<std::vector<any_item>>(_fields, row.offset).size());
      case particle_kind::choice:
        return check_choice(row);
      case particle_kind::sequence:
        break;
    }
    if (row.min_occurs == 0 && !has_content(_type, _fields, row)) return ELMX_OK;
    return check_rows(&row + 1, next_row(&row));
  }

  const class_descriptor& _type;
  const void* _fields;
  std::string& _item_name;
};

}  // namespace

bool equal(const object& left, const object& right) {
  const class_descriptor& type = left.descriptor();
  if (&type != &right.descriptor()) return false;
  if (type.hooks != nullptr && type.hooks->equal != nullptr) return type.hooks->equal(left, right);
  const void* a = left.field_base();
  const void* b = right.field_base();
  for (std::uint16_t i = 0; i < type.attribute_count; ++i) {
    const attribute& row = type.attributes[i];
    if (is_set(type, a, row.bit) != is_set(type, b, row.bit)) return false;
    if (!is_set(type, a, row.bit)) continue;
    const bool list = (row.flags & kList) != 0;
    if (!equal_member(*row.type, list, &member<char>(a, row.offset), &member<char>(b, row.offset))) return false;
  }
  if ((type.flags & kAnyAttribute) != 0 &&
      member<any_item>(a, type.any_attribute_offset) != member<any_item>(b, type.any_attribute_offset)) {
    return false;
  }
  if (type.body != nullptr) {
    const simple_body& body = *type.body;
    if (is_set(type, a, body.bit) != is_set(type, b, body.bit)) return false;
    return !is_set(type, a, body.bit) || equal_member(*body.type, (body.flags & kList) != 0,
                                                      &member<char>(a, body.offset), &member<char>(b, body.offset));
  }
  return std::all_of(rows_begin(type), rows_end(type), [&](const particle& row) { return equal_row(type, row, a, b); });
}

elmx_error check(const object& self, std::string& item_name) {
  const class_descriptor& type = self.descriptor();
  if (type.hooks != nullptr && type.hooks->check != nullptr) return type.hooks->check(self, item_name);
  return checker(self, item_name).check();
}

}  // namespace rubrica::lmx
