// BookImplT: an .xls workbook. It owns the sheets and the tables that they share (styles, shared strings, names, links)
// and writes everything back in the one order that readers expect; what it doesn't model is kept as raw records.
// Loading stands in book_load.cpp, saving in book_save.cpp, sheet operations in book_sheets.cpp, styles and values in
// book_values.cpp, pictures in book_pictures.cpp.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "biff/book_formula_access.h"
#include "biff/book_state.h"
#include "biff/link_table.h"
#include "biff/name_table.h"
#include "biff/shared_strings/sst.h"
#include "biff/shared_strings/str_map.h"
#include "biff/sheet_impl.h"
#include "biff/styles/style_tables.h"
#include "biff/workbook_globals.h"
#include "compound/xls.h"
#include "engine/book.h"
#include "formula/compile.h"
#include "officeart/drawing_group.h"
#include "platform/output_stream.h"
#include "platform/text_metrics.h"

namespace rubrica {

// 133. A sheet as the globals list it.
struct BoundSheet8 {
  std::uint32_t lbPlyPos = 0;
  std::uint8_t hsState = 0, dt = 0;
  ShortXLUnicodeString name;

  static constexpr std::uint8_t kChart = 2;
};

class BookImplT final : public IBookT<char16_t> {
 public:
  using Text = const char16_t*;

  BookImplT();
  ~BookImplT() override;

  // ---- IBookT
  bool load(Text filename, Text tempFile) override;
  bool loadSheet(Text filename, int sheetIndex, Text tempFile) override;
  bool loadPartially(Text filename, int sheetIndex, int firstRow, int lastRow, Text tempFile) override;
  bool loadWithoutEmptyCells(Text filename) override;
  bool loadInfo(Text filename) override;
  bool save(Text filename, bool useTempFile) override;
  bool loadRaw(const void* data, std::size_t size, int sheetIndex, int firstRow, int lastRow) override;
  bool saveRaw(const void** data, std::size_t* size) override;
  ISheetT<char16_t>* addSheet(Text name, ISheetT<char16_t>* initSheet) override;
  ISheetT<char16_t>* insertSheet(int index, Text name, ISheetT<char16_t>* initSheet) override;
  ISheetT<char16_t>* getSheet(int index) override;
  Text getSheetName(int index) override;
  SheetType sheetType(int index) override;
  bool moveSheet(int srcIndex, int dstIndex) override;
  bool delSheet(int index) override;
  int sheetCount() override;
  IFormatT<char16_t>* addFormat(IFormatT<char16_t>* initFormat) override;
  IFontT<char16_t>* addFont(IFontT<char16_t>* initFont) override;
  int addCustomNumFormat(Text customNumFormat) override;
  Text customNumFormat(int fmt) override;
  IFormatT<char16_t>* format(int index) override;
  int formatSize() override;
  IFontT<char16_t>* font(int index) override;
  int fontSize() override;
  double datePack(int year, int month, int day, int hour, int min, int sec, int msec) override;
  bool dateUnpack(double value, int* year, int* month, int* day, int* hour, int* min, int* sec, int* msec) override;
  Color colorPack(int red, int green, int blue) override;
  void colorUnpack(Color color, int* red, int* green, int* blue) override;
  int activeSheet() override;
  void setActiveSheet(int index) override;
  int pictureSize() override;
  PictureType getPicture(int index, const void** data, std::size_t* size) override;
  int addPicture(Text filename) override;
  int addPicture2(const void* data, std::size_t size) override;
  int addPictureAsLink(Text filename, bool insert) override;
  Text defaultFont(int* size) override;
  void setDefaultFont(Text name, int size) override;
  bool refR1C1() override;
  void setRefR1C1(bool refR1C1) override;
  bool rgbMode() override;
  void setRgbMode(bool rgbMode) override;
  unsigned version() override;
  int biffVersion() override;
  bool isDate1904() override;
  bool setDate1904(bool date1904) override;
  bool isTemplate() override;
  void setTemplate(bool tmpl) override;
  bool setLocale(const char* locale) override;
  const char* errorMessage() const override;
  void release() override;

  // ---- For the sheets
  BookState& state() { return _state; }
  StyleTables& styles() { return _styles; }
  StrMap& sst() { return _sst; }
  LinkTable& links() { return _links; }
  NameTable& names() { return _names; }
  // Takes a name out of the table; formulas that use it hold a reference error from then on.
  void removeName(std::size_t index);
  // Gives all formulas, those of names too, the new indexes of the names that they use.
  void renumberNames(const NameMapping& mapping);
  BookFormulaAccess& formulaAccess() { return _formulaAccess; }
  formula::Compiler& formulaCompiler() { return _formulaCompiler; }
  const officeart::DrawingGroup& drawings() const { return _drawings; }
  // The same for a change, with the ids of all sheets' shapes known to it.
  officeart::DrawingGroup& changeDrawings();
  // Adds a text for a new table row of a sheet, and gives its index.
  std::uint32_t addSharedString(std::u16string_view text);
  // Gives the table row that holds `isst` another text: in place when no other row of the book uses the entry,
  // otherwise through a new entry, whose index goes to `isst`.
  void replaceSharedString(std::uint32_t& isst, std::u16string_view text);
  // Counts the users of shared strings anew when they are asked for next.
  void forgetStringUse() { _stringUse.clear(); }
  // The metrics that columns are measured by, the platform's own unless others were given.
  platform::TextMetrics& textMetrics();
  void setTextMetrics(std::unique_ptr<platform::TextMetrics> metrics);
  // Pixels of the widest digit of the default font as it was after the last load or setDefaultFont.
  int digitWidth();
  // 0-based position of a sheet of this book, -1 for another.
  int positionOf(const SheetImplT& sheet) const;
  BoundSheet8* boundSheetOf(const SheetImplT& sheet);
  std::size_t boundSheetCount() const { return _boundSheets.size(); }
  // The present name of the sheet at a position, whether the sheet is loaded or not.
  std::u16string_view boundSheetName(int position) const;
  std::optional<int> findSheet(std::u16string_view name) const;
  // To be called when a sheet got another name or place.
  void forgetSheetNames() { _sheetsByName.clear(); }
  // The name as a sheet may bear it: cut to 31 characters, with a warning left for the end of the operation. Throws the
  // messages about names; `except` is the sheet that may have the name already.
  std::u16string usableSheetName(Text name, const SheetImplT* except);

 private:
  struct LoadOptions {
    int sheetIndex = -1;
    RowWindow window;
    bool skipBlanks = false;
    bool infoOnly = false;
  };

  // ---- Load (book_load.cpp)
  bool loadFile(Text filename, const LoadOptions& options);
  void loadBytes(std::span<const std::byte> bytes, const LoadOptions& options);
  void clearForLoad();
  void loadGlobals();
  void loadGlobalRecord(std::uint16_t recordId, std::uint16_t size);
  bool loadStyleRecord(std::uint16_t recordId, std::uint16_t size);
  void loadBoundSheet(std::uint16_t size);
  void loadTabIds(std::uint16_t size);
  void loadSheets(const LoadOptions& options);
  void convertNamesOfBiff5();

  // ---- Save (book_save.cpp)
  void saveTo(platform::OutputStream& output);
  void saveGlobals();
  std::vector<std::uint32_t> saveBoundSheets();

  // ---- Sheets (book_sheets.cpp)
  ISheetT<char16_t>* insertSheetAt(int index, Text name, ISheetT<char16_t>* initSheet);
  // Gives a sheet that was copied within the book its own copies of the source's names.
  void cloneNames(int fromSheet, int toSheet);
  void renumberSheets(const std::function<int(int)>& mapping);
  void activate(int index);
  // Takes the shapes of a sheet that goes off the counts.
  void forgetDrawing(const SheetImplT& sheet);
  void rebuildTabIds();
  void countStringUse();
  void rememberDefaultFont();

  BookState _state;
  Xls _xls;
  WorkbookGlobals _globals;
  StyleTables _styles;
  StrMap _sst;
  ExtSst _extSst;
  LinkTable _links;
  NameTable _names;
  BookFormulaAccess _formulaAccess;
  formula::Compiler _formulaCompiler;
  std::vector<std::uint16_t> _tabIds;
  std::vector<BoundSheet8> _boundSheets;
  mutable FoldedIndex _sheetsByName;
  std::vector<std::unique_ptr<SheetImplT>> _sheets;
  std::vector<RawRecord> _xfExts, _hfPictures;
  std::vector<RawRecord> _unknownRecords;  // in file order
  officeart::DrawingGroup _drawings;
  bool _shapesAreKnown = true;  // whether _drawings has the ids of all shapes that the last load brought
  bool _refR1C1 = false;
  // Table rows of all sheets that use each shared string; empty until a text is overwritten.
  std::vector<std::uint32_t> _stringUse;
  platform::MemoryOutput _raw;  // of the last saveRaw
  std::unique_ptr<platform::TextMetrics> _metrics;
  std::u16string _measuredFont;  // the default font whose digits columns are measured by
  int _measuredPoints = 0;
  int _digitWidth = 0;  // 0: not measured yet
};

}  // namespace rubrica
