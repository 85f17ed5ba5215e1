#include "tools/package_cells.h"

#include <charconv>
#include <optional>
#include <string_view>

#include "xml/package_names.h"
#include "xml/tag_scan.h"

namespace rubrica::tools {
namespace {

struct Counts {
  std::optional<std::size_t> formats, strings;
};

std::size_t childrenOf(std::string_view text, std::string_view list, std::string_view child) {
  std::size_t count = 0;
  bool isInside = false;
  TagScan scan(text);
  for (ScannedTag tag; scan.next(tag);) {
    if (tag.local() == list) isInside = tag.kind == ScannedTag::Kind::start;
    if (isInside && tag.local() == child && tag.kind != ScannedTag::Kind::end) ++count;
  }
  return count;
}

Counts countsOf(const PackageFile& package) {
  Counts counts;
  for (const PackagePart& part : package.parts) {
    if (part.type == content_type::kStyles) counts.formats = childrenOf(part.text(), "cellXfs", "xf");
    if (part.type == content_type::kSharedStrings) counts.strings = childrenOf(part.text(), "sst", "si");
  }
  return counts;
}

std::optional<std::size_t> indexIn(std::string_view text) {
  std::size_t index = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), index);
  return error == std::errc() && end == text.data() + text.size() ? std::optional(index) : std::nullopt;
}

// Cells with the same fault: how many, and which was the first.
struct Fault {
  const char* one;
  const char* many;
  long count = 0;
  std::string first = {};

  void add(std::string_view cell) {
    if (++count == 1) first = cell;
  }
  void tell(const std::string& part, std::vector<std::string>& complaints) const {
    if (count == 1) complaints.push_back(part + ": cell " + first + " " + one);
    if (count > 1)
      complaints.push_back(part + ": " + std::to_string(count) + " cells " + many + ", the first " + first);
  }
};

void complainOfCells(const PackagePart& part, const Counts& counts, std::vector<std::string>& complaints) {
  Fault formats{"names a format that there isn't", "name formats that there aren't"};
  Fault strings{"names a shared string that there isn't", "name shared strings that there aren't"};
  std::size_t lastRow = 0;
  bool isOrdered = true;
  std::string cell;
  bool isString = false;
  std::size_t valueBegin = 0;
  TagScan scan(part.text());
  for (ScannedTag tag; scan.next(tag);) {
    const std::string_view local = tag.local();
    if (tag.kind == ScannedTag::Kind::end) {
      if (local != "v" || !isString || valueBegin == 0) continue;
      const auto index = indexIn(part.text().substr(valueBegin, tag.begin - valueBegin));
      if (!index || *index >= counts.strings.value_or(0)) strings.add(cell);
      valueBegin = 0;
    } else if (local == "row") {
      const std::size_t row = indexIn(tag.attribute("r")).value_or(lastRow + 1);
      isOrdered = isOrdered && row > lastRow;
      lastRow = row;
    } else if (local == "c") {
      cell = tag.attribute("r");
      isString = tag.attribute("t") == "s";
      const auto format = indexIn(tag.attribute("s"));
      if (format && counts.formats && *format >= *counts.formats) formats.add(cell);
    } else if (local == "v") {
      valueBegin = tag.end;
    }
  }
  formats.tell(part.name, complaints);
  strings.tell(part.name, complaints);
  if (!isOrdered) complaints.push_back(part.name + ": rows are out of order");
}

}  // namespace

void complainOfCells(const PackageFile& package, std::vector<std::string>& complaints) {
  const Counts counts = countsOf(package);
  for (const PackagePart& part : package.parts) {
    if (part.type == content_type::kWorksheet) complainOfCells(part, counts, complaints);
  }
}

}  // namespace rubrica::tools
