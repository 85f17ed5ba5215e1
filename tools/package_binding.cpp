#include "tools/package_binding.h"

#include <optional>
#include <type_traits>

#include "lmx/c_error.h"
#include "source/ooxml/comments.h"
#include "source/ooxml/contentypes.h"
#include "source/ooxml/drawing.h"
#include "source/ooxml/relationships.h"
#include "source/ooxml/sharedStringTable.h"
#include "source/ooxml/sheet.h"
#include "source/ooxml/strict.h"
#include "source/ooxml/strictdrawing.h"
#include "source/ooxml/styles.h"
#include "source/ooxml/table.h"
#include "source/ooxml/workbook.h"
#include "xml/flavour.h"
#include "xml/markup_compatibility.h"
#include "xml/package_names.h"
#include "xml/part_factory.h"
#include "xml/part_map.h"
#include "xml/part_repair.h"

namespace rubrica::tools {
namespace {

// There is one class for the comments of both flavours, under the transitional namespace. In a strict book the other
// namespace is the right one.
template <class Root>
bool bindsAsStrictComments(std::string_view text, lmx::elmx_error code) {
  if constexpr (std::is_same_v<Root, comments::c_comments>) {
    const std::optional<std::string> renamed = repairedPart(text, Root::kRoot, code);
    Root root;
    return renamed && root.unmarshal(renamed->data(), renamed->size()) == lmx::ELMX_OK;
  }
  return false;
}

template <class Root>
std::string bindingError(std::string_view given, bool isStrict) {
  Root root;
  lmx::c_error_record record;
  const ResolvedMarkup markup(given, Root::kRoot);
  const std::string_view text = markup.text();
  const lmx::elmx_error code = root.unmarshal(text.data(), text.size(), &record);
  if (code == lmx::ELMX_OK || (isStrict && bindsAsStrictComments<Root>(text, code))) return {};
  std::string error = lmx::get_error_text(record.code);
  if (!record.item_name.empty()) error += " (" + record.item_name + ")";
  // Lines are those of the file as long as nothing was taken out of it.
  if (record.xml_line > 0 && text.data() == given.data()) error += " in line " + std::to_string(record.xml_line);
  return error;
}

// Calls `use` with the root class that a bound part has.
template <class Tag, class Use>
auto withRoot(const PackagePart& part, const Use& use) {
  using F = Flavour<Tag>;
  if (samePartName(part.name, part_name::kContentTypes)) return use.template operator()<contentypes::c_Types>();
  if (isMainType(part.type)) return use.template operator()<typename F::WorkbookRoot>();
  if (part.type == content_type::kRelationships) return use.template operator()<relationships::c_Relationships>();
  if (part.type == content_type::kWorksheet) return use.template operator()<typename F::WorksheetRoot>();
  if (part.type == content_type::kStyles) return use.template operator()<typename F::StyleSheetRoot>();
  if (part.type == content_type::kSharedStrings) return use.template operator()<typename F::SstRoot>();
  if (part.type == content_type::kDrawing) return use.template operator()<typename F::DrawingRoot>();
  if (part.type == content_type::kTable) return use.template operator()<typename F::TableRoot>();
  return use.template operator()<comments::c_comments>();
}

template <class Use>
auto withRoot(const PackageFile& package, const PackagePart& part, const Use& use) {
  return package.isStrict ? withRoot<excelStrict_tag>(part, use) : withRoot<excelNormal_tag>(part, use);
}

}  // namespace

void complainOfBinding(const PackageFile& package, std::vector<std::string>& complaints) {
  for (const PackagePart& part : package.parts) {
    if (part.handling != Handling::bound || part.text().empty()) continue;
    const std::string error =
        withRoot(package, part, [&]<class Root>() { return bindingError<Root>(part.text(), package.isStrict); });
    if (!error.empty()) complaints.push_back(part.name + ": " + error);
  }
}

std::size_t droppedMarkup(const PackageFile& package, const PackagePart& part) {
  if (part.handling != Handling::bound) return 0;
  return withRoot(package, part, [&]<class Root>() { return ResolvedMarkup(part.text(), Root::kRoot).dropped(); });
}

}  // namespace rubrica::tools
