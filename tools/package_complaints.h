// What a strict reader would not accept in the parts of an .xlsx package: relationships and content types that lead
// nowhere, children out of order, characters that XML forbids, indexes of cells that name nothing.
#pragma once

#include <string>
#include <vector>

#include "tools/package_file.h"

namespace rubrica::tools {

std::vector<std::string> packageComplaints(const PackageFile& package);

}  // namespace rubrica::tools
