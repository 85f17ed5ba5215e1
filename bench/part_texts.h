// Large parts of every kind but the worksheet, as text, made by the classes that read them. The benchmarks of the
// bindings measure what reading each costs.
#pragma once

#include <cstdint>
#include <string>

namespace rubrica::bench {

// Thousands of fonts, fills, borders, formats and differential formats.
std::string stylesText(std::int64_t formats);
// Plain strings, of which every tenth is rich and every tenth has blanks at its ends.
std::string sharedStringsText(std::int64_t strings);
// Sheets and defined names.
std::string workbookText(std::int64_t names);
std::string commentsText(std::int64_t comments);
std::string tableText(std::int64_t columns);
// Pictures between two cells.
std::string drawingText(std::int64_t anchors);

}  // namespace rubrica::bench
