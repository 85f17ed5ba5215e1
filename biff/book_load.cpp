// Loading an .xls book: one pass over the records of the workbook stream.
#include "biff/biff5_load.h"
#include "biff/book_impl.h"
#include "platform/input_file.h"

namespace rubrica {
namespace {

constexpr std::size_t kSmallestBoundSheet = 8;

}  // namespace

bool BookImplT::load(Text filename, Text /*tempFile*/) {
  return loadFile(filename, {});
}

bool BookImplT::loadSheet(Text filename, int sheetIndex, Text /*tempFile*/) {
  return loadFile(filename, {sheetIndex, {}, false, false});
}

bool BookImplT::loadPartially(Text filename, int sheetIndex, int firstRow, int lastRow, Text /*tempFile*/) {
  const bool all = firstRow < 0 && lastRow < 0;
  const RowWindow window = all ? RowWindow{} : RowWindow{firstRow, lastRow < kBiffRows ? lastRow + 1 : kBiffRows};
  return loadFile(filename, {sheetIndex, window, false, false});
}

bool BookImplT::loadWithoutEmptyCells(Text filename) {
  return loadFile(filename, {-1, {}, true, false});
}

bool BookImplT::loadInfo(Text filename) {
  return loadFile(filename, {-1, {}, false, true});
}

// The window arguments are those of other file forms: a book in memory loads whole.
bool BookImplT::loadRaw(const void* data, std::size_t size, int /*sheetIndex*/, int /*firstRow*/, int /*lastRow*/) {
  return guarded(_state, false, [&] {
    loadBytes({static_cast<const std::byte*>(data), data == nullptr ? 0 : size}, {});
    return true;
  });
}

bool BookImplT::loadFile(Text filename, const LoadOptions& options) {
  return guarded(_state, false, [&] {
    if (filename == nullptr) throw xlerror("file name name can't be 0");
    const auto bytes = platform::readWholeFile(filename);
    if (!bytes) throw xlerror("can't open file for reading");
    loadBytes(*bytes, options);
    return true;
  });
}

void BookImplT::clearForLoad() {
  _sheets.clear();
  _boundSheets.clear();
  forgetSheetNames();
  _styles.clear();
  _sst.clear();
  _extSst = {};
  _links.clear();
  _names.clear();
  _globals = {};
  _tabIds.clear();
  _xfExts.clear();
  _hfPictures.clear();
  _drawings = {};
  _shapesAreKnown = false;
  _unknownRecords.clear();
  _state.pool.clear();
  _state.biffVersion = kBiff8Version;
  _state.codePage = _globals.codePage;
  forgetStringUse();
  _xls.reset(true);
}

void BookImplT::loadBytes(std::span<const std::byte> bytes, const LoadOptions& options) {
  clearForLoad();
  _xls.read(bytes);
  loadGlobals();
  const auto count = static_cast<int>(_boundSheets.size());
  if (options.sheetIndex != -1 && (options.sheetIndex < 0 || options.sheetIndex >= count)) {
    throw xlerror("sheetIndex is out of range");
  }
  if (!options.infoOnly) loadSheets(options);
  _xls.captureOtherStreams();
  rememberDefaultFont();
}

void BookImplT::loadGlobals() {
  while (!_xls.isEnd()) {
    std::uint16_t recordId = 0, size = 0;
    _xls.readInt16(recordId);
    if (recordId == 0) throw xlerror("read error: record id can't be 0");
    _xls.readInt16(size);
    if (recordId == id::kEof) {
      _xls.skip(size);
      break;
    }
    loadGlobalRecord(recordId, size);
  }
  if (_state.isBiff5()) convertNamesOfBiff5();
  _drawings.finishReading();
}

void BookImplT::loadGlobalRecord(std::uint16_t recordId, std::uint16_t size) {
  if (loadStyleRecord(recordId, size)) return;
  switch (recordId) {
    case id::kFilePass:
      throw xlerror("workbook is encrypted");
    case id::kBoundSheet:
      return loadBoundSheet(size);
    case id::kRrTabId:
      return loadTabIds(size);
    case id::kLbl:
      return _names.read(_xls, size, _state);
    case id::kSupBook:
      return _links.readSupBook(_xls, size);
    case id::kSst:
      return readSst(_xls, size, _sst);
    case id::kExtSst:
      return _extSst.read(_xls, size);
    case id::kXfExt:
      _xfExts.push_back(RawRecord::of(recordId, _xls.view(size)));
      return;
    case id::kHfPicture:
      _hfPictures.push_back(RawRecord::of(recordId, _xls.view(size)));
      return;
    case id::kMsoDrawingGroup:
      _drawings.append(recordId, _xls.view(size));
      for (std::uint16_t more = 0; _xls.goNextIfContinue(more); more = 0) {
        _drawings.append(id::kContinue, _xls.view(more));
      }
      return;
    case id::kExternSheet:
      if (!_state.isBiff5()) return _links.readExternSheet(_xls, size);
      break;
    default:
      break;
  }
  if (_globals.read(_xls, recordId, size)) {
    if (recordId == id::kBof) {
      if (_globals.bof.vers != kBiff5Version && _globals.bof.vers != kBiff8Version) {
        throw xlerror("This file format isn't supported");
      }
      _state.biffVersion = _globals.bof.vers;
    }
    if (recordId == id::kCodePage) _state.codePage = _globals.codePage;
    return;
  }
  const auto body = _xls.view(size);
  if (!_state.isBiff5() || !isBiff5Only(recordId)) _unknownRecords.push_back(RawRecord::of(recordId, body));
}

bool BookImplT::loadStyleRecord(std::uint16_t recordId, std::uint16_t size) {
  switch (recordId) {
    case id::kFont:
      _styles.readFont(_xls, size);
      return true;
    case id::kFormat:
      _styles.readFormat(_xls, size);
      return true;
    case id::kXf:
      _styles.readXf(_xls, size);
      return true;
    case id::kStyle:
      _styles.readStyle(_xls, size);
      return true;
    case id::kPalette:
      _styles.readPalette(_xls, size);
      return true;
    default:
      return false;
  }
}

void BookImplT::loadBoundSheet(std::uint16_t size) {
  if (size < kSmallestBoundSheet - (_state.isBiff5() ? 1 : 0)) throwSizeIsIncorrect("BoundSheet8");
  RecordBody body(_xls.view(size));
  BoundSheet8 sheet;
  body.take(sheet.lbPlyPos);
  body.take(sheet.hsState);
  body.take(sheet.dt);
  if (sheet.name.read(body.rest(), _state.pool, _state.textForm()) == 0) throwSizeIsIncorrect("BoundSheet8");
  _boundSheets.push_back(sheet);
}

void BookImplT::loadTabIds(std::uint16_t size) {
  if (size % 2 != 0) throwSizeIsIncorrect("RRTabId");
  RecordBody body(_xls.view(size));
  for (std::uint16_t tab = 0; body.take(tab);) _tabIds.push_back(tab);
}

// Substreams follow each other in the order of the bound sheets. With one sheet alone the others count as removed.
void BookImplT::loadSheets(const LoadOptions& options) {
  for (int i = 0; i < static_cast<int>(_boundSheets.size()); ++i) {
    const bool wanted = options.sheetIndex == -1 || options.sheetIndex == i;
    auto sheet = std::make_unique<SheetImplT>(*this, std::u16string(boundSheetName(i)));
    sheet->load(_xls, wanted ? options.window : RowWindow{0, 0}, options.skipBlanks);
    if (wanted) _sheets.push_back(std::move(sheet));
  }
  if (options.sheetIndex == -1) return;
  _boundSheets = {_boundSheets[static_cast<std::size_t>(options.sheetIndex)]};
  renumberSheets([&](int position) { return position == options.sheetIndex ? 0 : int{LinkTable::kDeletedSheet}; });
}

void BookImplT::convertNamesOfBiff5() {
  for (Lbl& name : _names.names()) name.formula = biff8Tokens(name.formula, _formulaAccess);
}

}  // namespace rubrica
