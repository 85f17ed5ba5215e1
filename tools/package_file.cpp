#include "tools/package_file.h"

#include <algorithm>
#include <array>
#include <memory>

#include "engine/xlerror.h"
#include "xml/content_types.h"
#include "xml/package_names.h"
#include "xml/part_factory.h"
#include "xml/part_map.h"
#include "xml/zip_reader.h"

namespace rubrica::tools {
namespace {

constexpr std::string_view kStrictMainUri = "\"http://purl.oclc.org/ooxml/spreadsheetml/main\"";

bool isBoundType(std::string_view type) {
  constexpr std::array kBound = {content_type::kWorksheet,     content_type::kStyles,  content_type::kSharedStrings,
                                 content_type::kRelationships, content_type::kDrawing, content_type::kTable,
                                 content_type::kComments};
  return isMainType(type) || std::find(kBound.begin(), kBound.end(), type) != kBound.end();
}

ContentTypes contentTypesIn(const PackageFile& package, std::vector<std::string>& damage) {
  const PackagePart* part = package.find(part_name::kContentTypes);
  if (part == nullptr) {
    damage.push_back("the package has no [Content_Types].xml");
    return {};
  }
  try {
    return {part->text().data(), part->text().size()};
  } catch (const xlerror& error) {
    damage.push_back(part->name + ": " + error.what());
    return {};
  }
}

}  // namespace

const char* nameOf(Handling handling) {
  static constexpr const char* kNames[] = {"bound", "carried", "dropped"};
  return kNames[static_cast<int>(handling)];
}

bool PackagePart::isRelationships() const {
  return type == content_type::kRelationships || name.ends_with(".rels");
}

bool PackagePart::isXml() const {
  return handling == Handling::bound || type.ends_with("+xml") || type == content_type::kXml || isRelationships();
}

const PackagePart* PackageFile::find(std::string_view name) const {
  const auto found = std::find_if(parts.rbegin(), parts.rend(),
                                  [&](const PackagePart& part) { return samePartName(part.name, name); });
  return found == parts.rend() ? nullptr : &*found;
}

PackageFile readPackage(std::span<const std::byte> file) {
  PackageFile package;
  try {
    ZipReader reader(file);
    for (const ZipEntry& entry : reader.entries()) {
      PackagePart part;
      part.name = entry.name;
      part.size = entry.size;
      try {
        part.bytes = reader.read(entry);
      } catch (const xlerror& error) {
        package.damage.push_back(entry.name + ": " + error.what());
      }
      package.parts.push_back(std::move(part));
    }
    package.opened = true;
  } catch (const xlerror& error) {
    package.damage.push_back(error.what());
    return package;
  }
  const ContentTypes types = contentTypesIn(package, package.damage);
  for (PackagePart& part : package.parts) {
    part.type = types.contentType(part.name);
    const bool isTypes = samePartName(part.name, part_name::kContentTypes);
    // Some programs give worksheets the type of any XML; the book knows them by their root.
    const bool isSheet = part.type == content_type::kXml && looksLikeWorksheet(part.text());
    if (isSheet) part.type = content_type::kWorksheet;
    part.handling = isTypes || isBoundType(part.type) ? Handling::bound
                    : part.type.empty()               ? Handling::dropped
                                                      : Handling::carried;
    const bool saysStrict = part.text().find(kStrictMainUri) != std::string_view::npos;
    package.isStrict = package.isStrict || (isMainType(part.type) && saysStrict);
  }
  return package;
}

std::string kindOf(const PackagePart& part) {
  if (samePartName(part.name, part_name::kContentTypes)) return "content types";
  if (isMainType(part.type)) return "workbook";
  if (part.type.empty()) return "part without a type";
  std::string_view type = part.type;
  if (type.ends_with("+xml")) type.remove_suffix(4);
  return std::string(type.substr(type.find_last_of("./") + 1));
}

}  // namespace rubrica::tools
