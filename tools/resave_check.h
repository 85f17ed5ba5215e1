// What a load and a save make of a book of either file form, through the interfaces alone: whether it can be loaded and
// saved, what a strict reader would complain about in it, and what differs afterwards.
#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <vector>

#include "tools/check_report.h"
#include "tools/progress.h"

namespace rubrica::tools {

// Adds to `report`; answers the bytes of the saved book, none where it could not be saved.
std::vector<std::byte> checkResave(std::span<const std::byte> file, const std::string& form, CheckReport& report,
                                   Progress& progress);

}  // namespace rubrica::tools
