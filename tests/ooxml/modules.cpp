#include "tests/ooxml/modules.h"

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

namespace rubrica::ooxml_tests {

const std::vector<module_entry>& modules() {
  static const std::vector<module_entry> entries = {
      {"workbook", workbook::classes(), workbook::roots()},
      {"sheet", sheet::classes(), sheet::roots()},
      {"styles", styles::classes(), styles::roots()},
      {"sharedStringTable", sharedStringTable::classes(), sharedStringTable::roots()},
      {"comments", comments::classes(), comments::roots()},
      {"table", table::classes(), table::roots()},
      {"contentypes", contentypes::classes(), contentypes::roots()},
      {"relationships", relationships::classes(), relationships::roots()},
      {"drawing", drawing::classes(), drawing::roots()},
      {"strict", strict::classes(), strict::roots()},
      {"strictdrawing", strictdrawing::classes(), strictdrawing::roots()},
  };
  return entries;
}

}  // namespace rubrica::ooxml_tests
