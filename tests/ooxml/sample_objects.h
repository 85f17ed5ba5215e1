// Objects of any binding class filled with values its types accept, made from the class's descriptor. The tests of all
// classes use it, so that no class needs a sample of its own.
#pragma once

#include <memory>

#include "lmx/descriptor.h"

namespace rubrica::ooxml_tests {

enum class fullness {
  minimal,  // what is required, and nothing else
  full,     // every attribute, every element, repeated ones twice where they may
};

// `branch` chooses among the branches of choices: the branch of that number, modulo how many there are.
std::unique_ptr<lmx::object> makeSample(const lmx::class_descriptor& type, fullness how, unsigned branch);

// The largest number of branches that a choice of this class has; 1 without a choice.
unsigned branchCount(const lmx::class_descriptor& type);

}  // namespace rubrica::ooxml_tests
