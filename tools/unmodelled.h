// What a file holds that the interfaces say nothing of, so that copying a book through them leaves it behind: charts,
// conditional formats, macros and the like, each with its number. Used by rubrica-convert and rubrica-check.
#pragma once

#include <span>
#include <string>
#include <vector>

#include "tools/record_stream.h"

namespace rubrica::tools {

// "3 conditional formats", "macros". Of an .xls workbook stream.
std::vector<std::string> unmodelledContent(const RecordStream& stream);

// The same of a file of either form; nothing where it can't be read.
std::vector<std::string> unmodelledContent(const std::string& path, const std::string& form);

}  // namespace rubrica::tools
