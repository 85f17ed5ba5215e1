// Brings every double of a tree to the 14 significant digits with which it is written, so that a tree can be compared
// with what was read back: a width of 5.14285714285714 is written as 5.1428571428571.
#pragma once

#include "lmx/descriptor.h"

namespace rubrica::ooxml_tests {

void roundDoubles(lmx::object& object);

}  // namespace rubrica::ooxml_tests
