// What a strict reader would not accept in the records of a BIFF8 workbook stream: order, indexes that lead nowhere,
// sheets that are not where the book says.
#pragma once

#include <string>
#include <vector>

#include "tools/record_stream.h"

namespace rubrica::tools {

std::vector<std::string> streamComplaints(const RecordStream& stream);

}  // namespace rubrica::tools
