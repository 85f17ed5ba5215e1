// The two methods of a Workbook that move a whole host list into the first sheet and back.
#pragma once

#include "host/nv_obj_workbook.h"

namespace rubrica::host {

// $populateWithList(readFromList, headerStyle, headerRow, formatRow)
int populateWithList(NVObjWorkbook& self, MethodCall& call, int parameterCount);
// $extractList(readHeader, outDefinition)
int extractList(NVObjWorkbook& self, MethodCall& call, int parameterCount);

}  // namespace rubrica::host
