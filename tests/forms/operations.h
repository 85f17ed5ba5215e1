// Test support: every operation of the interfaces, as something to do and something to read afterwards. The tests walk
// the list in both file forms, and the table of differences between the forms is made from it.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "tests/forms/both_forms.h"

namespace rubrica::test {

struct Operation {
  std::string names;  // the operations of the interface that this is about, with blanks between them
  std::string about;  // what the table of differences says, in a few words
  std::function<void(FormBook&)> set;
  std::function<std::string(FormBook&)> read;
  std::string xls, xlsx;  // what is read afterwards, in the two forms
};

// What came of it: what is read, behind the message where the operation left one.
struct Outcome {
  std::string before, after;  // a save and a load
};
Outcome outcomeOf(const Operation& operation, const Form& form);

std::vector<Operation> sheetOperations();
std::vector<Operation> bookOperations();
std::vector<Operation> styleOperations();
std::vector<Operation> filterOperations();
// All of them.
std::vector<Operation> allOperations();

}  // namespace rubrica::test
