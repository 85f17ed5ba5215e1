// Workbooks of other programs keep their drawings, tables, filters and comments, and one thing that is set changes no
// other. Skipped where the corpus is missing.
#include "tests/support/corpus.h"

#include <filesystem>
#include <functional>
#include <map>

#include "tests/support/temporary_directory.h"
#include "tests/xml/sheet/sheet_fixture.h"
#include "xml/comments.h"
#include "xml/drawing.h"

namespace rubrica::test {
namespace {

namespace fs = std::filesystem;

template <class Tag>
std::unique_ptr<XMLBookImplT<Tag>> loaded(const std::string& bytes) {
  auto book = std::make_unique<XMLBookImplT<Tag>>();
  book->setTextMetrics(std::make_unique<FakeMetrics>());
  if (!book->loadRaw(bytes.data(), bytes.size(), -1, -1, -1)) book.reset();
  return book;
}

template <class Tag>
std::string savedBytes(XMLBookImplT<Tag>& book) {
  const void* data = nullptr;
  std::size_t size = 0;
  EXPECT_TRUE(book.saveRaw(&data, &size)) << book.errorMessage();
  return {static_cast<const char*>(data), size};
}

class Facts {
 public:
  template <class... Values>
  void add(const Values&... values) {
    ((_text += textOf(values) + ' '), ...);
    _text += '\n';
  }
  const std::string& text() const { return _text; }

 private:
  static std::string textOf(const char* text) { return text; }
  static std::string textOf(const std::string& text) { return text; }
  static std::string textOf(const char16_t* text) { return narrow(text); }
  template <class Number>
  static std::string textOf(const Number& number) {
    return std::to_string(number);
  }
  std::string _text;
};

// Pictures are numbered as their parts stand in the package, which a save puts in order: their bytes tell which it is.
std::string pictureOf(IBookT<char16_t>& book, int id) {
  const void* data = nullptr;
  std::size_t size = 0;
  if (id < 0) return "none";
  book.getPicture(id, &data, &size);
  const std::string_view bytes(static_cast<const char*>(data), data == nullptr ? 0 : size);
  return std::to_string(size) + '/' + std::to_string(std::hash<std::string_view>()(bytes));
}

void describe(ISheetT<char16_t>& sheet, IBookT<char16_t>& book, Facts& facts) {
  int r1 = -1, r2 = -1, c1 = -1, c2 = -1, d = -1, e = -1, f = -1, g = -1;
  for (int i = 0; i < sheet.tableSize(); ++i) {
    const char16_t* name = sheet.table(i, &r1, &r2, &c1, &c2, &d, &e);
    facts.add("table", name, r1, r2, c1, c2, d, e);
  }
  for (int i = 0; i < sheet.pictureSize(); ++i) {
    const int id = sheet.getPicture(i, &r1, &c1, &r2, &c2, &d, &e, &f, &g);
    facts.add("picture", pictureOf(book, id), r1, c1, r2, c2, d, e, f, g);
  }
  for (int i = 0; i < sheet.hyperlinkSize(); ++i) {
    const char16_t* link = sheet.hyperlink(i, &r1, &r2, &c1, &c2);
    facts.add("link", link, r1, r2, c1, c2);
  }
  for (int i = 0; i < sheet.namedRangeSize(); ++i) {
    bool hidden = false;
    const char16_t* name = sheet.namedRange(i, &r1, &r2, &c1, &c2, &d, &hidden);
    facts.add("name", name, r1, r2, c1, c2, d, hidden);
  }
  for (int i = 0; i < sheet.mergeSize(); ++i) {
    sheet.merge(i, &r1, &r2, &c1, &c2);
    facts.add("merge", r1, r2, c1, c2);
  }
  for (int i = 0; i < sheet.getHorzPageBreakSize(); ++i) facts.add("row break", sheet.getHorzPageBreak(i));
  for (int i = 0; i < sheet.getVertPageBreakSize(); ++i) facts.add("column break", sheet.getVertPageBreak(i));
  for (int row = 0; row < 40; ++row) {
    for (int col = 0; col < 20; ++col) {
      if (const char16_t* comment = sheet.readComment(row, col)) facts.add("comment", row, col, comment);
    }
    facts.add("row", row, sheet.rowHeight(row), sheet.rowHidden(row));
  }
  for (int col = 0; col < 40; ++col) facts.add("column", col, sheet.colWidth(col), sheet.colHidden(col));
  auto* filter = sheet.autoFilter();
  if (!filter->getRef(&r1, &r2, &c1, &c2)) return;
  facts.add("filter", r1, r2, c1, c2);
  for (int i = 0; i <= c2 - c1; ++i) {
    auto* column = filter->column(i);
    facts.add("filter column", i, static_cast<int>(column->filterType()), column->filterSize());
  }
}

template <class Tag>
std::string describe(XMLBookImplT<Tag>& book) {
  Facts facts;
  for (int i = 0; i < book.sheetCount(); ++i) {
    facts.add("sheet", book.getSheetName(i));
    if (auto* sheet = book.getSheet(i)) describe(*sheet, book, facts);
  }
  return facts.text();
}

template <class Tag>
std::map<std::string, std::string> partTexts(const XMLBookImplT<Tag>& book) {
  std::map<std::string, std::string> texts;
  for (const auto& [name, entry] : const_cast<XMLBookImplT<Tag>&>(book).parts()) entry.part->save(texts[name]);
  return texts;
}

// What the files of the corpus have, so that a corpus of nothing is seen.
struct Found {
  int books = 0, tables = 0, pictures = 0, comments = 0, filters = 0;
};

template <class Tag>
void keepsWhatItHas(const std::string& bytes, Found& found) {
  const auto book = loaded<Tag>(bytes);
  if (!book) return;
  const std::string before = describe(*book), file = savedBytes(*book);
  const auto again = loaded<Tag>(file);
  ASSERT_TRUE(again);
  EXPECT_EQ(describe(*again), before);
  ++found.books;
  const auto count = [&](std::string_view what) { return static_cast<int>(countOf(before, what)); };
  found.tables += count("\ntable ");
  found.pictures += count("\npicture ");
  found.comments += count("\ncomment ");
  found.filters += count("\nfilter ");
}

TEST(XmlCorpus, KeepsWhatStandsOnItsSheets) {
  const auto paths = corpusFiles("xlsx");
  if (paths.empty()) GTEST_SKIP() << kNoCorpus;
  Found found;
  for (const fs::path& path : paths) {
    SCOPED_TRACE(path.filename());
    const std::string bytes = readText(path);
    if (bytes.size() > 300'000) continue;  // large for their cells, which other tests look at
    keepsWhatItHas<excelNormal_tag>(bytes, found);
    keepsWhatItHas<excelStrict_tag>(bytes, found);
  }
  RecordProperty("books", found.books);
  RecordProperty("tables", found.tables);
  RecordProperty("pictures", found.pictures);
  RecordProperty("comments", found.comments);
  RecordProperty("filters", found.filters);
  EXPECT_GT(found.books, 0);
}

// An operation, and the element or attribute of the worksheet that it may change.
struct Change {
  std::string_view begin, end;
  std::function<void(ISheetT<char16_t>&)> set;
};

const std::vector<Change>& changes() {
  static const std::vector<Change> all = {
      {"<printOptions", ">", [](auto& s) { s.setHCenter(!s.hCenter()); }},
      {"<rowBreaks", "</rowBreaks>", [](auto& s) { s.setHorzPageBreak(1048000, true); }},
      {"<pageMargins", ">", [](auto& s) { s.setMarginLeft(3.5); }},
      {"<pageSetup ", ">", [](auto& s) { s.setPaper(s.paper() + 1); }},
      {"<ignoredErrors", "</ignoredErrors>", [](auto& s) { s.addIgnoredError(1048000, 0, 1048001, 1, 1); }},
      {"<sheetProtection", ">", [](auto& s) { s.setProtect(!s.protect(), nullptr, -1); }},
  };
  return all;
}

std::string without(const Change& change, std::string text) {
  for (std::size_t at = text.find(change.begin); at != text.npos; at = text.find(change.begin, at)) {
    const std::size_t last = text.find(change.end, at);
    text.erase(at, last == text.npos ? last : last + change.end.size() - at);
  }
  return text;
}

template <class Tag>
void changesOneThing(const std::string& bytes, int& changed) {
  const auto book = loaded<Tag>(bytes);
  if (!book || book->sheetCount() == 0 || book->getSheet(0) == nullptr) return;
  auto* sheet = static_cast<XMLSheetImplT<Tag>*>(book->getSheet(0));
  const std::string own = book->partNameOf(*sheet);
  auto before = partTexts(*book);
  for (const Change& change : changes()) {
    change.set(*sheet);
    ASSERT_STREQ(book->errorMessage(), "ok") << change.begin;
    auto after = partTexts(*book);
    EXPECT_NE(after[own], before[own]) << change.begin;
    EXPECT_EQ(without(change, after[own]), without(change, before[own]));
    after[own] = before[own];
    EXPECT_EQ(after, before) << change.begin;
    before = partTexts(*book);
    ++changed;
  }
}

TEST(XmlCorpus, ChangesNothingButWhatIsSet) {
  const auto paths = corpusFiles("xlsx");
  if (paths.empty()) GTEST_SKIP() << kNoCorpus;
  int changed = 0;
  for (const fs::path& path : paths) {
    SCOPED_TRACE(path.filename());
    const std::string bytes = readText(path);
    if (bytes.size() > 60'000) continue;  // each change compares every part
    changesOneThing<excelNormal_tag>(bytes, changed);
    changesOneThing<excelStrict_tag>(bytes, changed);
  }
  RecordProperty("changes", changed);
  EXPECT_GT(changed, 0);
}

}  // namespace
}  // namespace rubrica::test
