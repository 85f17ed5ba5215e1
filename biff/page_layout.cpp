#include "biff/page_layout.h"

#include <algorithm>

#include "biff/records/record_io.h"
#include "biff/records/word_records.h"

namespace rubrica {
namespace {

constexpr double kSideMargin = 0.75, kTopMargin = 1.0;  // inches, without a record

struct MarginRecord {
  std::uint16_t recordId;
  const char* name;
};
constexpr MarginRecord kMargins[] = {{id::kLeftMargin, "LeftMargin"},
                                     {id::kRightMargin, "RightMargin"},
                                     {id::kTopMargin, "TopMargin"},
                                     {id::kBottomMargin, "BottomMargin"}};

constexpr WordSlot<PageLayout> kWords[] = {{id::kHCenter, "HCenter", &PageLayout::hCenter},
                                           {id::kVCenter, "VCenter", &PageLayout::vCenter}};

void readText(XLUnicodeString& text, Xls& xls, std::uint16_t size, BookState& state) {
  text = {};
  if (size == 0) return;
  std::uint16_t remaining = size;
  text.byteLength = state.isBiff5();
  text.read(xls, state.pool, remaining, state.textForm());
  text.byteLength = false;
  xls.skip(remaining);
}

// Text too long for one record goes on in CONTINUE records.
void writeText(Xls& xls, std::uint16_t recordId, bool present, const XLUnicodeString& text) {
  if (!present) return;
  if (text.cch == 0) return xls.writeHeader(recordId, 0);
  if (text.size() <= kMaxRecordSize) {
    xls.writeHeader(recordId, static_cast<std::uint16_t>(text.size()));
    return text.write(xls);
  }
  constexpr std::size_t kHeadSize = sizeof(text.cch) + 1;
  std::uint16_t room = kMaxRecordSize - 1;  // whole characters in every part
  const std::size_t characters = text.cch * sizeof(char16_t);
  xls.writeHeader(recordId, room);
  xls.writeInt16(text.cch);
  xls.writeInt8(text_flags::kHighByte);
  room = static_cast<std::uint16_t>(room - kHeadSize);
  xls.writeWithContinueRecords(text.text, characters, room, characters);
}

// BIFF5 entries are the positions alone; they break the whole sheet.
void readBreaks(std::vector<PageBreak>& breaks, std::span<const std::byte> bytes, bool biff5, std::uint16_t last) {
  RecordBody body(bytes);
  std::uint16_t count = 0;
  body.take(count);
  breaks.clear();
  for (PageBreak entry{0, 0, last}; count > 0 && body.take(entry.position); --count) {
    if (!biff5 && (!body.take(entry.start) || !body.take(entry.end))) break;
    breaks.push_back(entry);
  }
}

void writeBreakRecord(Xls& xls, std::uint16_t recordId, const std::vector<PageBreak>& breaks) {
  if (breaks.empty()) return;
  xls.writeHeader(recordId, static_cast<std::uint16_t>(2 + 6 * breaks.size()));
  xls.writeInt16(static_cast<std::uint16_t>(breaks.size()));
  for (const PageBreak& entry : breaks) {
    xls.writeInt16(entry.position);
    xls.writeInt16(entry.start);
    xls.writeInt16(entry.end);
  }
}

}  // namespace

double PageLayout::margin(Margin side) const {
  const bool atSide = side == Margin::left || side == Margin::right;
  return margins[static_cast<std::size_t>(side)].value_or(atSide ? kSideMargin : kTopMargin);
}

bool PageLayout::read(Xls& xls, std::uint16_t recordId, std::uint16_t size, BookState& state) {
  switch (recordId) {
    case id::kHeader:
      hasHeader = true;
      readText(header, xls, size, state);
      return true;
    case id::kFooter:
      hasFooter = true;
      readText(footer, xls, size, state);
      return true;
    case id::kHorzPageBreaks:
      readBreaks(horzBreaks, xls.view(size), state.isBiff5(), 255);
      return true;
    case id::kVertPageBreaks:
      readBreaks(vertBreaks, xls.view(size), state.isBiff5(), 65535);
      return true;
    case id::kSetup: {
      const auto bytes = xls.view(size);
      if (bytes.size() != fixedSize(setup)) throw xlerror("error in PageSetup");
      readFixed(setup, bytes);
      return true;
    }
    case id::kHCenter:
    case id::kVCenter:
      return readWord(*this, kWords, recordId, xls.view(size));
    default:
      break;
  }
  for (std::size_t side = 0; side < margins.size(); ++side) {
    if (kMargins[side].recordId != recordId) continue;
    double inches = 0;
    const auto bytes = xls.view(size);
    if (bytes.size() != sizeof(inches)) throwSizeIsIncorrect(kMargins[side].name);
    RecordBody(bytes).take(inches);
    margins[side] = inches;
    return true;
  }
  return false;
}

void PageLayout::writeBreaks(Xls& xls) const {
  writeBreakRecord(xls, id::kHorzPageBreaks, horzBreaks);
  writeBreakRecord(xls, id::kVertPageBreaks, vertBreaks);
}

void PageLayout::moveBreaks(const LineMove& move) {
  const auto moveAll = [&](std::vector<PageBreak>& breaks, bool alongMove) {
    std::erase_if(breaks, [&](PageBreak& entry) {
      const int position = entry.position;
      const auto moved = alongMove ? (move.ofRows() ? move.mapRow(position) : move.mapCol(position)) : position;
      if (!moved) return true;
      entry.position = static_cast<std::uint16_t>(*moved);
      if (alongMove) return false;
      const auto extent = move.mapSpan(entry.start, entry.end);
      if (!extent) return true;
      entry.start = static_cast<std::uint16_t>(extent->first);
      entry.end = static_cast<std::uint16_t>(extent->last);
      return false;
    });
  };
  moveAll(horzBreaks, move.ofRows());
  moveAll(vertBreaks, !move.ofRows());
}

void PageLayout::write(Xls& xls) const {
  writeText(xls, id::kHeader, hasHeader, header);
  writeText(xls, id::kFooter, hasFooter, footer);
  writeWord(xls, id::kHCenter, hCenter);
  writeWord(xls, id::kVCenter, vCenter);
  for (std::size_t side = 0; side < margins.size(); ++side) {
    if (margins[side]) xls.writeRecord(kMargins[side].recordId, &*margins[side], sizeof(double));
  }
  writeFixed(xls, setup);
}

}  // namespace rubrica
