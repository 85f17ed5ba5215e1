// rubrica-check for .xls files: the compound file, the record stream, the book, and what a load and a save make of
// them.
#pragma once

#include <cstddef>
#include <span>

#include "tools/check_report.h"
#include "tools/progress.h"

namespace rubrica::tools {

CheckReport checkXls(std::span<const std::byte> file, Progress& progress);

}  // namespace rubrica::tools
