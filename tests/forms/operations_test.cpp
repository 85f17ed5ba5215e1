// Every operation of the interfaces in both file forms: what is set is read back, before and after a save and a load,
// and where the forms differ, docs/forms.md says so.
#include "tests/forms/operations.h"

#include <cstdlib>
#include <fstream>
#include <set>
#include <sstream>

namespace rubrica::test {
namespace {

constexpr char kTable[] = RUBRICA_SOURCE_DIR "/docs/forms.md";

std::string contentOf(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  std::stringstream text;
  text << file.rdbuf();
  return text.str();
}

class SheetOperations : public testing::TestWithParam<Form> {};

TEST_P(SheetOperations, GiveBackWhatWasSetBeforeAndAfterASaveAndALoad) {
  for (const Operation& operation : allOperations()) {
    const Outcome outcome = outcomeOf(operation, GetParam());
    const std::string& wanted = GetParam().isXlsx ? operation.xlsx : operation.xls;
    EXPECT_EQ(outcome.before, wanted) << operation.names << ": " << operation.about;
    EXPECT_EQ(outcome.after, wanted) << operation.names << ": " << operation.about << ", after a save and a load";
  }
}

INSTANTIATE_TEST_SUITE_P(Forms, SheetOperations, testing::ValuesIn(kForms), nameOfForm);

// The virtual operations of the first classes of a header.
std::set<std::string> declaredIn(const char* name, int classes) {
  std::istringstream header(contentOf(std::string(RUBRICA_SOURCE_DIR "/engine/") + name));
  std::set<std::string> declared;
  for (std::string line; std::getline(header, line);) {
    if (line == "};" && --classes == 0) break;
    if (!line.starts_with("  virtual ") || line.find('~') != line.npos) continue;
    const std::size_t end = line.find('(');
    const std::size_t begin = line.find_last_of(" *&", end) + 1;
    declared.insert(line.substr(begin, end - begin));
  }
  return declared;
}

// What the second classes of font.h and format.h have is between the engine and itself.
TEST(SheetOperationList, LeavesNoneOfTheInterfacesOut) {
  struct Header {
    const char* name;
    int classes;
    std::size_t least;  // operations that it surely has
    std::vector<Operation> operations;
  };
  for (const Header& header : {Header{"sheet.h", 1, 120, sheetOperations()}, Header{"book.h", 1, 45, bookOperations()},
                               Header{"format.h", 1, 45, styleOperations()}, Header{"font.h", 1, 15, styleOperations()},
                               Header{"auto_filter.h", 2, 17, filterOperations()}}) {
    std::set<std::string> walked, missing;
    for (const Operation& operation : header.operations) {
      std::istringstream names(operation.names);
      for (std::string name; names >> name;) walked.insert(name);
    }
    const std::set<std::string> declared = declaredIn(header.name, header.classes);
    EXPECT_GT(declared.size(), header.least) << header.name;
    for (const std::string& name : declared) {
      if (!walked.contains(name)) missing.insert(name);
    }
    EXPECT_TRUE(missing.empty()) << header.name << ": " << testing::PrintToString(missing);
  }
}

// A cell of the table: a bar would end it.
std::string cell(std::string text) {
  for (std::size_t at = text.find('|'); at != text.npos; at = text.find('|', at + 2)) text.insert(at, "\\");
  return text;
}

TEST(SheetOperationList, TellsWhereTheFormsDiffer) {
  std::string table =
      "# Where .xls and .xlsx books differ\n\n"
      "Made by the test `SheetOperationList.TellsWhereTheFormsDiffer`, which does the same in a book of each form and\n"
      "reads it back. `RUBRICA_WRITE_DOCS=1` makes it write this file anew. A text in brackets is the book's "
      "message.\n\n"
      "| operations | about | .xls | .xlsx |\n|---|---|---|---|\n";
  for (const Operation& operation : allOperations()) {
    const std::string xls = outcomeOf(operation, kForms[0]).after, xlsx = outcomeOf(operation, kForms[1]).after;
    if (xls == xlsx) continue;
    table += "| `" + operation.names + "` | " + operation.about + " | " + cell(xls) + " | " + cell(xlsx) + " |\n";
  }
  if (std::getenv("RUBRICA_WRITE_DOCS") != nullptr) std::ofstream(kTable, std::ios::binary) << table;
  EXPECT_EQ(contentOf(kTable), table);
}

}  // namespace
}  // namespace rubrica::test
