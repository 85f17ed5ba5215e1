// Loading a sheet: one pass over the records of its substream.
#include <algorithm>

#include "biff/biff5_load.h"
#include "biff/book_impl.h"
#include "biff/records/word_records.h"
#include "biff/sheet_impl.h"

namespace rubrica {
namespace {

constexpr WordSlot<SheetWords> kWords[] = {{id::kCalcMode, "CalcMode", &SheetWords::calcMode},
                                           {id::kCalcCount, "CalcCount", &SheetWords::calcCount},
                                           {id::kCalcRefMode, "CalcRefMode", &SheetWords::calcRefMode},
                                           {id::kCalcIter, "CalcIter", &SheetWords::calcIter},
                                           {id::kCalcSaveRecalc, "CalcSaveRecalc", &SheetWords::calcSaveRecalc},
                                           {id::kPrintRowCol, "PrintRowCol", &SheetWords::printRowCol},
                                           {id::kPrintGrid, "PrintGrid", &SheetWords::printGrid},
                                           {id::kGridSet, "GridSet", &SheetWords::gridSet},
                                           {id::kWsBool, "WsBool", &SheetWords::wsBool},
                                           {id::kDefColWidth, "DefColWidth", &SheetWords::defColWidth},
                                           {id::kStandardWidth, "StandardWidth", &SheetWords::standardWidth},
                                           {id::kUncalced, "Uncalced", &SheetWords::uncalced}};

constexpr std::uint16_t kRString = 214;  // text with formatting runs within the cell record, BIFF5

// Ids of records that have a place of their own in a saved sheet and are carried.
constexpr std::uint16_t kRawMemberIds[] = {80, 144, 157, 442, 450, 2164, 2187, 2204};

template <class Cell>
void takeCellHead(Cell& cell, RecordBody& body) {
  body.take(cell.row);
  body.take(cell.col);
  body.take(cell.xf);
}

struct CellHead {
  std::uint16_t row = 0, col = 0, xf = 0;
};

constexpr std::uint16_t kNumberSize = 14, kFormulaSize = 22, kSmallestMul = 6;

// Reads a cell record of just these fields behind its place and format.
template <class... Fields>
CellHead readCell(Xls& xls, std::uint16_t size, const char* name, Fields&... fields) {
  CellHead head;
  RecordBody body(xls.view(size));
  if (size != (sizeof(head) + ... + sizeof(fields)) || body.left() != size) throwSizeIsIncorrect(name);
  takeCellHead(head, body);
  (body.take(fields), ...);
  return head;
}

// Files hold column records of 10, 11 and 12 bytes; the reserved word at the end counts only when it is whole.
ColInfo readColInfo(std::span<const std::byte> bytes) {
  constexpr std::size_t kWithoutReserved = 10;
  if (bytes.size() < kWithoutReserved) throwSizeIsIncorrect(ColInfo::kName);
  ColInfo info;
  readPrefix(info, bytes.first(bytes.size() < fixedSize(info) ? kWithoutReserved : fixedSize(info)));
  return info;
}

// Reads "first column, entries of EntrySize bytes, last column" behind the row of a MulRk or MulBlank record.
template <class Take>
void forEachMulEntry(std::span<const std::byte> bytes, std::size_t entrySize, Take&& take) {
  RecordBody body(bytes);
  std::uint16_t row = 0, col = 0;
  body.take(row);
  body.take(col);
  for (; body.left() >= entrySize + sizeof(col); ++col) take(row, col, body);
}

}  // namespace

struct SheetImplT::LoadState {
  RowWindow window;
  bool skipBlanks = false;
  int depth = 0;  // of nested substreams
};

void SheetImplT::resetForLoad() {
  _cells.clear();
  _definitions.clear();
  _rows.clear();
  _columns.clear();
  _merges.clear();
  _hyperlinks.clear();
  _features.clear();
  _dimensions = {};
}

void SheetImplT::load(Xls& xls, const RowWindow& window, bool skipBlanks) {
  resetForLoad();
  LoadState load{window, skipBlanks};
  while (!xls.isEnd()) {
    std::uint16_t recordId = 0, size = 0;
    xls.readInt16(recordId);
    if (recordId == 0) throw xlerror("read error: record id can't be 0");
    xls.readInt16(size);
    if (_bof.dt == Bof::kWorksheet && loadCell(xls, load, recordId, size)) continue;
    if (recordId == id::kEof && --load.depth <= 0) {
      xls.skip(size);
      break;
    }
    if (recordId == id::kBof) {
      ++load.depth;
      const auto body = xls.view(size);
      if (body.size() < 4) throwSizeIsIncorrect(Bof::kName);
      readPrefix(_bof, body);
      if (_bof.dt != Bof::kWorksheet) _otherRecords.push_back(RawRecord::of(recordId, body));
      continue;
    }
    // Charts, macro sheets, and a worksheet from an embedded chart on: nothing but a list of records.
    if (_bof.dt != Bof::kWorksheet) {
      _otherRecords.push_back(RawRecord::of(recordId, xls.view(size)));
      continue;
    }
    if (recordId == id::kEof) {
      if (size != 0) throwSizeIsIncorrect("EOF");
      _drawing.finishLoading();
      return;
    }
    loadRecord(xls, load, recordId, size);
  }
  if (_bof.dt == Bof::kWorksheet) {
    _drawing.finishLoading();
  } else {
    _otherRecords.push_back(RawRecord::of(id::kEof, {}));
  }
  widenByCells();
}

void SheetImplT::loadRecord(Xls& xls, LoadState& load, std::uint16_t recordId, std::uint16_t size) {
  switch (recordId) {
    case id::kRow: {
      RowRecord row;
      readFixed(row, xls.view(size));
      if (load.window.holds(row.rw)) _rows.append(row);
      return;
    }
    case id::kColInfo:
      return _columns.append(readColInfo(xls.view(size)));
    case id::kCalcDelta:
      return readFixed(_calcDelta, xls.view(size));
    case id::kGuts:
      return readFixed(_guts, xls.view(size));
    case id::kDefaultRowHeight:
      return readFixed(_defaultRowHeight, xls.view(size));
    case id::kDimensions:
      return loadDimensions(xls.view(size));
    case id::kIndex:
      return loadIndex(xls.view(size));
    case id::kMergeCells:
      return _merges.read(xls.view(size));
    case id::kHLink:
      _hyperlinks.push_back(HLink::read(xls, size));
      return;
    case id::kDbCell: {
      // Stream offsets of a block of rows: of no use once cells move, so checked and dropped.
      if (size < 4 || size % 2 != 0) throwSizeIsIncorrect("DBCell");
      xls.skip(size);
      return;
    }
    default:
      break;
  }
  if (_page.read(xls, recordId, size, state()) || _view.read(xls, recordId, size) ||
      _protection.read(xls, recordId, size) || _features.read(xls, recordId, size))
    return;
  const bool isWord =
      std::any_of(std::begin(kWords), std::end(kWords), [&](const auto& slot) { return slot.recordId == recordId; });
  if (isWord) {
    readWord(_words, kWords, recordId, xls.view(size));
    _hasUncalced = _hasUncalced || recordId == id::kUncalced;
    return;
  }
  if (loadCarried(xls, recordId, size)) return;
  const auto body = xls.view(size);
  if (!state().isBiff5() || !isBiff5Only(recordId)) _otherRecords.push_back(RawRecord::of(recordId, body));
}

bool SheetImplT::loadCarried(Xls& xls, std::uint16_t recordId, std::uint16_t size) {
  std::vector<RawRecord>* list = nullptr;
  switch (recordId) {
    case id::kMsoDrawing:
    case id::kObj:
    case id::kTextObject:
      list = state().isBiff5() ? nullptr : &_drawing.records();
      break;
    case id::kNote:
      loadNote(xls, size);
      return true;
    case id::kPhoneticInfo:
      list = &_phonetic;
      break;
    default:
      if (recordId == id::kSheetExt ||
          std::find(std::begin(kRawMemberIds), std::end(kRawMemberIds), recordId) != std::end(kRawMemberIds)) {
        list = &_rawMembers;
      }
  }
  if (list == nullptr) return false;
  list->push_back(RawRecord::of(recordId, xls.view(size)));
  takeContinues(xls, *list);
  return true;
}

void SheetImplT::loadNote(Xls& xls, std::uint16_t size) {
  RawRecord record = RawRecord::of(id::kNote, xls.view(size));
  if (state().isBiff5()) return _notes.readBiff5(record.bytes, state().codePage);
  for (std::uint16_t more = 0; xls.goNextIfContinue(more); more = 0) appendBytes(record.bytes, xls.view(more));
  _notes.read(record.bytes);
}

bool SheetImplT::loadCell(Xls& xls, const LoadState& load, std::uint16_t recordId, std::uint16_t size) {
  switch (recordId) {
    case id::kNumber: {
      // Some writers put one or two further words behind the value.
      double value = 0;
      const std::uint16_t extra = size == kNumberSize + 2 || size == kNumberSize + 4 ? size - kNumberSize : 0;
      const CellHead head = readCell(xls, static_cast<std::uint16_t>(size - extra), "Number", value);
      xls.skip(extra);
      if (load.window.holds(head.row)) _cells.addNumber(head.row, head.col, head.xf, value);
      return true;
    }
    case id::kRk: {
      std::uint32_t rk = 0;
      const CellHead head = readCell(xls, size, "RK", rk);
      if (load.window.holds(head.row)) _cells.addRk(head.row, head.col, head.xf, rk);
      return true;
    }
    case id::kLabelSst: {
      std::uint32_t isst = 0;
      const CellHead head = readCell(xls, size, "LabelSst", isst);
      if (load.window.holds(head.row)) _cells.addLabelSst(head.row, head.col, head.xf, isst);
      return true;
    }
    case id::kBlank: {
      const CellHead head = readCell(xls, size, "Blank");
      if (!load.skipBlanks && load.window.holds(head.row)) _cells.addBlank(head.row, head.col, head.xf);
      return true;
    }
    case id::kBoolErr: {
      std::uint8_t value = 0, isError = 0;
      const CellHead head = readCell(xls, size, "BoolErr", value, isError);
      if (load.window.holds(head.row)) _cells.addBoolErr(head.row, head.col, head.xf, value, isError != 0);
      return true;
    }
    case id::kMulRk:
      if (size < kSmallestMul) throwSizeIsIncorrect("MulRk");
      forEachMulEntry(xls.view(size), 6, [&](std::uint16_t row, std::uint16_t col, RecordBody& body) {
        std::uint16_t xf = 0;
        std::uint32_t rk = 0;
        body.take(xf);
        body.take(rk);
        if (load.window.holds(row)) _cells.addRk(row, col, xf, rk);
      });
      return true;
    case id::kMulBlank:
      if (size < kSmallestMul) throwSizeIsIncorrect("MulBlank");
      forEachMulEntry(xls.view(size), 2, [&](std::uint16_t row, std::uint16_t col, RecordBody& body) {
        std::uint16_t xf = 0;
        body.take(xf);
        if (!load.skipBlanks && load.window.holds(row)) _cells.addBlank(row, col, xf);
      });
      return true;
    case id::kFormula:
      loadFormula(xls, load, size);
      return true;
    case kRString:
      if (!state().isBiff5()) return false;
      [[fallthrough]];
    case id::kLabel: {
      std::uint16_t remaining = size;
      LabelCell cell{};
      xls.readInt16(cell.row, remaining);
      xls.readInt16(cell.col, remaining);
      xls.readInt16(cell.xf, remaining);
      cell.text.read(xls, state().pool, remaining, state().textForm());
      xls.skip(remaining);
      if (load.window.holds(cell.row)) _cells.addLabel(cell);
      return true;
    }
    default:
      return false;
  }
}

void SheetImplT::loadFormula(Xls& xls, const LoadState& load, std::uint16_t size) {
  RecordBody body(xls.view(size));
  if (size < kFormulaSize || body.left() < size) throwSizeIsIncorrect("Formula");
  FormulaCell cell;
  std::uint16_t tokenSize = 0;
  takeCellHead(cell, body);
  body.take(cell.value.bytes);
  body.take(cell.grbit);
  body.take(cell.chn);
  body.take(tokenSize);
  const auto expression = body.rest();
  cell.tokenSize = static_cast<std::uint16_t>(std::min<std::size_t>(tokenSize, expression.size()));
  if (state().isBiff5()) {
    const auto tokens = biff8Tokens(octets(expression.first(cell.tokenSize)), _book->formulaAccess());
    cell.tokenSize = static_cast<std::uint16_t>(tokens.size());
    cell.expression = state().pool.copyBytes(rawBytes(tokens));
  } else {
    cell.expression = state().pool.copyBytes(expression);
  }
  loadFormulaFollowers(xls, cell);
  if (load.window.holds(cell.row)) _cells.addFormula(cell);
}

// The String of a cached text, and the definition of a shared or array formula or a data table.
void SheetImplT::loadFormulaFollowers(Xls& xls, FormulaCell& cell) {
  for (;;) {
    const std::uint16_t next = xls.peekRecordId();
    if (next != id::kString && next != id::kShrFmla && next != id::kArray && next != id::kTable) return;
    std::uint16_t remaining = 0, ignored = 0;
    xls.readInt16(ignored);
    xls.readInt16(remaining);
    if (next != id::kString) {
      loadDefinition(cell, next, xls.view(remaining));
      continue;
    }
    std::uint16_t length = 0;
    XLUnicodeStringNoCch text;
    xls.readInt16(length, remaining);
    if (length > 0) text.read(xls, state().pool, length, remaining, state().textForm());
    xls.skip(remaining);
    cell.text = text.text == nullptr ? u"" : text.text;
    cell.textLength = text.cch;
  }
}

void SheetImplT::loadDefinition(const FormulaCell& holder, std::uint16_t recordId, std::span<const std::byte> bytes) {
  FormulaDefinition definition{recordId, bytes};
  if (!definitionRange(definition)) return;
  const auto tokens = definitionTokens(definition);
  if (state().isBiff5() && tokens) {
    const auto converted = biff8Tokens(tokens->tokens, _book->formulaAccess());
    const auto head = static_cast<std::size_t>(tokens->tokens.data() - octets(bytes).data());
    std::vector<std::byte> body(bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(head));
    const auto converted16 = static_cast<std::uint16_t>(converted.size());
    std::memcpy(body.data() + head - sizeof(converted16), &converted16, sizeof(converted16));
    const auto raw = rawBytes(converted);
    body.insert(body.end(), raw.begin(), raw.end());
    definition.bytes = state().pool.copyBytes(body);
  } else {
    definition.bytes = state().pool.copyBytes(bytes);
  }
  _definitions.add(holder, definition);
}

void SheetImplT::loadDimensions(std::span<const std::byte> bytes) {
  if (!state().isBiff5()) return readFixed(_dimensions, bytes);
  Dimensions5 narrow;
  readFixed(narrow, bytes);
  _dimensions = {narrow.rwMic, narrow.rwMac, narrow.colMic, narrow.colMac, narrow.reserved};
}

void SheetImplT::loadIndex(std::span<const std::byte> bytes) {
  RecordBody body(bytes);
  SheetIndexRecord record;
  body.take(record.reserved);
  if (state().isBiff5()) {
    std::uint16_t first = 0, last = 0;
    body.take(first);
    body.take(last);
    record.rwMic = first;
    record.rwMac = last;
  } else {
    body.take(record.rwMic);
    body.take(record.rwMac);
  }
  body.take(record.ibXF);
  for (std::uint32_t offset = 0; body.take(offset);) record.offsets.push_back(offset);
  _indexRecord = std::move(record);
}

// Some writers leave the Dimensions record out or wrong; the used range never hides a cell that is there.
void SheetImplT::widenByCells() {
  for (int row = _cells.index().nextRow(0); row < kBiffRows; row = _cells.index().nextRow(row + 1)) {
    const int end = _cells.index().lastInRow(row);
    if (end == 0) continue;
    widenDimensions(row, _cells.index().firstInRow(row));
    widenDimensions(row, end - 1);
  }
}

}  // namespace rubrica
