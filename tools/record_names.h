// The names of the records of the .xls workbook stream, by the published format, for the tools that show them.
#pragma once

#include <cstdint>
#include <string>

namespace rubrica::tools {

// "BoundSheet8", or "0x1234" for an id without a name here.
std::string recordName(std::uint16_t recordId);

// Whether the engine understands the record: what it says can be read and changed through the interfaces, or is made
// anew at a save. Other records are kept as their bytes, or dropped.
bool isModelledRecord(std::uint16_t recordId);

}  // namespace rubrica::tools
