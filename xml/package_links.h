// Which part of a package points at which: what only one part uses can go with it, and what a copy of a part needs can
// be found. Free functions over the part map.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "xml/part_map.h"
#include "xml/relationships.h"

namespace rubrica {

// The key that a target means in the relationships of a part of this directory, "../" resolved.
std::string targetKey(std::string_view directory, std::string_view target);
// The part whose relationships a ".rels" part holds; empty for the package's own and for other names.
std::string relsOwner(std::string_view relsName);
// The parts that a part points at, in its order; external targets are none.
std::vector<std::string> linkedParts(const PartMap& parts, std::string_view partName);
// The parts, relationship parts among them, that can be reached from the given ones alone. The given are not among
// them.
std::vector<std::string> partsOnlyUsedBy(const PartMap& parts, const std::vector<std::string>& partNames);

}  // namespace rubrica
