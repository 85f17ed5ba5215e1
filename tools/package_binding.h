// Whether the bound parts of an .xlsx package are as the schemas have them: names, order and number of children,
// values. Used by packageComplaints.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "tools/package_file.h"

namespace rubrica::tools {

void complainOfBinding(const PackageFile& package, std::vector<std::string>& complaints);

// Alternatives and ignorable content that markup compatibility takes out of a part when it is read.
std::size_t droppedMarkup(const PackageFile& package, const PackagePart& part);

}  // namespace rubrica::tools
