// Saving a sheet: the records of its substream in the order that readers expect.
#include <algorithm>

#include "biff/book_impl.h"
#include "biff/records/word_records.h"
#include "biff/sheet_impl.h"

namespace rubrica {
namespace {

// Rows and columns as one-past-the-last ranges that start empty.
struct UsedRange {
  int first = 0, last = 0;
  void add(int from, int to) {
    const bool empty = first == last;
    first = empty ? from : std::min(first, from);
    last = empty ? to : std::max(last, to);
  }
};

template <std::size_t Size>
RecordBuffer<Size> cellHead(std::uint16_t row, std::uint16_t col, std::uint16_t xf) {
  RecordBuffer<Size> buffer;
  buffer.put(row);
  buffer.put(col);
  buffer.put(xf);
  return buffer;
}

// Text that goes on in CONTINUE records, each of which begins with a flag byte of its own.
void saveString(Xls& xls, std::u16string_view text) {
  constexpr std::size_t kFirstRoom = (kMaxRecordSize - 3) / 2, kNextRoom = (kMaxRecordSize - 1) / 2;  // characters
  auto part = text.substr(0, kFirstRoom);
  xls.writeHeader(id::kString, static_cast<std::uint16_t>(3 + 2 * part.size()));
  xls.writeInt16(static_cast<std::uint16_t>(text.size()));
  xls.writeInt8(text_flags::kHighByte);
  writeCharacters(xls, part, true);
  for (text.remove_prefix(part.size()); !text.empty(); text.remove_prefix(part.size())) {
    part = text.substr(0, kNextRoom);
    xls.writeHeader(id::kContinue, static_cast<std::uint16_t>(1 + 2 * part.size()));
    xls.writeInt8(text_flags::kHighByte);
    writeCharacters(xls, part, true);
  }
}

}  // namespace

void SheetImplT::save(Xls& xls) {
  if (_bof.dt == Bof::kWorksheet) return saveWorksheet(xls);
  saveAsRecords(xls);
}

// A substream is what stands from its BOF to the EOF that closes it. The records that a worksheet held before and
// behind its embedded chart would take the place of the sheets that follow.
void SheetImplT::saveAsRecords(Xls& xls) {
  int depth = 0;
  for (const RawRecord& record : _otherRecords) {
    if (record.recordId == id::kBof) ++depth;
    if (depth > 0) writeRaw(xls, record);
    if (record.recordId == id::kEof && depth > 0 && --depth == 0) return;
  }
}

void SheetImplT::saveRawMember(Xls& xls, std::uint16_t recordId) {
  bool within = false;  // CONTINUE records follow what they continue
  for (const RawRecord& record : _rawMembers) {
    within = record.recordId == recordId || (within && record.recordId == id::kContinue);
    if (within) writeRaw(xls, record);
  }
}

void SheetImplT::saveWorksheet(Xls& xls) {
  saveHead(xls);
  saveColumns(xls);
  for (const int recordId : {144, 2164, 157}) saveRawMember(xls, static_cast<std::uint16_t>(recordId));
  recomputeDimensions();
  writeFixed(xls, _dimensions);
  saveRows(xls);
  saveCells(xls);
  saveTail(xls);
}

void SheetImplT::saveHead(Xls& xls) {
  Bof bof = _bof;
  bof.vers = kBiff8Version;
  writeFixed(xls, bof);
  if (_hasUncalced) writeWord(xls, id::kUncalced, _words.uncalced);
  const std::size_t mostOffsets = (kMaxRecordSize - 16) / sizeof(std::uint32_t);
  const std::size_t offsets = std::min(_indexRecord.offsets.size(), mostOffsets);
  xls.writeHeader(id::kIndex, static_cast<std::uint16_t>(16 + sizeof(std::uint32_t) * offsets));
  for (const std::uint32_t field : {_indexRecord.reserved, _indexRecord.rwMic, _indexRecord.rwMac, _indexRecord.ibXF}) {
    xls.writeInt32(field);
  }
  xls.write(_indexRecord.offsets.data(), sizeof(std::uint32_t) * offsets);
  writeWord(xls, id::kCalcMode, _words.calcMode);
  writeWord(xls, id::kCalcCount, _words.calcCount);
  writeWord(xls, id::kCalcRefMode, _words.calcRefMode);
  writeWord(xls, id::kCalcIter, _words.calcIter);
  writeFixed(xls, _calcDelta);
  writeWord(xls, id::kCalcSaveRecalc, _words.calcSaveRecalc);
  writeWord(xls, id::kPrintRowCol, _words.printRowCol);
  writeWord(xls, id::kPrintGrid, _words.printGrid);
  writeWord(xls, id::kGridSet, _words.gridSet);
  writeFixed(xls, _guts);
  writeFixed(xls, _defaultRowHeight);
  writeWord(xls, id::kWsBool, _words.wsBool);
  _page.writeBreaks(xls);
  _page.write(xls);
  saveRawMember(xls, 2204);
  _protection.write(xls);
  writeWord(xls, id::kDefColWidth, _words.defColWidth);
}

void SheetImplT::saveColumns(Xls& xls) {
  _columns.refreshFormats();
  for (const ColInfo& info : _columns.infos()) writeFixed(xls, info);
}

void SheetImplT::recomputeDimensions() {
  UsedRange rows, cols;
  const SheetIndex& index = _cells.index();
  for (int row = index.nextRow(0); row < kBiffRows; row = index.nextRow(row + 1)) {
    const int end = index.lastInRow(row);
    if (end == 0) continue;
    rows.add(row, row + 1);
    cols.add(index.firstInRow(row), end);
  }
  for (const RowRecord& row : _rows.rows()) rows.add(row.rw, row.rw + 1);
  _merges.forEach([&](const MergedRange& range) {
    rows.add(range.rowFirst, range.rowLast + 1);
    cols.add(range.colFirst, range.colLast + 1);
  });
  _dimensions.rwMic = static_cast<std::uint32_t>(rows.first);
  _dimensions.rwMac = static_cast<std::uint32_t>(rows.last);
  _dimensions.colMic = static_cast<std::uint16_t>(cols.first);
  _dimensions.colMac = static_cast<std::uint16_t>(cols.last);
}

void SheetImplT::saveRows(Xls& xls) {
  const SheetIndex& index = _cells.index();
  for (int row = index.nextRow(0); row < kBiffRows; row = index.nextRow(row + 1)) _rows.at(row);
  for (RowRecord& row : _rows.rows()) {
    row.colMic = static_cast<std::uint16_t>(index.firstInRow(row.rw));
    row.colMac = static_cast<std::uint16_t>(index.lastInRow(row.rw));
    writeFixed(xls, row);
  }
}

void SheetImplT::saveCells(Xls& xls) {
  const auto definitions = _definitions.settle(_cells, state().pool);
  const SheetIndex& index = _cells.index();
  for (int row = index.nextRow(0); row < kBiffRows; row = index.nextRow(row + 1)) {
    index.forEachInRow(row, [&](int, std::uint32_t bits) { saveCell(xls, {bits}, definitions); });
  }
}

void SheetImplT::saveCell(Xls& xls, CellWord word, const FormulaDefinitions::Placement& definitions) {
  switch (word.kind()) {
    case CellKind::rk: {
      const RkCell& cell = _cells.rk(word);
      auto buffer = cellHead<10>(cell.row, cell.col, cell.xf);
      buffer.put(cell.rk);
      return xls.writeRecord(id::kRk, buffer.data(), buffer.size());
    }
    case CellKind::number: {
      const NumberCell& cell = _cells.number(word);
      auto buffer = cellHead<14>(cell.row, cell.col, cell.xf);
      buffer.put(cell.value);
      return xls.writeRecord(id::kNumber, buffer.data(), buffer.size());
    }
    case CellKind::labelSst: {
      const LabelSstCell& cell = _cells.labelSst(word);
      auto buffer = cellHead<10>(cell.row, cell.col, cell.xf);
      buffer.put(cell.isst);
      return xls.writeRecord(id::kLabelSst, buffer.data(), buffer.size());
    }
    case CellKind::blank: {
      const BlankCell& cell = _cells.blank(word);
      const auto buffer = cellHead<6>(cell.row, cell.col, cell.xf);
      return xls.writeRecord(id::kBlank, buffer.data(), buffer.size());
    }
    case CellKind::boolErr: {
      const BoolErrCell& cell = _cells.boolErr(word);
      auto buffer = cellHead<8>(cell.row, cell.col, cell.xf);
      buffer.put(cell.value);
      buffer.put(cell.fError);
      return xls.writeRecord(id::kBoolErr, buffer.data(), buffer.size());
    }
    case CellKind::formula: {
      const FormulaCell& cell = _cells.formula(word);
      return saveFormula(xls, cell, definitions.behind(cell));
    }
    case CellKind::label: {
      const LabelCell& cell = _cells.label(word);
      const auto buffer = cellHead<6>(cell.row, cell.col, cell.xf);
      xls.writeHeader(id::kLabel, static_cast<std::uint16_t>(buffer.size() + cell.text.size()));
      xls.write(buffer.data(), buffer.size());
      return cell.text.write(xls);
    }
    case CellKind::none:
      return;
  }
}

void SheetImplT::saveFormula(Xls& xls, const FormulaCell& cell, const FormulaDefinition* definition) {
  auto buffer = cellHead<22>(cell.row, cell.col, cell.xf);
  buffer.put(cell.value.bytes);
  buffer.put(cell.grbit);
  buffer.put(cell.chn);
  buffer.put(cell.tokenSize);
  xls.writeHeader(id::kFormula, static_cast<std::uint16_t>(buffer.size() + cell.expression.size()));
  xls.write(buffer.data(), buffer.size());
  xls.write(cell.expression.data(), cell.expression.size());
  if (definition != nullptr) {
    xls.writeRecord(definition->recordId, definition->bytes.data(),
                    static_cast<std::uint16_t>(definition->bytes.size()));
  }
  if (cell.value.kind() == FormulaValue::Kind::string) saveString(xls, cell.cachedText());
}

void SheetImplT::saveTail(Xls& xls) {
  const auto writeAll = [&](const std::vector<RawRecord>& records) {
    for (const RawRecord& record : records) writeRaw(xls, record);
  };
  saveRawMember(xls, 450);
  _drawing.write(xls);
  _notes.write(xls);
  saveRawMember(xls, 80);
  _view.writeWindow(xls);
  saveRawMember(xls, 2187);
  _view.writeZoomAndPanes(xls);
  if (_words.standardWidth != 0xFFFF) writeWord(xls, id::kStandardWidth, _words.standardWidth);
  _merges.write(xls);
  writeAll(_phonetic);
  for (const HLink& link : _hyperlinks) link.write(xls);
  saveRawMember(xls, 442);
  saveRawMember(xls, id::kSheetExt);
  for (const RawRecord& record : _otherRecords) {
    if (record.recordId != id::kPrinterSettings) writeRaw(xls, record);
  }
  _features.write(xls);
  xls.writeHeader(id::kEof, 0);
}

}  // namespace rubrica
