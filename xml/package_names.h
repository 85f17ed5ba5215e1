// The content types, relationship types and part names that the book writes and looks for, as the OOXML packaging
// conventions name them.
#pragma once

#include <string_view>

namespace rubrica {

namespace content_type {
inline constexpr std::string_view kWorkbook =
    "application/vnd.openxmlformats-officedocument.spreadsheetml.sheet.main+xml";
inline constexpr std::string_view kMacroWorkbook = "application/vnd.ms-excel.sheet.macroEnabled.main+xml";
inline constexpr std::string_view kTemplate =
    "application/vnd.openxmlformats-officedocument.spreadsheetml.template.main+xml";
inline constexpr std::string_view kMacroTemplate = "application/vnd.ms-excel.template.macroEnabled.main+xml";
inline constexpr std::string_view kRelationships = "application/vnd.openxmlformats-package.relationships+xml";
inline constexpr std::string_view kStyles = "application/vnd.openxmlformats-officedocument.spreadsheetml.styles+xml";
inline constexpr std::string_view kSharedStrings =
    "application/vnd.openxmlformats-officedocument.spreadsheetml.sharedStrings+xml";
inline constexpr std::string_view kWorksheet =
    "application/vnd.openxmlformats-officedocument.spreadsheetml.worksheet+xml";
inline constexpr std::string_view kChartsheet =
    "application/vnd.openxmlformats-officedocument.spreadsheetml.chartsheet+xml";
inline constexpr std::string_view kDrawing = "application/vnd.openxmlformats-officedocument.drawing+xml";
inline constexpr std::string_view kChart = "application/vnd.openxmlformats-officedocument.drawingml.chart+xml";
inline constexpr std::string_view kChartShapes =
    "application/vnd.openxmlformats-officedocument.drawingml.chartshapes+xml";
inline constexpr std::string_view kTable = "application/vnd.openxmlformats-officedocument.spreadsheetml.table+xml";
inline constexpr std::string_view kComments =
    "application/vnd.openxmlformats-officedocument.spreadsheetml.comments+xml";
inline constexpr std::string_view kXml = "application/xml";
}  // namespace content_type

namespace relationship_type {
inline constexpr std::string_view kOfficeDocument =
    "http://schemas.openxmlformats.org/officeDocument/2006/relationships/officeDocument";
inline constexpr std::string_view kStrictOfficeDocument =
    "http://purl.oclc.org/ooxml/officeDocument/relationships/officeDocument";
inline constexpr std::string_view kWorksheet =
    "http://schemas.openxmlformats.org/officeDocument/2006/relationships/worksheet";
inline constexpr std::string_view kSharedStrings =
    "http://schemas.openxmlformats.org/officeDocument/2006/relationships/sharedStrings";
inline constexpr std::string_view kStrictSharedStrings =
    "http://purl.oclc.org/ooxml/officeDocument/relationships/sharedStrings";
inline constexpr std::string_view kStyles =
    "http://schemas.openxmlformats.org/officeDocument/2006/relationships/styles";
inline constexpr std::string_view kStrictStyles = "http://purl.oclc.org/ooxml/officeDocument/relationships/styles";
inline constexpr std::string_view kHyperlink =
    "http://schemas.openxmlformats.org/officeDocument/2006/relationships/hyperlink";
inline constexpr std::string_view kDrawing =
    "http://schemas.openxmlformats.org/officeDocument/2006/relationships/drawing";
inline constexpr std::string_view kImage = "http://schemas.openxmlformats.org/officeDocument/2006/relationships/image";
inline constexpr std::string_view kComments =
    "http://schemas.openxmlformats.org/officeDocument/2006/relationships/comments";
inline constexpr std::string_view kPivotTable =
    "http://schemas.openxmlformats.org/officeDocument/2006/relationships/pivotTable";
inline constexpr std::string_view kStrictPivotTable =
    "http://purl.oclc.org/ooxml/officeDocument/relationships/pivotTable";
inline constexpr std::string_view kThreadedComments =
    "http://schemas.microsoft.com/office/2017/10/relationships/threadedComment";
inline constexpr std::string_view kStrictComments = "http://purl.oclc.org/ooxml/officeDocument/relationships/comments";
}  // namespace relationship_type

// Keys of the part map.
namespace part_name {
inline constexpr std::string_view kContentTypes = "/[Content_Types].xml";
inline constexpr std::string_view kPackageRelationships = "/_rels/.rels";
inline constexpr std::string_view kWorkbook = "/xl/workbook.xml";
inline constexpr std::string_view kBaseDirectory = "/xl";
inline constexpr std::string_view kCalcChain = "/xl/calcChain.xml";
}  // namespace part_name

}  // namespace rubrica
