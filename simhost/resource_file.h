// The string resources of a component, read from the module file itself: the ELF section that holds them, found through
// the file's section headers. Used by the component host; the module need not be loaded for it.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <unordered_map>

#include "simhost/text.h"

namespace rubrica::simhost {

class StringResources {
 public:
  // Throws std::runtime_error that says what is wrong with the file.
  static StringResources fromModule(const std::string& path);
  static StringResources fromElf(std::span<const std::uint8_t> file);
  // The content of the section alone.
  static StringResources fromSection(std::span<const std::uint8_t> section);

  // Empty for an id without text.
  const Text& text(std::uint32_t id) const;
  std::size_t size() const { return _texts.size(); }

 private:
  std::unordered_map<std::uint32_t, Text> _texts;
};

}  // namespace rubrica::simhost
