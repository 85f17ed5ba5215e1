// Changes the records of a saved .xls file one by one, to make the files that no writer of ours makes.
#pragma once

#include <algorithm>
#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

#include "biff/records/record_ids.h"
#include "compound/xls.h"
#include "platform/output_stream.h"
#include "tests/support/temporary_directory.h"
#include "tools/record_stream.h"

namespace rubrica::test {

struct EditableRecord {
  std::uint16_t recordId = 0;
  std::vector<std::byte> body;

  void setWord(std::size_t at, std::uint16_t value) {
    body.at(at) = static_cast<std::byte>(value & 0xFF);
    body.at(at + 1) = static_cast<std::byte>(value >> 8);
  }
};
using EditableRecords = std::vector<EditableRecord>;

inline EditableRecord recordOf(std::uint16_t recordId, std::initializer_list<std::uint16_t> words) {
  EditableRecord record{recordId, std::vector<std::byte>(words.size() * 2)};
  std::size_t at = 0;
  for (const std::uint16_t word : words) record.setWord(2 * at++, word);
  return record;
}

inline EditableRecords::iterator find(EditableRecords& records, std::uint16_t recordId) {
  const auto found = std::find_if(records.begin(), records.end(),
                                  [&](const EditableRecord& record) { return record.recordId == recordId; });
  if (found == records.end()) throw std::runtime_error("no such record");
  return found;
}

// Behind the last record of the last sheet but its EOF, where no position that the book notes moves.
inline void addToLastSheet(EditableRecords& records, const EditableRecord& record) {
  records.insert(records.end() - 1, record);
}

inline void editRecords(const std::string& path, const std::function<void(EditableRecords&)>& edit) {
  const std::string file = readText(path);
  const tools::RecordStream stream = tools::readRecordStream(std::as_bytes(std::span(file.data(), file.size())));
  EditableRecords records;
  for (const tools::RawStreamRecord& record : stream.records) {
    records.push_back({record.recordId, {record.body.begin(), record.body.end()}});
  }
  edit(records);
  Xls xls;
  xls.reset(true);
  platform::MemoryOutput output;
  xls.attach(output);
  xls.start();
  for (const EditableRecord& record : records) {
    xls.writeRecord(record.recordId, record.body.data(), static_cast<std::uint16_t>(record.body.size()));
  }
  xls.close();
  const auto bytes = output.bytes();
  writeText(path, std::string(reinterpret_cast<const char*>(bytes.data()), bytes.size()));
}

}  // namespace rubrica::test
