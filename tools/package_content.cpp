#include "tools/package_content.h"

#include <algorithm>
#include <string_view>

#include "tools/findings.h"
#include "xml/package_names.h"
#include "xml/tag_scan.h"

namespace rubrica::tools {
namespace {

// Parts whose number is that of the things that they stand for, by the last word of their content type.
struct CountedPart {
  const char* kind;
  const char* one;
  const char* many;
};
constexpr CountedPart kCountedParts[] = {
    {"chart", "chart", "charts"},
    {"chartex", "chart", "charts"},
    {"pivotTable", "pivot table", "pivot tables"},
    {"slicer", "part of slicers", "parts of slicers"},
    {"timeline", "part of timelines", "parts of timelines"},
    {"externalLink", "link to another workbook", "links to other workbooks"},
    {"connections", "list of connections", "lists of connections"},
    {"queryTable", "query", "queries"},
    {"vbaProject", "project of macros", "projects of macros"},
    {"threadedcomments", "part of threaded comments", "parts of threaded comments"},
    {"oleObject", "embedded object", "embedded objects"},
    {"customProperty", "custom property", "custom properties"},
    {"macrosheet", "macro sheet", "macro sheets"},
    {"dialogsheet", "dialog sheet", "dialog sheets"}};

// The same of the elements of a sheet.
constexpr CountedPart kCountedElements[] = {{"cfRule", "conditional format", "conditional formats"},
                                            {"dataValidation", "data validation", "data validations"},
                                            {"protectedRange", "protected range", "protected ranges"},
                                            {"scenario", "scenario", "scenarios"},
                                            {"sparkline", "sparkline", "sparklines"},
                                            {"sortState", "sort order", "sort orders"},
                                            {"control", "control", "controls"},
                                            {"customSheetView", "custom view", "custom views"},
                                            {"legacyDrawingHF", "drawing in headers", "drawings in headers"},
                                            {"picture", "background picture", "background pictures"}};

template <std::size_t N>
void count(const CountedPart (&rows)[N], std::string_view kind, Findings& findings) {
  for (const CountedPart& row : rows) {
    if (kind == row.kind) findings.count(row.one, row.many);
  }
}

void countElements(std::string_view sheet, Findings& findings) {
  long outlines = 0;
  TagScan scan(sheet);
  for (ScannedTag tag; scan.next(tag);) {
    if (tag.kind == ScannedTag::Kind::end) continue;
    const std::string_view local = tag.local();
    if (local == "c" || local == "v") continue;
    count(kCountedElements, local, findings);
    const std::string_view level = tag.attribute("outlineLevel");
    if ((local == "row" || local == "col") && !level.empty() && level != "0") ++outlines;
  }
  findings.count("row or column with an outline level", "rows and columns with outline levels", outlines);
}

// Texts with runs, each counted once.
long richTexts(std::string_view strings) {
  long count = 0;
  bool isRich = false;
  TagScan scan(strings);
  for (ScannedTag tag; scan.next(tag);) {
    if (tag.local() == "r" && tag.kind == ScannedTag::Kind::start) isRich = true;
    if (tag.local() != "si" || tag.kind != ScannedTag::Kind::end) continue;
    count += isRich ? 1 : 0;
    isRich = false;
  }
  return count;
}

}  // namespace

std::vector<std::string> unmodelledContent(const PackageFile& package) {
  Findings findings;
  for (const PackagePart& part : package.parts) {
    count(kCountedParts, kindOf(part), findings);
    if (part.type == content_type::kWorksheet) countElements(part.text(), findings);
    if (part.type == content_type::kSharedStrings) {
      findings.count("text with several fonts", "texts with several fonts", richTexts(part.text()));
    }
  }
  return findings.lines();
}

}  // namespace rubrica::tools
