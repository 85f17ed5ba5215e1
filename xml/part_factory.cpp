#include "xml/part_factory.h"

#include <algorithm>
#include <array>

#include "xml/comments.h"
#include "xml/drawing.h"
#include "xml/package_names.h"
#include "xml/relationships.h"
#include "xml/table.h"

namespace rubrica {
namespace {

constexpr std::size_t kSheetStart = 100;  // bytes in which the start of a sheet's root element must stand
constexpr std::string_view kSheetRoot = "<worksheet xmlns=";

}  // namespace

bool isMainType(std::string_view contentType) {
  constexpr std::array kMain = {content_type::kWorkbook, content_type::kMacroWorkbook, content_type::kTemplate,
                                content_type::kMacroTemplate};
  return std::find(kMain.begin(), kMain.end(), contentType) != kMain.end();
}

bool looksLikeWorksheet(std::string_view text) {
  return text.substr(0, kSheetStart).find(kSheetRoot) != text.npos;
}

bool looksLikeWorksheet(const PartBytes& bytes) {
  return looksLikeWorksheet(bytes.path.empty() ? bytes.block.view() : std::string_view(readTemporaryFile(bytes.path)));
}

template <class Tag>
std::unique_ptr<XFile> makePart(std::string_view type, const PartBytes& bytes) {
  if (type == content_type::kRelationships) return bytes.make<Relationships>();
  if (type == content_type::kChartsheet) return bytes.make<XMLChartSheet>();
  if (type == content_type::kDrawing) return bytes.make<Drawing<Tag>>();
  if (type == content_type::kTable) return bytes.make<Table<Tag>>();
  if (type == content_type::kComments) return bytes.make<Comments>();
  return bytes.make<BinaryFile>();
}

template std::unique_ptr<XFile> makePart<excelNormal_tag>(std::string_view, const PartBytes&);
template std::unique_ptr<XFile> makePart<excelStrict_tag>(std::string_view, const PartBytes&);

}  // namespace rubrica
