// The workloads of rubrica-bench: what each cell of the benchmark books holds. Other programs' drivers write the same
// cells, so that figures can be set side by side.
#pragma once

#include <string>

#include "engine/book.h"

namespace rubrica::tools {

struct Shape {
  int rows, cols;
};

// "N" numbers, "S" strings, "M" mixed, "R" random numbers; "B" ten million numbers, .xlsx only.
bool knowsWorkload(const std::string& form, const std::string& workload);
Shape shapeOf(const std::string& form, const std::string& workload);

// Fills the sheet; false with the reason in the book's message when a write fails.
bool fill(Book& book, Sheet& sheet, const std::string& workload, const Shape& shape);

}  // namespace rubrica::tools
