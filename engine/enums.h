// The enumerations of the interfaces, with the numbers that BIFF and the engine use. Every one has a fixed underlying
// type, so that any int read from a file can be held and handed back.
#pragma once

namespace rubrica {

enum class CellType : int { empty = 0, number = 1, string = 2, boolean = 3, blank = 4, error = 5 };

// The BIFF error codes; noError means that a cell holds no error.
enum class ErrorType : int {
  null = 0,
  divByZero = 7,
  value = 15,
  ref = 23,
  name = 29,
  num = 36,
  notAvailable = 42,
  noError = 255
};

enum class SheetType : int { sheet = 0, chart = 1, unknown = 2 };
enum class SheetState : int { visible = 0, hidden = 1, veryHidden = 2 };

enum class AlignH : int { general, left, center, right, fill, justify, merge, distributed };
enum class AlignV : int { top, center, bottom, justify, distributed };

enum class BorderStyle : int {
  none,
  thin,
  medium,
  dashed,
  dotted,
  thick,
  doubleLine,
  hair,
  mediumDashed,
  dashDot,
  mediumDashDot,
  dashDotDot,
  mediumDashDotDot,
  slantDashDot
};

enum class BorderDiagonal : int { none, down, up, both };

enum class FillPattern : int {
  none,
  solid,
  gray50,
  gray75,
  gray25,
  horStripe,
  verStripe,
  revDiagStripe,
  diagStripe,
  diagCrosshatch,
  thickDiagCrosshatch,
  thinHorStripe,
  thinVerStripe,
  thinRevDiagStripe,
  thinDiagStripe,
  thinHorCrosshatch,
  thinDiagCrosshatch,
  gray12p5,
  gray6p25
};

enum class Script : int { normal, superscript, subscript };
enum class Underline : int { none = 0, single = 1, doubleLine = 2, singleAccounting = 33, doubleAccounting = 34 };

// What a book's getPicture answers. notFound is its failure value.
enum class PictureType : int {
  png = 0,
  jpeg = 1,
  gif = 2,
  wmf = 3,
  dib = 4,
  emf = 5,
  pict = 6,
  tiff = 7,
  notFound = 255
};

// How a picture follows its cells.
enum class PicturePosition : int { moveAndSize = 0, onlyMove = 1, absolute = 2 };

enum class FilterType : int { values, top10, custom, dynamic, color, icon, extension, notSet };
// In the order of ST_FilterOperator, whose names these are.
enum class FilterOperator : int { equal, lessThan, lessThanOrEqual, notEqual, greaterThanOrEqual, greaterThan };

enum class ValidationType : int { none, whole, decimal, list, date, time, textLength, custom };
enum class ValidationOperator : int {
  between,
  notBetween,
  equal,
  notEqual,
  lessThan,
  lessThanOrEqual,
  greaterThan,
  greaterThanOrEqual
};
enum class ValidationErrorStyle : int { stop, warning, information };

// A colour value: a palette index 8 to 63, one of the system colours below, or, in a book under rgbMode, a packed RGB
// value made by the book's colorPack.
using Color = int;
namespace color {
inline constexpr Color black = 8, white = 9, red = 10, brightGreen = 11, blue = 12, yellow = 13, pink = 14,
                       turquoise = 15, darkRed = 16, green = 17, darkBlue = 18, darkYellow = 19, violet = 20, teal = 21,
                       gray25 = 22, gray50 = 23;
inline constexpr Color defaultForeground = 64, defaultBackground = 65, tooltip = 81, automatic = 32767;
inline constexpr Color notSet = -1;  // answered where a format leaves a colour open
}  // namespace color

// Number format ids. 0 to 49 are built in; ids of custom formats start at kFirstCustomNumFormat.
namespace numformat {
inline constexpr int general = 0, number = 1, numberD2 = 2, numberSep = 3, numberSepD2 = 4, percent = 9, percentD2 = 10,
                     scientificD2 = 11, date = 14, timeHmm = 20, timeHmmss = 21, dateTime = 22, text = 49;
inline constexpr int firstCustom = 164, lastCustom = 392;
}  // namespace numformat

// Paper codes follow the BIFF Setup record: 0 default, 1 letter, 9 A4, up to 41.
inline constexpr int kPaperDefault = 0, kPaperLetter = 1, kPaperA4 = 9;

}  // namespace rubrica
