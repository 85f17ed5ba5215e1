#include "xml/content_types.h"

namespace rubrica {

ContentTypes::ContentTypes(const char* data, std::size_t size) : XmlFile(data, size) {
  index();
}

ContentTypes::ContentTypes(const std::string& path) : XmlFile(path) {
  index();
}

void ContentTypes::index() {
  _defaults.clear();
  _overrides.clear();
  for (std::size_t i = 0; i < size_choice(); ++i) {
    const auto& item = std::as_const(*this).get_choice(i);
    if (const auto* byExtension = item.find_Default()) _defaults[byExtension->get_Extension()] = i;
    if (const auto* byName = item.find_Override()) _overrides[normalisedPartName(byName->get_PartName())] = i;
  }
}

// The item is in the list whole or not at all, whatever memory runs out on the way.
template <class Fill>
void ContentTypes::append(Positions& positions, std::string_view key, Fill&& fill) {
  const auto place = positions.emplace(key, size_choice()).first;
  try {
    fill(append_choice());
  } catch (...) {
    if (size_choice() > place->second) erase_choice(place->second);
    positions.erase(place);
    throw;
  }
}

void ContentTypes::addDefault(std::string_view extension, std::string_view type) {
  const auto known = _defaults.find(extension);
  if (known != _defaults.end()) {
    get_choice(known->second).get_Default().set_ContentType(std::string(type));
    return;
  }
  append(_defaults, extension, [&](auto& item) {
    item.get_Default().set_Extension(std::string(extension));
    item.get_Default().set_ContentType(std::string(type));
  });
}

void ContentTypes::addOverride(std::string_view partName, std::string_view type) {
  const auto known = _overrides.find(partName);
  if (known != _overrides.end()) {
    get_choice(known->second).get_Override().set_ContentType(std::string(type));
    return;
  }
  append(_overrides, partName, [&](auto& item) {
    item.get_Override().set_PartName(std::string(partName));
    item.get_Override().set_ContentType(std::string(type));
  });
}

// A file may name a part twice: all that is said about it goes.
void ContentTypes::removeOverrides(const std::set<std::string, PartNameLess>& partNames) {
  const std::size_t before = size_choice();
  for (std::size_t i = before; i-- > 0;) {
    const auto* item = std::as_const(*this).get_choice(i).find_Override();
    if (item != nullptr && partNames.count(normalisedPartName(item->get_PartName())) != 0) erase_choice(i);
  }
  if (size_choice() != before) index();
}

std::string ContentTypes::contentType(std::string_view partName) const {
  if (const auto byName = _overrides.find(partName); byName != _overrides.end()) {
    return get_choice(byName->second).find_Override()->get_ContentType();
  }
  const std::size_t dot = partName.rfind('.');
  if (dot == partName.npos) return {};
  const auto byExtension = _defaults.find(partName.substr(dot + 1));
  if (byExtension == _defaults.end()) return {};
  return get_choice(byExtension->second).find_Default()->get_ContentType();
}

}  // namespace rubrica
