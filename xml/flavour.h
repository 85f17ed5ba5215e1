// The two flavours of an OOXML book, transitional and strict, and the bound root classes of each. Code of this folder
// is written once as templates over the tag; what it does with a root needs the header of the root's module as well
// ("source/ooxml/sheet.h" and "source/ooxml/strict.h").
#pragma once

namespace rubrica {

struct excelNormal_tag {};
struct excelStrict_tag {};

namespace workbook {
class c_workbook;
}
namespace sheet {
class c_worksheet;
}
namespace sharedStringTable {
class c_sst;
}
namespace styles {
class c_styleSheet;
}
namespace table {
class c_table;
}
namespace drawing {
class c_wsDr;
}
namespace strict {
class c_workbook;
class c_worksheet;
class c_sst;
class c_styleSheet;
class c_table;
}  // namespace strict
namespace strictdrawing {
class c_wsDr;
}

template <class Tag>
struct Flavour;

template <>
struct Flavour<excelNormal_tag> {
  using Other = excelStrict_tag;
  using WorkbookRoot = workbook::c_workbook;
  using WorksheetRoot = sheet::c_worksheet;
  using SstRoot = sharedStringTable::c_sst;
  using StyleSheetRoot = styles::c_styleSheet;
  using TableRoot = table::c_table;
  using DrawingRoot = drawing::c_wsDr;
};

template <>
struct Flavour<excelStrict_tag> {
  using Other = excelNormal_tag;
  using WorkbookRoot = strict::c_workbook;
  using WorksheetRoot = strict::c_worksheet;
  using SstRoot = strict::c_sst;
  using StyleSheetRoot = strict::c_styleSheet;
  using TableRoot = strict::c_table;
  using DrawingRoot = strictdrawing::c_wsDr;
};

}  // namespace rubrica
