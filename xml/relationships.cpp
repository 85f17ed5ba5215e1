#include "xml/relationships.h"

#include <algorithm>
#include <charconv>

#include "xml/package_names.h"

namespace rubrica {
namespace {

constexpr std::string_view kIdPrefix = "rId";
constexpr std::size_t kMaxNumberDigits = 18;  // what surely fits the counter

// The number that ends an id, whatever stands before it; 0 when none does.
std::uint64_t numberOf(std::string_view id) {
  const auto isDigit = [](char c) { return c >= '0' && c <= '9'; };
  std::size_t digits = 0;
  while (digits < id.size() && digits < kMaxNumberDigits && isDigit(id[id.size() - 1 - digits])) ++digits;
  std::uint64_t number = 0;
  std::from_chars(id.data() + (id.size() - digits), id.data() + id.size(), number);
  return number;
}

}  // namespace

Relationships::Relationships(const char* data, std::size_t size) : XmlFile(data, size) {
  index();
}

Relationships::Relationships(const std::string& path) : XmlFile(path) {
  index();
}

void Relationships::index() {
  _targets.clear();
  _ids.clear();
  for (std::size_t i = 0; i < size_Relationship(); ++i) {
    const auto& item = std::as_const(*this).get_Relationship(i);
    _targets.emplace(item.get_Id(), item.get_Target());
    _ids.emplace(item.get_Target(), item.get_Id());
    _issued = std::max(_issued, numberOf(item.get_Id()));
  }
}

std::string Relationships::add(std::string_view target, std::string_view type, bool external) {
  std::string id(kIdPrefix);
  id.append(std::to_string(++_issued));
  relationships::c_CT_Relationship added;
  added.set_Id(id);
  added.set_Type(std::string(type));
  added.set_Target(std::string(target));
  if (external || type == relationship_type::kHyperlink) added.set_TargetMode("External");
  _targets.emplace(id, target);
  _ids.emplace(target, id);
  append_Relationship() = std::move(added);
  return id;
}

std::string Relationships::findByType(std::string_view type) {
  _cursorType = type;
  _cursor = 0;
  return nextByType();
}

std::string Relationships::nextByType() {
  while (_cursor < size_Relationship()) {
    const auto& item = std::as_const(*this).get_Relationship(_cursor++);
    if (item.get_Type() == _cursorType) return item.get_Target();
  }
  return {};
}

std::string Relationships::findById(std::string_view id) const {
  const auto found = _targets.find(std::string(id));
  return found == _targets.end() ? std::string() : found->second;
}

std::string Relationships::findByTarget(std::string_view target) const {
  const auto found = _ids.find(std::string(target));
  return found == _ids.end() ? std::string() : found->second;
}

std::string Relationships::typeOf(std::string_view id) const {
  for (std::size_t i = 0; i < size_Relationship(); ++i) {
    if (get_Relationship(i).get_Id() == id) return get_Relationship(i).get_Type();
  }
  return {};
}

void Relationships::removeById(std::string_view id) {
  removeIf([id](const auto& item) { return item.get_Id() == id; });
}

void Relationships::removeByTarget(std::string_view target) {
  removeIf([target](const auto& item) { return item.get_Target() == target; });
}

void Relationships::removeIf(const std::function<bool(const relationships::c_CT_Relationship&)>& matches) {
  const std::size_t before = size_Relationship();
  for (std::size_t i = before; i-- > 0;) {
    if (matches(std::as_const(*this).get_Relationship(i))) erase_Relationship(i);
  }
  if (size_Relationship() == before) return;
  index();
  _cursor = 0;
}

}  // namespace rubrica
