// Columns by letters, by the component's own letter table, which has no "W": "X" is column 23.
#pragma once

#include <optional>
#include <string>

#include "host/host_field.h"

namespace rubrica::host {

// The 1-based column that a parameter names: an integer, or text of one letter, or of two of which the first counts.
// 0 or less when it names none.
int parseColumn(const HostField& field);

// Letters for a column number from 1. The letter that the table lacks stands for position 26 (and for 0, the last
// position of a turn), so that every column up to 675 has a name of its own.
std::u32string columnLetters(int n);

}  // namespace rubrica::host
