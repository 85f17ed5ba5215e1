#include "tools/unmodelled.h"

#include <algorithm>
#include <array>

#include "biff/records/record_ids.h"
#include "biff/records/sheet_records.h"
#include "platform/input_file.h"
#include "tools/book_opener.h"
#include "tools/findings.h"
#include "tools/package_content.h"
#include "tools/rich_strings.h"

namespace rubrica::tools {
namespace {

constexpr std::uint16_t kBofChart = 0x20, kBofMacros = 0x40;

// Records whose number is that of the things that they stand for.
struct CountedRecord {
  std::uint16_t recordId;
  const char* one;
  const char* many;
};
constexpr CountedRecord kCounted[] = {{432, "conditional format", "conditional formats"},
                                      {2169, "conditional format", "conditional formats"},
                                      {446, "data validation", "data validations"},
                                      {157, "filter", "filters"},
                                      {176, "pivot table", "pivot tables"},
                                      {175, "scenario", "scenarios"},
                                      {429, "query", "queries"},
                                      {2161, "list or table", "lists and tables"},
                                      {2150, "picture in headers", "pictures in headers"},
                                      {144, "sort order", "sort orders"},
                                      {566, "data table", "data tables"}};

constexpr std::uint16_t kFirstObjectWord = 4;  // of an Obj record: the kind, behind the header of its first part
// Kinds of Obj records that are no pictures, comments or charts.
constexpr std::uint16_t kObjectNote = 25, kObjectPicture = 8, kObjectChart = 5;

bool hasOutline(const RawStreamRecord& record) {
  constexpr std::size_t kRowOptions = 12, kColumnOptions = 8;
  if (record.recordId == id::kRow) return (record.word(kRowOptions) & 7) != 0;
  return record.recordId == id::kColInfo && ((record.word(kColumnOptions) >> 8) & 7) != 0;
}

bool hasPassword(const RawStreamRecord& record) {
  return record.recordId == id::kPassword && record.word(0) != 0;
}

bool isTabColor(const RawStreamRecord& record) {
  constexpr std::size_t kColorWord = 16;
  constexpr std::uint16_t kIndexBits = 0x7F;
  return record.recordId == id::kSheetExt && (record.word(kColorWord) & kIndexBits) != kIndexBits;
}

// A link block of another file: not the book's own sheets and not functions of add-ins.
bool isOtherBook(const RawStreamRecord& record) {
  constexpr std::uint16_t kOwnBook = 0x0401, kAddIns = 0x3A01;
  return record.recordId == id::kSupBook && record.word(2) != kOwnBook && record.word(2) != kAddIns;
}

bool isDrawnObject(const RawStreamRecord& record) {
  if (record.recordId != id::kObj) return false;
  const std::uint16_t kind = record.word(kFirstObjectWord);
  return kind != kObjectNote && kind != kObjectPicture && kind != kObjectChart;
}

void countRecord(const RawStreamRecord& record, Findings& findings) {
  for (const CountedRecord& row : kCounted) {
    if (row.recordId == record.recordId) findings.count(row.one, row.many);
  }
  if (record.recordId == id::kBof && record.word(2) == kBofChart) findings.count("chart", "charts");
  if (record.recordId == id::kBof && record.word(2) == kBofMacros) findings.count("macro sheet", "macro sheets");
  if (hasPassword(record)) findings.count("protection password", "protection passwords");
  if (isTabColor(record)) findings.count("tab color", "tab colors");
  if (isOtherBook(record)) findings.count("link to another workbook", "links to other workbooks");
  if (isDrawnObject(record)) findings.count("drawn object or control", "drawn objects and controls");
}

}  // namespace

std::vector<std::string> unmodelledContent(const RecordStream& stream) {
  Findings findings;
  long outlines = 0;
  for (const RawStreamRecord& record : stream.records) {
    countRecord(record, findings);
    outlines += hasOutline(record) ? 1 : 0;
  }
  findings.count("row or column with an outline level", "rows and columns with outline levels", outlines);
  findings.count("text with several fonts", "texts with several fonts", countRichStrings(stream));
  const bool macros = std::any_of(stream.directory.begin(), stream.directory.end(), [](const DirEntry& entry) {
    return entry.isNamed(u"_VBA_PROJECT_CUR") && entry.objectType == static_cast<std::uint8_t>(EntryType::storage);
  });
  if (macros) findings.count("project of macros", "projects of macros");
  return findings.lines();
}

std::vector<std::string> unmodelledContent(const std::string& path, const std::string& form) {
  const auto bytes = platform::readWholeFile(wideText(path));
  if (!bytes) return {};
  return form == "xls" ? unmodelledContent(readRecordStream(*bytes)) : unmodelledContent(readPackage(*bytes));
}

}  // namespace rubrica::tools
