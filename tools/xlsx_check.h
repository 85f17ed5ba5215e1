// What rubrica-check finds out about an .xlsx file: part by part, and as a whole through the engine.
#pragma once

#include <cstddef>
#include <span>

#include "tools/check_report.h"
#include "tools/progress.h"

namespace rubrica::tools {

CheckReport checkXlsx(std::span<const std::byte> file, Progress& progress);

}  // namespace rubrica::tools
