// What a component says of itself: its classes with their methods and properties, its static methods and its constants,
// read from its answers to the list messages. Used by the component host to find members by name.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "simhost/list.h"

namespace rubrica::simhost {

struct ComponentMethod {
  std::uint32_t id;
  std::string name;
  std::vector<bool> byReference;  // of each declared parameter
};

struct ComponentProperty {
  std::uint32_t id;
  std::string name;
};

struct ComponentClass {
  std::uint32_t id = 0;
  std::string name;
  std::vector<ComponentMethod> methods;
  std::vector<ComponentProperty> properties;

  const ComponentMethod* method(std::string_view methodName) const;
  const ComponentProperty* property(std::string_view propertyName) const;
};

// Rows of the lists that the component answers with.
std::vector<ComponentClass> classesFrom(const List& objects);
std::vector<ComponentMethod> methodsFrom(const List& methods);
std::vector<ComponentProperty> propertiesFrom(const List& properties);
// `Group~Name:Value:...` as prefix and name, in lower case, with the value.
std::unordered_map<std::string, std::int64_t> constantsFrom(const List& constants, const std::string& prefix);

}  // namespace rubrica::simhost
