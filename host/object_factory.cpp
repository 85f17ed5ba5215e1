#include "host/object_factory.h"

#include <boost/smart_ptr/make_shared.hpp>

#include "host/nv_obj_cell.h"
#include "host/nv_obj_font.h"
#include "host/nv_obj_format.h"
#include "host/nv_obj_workbook.h"
#include "host/nv_obj_worksheet.h"

namespace rubrica::host {

boost::shared_ptr<NVObjCopyable> makeObject(std::uint32_t classId, ObjectHandle self) {
  switch (classId) {
    case classid::workbook:
      return boost::make_shared<NVObjWorkbook>(self);
    case classid::worksheet:
      return boost::make_shared<NVObjWorksheet>(self);
    case classid::cell:
      return boost::make_shared<NVObjCell>(self);
    case classid::font:
      return boost::make_shared<NVObjFont>(self);
    case classid::format:
      return boost::make_shared<NVObjFormat>(self);
    default:
      return {};
  }
}

}  // namespace rubrica::host
