// The schema modules as the tests walk them: name, classes and roots.
#pragma once

#include <span>
#include <string>
#include <vector>

#include "lmx/descriptor.h"

namespace rubrica::ooxml_tests {

struct module_entry {
  const char* name;
  std::span<const lmx::class_descriptor* const> classes;
  std::span<const lmx::root_descriptor* const> roots;
};

const std::vector<module_entry>& modules();

}  // namespace rubrica::ooxml_tests
