// Counts the shared strings of an .xls file that have formatting runs, by a walk over the bytes of the SST record.
#pragma once

#include "tools/record_stream.h"

namespace rubrica::tools {

// As far as the table can be followed.
long countRichStrings(const RecordStream& stream);

}  // namespace rubrica::tools
