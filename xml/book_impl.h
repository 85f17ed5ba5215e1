// XMLBookImplT: an OOXML workbook of one flavour. It is the bound tree of "workbook.xml" and owns, in its part map, all
// other parts of the package: sheets, styles, shared strings and what is only carried along. It belongs to one thread
// at a time. Loading stands in book_load.cpp, saving in book_save.cpp, sheets in book_sheets.cpp and
// book_sheet_copy.cpp, what the workbook says about them in book_names.cpp, styles and values in book_values.cpp,
// pictures in book_pictures.cpp.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

#include "engine/book.h"
#include "engine/last_message.h"
#include "engine/text_converter.h"
#include "platform/output_stream.h"
#include "platform/text_metrics.h"
#include "source/ooxml/strict.h"
#include "source/ooxml/workbook.h"
#include "xml/content_types.h"
#include "xml/flavour.h"
#include "xml/name_index.h"
#include "xml/part.h"
#include "xml/part_map.h"
#include "xml/relationships.h"

namespace rubrica {

template <class Tag>
class SharedStrings;
template <class Tag>
class Styles;
template <class Tag>
class XMLSheetImplT;
class ZipReader;
struct PartBytes;

// A picture of the book; a picture id is its position in the list.
struct BookPicture {
  const std::uint8_t* data = nullptr;  // of the BinaryFile in the part map; null for one that is only linked
  std::size_t size = 0;
  std::string partName;   // key of the part map; empty for one that is only linked
  std::string extension;  // "png", "jpg", "wmf", "emf", "gif", "bmp"; empty when the bytes are of no known kind
  int width = 0;          // pixels, as far as they have been found out
  int height = 0;
  std::string link;  // the external target, "file:///" and the path; empty for one that is not linked
};

template <class Tag>
class XMLBookImplT final : public XmlFile<typename Flavour<Tag>::WorkbookRoot>, public IBookT<char16_t> {
 public:
  using Text = const char16_t*;
  using Root = typename Flavour<Tag>::WorkbookRoot;
  using Sheet = XMLSheetImplT<Tag>;
  // The sheet's entry in workbook.xml, c_CT_Sheet of the flavour's module.
  using SheetEntry = std::remove_reference_t<decltype(std::declval<Root&>().get_sheets().get_sheet(0))>;

  XMLBookImplT();
  ~XMLBookImplT() override;
  XMLBookImplT(const XMLBookImplT&) = delete;
  XMLBookImplT& operator=(const XMLBookImplT&) = delete;

  // ---- IBookT; save of a part is XmlFile's
  using XmlFile<Root>::save;
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

  // ---- For the sheets and the other parts
  LastMessage& lastMessage() { return _last; }
  // Null while the book has no such part; need... makes it, with its content type and relationship.
  SharedStrings<Tag>* sharedStrings() { return _sharedStrings; }
  SharedStrings<Tag>& needSharedStrings();
  Styles<Tag>* styles() { return _styles; }
  Styles<Tag>& needStyles();

  // The character that separates list items in formulas as callers read them: ';' or ','.
  char16_t listSeparator() const { return static_cast<char16_t>(_text.listSeparator()); }
  TextConverter& text() { return _text; }

  PartMap& parts() { return _parts; }
  NameIndex& nameIndex() { return _nameIndex; }
  // "workbook content types are not found", "workbook relationships are not found" where there are none.
  ContentTypes& needContentTypes();
  Relationships& needWorkbookRelationships();
  const std::string& baseDirectory() const { return _baseDir; }
  // The relationships of a part by its name: null where it has none; the second makes the part on demand.
  Relationships* relationshipsOf(std::string_view partName);
  Relationships& needRelationshipsOf(std::string_view partName);
  // The key of the part map that a relationship of the workbook means.
  std::string resolve(std::string_view target) const { return resolveTarget(_baseDir, target); }

  // 0-based position of a sheet of this book, -1 for another; its entry in the workbook, its part name.
  int positionOf(const Sheet& sheet) const;
  SheetEntry* entryOf(const Sheet& sheet);
  std::string partNameOf(const Sheet& sheet) const;
  std::optional<int> findSheet(std::u16string_view name);
  // The name as a sheet may bear it: cut to 31 characters, with a warning left for the end of the operation. Throws the
  // messages about names; `except` is the sheet that may have the name already.
  std::u16string usableSheetName(Text name, const Sheet* except);

  std::vector<BookPicture>& pictures() { return _pictures; }
  // Lists a part as a picture of the book if its content type says that it is one.
  void notePicture(const XFile& part, const std::string& partName, std::string_view type);
  // The metrics that columns are measured by, the platform's own unless others were given.
  platform::TextMetrics& textMetrics();
  void setTextMetrics(std::unique_ptr<platform::TextMetrics> metrics);
  // Pixels of the widest digit of the default font as it was after the last load or setDefaultFont.
  int digitWidth();
  // Elements and attributes that markup compatibility took out of the parts at the last load.
  std::size_t droppedMarkupOfParts() const;

 private:
  // What a load takes of a package.
  struct LoadOptions {
    int sheetIndex = -1;
    int firstRow = -1;
    int lastRow = -1;
    bool infoOnly = false;
    std::string tempFile;  // UTF-8; empty: parts are read from memory
  };
  // ---- Load (book_load.cpp)
  bool loadFile(Text filename, Text tempFile, LoadOptions options);
  void loadArchive(std::span<const std::byte> archive, const LoadOptions& options);
  void clearForLoad();
  void loadPackage(ZipReader& package, const LoadOptions& options);
  void loadMainPart(const PartBytes& bytes, const std::string& name);
  void loadPart(PartBytes bytes, const std::string& name, std::string_view type, const LoadOptions& options);
  void forgetPicture(std::string_view partName);
  std::string keepWantedSheet(const LoadOptions& options);
  void dropUnwantedSheets(std::string_view wanted);
  void connectParts();
  void connectSheets();

  // ---- Save (book_save.cpp)
  bool prepareSave();
  void countStringCells();
  void setMainType(std::u16string_view filename);
  void writePackage(platform::OutputStream& output, std::string temporaryFile);

  // ---- Sheets (book_sheets.cpp, book_sheet_copy.cpp)
  ISheetT<char16_t>* insertSheetAt(int index, Text name, ISheetT<char16_t>* initSheet);
  void listSheet(int index, std::u16string_view name, const std::string& path);
  std::string makeSheetPath();
  std::uint32_t freeSheetId() const;
  void dropParts(const std::vector<std::string>& partNames);
  void copySheetParts(Sheet& source, const std::string& path);
  const SheetEntry& entryAt(int index) const;
  std::size_t entryCount() const;
  void activate(int index);

  // ---- What the workbook says by positions of sheets (book_names.cpp). A mapping answers the new position of an old
  // one, kGone for a sheet that is no more.
  using Mapping = std::function<int(int)>;
  static constexpr int kGone = -1;
  void renumberNames(const Mapping& mapping);
  void renumberViews(const Mapping& mapping);
  void setActiveTab(int index);

  int addPictureBytes(std::span<const std::byte> bytes);
  decltype(std::declval<Root&>().get_calcPr()) needCalcPr();
  void rememberDefaultFont();

  LastMessage _last;
  PartMap _parts;  // this book among them, under the main part's name
  std::string _baseDir;
  Relationships* _workbookRelationships = nullptr;
  ContentTypes* _contentTypes = nullptr;
  SharedStrings<Tag>* _sharedStrings = nullptr;
  Styles<Tag>* _styles = nullptr;
  std::vector<Sheet*> _sheets;  // by position; null where the part is no worksheet. Empty after loadInfo
  std::vector<BookPicture> _pictures;
  NameIndex _nameIndex;
  TextConverter _text;
  std::u16string _sheetName;    // of the last getSheetName
  platform::MemoryOutput _raw;  // of the last saveRaw
  std::unique_ptr<platform::TextMetrics> _metrics;
  std::u16string _measuredFont;  // the default font whose digits columns are measured by
  int _measuredPoints = 0;
  int _digitWidth = 0;  // 0: not measured yet
};

}  // namespace rubrica
