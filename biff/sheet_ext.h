// SheetExt (2146): the colour of a sheet's tab. The record is carried as it came; only the colour fields are written.
#pragma once

#include <cstdint>

#include "biff/records/record_io.h"

namespace rubrica {

// A new record, without a colour.
RawRecord makeSheetExt();
// A colour of the palette.
void setTabColorIndex(RawRecord& sheetExt, int index);
// An RGB colour, with the palette's nearest for readers that know no other.
void setTabColorRgb(RawRecord& sheetExt, int red, int green, int blue, int nearestIndex);

}  // namespace rubrica
