// Workbooks that other programs made, where a folder of them is at hand: each is loaded, saved and loaded again. The
// sheets and cells are the same afterwards, what is only carried is the same to the byte, and a second save changes
// nothing any more.
#include "tests/support/corpus.h"

#include <filesystem>
#include <iostream>
#include <map>
#include <memory>
#include <set>

#include <gtest/gtest.h>

#include "platform/input_file.h"
#include "tests/xml/package/zip_builder.h"
#include "xml/content_types.h"
#include "xml/package_names.h"
#include "xml/part_factory.h"

namespace rubrica::package_test {
namespace {

namespace fs = std::filesystem;

// Cells looked at in one sheet: the used range of a sheet with one cell in its last corner has billions.
constexpr std::int64_t kMostCells = 300'000;

// Files that no reader of workbooks could take as one, and why.
const std::map<std::string, std::string>& refusals() {
  static const std::map<std::string, std::string> table = {};
  return table;
}

struct CellView {
  int row = 0, col = 0;
  CellType type = CellType::empty;
  double number = 0;
  std::u16string text, formula;
  int error = 0;
  bool operator==(const CellView&) const = default;
};

struct SheetView {
  std::u16string name;
  SheetType type = SheetType::unknown;
  int hidden = 0;
  int merges = 0, pictures = 0, links = 0, names = 0;
  std::vector<CellView> cells;
  bool operator==(const SheetView&) const = default;
};

std::u16string textOf(const char16_t* text) {
  return text == nullptr ? std::u16string() : text;
}

CellView viewOf(Sheet& sheet, int row, int col) {
  CellView view;
  view.row = row;
  view.col = col;
  view.type = sheet.cellType(row, col);
  if (view.type == CellType::number) view.number = sheet.readNum(row, col);
  if (view.type == CellType::boolean) view.number = sheet.readBool(row, col) ? 1 : 0;
  if (view.type == CellType::string) view.text = textOf(sheet.readStr(row, col));
  if (view.type == CellType::error) view.error = static_cast<int>(sheet.readError(row, col));
  if (sheet.isFormula(row, col)) view.formula = textOf(sheet.readFormula(row, col));
  return view;
}

std::vector<SheetView> viewOf(Book& book) {
  std::vector<SheetView> views;
  for (int i = 0; i < book.sheetCount(); ++i) {
    SheetView& view = views.emplace_back();
    view.name = textOf(book.getSheetName(i));
    view.type = book.sheetType(i);
    if (view.type != SheetType::sheet) continue;
    Sheet& sheet = *book.getSheet(i);
    view.hidden = static_cast<int>(sheet.hidden());
    view.merges = sheet.mergeSize();
    view.pictures = sheet.pictureSize();
    view.links = sheet.hyperlinkSize();
    view.names = sheet.namedRangeSize();
    std::int64_t seen = 0;
    for (int row = sheet.firstRow(); row < sheet.lastRow() && seen < kMostCells; ++row) {
      for (int col = sheet.firstCol(); col < sheet.lastCol() && seen < kMostCells; ++col, ++seen) {
        if (sheet.cellType(row, col) != CellType::empty) view.cells.push_back(viewOf(sheet, row, col));
      }
    }
  }
  return views;
}

bool isCarried(std::string_view type) {
  static const std::set<std::string_view> bound = {
      content_type::kRelationships, content_type::kStyles, content_type::kWorksheet, content_type::kDrawing,
      content_type::kSharedStrings, content_type::kTable,  content_type::kComments,  content_type::kXml};
  return !type.empty() && bound.count(type) == 0 && !isMainType(type);
}

// The entries of a package by name that are neither bound nor the calculation chain.
std::map<std::string, std::string, PartNameLess> carriedParts(std::string_view archive) {
  const auto entries = entriesOf(archive);
  ContentTypes types;
  for (const auto& [name, content] : entries) {
    if (samePartName("/" + name, part_name::kContentTypes)) types = ContentTypes(content.data(), content.size());
  }
  std::map<std::string, std::string, PartNameLess> parts;
  for (const auto& [name, content] : entries) {
    const std::string key = "/" + name;
    if (samePartName(key, part_name::kCalcChain) || samePartName(key, part_name::kContentTypes)) continue;
    if (isCarried(types.contentType(key))) parts[key] = content;
  }
  return parts;
}

// The proxy's message is that of its second try; this one's is often the one that tells.
std::string transitionalMessage(const std::string& archive) {
  XMLBookImplT<excelNormal_tag> book;
  loadRaw(book, archive);
  return book.errorMessage();
}

void expectSameAfterSave(const std::string& archive, const std::string& label) {
  const BookPtr before = newBook();
  ASSERT_TRUE(loadRaw(*before, archive)) << label;
  const auto views = viewOf(*before);
  const std::string saved = saveRaw(*before);
  ASSERT_FALSE(saved.empty()) << label << ": " << before->errorMessage();
  const BookPtr after = newBook();
  ASSERT_TRUE(loadRaw(*after, saved)) << label << ": " << after->errorMessage();
  const auto again = viewOf(*after);
  ASSERT_EQ(again.size(), views.size()) << label;
  for (std::size_t i = 0; i < views.size(); ++i) {
    EXPECT_TRUE(again[i] == views[i]) << label << ", sheet " << i << ", " << again[i].cells.size() << " of "
                                      << views[i].cells.size() << " cells";
  }
  const auto carriedAfter = carriedParts(saved);
  for (const auto& [name, content] : carriedParts(archive)) {
    const auto found = carriedAfter.find(name);
    ASSERT_NE(found, carriedAfter.end()) << label << name << " is lost";
    EXPECT_TRUE(found->second == content) << label << name << " is changed";
  }
  EXPECT_EQ(saveRaw(*after), saved) << label << ": a second save changes something";
}

TEST(SampleBooks, KeepTheirSheetsCellsAndCarriedPartsThroughALoadAndASave) {
  const auto paths = test::corpusFiles("xlsx");
  if (paths.empty()) GTEST_SKIP() << test::kNoCorpus;
  std::size_t loaded = 0;
  for (const fs::path& path : paths) {
    const std::string label = path.filename().string();
    const auto content = platform::readWholeFile(path.u16string());
    ASSERT_TRUE(content) << label;
    const std::string archive(reinterpret_cast<const char*>(content->data()), content->size());
    const auto refusal = refusals().find(label);
    const std::string stated = refusal == refusals().end() ? "ok" : refusal->second;
    const BookPtr book = newBook();
    loadRaw(*book, archive);
    EXPECT_EQ(book->errorMessage(), stated) << label << ", transitional: " << transitionalMessage(archive);
    if (book->errorMessage() != std::string_view("ok")) continue;
    ++loaded;
    expectSameAfterSave(archive, label);
  }
  std::cout << loaded << " of " << paths.size() << " workbooks loaded, saved and loaded again\n";
}

TEST(SampleBooks, CraftedOnesAreReadOrRefused) {
  const auto paths = test::corpusFiles("malformed");
  if (paths.empty()) GTEST_SKIP() << test::kNoCorpus;
  std::size_t loaded = 0;
  for (const fs::path& path : paths) {
    const BookPtr book = newBook();
    if (book->load(path.u16string().c_str())) {
      ++loaded;
      EXPECT_NE(saveRaw(*book), "") << path << ": " << book->errorMessage();
    } else {
      EXPECT_STRNE(book->errorMessage(), "") << path;
      EXPECT_STRNE(book->errorMessage(), "ok") << path;
    }
  }
  std::cout << loaded << " of " << paths.size() << " crafted files loaded\n";
}

}  // namespace
}  // namespace rubrica::package_test
