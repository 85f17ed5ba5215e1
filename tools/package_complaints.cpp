#include "tools/package_complaints.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdio>
#include <map>
#include <optional>
#include <set>

#include "lmx/text.h"
#include "tools/package_binding.h"
#include "tools/package_cells.h"
#include "xml/package_links.h"
#include "xml/package_names.h"
#include "xml/part_map.h"
#include "xml/tag_scan.h"

namespace rubrica::tools {
namespace {

using Complaints = std::vector<std::string>;
using Names = std::set<std::string, PartNameLess>;
using Ids = std::set<std::string>;

// ---- Content types and relationships

void complainOfNames(const PackageFile& package, const Names& names, Complaints& complaints) {
  Names seen;
  for (const PackagePart& part : package.parts) {
    if (!seen.insert(part.name).second) complaints.push_back(part.name + " stands twice");
    if (part.handling == Handling::dropped) complaints.push_back(part.name + " has no content type");
  }
  const PackagePart* types = package.find(part_name::kContentTypes);
  if (types == nullptr) return;
  TagScan scan(types->text());
  for (ScannedTag tag; scan.next(tag);) {
    if (tag.local() != "Override") continue;
    const std::string name(tag.attribute("PartName"));
    if (!name.empty() && !names.contains(name)) {
      complaints.push_back("a content type is given to " + name + ", which there isn't");
    }
  }
}

// The ids of the relationships that stand in one part.
Ids complainOfLinks(const PackagePart& part, const Names& names, Complaints& complaints) {
  const std::string owner = relsOwner(part.name);
  if (!owner.empty() && !names.contains(owner)) complaints.push_back(part.name + " belongs to no part");
  Ids ids;
  TagScan scan(part.text());
  for (ScannedTag tag; scan.next(tag);) {
    if (tag.local() != "Relationship" || tag.kind == ScannedTag::Kind::end) continue;
    const std::string id(tag.attribute("Id")), target(tag.attribute("Target"));
    if (!ids.insert(id).second) complaints.push_back(part.name + ": the id " + id + " stands twice");
    if (tag.attribute("TargetMode") == "External" || target.starts_with('#')) continue;
    if (!names.contains(targetKey(partDirectory(owner), target.substr(0, target.find('#'))))) {
      complaints.push_back(part.name + ": " + id + " leads to " + target + ", which there isn't");
    }
  }
  return ids;
}

// The prefix under which a part uses the ids of its relationships.
std::string idPrefix(std::string_view text) {
  for (const std::string_view uri : {"\"http://schemas.openxmlformats.org/officeDocument/2006/relationships\"",
                                     "\"http://purl.oclc.org/ooxml/officeDocument/relationships\""}) {
    const std::size_t at = text.find(uri);
    if (at == text.npos || at == 0) continue;
    const std::size_t colon = text.rfind(':', at);
    if (colon != text.npos && colon < at - 1) return std::string(text.substr(colon + 1, at - colon - 2)) + ":";
  }
  return {};
}

void complainOfIds(const PackagePart& part, const Ids& ids, Complaints& complaints) {
  const std::string prefix = idPrefix(part.text());
  if (prefix.empty()) return;
  Ids missing;
  TagScan scan(part.text());
  for (ScannedTag tag; scan.next(tag);) {
    if (tag.attributes.find(prefix) == tag.attributes.npos) continue;
    for (const char* local : {"id", "embed", "link", "pict", "dm", "lo", "qs", "cs"}) {
      const std::string id(tag.attribute(prefix + local));
      if (!id.empty() && !ids.contains(id)) missing.insert(id);
    }
  }
  for (const std::string& id : missing) {
    complaints.push_back(part.name + " uses the relationship " + id + ", which there isn't");
  }
}

void complainOfRelationships(const PackageFile& package, const Names& names, Complaints& complaints) {
  std::map<std::string, Ids, PartNameLess> ids;  // by the part that they belong to
  bool hasWorkbook = false;
  for (const PackagePart& part : package.parts) {
    if (!part.isRelationships()) continue;
    ids[relsOwner(part.name)] = complainOfLinks(part, names, complaints);
    const bool isRoot = samePartName(part.name, part_name::kPackageRelationships);
    hasWorkbook =
        hasWorkbook || (isRoot && part.text().find("/relationships/officeDocument") != std::string_view::npos);
  }
  if (!hasWorkbook) complaints.push_back("no relationship of the package leads to the workbook");
  for (const PackagePart& part : package.parts) {
    if (part.isXml() && !part.isRelationships()) complainOfIds(part, ids[part.name], complaints);
  }
}

// ---- Characters

constexpr std::size_t kLongestReference = 16;  // with leading zeros

// The number that a reference such as "&#x1F;" means; nothing for other text.
std::optional<unsigned> referenceAt(std::string_view text) {
  if (!text.starts_with("&#")) return std::nullopt;
  text.remove_prefix(2);
  const bool isHex = text.starts_with('x');
  if (isHex) text.remove_prefix(1);
  unsigned number = 0;
  const char* last = text.data() + text.size();
  const auto [end, error] = std::from_chars(text.data(), last, number, isHex ? 16 : 10);
  return error == std::errc() && end != last && *end == ';' ? std::optional(number) : std::nullopt;
}

bool isForbidden(unsigned character) {
  return (character < 0x20 && !lmx::is_space(static_cast<int>(character))) || character == 0xFFFE ||
         character == 0xFFFF || (character >= 0xD800 && character <= 0xDFFF) || character > 0x10FFFF;
}

std::optional<unsigned> forbiddenAt(std::string_view text, std::size_t at) {
  const auto byte = static_cast<unsigned char>(text[at]);
  if (byte < 0x20) return isForbidden(byte) ? std::optional<unsigned>(byte) : std::nullopt;
  if (byte == '&') {
    const auto number = referenceAt(text.substr(at, kLongestReference));
    return number && isForbidden(*number) ? number : std::nullopt;
  }
  if (byte != 0xEF || at + 2 >= text.size() || text[at + 1] != '\xBF') return std::nullopt;
  return text[at + 2] == '\xBE'   ? std::optional(0xFFFEU)
         : text[at + 2] == '\xBF' ? std::optional(0xFFFFU)
                                  : std::nullopt;
}

void complainOfCharacters(const PackagePart& part, Complaints& complaints) {
  const std::string_view text = part.text();
  // Other encodings than UTF-8 begin with a mark that has no letter in it.
  if (text.size() < 2 || text[0] == '\xFF' || text[0] == '\xFE' || text[0] == 0 || text[1] == 0) return;
  long count = 0;
  std::string first;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const auto found = forbiddenAt(text, i);
    if (!found || ++count > 1) continue;
    std::array<char, 32> shown{};
    std::snprintf(shown.data(), shown.size(), "U+%04X in line ", *found);
    first = shown.data() +
            std::to_string(1 + std::count(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(i), '\n'));
  }
  if (count == 0) return;
  complaints.push_back(part.name + ": " + std::to_string(count) +
                       (count == 1 ? " character that XML forbids: " : " characters that XML forbids, the first ") +
                       first);
}

}  // namespace

std::vector<std::string> packageComplaints(const PackageFile& package) {
  Complaints complaints;
  Names names;
  for (const PackagePart& part : package.parts) names.insert(part.name);
  complainOfNames(package, names, complaints);
  complainOfRelationships(package, names, complaints);
  for (const PackagePart& part : package.parts) {
    if (part.isXml()) complainOfCharacters(part, complaints);
  }
  complainOfBinding(package, complaints);
  complainOfCells(package, complaints);
  return complaints;
}

}  // namespace rubrica::tools
