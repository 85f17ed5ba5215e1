// Dates as serial numbers: days since the epoch of a book's date system with the time as a fraction. Both file forms
// share these computations. Free functions without state.
#pragma once

#include "engine/export.h"

namespace rubrica {

// The serial number of a date and time. Year, month and day all below 1 stand for a time alone. Days of January and
// February 1900 are counted by the civil calendar, without the 29 February 1900 that the serial numbers have: they come
// out one higher than the number under which Excel and dateUnpack know them.
RUBRICA_API double datePack(bool date1904, int year, int month, int day, int hour, int min, int sec, int msec);

// The parts of a serial number. Every out argument may be null; a part not asked for leaves its share in the next
// smaller one that is. False, with nothing written, at or below -657435 and from 2958466 on.
RUBRICA_API bool dateUnpack(bool date1904, double value, int* year, int* month, int* day, int* hour, int* min, int* sec,
                            int* msec);

}  // namespace rubrica
