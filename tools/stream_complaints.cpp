#include "tools/stream_complaints.h"

#include <algorithm>
#include <map>
#include <set>
#include <span>

#include "biff/records/record_ids.h"
#include "tools/cell_value.h"
#include "tools/record_names.h"

namespace rubrica::tools {
namespace {

// Records that readers go by, in the order in which they have to come.
constexpr std::uint16_t kGlobalsOrder[] = {id::kBof,   id::kWindow1, id::kFont,       id::kFormat,      id::kXf,
                                           id::kStyle, id::kPalette, id::kBoundSheet, id::kExternSheet, id::kLbl,
                                           id::kSst,   id::kExtSst,  id::kEof};
constexpr std::uint16_t kSheetOrder[] = {id::kBof,     id::kIndex,      id::kGuts,       id::kWsBool,  id::kSetup,
                                         id::kColInfo, id::kDimensions, id::kRow,        id::kWindow2, id::kScl,
                                         id::kPane,    id::kSelection,  id::kMergeCells, id::kHLink,   id::kEof};
constexpr std::uint16_t kWorksheet = 0x10;
constexpr std::uint16_t kFirstCustomFormat = 164, kFontHole = 4, kSmallestXfCount = 16, kSmallestFontCount = 4;

std::string at(const RawStreamRecord& record) {
  return recordName(record.recordId) + " at offset " + std::to_string(record.offset);
}

struct Tables {
  std::size_t fonts = 0, xfs = 0, strings = 0, boundSheets = 0;
  std::set<std::uint16_t> formats;
};

class Check {
 public:
  explicit Check(const RecordStream& stream) : _stream(stream) {}

  std::vector<std::string> run() {
    collect();
    checkTables();
    for (const RawStreamRecord& record : _stream.records) {
      if (record.statedSize > kMaxRecordSize) tell(at(record) + " has more than 8224 bytes");
      if (record.recordId == id::kXf) checkXf(record);
      if (record.recordId == id::kBoundSheet) checkSheetPlace(record);
      if (_worksheets.contains(record.substream) && record.depth == 1) checkCellRecord(record);
    }
    for (const auto& [substream, start] : _starts) checkOrder(substream);
    checkDimensions();
    for (const auto& [kind, place] : _first) {
      const long more = _counts[kind] - 1;
      _complaints.push_back(place + (more > 0 ? " and " + std::to_string(more) + " more" : "") + " " + kind);
    }
    return std::move(_complaints);
  }

 private:
  void tell(const std::string& complaint) { _complaints.push_back(complaint); }
  // One line for all records with the same fault.
  void tellOf(const RawStreamRecord& record, const std::string& kind) {
    _first.try_emplace(kind, at(record));
    ++_counts[kind];
  }

  void collect() {
    for (const RawStreamRecord& record : _stream.records) {
      if (record.recordId == id::kBof && record.depth == 1) {
        _starts[record.substream] = record.offset;
        if (record.substream > 0 && record.word(2) == kWorksheet) _worksheets.insert(record.substream);
      }
      if (record.substream != 0) continue;
      _tables.fonts += record.recordId == id::kFont ? 1 : 0;
      _tables.xfs += record.recordId == id::kXf ? 1 : 0;
      _tables.boundSheets += record.recordId == id::kBoundSheet ? 1 : 0;
      if (record.recordId == id::kFormat) _tables.formats.insert(record.word(0));
      if (record.recordId == id::kSst) _tables.strings = record.doubleWord(4);
    }
  }

  void checkTables() {
    if (_starts.size() != _tables.boundSheets + 1) {
      tell("the book lists " + std::to_string(_tables.boundSheets) + " sheets, and " +
           std::to_string(_starts.empty() ? 0 : _starts.size() - 1) + " follow");
    }
    if (_tables.fonts < kSmallestFontCount) tell("there are fewer than 4 fonts");
    if (_tables.xfs < kSmallestXfCount) tell("there are fewer than 16 formats");
  }

  void checkXf(const RawStreamRecord& record) {
    const std::uint16_t font = record.word(0), format = record.word(2);
    if (font == kFontHole || font - (font > kFontHole ? 1u : 0u) >= _tables.fonts) {
      tellOf(record, "names a font that there isn't");
    }
    if (format >= kFirstCustomFormat && !_tables.formats.contains(format)) {
      tellOf(record, "names a number format that there isn't");
    }
  }

  void checkSheetPlace(const RawStreamRecord& record) {
    const std::uint32_t place = record.doubleWord(0);
    const bool found = std::any_of(_starts.begin(), _starts.end(),
                                   [&](const auto& start) { return start.first > 0 && start.second == place; });
    if (!found) tell(at(record) + " says that its sheet is at offset " + std::to_string(place) + ", where none begins");
  }

  void checkCellRecord(const RawStreamRecord& record) {
    switch (record.recordId) {
      case id::kBlank:
      case id::kNumber:
      case id::kRk:
      case id::kBoolErr:
      case id::kLabel:
      case id::kLabelSst:
      case id::kFormula:
        takeCell(record, record.word(2));
        if (record.word(4) >= _tables.xfs) tellOf(record, "names a format that there isn't");
        break;
      case id::kMulRk:
      case id::kMulBlank:
        takeCell(record, record.word(2));
        if (record.body.size() >= 2) takeCell(record, record.word(record.body.size() - 2));
        break;
      case id::kDimensions:
        _dimensions[record.substream] = &record;
        break;
      default:
        break;
    }
    if (record.recordId == id::kLabelSst && record.doubleWord(6) >= _tables.strings) {
      tellOf(record, "names a shared string that there isn't");
    }
  }

  void takeCell(const RawStreamRecord& record, int col) {
    const int row = record.word(0);
    const auto [used, isNew] = _used.try_emplace(record.substream, CellRange{row, row, col, col});
    CellRange& range = used->second;
    range = {std::min(range.rowFirst, row), std::max(range.rowLast, row), std::min(range.colFirst, col),
             std::max(range.colLast, col)};
  }

  // The record states the first used and the first unused row and column.
  void checkDimensions() {
    for (const auto& [substream, used] : _used) {
      const auto found = _dimensions.find(substream);
      if (found == _dimensions.end()) {
        tell("sheet " + std::to_string(substream) + " has cells and no Dimensions record");
        continue;
      }
      const RawStreamRecord& record = *found->second;
      const auto first = static_cast<std::int64_t>(record.doubleWord(0)), end = std::int64_t{record.doubleWord(4)};
      if (used.rowFirst < first || used.rowLast >= end || used.colFirst < record.word(8) ||
          used.colLast >= record.word(10)) {
        tell(at(record) + " leaves out cells: they are in " + rangeText(used));
      }
    }
  }

  void checkOrder(int substream) {
    if (substream != 0 && !_worksheets.contains(substream)) return;
    const std::span<const std::uint16_t> order =
        substream == 0 ? std::span<const std::uint16_t>(kGlobalsOrder) : kSheetOrder;
    std::size_t reached = 0;
    for (const RawStreamRecord& record : _stream.records) {
      if (record.substream != substream || record.depth != 1) continue;
      const auto found = std::find(order.begin(), order.end(), record.recordId);
      if (found == order.end()) continue;
      const auto rank = static_cast<std::size_t>(found - order.begin());
      if (rank < reached) {
        tell(at(record) + " comes too late: behind " + recordName(order[reached]));
        return;
      }
      reached = rank;
    }
  }

  const RecordStream& _stream;
  Tables _tables;
  std::map<int, std::uint64_t> _starts;  // offset of the BOF of each substream
  std::set<int> _worksheets;
  std::map<int, CellRange> _used;
  std::map<int, const RawStreamRecord*> _dimensions;
  std::map<std::string, std::string> _first;
  std::map<std::string, long> _counts;
  std::vector<std::string> _complaints;
};

}  // namespace

std::vector<std::string> streamComplaints(const RecordStream& stream) {
  return Check(stream).run();
}

}  // namespace rubrica::tools
