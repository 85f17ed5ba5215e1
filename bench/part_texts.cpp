#include "bench/part_texts.h"

#include "source/ooxml/comments.h"
#include "source/ooxml/drawing.h"
#include "source/ooxml/sharedStringTable.h"
#include "source/ooxml/styles.h"
#include "source/ooxml/table.h"
#include "source/ooxml/workbook.h"

namespace rubrica::bench {

namespace {

// Of a hundred formats there are so many of each other kind.
constexpr std::uint32_t kFormatsAFont = 10;
constexpr std::uint32_t kFormatsAFill = 10;
constexpr std::uint32_t kFormatsABorder = 20;
constexpr std::uint32_t kFormatsADifferential = 20;
constexpr std::uint32_t kNamesASheet = 5;

lmx::c_binary colour(std::uint32_t rgb) {
  lmx::c_binary value;
  value.bytes = {0xFF, static_cast<std::uint8_t>(rgb >> 16U), static_cast<std::uint8_t>(rgb >> 8U),
                 static_cast<std::uint8_t>(rgb)};
  return value;
}

template <class Root>
std::string textOf(const Root& root) {
  std::string text;
  root.marshal(text);
  return text;
}

// Font and run properties are the same list of choices; a run names its font otherwise.
template <class Properties>
void fillFont(Properties& font, std::uint32_t i) {
  if (i % 2 == 0) font.append_choice().get_b();
  if (i % 3 == 0) font.append_choice().get_i();
  font.append_choice().get_sz().set_val(8 + i % 20);
  auto& shade = font.append_choice().get_color();
  if (i % 4 == 0) {
    shade.set_rgb(colour(i * 7919));
  } else {
    shade.set_theme(i % 10);
  }
}

void addFont(styles::c_CT_Font& font, std::uint32_t i) {
  fillFont(font, i);
  font.append_choice().get_name().set_val("Calibri");
  font.append_choice().get_family().set_val(2);
  font.append_choice().get_scheme().set_val("minor");
}

void addFill(styles::c_CT_Fill& fill, std::uint32_t i) {
  auto& pattern = fill.get_patternFill();
  pattern.set_patternType("solid");
  pattern.get_fgColor().set_rgb(colour(i * 104729));
  pattern.get_bgColor().set_indexed(64);
}

void addBorder(styles::c_CT_Border& border) {
  for (auto* side : {&border.get_left(), &border.get_right(), &border.get_top(), &border.get_bottom()}) {
    side->set_style("thin");
    side->get_color().set_indexed(64);
  }
  border.get_diagonal();
}

void addFormat(styles::c_CT_Xf& xf, std::uint32_t i) {
  xf.set_numFmtId(i % 50);
  xf.set_fontId(i / kFormatsAFont);
  xf.set_fillId(i / kFormatsAFill);
  xf.set_borderId(i / kFormatsABorder);
  xf.set_xfId(0);
  xf.set_applyNumberFormat(true);
  xf.set_applyFont(true);
  if (i % 2 == 0) return;
  xf.set_applyAlignment(true);
  auto& alignment = xf.get_alignment();
  alignment.set_horizontal("center");
  alignment.set_wrapText(true);
}

template <class Comment>
void addComment(Comment& comment, std::uint32_t i) {
  comment.set_ref("C" + std::to_string(i + 1));
  comment.set_authorId(0);
  for (const bool heading : {true, false}) {
    auto& run = comment.get_text().append_r();
    auto& properties = run.get_rPr();
    if (heading) properties.append_choice().get_b();
    properties.append_choice().get_sz().set_val(9);
    properties.append_choice().get_color().set_indexed(81);
    properties.append_choice().get_rFont().set_val("Tahoma");
    run.get_t().set_xml_space("preserve");
    run.get_t().set_value(heading ? "A. Reviewer:" : "\nPlease check the figure in row " + std::to_string(i));
  }
}

void addMarker(drawing::c_CT_Marker& marker, int column, int row) {
  marker.set_col(column);
  marker.set_colOff(38100);
  marker.set_row(row);
  marker.set_rowOff(9525);
}

void addPicture(drawing::c_CT_Picture& picture, std::uint32_t i) {
  auto& properties = picture.get_nvPicPr().get_cNvPr();
  properties.set_id(i + 2);
  properties.set_name("Picture " + std::to_string(i + 1));
  properties.set_descr("photo.png");
  picture.get_nvPicPr().get_cNvPicPr().get_picLocks().set_noChangeAspect(true);
  picture.get_blipFill().get_blip().set_r_embed("rId" + std::to_string(i + 1));
  picture.get_blipFill().get_stretch().get_fillRect();
  auto& place = picture.get_spPr().get_xfrm();
  place.get_off().set_x(609600 + i);
  place.get_off().set_y(190500);
  place.get_ext().set_cx(1219200);
  place.get_ext().set_cy(952500);
  auto& shape = picture.get_spPr().get_prstGeom();
  shape.set_prst("rect");
  shape.get_avLst();
}

}  // namespace

std::string stylesText(std::int64_t formats) {
  styles::c_styleSheet root;
  const auto count = static_cast<std::uint32_t>(formats);
  for (std::uint32_t i = 0; i < count / kFormatsAFont; ++i) addFont(root.get_fonts().append_font(), i);
  for (std::uint32_t i = 0; i < count / kFormatsAFill; ++i) addFill(root.get_fills().append_fill(), i);
  for (std::uint32_t i = 0; i < count / kFormatsABorder; ++i) addBorder(root.get_borders().append_border());
  root.get_cellStyleXfs().append_xf();
  for (std::uint32_t i = 0; i < count; ++i) addFormat(root.get_cellXfs().append_xf(), i);
  for (std::uint32_t i = 0; i < count / kFormatsADifferential; ++i) {
    auto& dxf = root.get_dxfs().append_dxf();
    fillFont(dxf.get_font(), i);
    addFill(dxf.get_fill(), i);
  }
  return textOf(root);
}

std::string sharedStringsText(std::int64_t strings) {
  sharedStringTable::c_sst root;
  const auto count = static_cast<std::uint32_t>(strings);
  root.set_count(count);
  root.set_uniqueCount(count);
  for (std::uint32_t i = 0; i < count; ++i) {
    auto& item = root.append_si();
    if (i % 10 == 3) {
      auto& run = item.append_r();
      fillFont(run.get_rPr(), i);
      run.get_rPr().append_choice().get_rFont().set_val("Calibri");
      run.get_t().set_value("bold");
      item.append_r().get_t().set_value("and plain " + std::to_string(i));
      continue;
    }
    item.get_t().set_value(
        "Customer \xC3\x9C"
        "berweisung no. " +
        std::to_string(i));
    if (i % 10 == 7) item.get_t().set_xml_space("preserve");
  }
  return textOf(root);
}

std::string workbookText(std::int64_t names) {
  workbook::c_workbook root;
  const auto count = static_cast<std::uint32_t>(names);
  for (std::uint32_t i = 0; i < count / kNamesASheet; ++i) {
    auto& sheet = root.get_sheets().append_sheet();
    sheet.set_name("Sheet " + std::to_string(i + 1));
    sheet.set_sheetId(i + 1);
    sheet.set_r_id("rId" + std::to_string(i + 1));
  }
  for (std::uint32_t i = 0; i < count; ++i) {
    auto& name = root.get_definedNames().append_definedName();
    name.set_name("Region_" + std::to_string(i));
    name.set_localSheetId(i / kNamesASheet);
    const std::string row = std::to_string(i + 1);
    std::string area = "'Sheet " + std::to_string(i / kNamesASheet + 1);
    name.set_value(area.append("'!$A$").append(row).append(":$F$").append(row));
  }
  return textOf(root);
}

std::string commentsText(std::int64_t comments) {
  comments::c_comments root;
  root.get_authors().append_author("A. Reviewer");
  for (std::uint32_t i = 0; i < static_cast<std::uint32_t>(comments); ++i) {
    addComment(root.get_commentList().append_comment(), i);
  }
  return textOf(root);
}

std::string tableText(std::int64_t columns) {
  table::c_table root;
  root.set_id(1);
  root.set_name("Table1");
  root.set_displayName("Table1");
  root.set_ref("A1:XFD100");
  root.get_tableColumns().set_count(static_cast<std::uint32_t>(columns));
  for (std::uint32_t i = 0; i < static_cast<std::uint32_t>(columns); ++i) {
    auto& column = root.get_tableColumns().append_tableColumn();
    column.set_id(i + 1);
    column.set_name("Column" + std::to_string(i + 1));
    column.set_dataDxfId(i % 100);
    if (i % 4 == 0) column.get_calculatedColumnFormula().set_value("Table1[[#This Row],[Column1]]*2");
  }
  return textOf(root);
}

std::string drawingText(std::int64_t anchors) {
  drawing::c_wsDr root;
  for (std::uint32_t i = 0; i < static_cast<std::uint32_t>(anchors); ++i) {
    auto& anchor = root.append_choice().get_twoCellAnchor();
    anchor.set_editAs("oneCell");
    addMarker(anchor.get_from(), 1, static_cast<int>(i) * 10);
    addMarker(anchor.get_to(), 3, static_cast<int>(i) * 10 + 5);
    addPicture(anchor.get_EG_ObjectChoices().get_pic(), i);
    anchor.get_clientData();
  }
  return textOf(root);
}

}  // namespace rubrica::bench
