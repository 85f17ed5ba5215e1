#include "tools/xls_check.h"

#include <algorithm>

#include "biff/records/record_ids.h"
#include "tools/book_opener.h"
#include "tools/record_names.h"
#include "tools/record_stream.h"
#include "tools/resave_check.h"
#include "tools/stream_complaints.h"
#include "tools/unmodelled.h"

namespace rubrica::tools {
namespace {

using Counts = std::map<std::uint16_t, long>;

Counts recordCounts(const RecordStream& stream) {
  Counts counts;
  for (const RawStreamRecord& record : stream.records) {
    if (record.recordId != id::kContinue) ++counts[record.recordId];
  }
  return counts;
}

long countOf(const Counts& counts, std::uint16_t recordId) {
  const auto found = counts.find(recordId);
  return found == counts.end() ? 0 : found->second;
}

bool isMainStream(const DirEntry& entry) {
  return entry.isNamed(u"Workbook") || entry.isNamed(u"Book");
}

// Streams beside the workbook, each with its size.
std::map<std::string, long> sideStreams(const RecordStream& stream) {
  std::map<std::string, long> streams;
  for (const DirEntry& entry : stream.directory) {
    if (entry.objectType != static_cast<std::uint8_t>(EntryType::stream) || isMainStream(entry)) continue;
    std::u16string name = entry.nameText();
    // Names of property sets begin with a control character.
    std::erase_if(name, [](char16_t c) { return c < 0x20; });
    streams["stream " + narrowText(name)] += entry.streamSize > 0 ? 1 : 0;
  }
  std::erase_if(streams, [](const auto& side) { return side.second == 0; });
  return streams;
}

void compareCounts(const RecordStream& before, const RecordStream& after, CheckReport& report) {
  const Counts old = recordCounts(before), now = recordCounts(after);
  for (const auto& [recordId, count] : old) {
    if (isModelledRecord(recordId)) {
      report.known[recordName(recordId)] = count;
      continue;
    }
    const long left = std::min(count, countOf(now, recordId));
    if (left > 0) report.kept[recordName(recordId)] = left;
    if (left < count) report.dropped[recordName(recordId)] = count - left;
  }
  const auto streams = sideStreams(before), streamsNow = sideStreams(after);
  for (const auto& [name, count] : streams) {
    (streamsNow.contains(name) ? report.kept : report.dropped)[name] = count;
  }
}

}  // namespace

CheckReport checkXls(std::span<const std::byte> file, Progress& progress) {
  CheckReport report;
  progress.begin("reading the records");
  const RecordStream stream = readRecordStream(file);
  report.damage = stream.damage;
  if (!stream.opened) return report;
  const bool isBiff8 = !stream.records.empty() && stream.records.front().word(0) == kBiff8Version;
  if (isBiff8) report.complaints = streamComplaints(stream);
  report.unmodelled = unmodelledContent(stream);
  const std::vector<std::byte> saved = checkResave(file, "xls", report, progress);
  if (!saved.empty()) compareCounts(stream, readRecordStream(saved), report);
  return report;
}

}  // namespace rubrica::tools
