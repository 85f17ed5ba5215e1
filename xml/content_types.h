// The part "/[Content_Types].xml": which type each part of the package has, by its name or by its extension.
#pragma once

#include <map>
#include <set>
#include <string>
#include <string_view>

#include "source/ooxml/contentypes.h"
#include "xml/part_map.h"

namespace rubrica {

class ContentTypes : public XmlFile<contentypes::c_Types> {
 public:
  ContentTypes() = default;
  ContentTypes(const char* data, std::size_t size);
  explicit ContentTypes(const std::string& path);

  // The type of all parts with an extension (without the dot) that have none of their own.
  void addDefault(std::string_view extension, std::string_view type);
  // The type of one part.
  void addOverride(std::string_view partName, std::string_view type);
  void removeOverride(std::string_view partName) { removeOverrides({std::string(partName)}); }
  void removeOverrides(const std::set<std::string, PartNameLess>& partNames);
  // Empty for a part that nothing is said about.
  std::string contentType(std::string_view partName) const;

 private:
  // Positions in the bound list; extensions and part names are told apart as part names are.
  using Positions = std::map<std::string, std::size_t, PartNameLess>;

  void index();
  template <class Fill>
  void append(Positions& positions, std::string_view key, Fill&& fill);

  Positions _defaults, _overrides;
};

}  // namespace rubrica
