// IBookT: a workbook, and the two factories that make one. Everything that a book hands out (sheets, formats, fonts,
// texts) belongs to it: pointers stay valid until the book is released or loaded anew (sheets also until deleted),
// texts until the next call that gives out a text of that kind.
//
// Failures. No operation throws. One that fails answers false, null, 0 or 0.0 and leaves the reason in errorMessage();
// after success that is "ok", or a text that begins with "warning: ". A failed load leaves a partly filled book that
// can be loaded again or released.
//
// Threads. A book with all that it owns belongs to one thread at a time; two books on two threads are independent.
//
//   rubrica::Book* book = rubrica::createBiffBook();
//   rubrica::Sheet* sheet = book->addSheet(u"Prices");
//   sheet->writeStr(0, 0, u"Tea");
//   sheet->writeNum(0, 1, 2.5);
//   if (!book->save(u"prices.xls")) std::puts(book->errorMessage());
//   book->release();
#pragma once

#include <cstddef>

#include "engine/enums.h"
#include "engine/export.h"
#include "engine/font.h"
#include "engine/format.h"
#include "engine/sheet.h"

namespace rubrica {

template <class C>
class IBookT {
 public:
  // ---- Loading and saving. All indices and rows are 0-based.

  // Replaces the content of the book by a file. `tempFile`
  // names a scratch file for large packages; may be null.
  virtual bool load(const C* filename, const C* tempFile = nullptr) = 0;
  // As load, but keeps only the sheet at `sheetIndex`; "sheetIndex is out of range" where there is none.
  virtual bool loadSheet(const C* filename, int sheetIndex, const C* tempFile = nullptr) = 0;
  // As loadSheet, with the cells of rows firstRow to lastRow alone.
  virtual bool loadPartially(const C* filename, int sheetIndex, int firstRow, int lastRow,
                             const C* tempFile = nullptr) = 0;
  // As load, without blank cells and their formats. .xls only.
  virtual bool loadWithoutEmptyCells(const C* filename) = 0;
  // The book's globals alone: sheetCount is 0, getSheetName still answers, no sheet can be added.
  virtual bool loadInfo(const C* filename) = 0;
  // Writes the book to a file. What stood there before stays until the new file is complete.
  virtual bool save(const C* filename, bool useTempFile = false) = 0;
  // Loads from `size` bytes at `data`, which need not live longer than the call. The last three arguments are the
  // window of loadPartially for .xlsx books; .xls books load whole.
  virtual bool loadRaw(const void* data, std::size_t size, int sheetIndex = -1, int firstRow = -1,
                       int lastRow = -1) = 0;
  // Saves into memory that the book keeps until its next saveRaw.
  virtual bool saveRaw(const void** data, std::size_t* size) = 0;

  // ---- Sheets

  // A new last sheet, empty or a copy of `initSheet` (of this book or another of the same form). Names are 1 to 31
  // characters; a longer one is cut with "warning: sheet's name is cut to 31 characters". Null on failure: "book
  // already contains such sheet name", "sheet name has an invalid character" and the like.
  virtual ISheetT<C>* addSheet(const C* name, ISheetT<C>* initSheet = nullptr) = 0;
  virtual ISheetT<C>* insertSheet(int index, const C* name, ISheetT<C>* initSheet = nullptr) = 0;
  virtual ISheetT<C>* getSheet(int index) = 0;
  virtual const C* getSheetName(int index) = 0;
  virtual SheetType sheetType(int index) = 0;
  // Moves the sheet at srcIndex in front of the one at dstIndex; dstIndex may be the sheet count.
  virtual bool moveSheet(int srcIndex, int dstIndex) = 0;
  // Removes a sheet; a book keeps at least one.
  virtual bool delSheet(int index) = 0;
  virtual int sheetCount() = 0;

  // ---- Styles

  // A new entry of the format or font table, plain or a copy of one of this or another book, of either file form.
  virtual IFormatT<C>* addFormat(IFormatT<C>* initFormat = nullptr) = 0;
  virtual IFontT<C>* addFont(IFontT<C>* initFont = nullptr) = 0;
  // The id of a custom number format such as "0.00 [$EUR]"; the same text gives the same id. 0 with "maximum number of
  // custom formats is exceeded" when all 229 ids are taken.
  virtual int addCustomNumFormat(const C* customNumFormat) = 0;
  // The text of a custom number format; null with "custom number format not found".
  virtual const C* customNumFormat(int fmt) = 0;
  virtual IFormatT<C>* format(int index) = 0;
  virtual int formatSize() = 0;
  virtual IFontT<C>* font(int index) = 0;
  virtual int fontSize() = 0;

  // ---- Values

  // The serial number of a date and time under the book's date system. Year, month and day all below 1 give a time
  // alone, a fraction of a day.
  virtual double datePack(int year, int month, int day, int hour = 0, int min = 0, int sec = 0, int msec = 0) = 0;
  // The parts of a serial number; every out argument may be null. False below -657435 or from 2958466 on.
  virtual bool dateUnpack(double value, int* year, int* month, int* day, int* hour = nullptr, int* min = nullptr,
                          int* sec = nullptr, int* msec = nullptr) = 0;
  // The colour value of red, green and blue (0 to 255 each). In an .xls book a palette index: the first palette entry
  // not yet handed out takes a colour that the palette lacks; 0 when all 56 are taken.
  virtual Color colorPack(int red, int green, int blue) = 0;
  virtual void colorUnpack(Color color, int* red, int* green, int* blue) = 0;

  virtual int activeSheet() = 0;
  virtual void setActiveSheet(int index) = 0;

  // ---- Pictures
  virtual int pictureSize() = 0;
  // The bytes of a picture, owned by the book; PictureType::notFound on failure.
  virtual PictureType getPicture(int index, const void** data, std::size_t* size) = 0;
  // Adds a picture file to the book and gives its id for a sheet's setPicture; -1 on failure.
  virtual int addPicture(const C* filename) = 0;
  virtual int addPicture2(const void* data, std::size_t size) = 0;
  virtual int addPictureAsLink(const C* filename, bool insert = false) = 0;

  // ---- Settings

  // The font of the default format, by whose digits column widths are measured. `size` (points) may be null.
  virtual const C* defaultFont(int* size) = 0;
  virtual void setDefaultFont(const C* name, int size) = 0;
  virtual bool refR1C1() = 0;
  virtual void setRefR1C1(bool refR1C1 = true) = 0;
  virtual bool rgbMode() = 0;
  virtual void setRgbMode(bool rgbMode = true) = 0;
  // The engine's version: 0x03080500.
  virtual unsigned version() = 0;
  // The version word of the book's BOF record: 0x0600 for BIFF8, 0x0500 for a loaded BIFF5 book.
  virtual int biffVersion() = 0;
  virtual bool isDate1904() = 0;
  virtual bool setDate1904(bool date1904 = true) = 0;
  virtual bool isTemplate() = 0;
  virtual void setTemplate(bool tmpl = true) = 0;
  // Chooses the encoding of narrow text and the list separator: a C library locale name, or "UTF-8" and its forms
  // "UTF-8.comma" and "UTF-8.semicolon". Changes the process's LC_CTYPE locale for any other name.
  virtual bool setLocale(const char* locale) = 0;
  // The message of the last operation, narrow, never null; valid until the next operation.
  virtual const char* errorMessage() const = 0;
  // Destroys the book and all it owns.
  virtual void release() = 0;
  virtual ~IBookT() = default;
};

using Book = IBookT<char16_t>;

// A new BIFF8 (.xls) book and a new OOXML (.xlsx) book. Null when it can't be constructed.
RUBRICA_API Book* createBiffBook() noexcept;
RUBRICA_API Book* createXmlBook() noexcept;

}  // namespace rubrica
