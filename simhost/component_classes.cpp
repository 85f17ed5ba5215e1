#include "simhost/component_classes.h"

#include <algorithm>

#include "host/omnis_abi.h"

namespace rubrica::simhost {

namespace {

// Columns of the component's lists.
constexpr std::size_t idColumn = 1;
constexpr std::size_t textColumn = 2;
constexpr std::size_t parametersColumn = 6;
constexpr std::size_t parameterFlagsColumn = 3;

std::string nameOf(const List& rows, std::size_t row) {
  const std::string text = rows.at(row, textColumn).toUtf8();
  return text.substr(0, text.find(':'));
}

std::uint32_t idOf(const List& rows, std::size_t row) {
  return static_cast<std::uint32_t>(rows.at(row, idColumn).toInteger());
}

template <typename Member>
const Member* memberOf(const std::vector<Member>& members, std::string_view name) {
  const auto found = std::find_if(members.begin(), members.end(),
                                  [name](const Member& member) { return sameName(member.name, name); });
  return found == members.end() ? nullptr : &*found;
}

std::vector<bool> byReferenceFlags(const Value& parameters) {
  std::vector<bool> flags;
  if (!parameters.isList()) return flags;
  const List& list = parameters.listRef();
  for (std::size_t row = 1; row <= list.lineCount(); ++row) {
    flags.push_back(list.has(row, parameterFlagsColumn) &&
                    (list.at(row, parameterFlagsColumn).toInteger() & host::kParameterByReference) != 0);
  }
  return flags;
}

}  // namespace

const ComponentMethod* ComponentClass::method(std::string_view methodName) const {
  return memberOf(methods, methodName);
}
const ComponentProperty* ComponentClass::property(std::string_view propertyName) const {
  return memberOf(properties, propertyName);
}

std::vector<ComponentClass> classesFrom(const List& objects) {
  std::vector<ComponentClass> classes;
  for (std::size_t row = 1; row <= objects.lineCount(); ++row) {
    if (!objects.has(row, textColumn)) continue;
    classes.push_back({idOf(objects, row), nameOf(objects, row), {}, {}});
  }
  return classes;
}

std::vector<ComponentMethod> methodsFrom(const List& rows) {
  std::vector<ComponentMethod> methods;
  for (std::size_t row = 1; row <= rows.lineCount(); ++row) {
    if (!rows.has(row, textColumn)) continue;
    std::vector<bool> flags;
    if (rows.has(row, parametersColumn)) flags = byReferenceFlags(rows.at(row, parametersColumn));
    methods.push_back({idOf(rows, row), nameOf(rows, row), std::move(flags)});
  }
  return methods;
}

std::vector<ComponentProperty> propertiesFrom(const List& rows) {
  std::vector<ComponentProperty> properties;
  for (std::size_t row = 1; row <= rows.lineCount(); ++row) {
    if (rows.has(row, textColumn)) properties.push_back({idOf(rows, row), nameOf(rows, row)});
  }
  return properties;
}

std::unordered_map<std::string, std::int64_t> constantsFrom(const List& rows, const std::string& prefix) {
  std::unordered_map<std::string, std::int64_t> constants;
  for (std::size_t row = 1; row <= rows.lineCount(); ++row) {
    if (!rows.has(row, textColumn)) continue;
    std::string text = rows.at(row, textColumn).toUtf8();
    text.erase(0, text.find('~') == std::string::npos ? 0 : text.find('~') + 1);
    const std::size_t colon = text.find(':');
    if (colon == std::string::npos) continue;
    const std::string value = text.substr(colon + 1, text.find(':', colon + 1) - colon - 1);
    constants.emplace(nameKey(prefix + text.substr(0, colon)), Value::utf8(value).toInteger());
  }
  return constants;
}

}  // namespace rubrica::simhost
