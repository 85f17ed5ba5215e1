// Cells of an .xlsx package that name formats or shared strings which there aren't, and rows out of order. Used by
// packageComplaints.
#pragma once

#include <string>
#include <vector>

#include "tools/package_file.h"

namespace rubrica::tools {

void complainOfCells(const PackageFile& package, std::vector<std::string>& complaints);

}  // namespace rubrica::tools
