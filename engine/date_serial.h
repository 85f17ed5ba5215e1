// Dates as serial numbers: days since the epoch of a book's date system with the time as a fraction. Both file forms
// share these computations. Free functions without state.
#pragma once

namespace rubrica {

// The serial number of a date and time. Year, month and day all below 1 stand for a time alone. Dates before March 1900
// come out one lower than in Excel, which counts a 29 February 1900; dateUnpack undoes that.
double datePack(bool date1904, int year, int month, int day, int hour, int min, int sec, int msec);

// The parts of a serial number. Every out argument may be null; a part not asked for leaves its share in the next
// smaller one that is. False, with nothing written, at or below -657435 and from 2958466 on.
bool dateUnpack(bool date1904, double value, int* year, int* month, int* day, int* hour, int* min, int* sec, int* msec);

}  // namespace rubrica
