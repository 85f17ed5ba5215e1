// What an .xlsx package holds that the interfaces say nothing of: the counterpart of unmodelled.h for packages.
#pragma once

#include <string>
#include <vector>

#include "tools/package_file.h"

namespace rubrica::tools {

std::vector<std::string> unmodelledContent(const PackageFile& package);

}  // namespace rubrica::tools
