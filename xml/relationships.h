// A ".rels" part: what a part, or the package, points at. Ids that it gives out never meet one that it read.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <unordered_map>

#include "source/ooxml/relationships.h"
#include "xml/part.h"

namespace rubrica {

class Relationships : public XmlFile<relationships::c_Relationships> {
 public:
  Relationships() = default;
  Relationships(const char* data, std::size_t size);
  explicit Relationships(const std::string& path);

  // The new relationship's id. Hyperlinks are external whatever is said.
  std::string add(std::string_view target, std::string_view type, bool external = false);
  // The target of the first relationship of a type, and of the next of the same type; empty when there is none.
  std::string findByType(std::string_view type);
  std::string nextByType();
  // The target of an id, or the id of a target of exactly this text; empty when there is none.
  std::string findById(std::string_view id) const;
  std::string findByTarget(std::string_view target) const;
  std::string typeOf(std::string_view id) const;
  void removeById(std::string_view id);
  void removeByTarget(std::string_view target);
  void removeIf(const std::function<bool(const relationships::c_CT_Relationship&)>& matches);

 private:
  void index();

  std::uint64_t _issued = 0;
  std::unordered_map<std::string, std::string> _targets;  // by id
  std::unordered_map<std::string, std::string> _ids;      // by target
  std::string _cursorType;
  std::size_t _cursor = 0;
};

}  // namespace rubrica
