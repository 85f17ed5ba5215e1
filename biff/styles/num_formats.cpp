#include "biff/styles/num_formats.h"

#include "biff/records/record_io.h"
#include "biff/styles/record_text.h"
#include "engine/xlerror.h"

namespace rubrica {
namespace {

constexpr char kName[] = "Format";
// The text has to fit into one record: its id, the count and the flags of the text stand in front.
constexpr std::size_t kMaxLength = (kMaxRecordSize - 5) / 2;

}  // namespace

NumFormats::Added NumFormats::add(std::u16string_view text, RecordPool& pool) {
  if (const auto known = _byText.find(text); known != _byText.end()) return {_entries[known->second].id, false};
  if (text.size() > kMaxLength) throw xlerror("string is too long");
  while (_nextFree <= numformat::lastCustom && contains(_nextFree)) ++_nextFree;
  Entry entry;
  if (_nextFree <= numformat::lastCustom) entry.id = static_cast<std::uint16_t>(_nextFree);
  entry.hasText = text.data() != nullptr;
  entry.text.assign(text, pool);
  append(entry);
  return {entry.id, true};
}

const char16_t* NumFormats::text(int id) const {
  if (!contains(id)) return nullptr;
  const Entry& entry = _entries[_byId.find(static_cast<std::uint16_t>(id))->second];
  if (!entry.hasText) return nullptr;
  return entry.text.text == nullptr ? u"" : entry.text.text;
}

bool NumFormats::contains(int id) const {
  return id >= 0 && id <= UINT16_MAX && _byId.contains(static_cast<std::uint16_t>(id));
}

void NumFormats::clear() {
  *this = {};
}

void NumFormats::append(const Entry& entry) {
  const auto position = static_cast<std::uint32_t>(_entries.size());
  _entries.push_back(entry);
  _byText.try_emplace(entry.text.view(), position);
  _byId.try_emplace(entry.id, position);
}

void NumFormats::read(Xls& xls, std::uint16_t size, BookState& state) {
  Entry entry;
  if (size < sizeof entry.id || xls.readInt16(entry.id) != sizeof entry.id) throwSizeIsIncorrect(kName);
  const auto left = static_cast<std::uint16_t>(size - sizeof entry.id);
  if (left > 0) {
    entry.hasText = true;
    if (readRecordText(xls, state, left, entry.text) != 0) throwSizeIsIncorrect(kName);
  }
  append(entry);
}

void NumFormats::write(Xls& xls) const {
  for (const Entry& entry : _entries) {
    const std::size_t textSize = entry.hasText ? entry.text.size() : 0;
    xls.writeHeader(id::kFormat, static_cast<std::uint16_t>(sizeof entry.id + textSize));
    xls.writeInt16(entry.id);
    if (entry.hasText) entry.text.write(xls);
  }
}

}  // namespace rubrica
