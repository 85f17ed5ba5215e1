// What is written is valid by the published schemas: each root in full, once for every branch of its choices, goes
// through xmllint. Skipped where the schemas or xmllint are missing.
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <ostream>
#include <string>
#include <string_view>

#include <gtest/gtest.h>

#include "lmx/driver.h"
#include "tests/ooxml/modules.h"
#include "tests/ooxml/sample_objects.h"
#include "tests/support/temporary_directory.h"

namespace rubrica {

namespace {

namespace fs = std::filesystem;

struct schema_of_module {
  const char* module;
  const char* file;
};

// The published drawing schema cannot be compiled by xmllint, which honours one import of a namespace only; the helper
// file folds its imports into one.
constexpr schema_of_module kSchemas[] = {
    {"workbook", "transitional-1st-edition/sml-workbook.xsd"},
    {"sheet", "transitional-1st-edition/sml-sheet.xsd"},
    {"styles", "transitional-1st-edition/sml-styles.xsd"},
    {"sharedStringTable", "transitional-1st-edition/sml-sharedStringTable.xsd"},
    {"comments", "transitional-1st-edition/sml-comments.xsd"},
    {"table", "transitional-1st-edition/sml-table.xsd"},
    {"contentypes", "opc/opc-contentTypes.xsd"},
    {"relationships", "opc/opc-relationships.xsd"},
    {"drawing", "aids-libxml2/dml-spreadsheetDrawing.xsd"},
    {"strict", "strict/sml.xsd"},
    {"strictdrawing", "strict/dml-spreadsheetDrawing.xsd"},
};

fs::path schemas() {
  return fs::path(RUBRICA_SHARED) / "schemas";
}

bool canValidate() {
  return fs::is_directory(schemas()) && std::system("xmllint --version >/dev/null 2>&1") == 0;
}

// The first-edition schemas lack the attribute that everyone writes on text with blanks at its ends.
std::string withoutSpaceAttribute(std::string text) {
  constexpr std::string_view kAttribute = " xml:space=\"default\"";
  for (auto at = text.find(kAttribute); at != std::string::npos; at = text.find(kAttribute, at)) {
    text.erase(at, kAttribute.size());
  }
  return text;
}

void expectValid(const std::string& text, const std::string& schema) {
  // Tests of one program run side by side.
  const test::TemporaryDirectory directory;
  const fs::path document = directory.file("document.xml"), report = directory.file("report.txt");
  std::ofstream(document, std::ios::binary) << text;
  const std::string command = "xmllint --nonet --noout --schema '" + (schemas() / schema).string() + "' '" +
                              document.string() + "' >'" + report.string() + "' 2>&1";
  EXPECT_EQ(std::system(command.c_str()), 0) << test::readText(report).substr(0, 2000);
}

const ooxml_tests::module_entry& moduleNamed(const std::string& name) {
  for (const auto& module : ooxml_tests::modules()) {
    if (name == module.name) return module;
  }
  throw std::out_of_range(name);
}

void PrintTo(const schema_of_module& schema, std::ostream* out) {
  *out << schema.module;
}

class ValidityOf : public testing::TestWithParam<schema_of_module> {};

}  // namespace

TEST_P(ValidityOf, EveryRootInFullAndBare) {
  if (!canValidate()) GTEST_SKIP() << "no schemas at " << schemas() << " or no xmllint";
  for (const lmx::root_descriptor* root : moduleNamed(GetParam().module).roots) {
    SCOPED_TRACE(root->name);
    for (const unsigned branch : {0U, 1U, 2U, 3U}) {
      for (const auto how : {ooxml_tests::fullness::minimal, ooxml_tests::fullness::full}) {
        const auto sample = ooxml_tests::makeSample(*root->type, how, branch);
        std::string text;
        ASSERT_EQ(lmx::marshal_root(*sample, *root, text), lmx::ELMX_OK);
        expectValid(withoutSpaceAttribute(text), GetParam().file);
      }
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Modules, ValidityOf, testing::ValuesIn(kSchemas),
                         [](const auto& module) { return std::string(module.param.module); });

}  // namespace rubrica
