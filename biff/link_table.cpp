#include "biff/link_table.h"

#include <algorithm>

#include "biff/name_table.h"
#include "engine/sheet_name.h"

namespace rubrica {
namespace {

constexpr std::byte kSelfMarker[2] = {std::byte{0x01}, std::byte{0x04}};
constexpr std::size_t kSelfSize = 4;
constexpr std::size_t kXtiSize = 6;
constexpr std::size_t kMostXtis = 65535;

bool belongsToSupBook(std::uint16_t recordId) {
  return recordId == id::kExternName || recordId == id::kXct || recordId == id::kCrn || recordId == id::kContinue;
}

}  // namespace

bool SupBookBlock::isSelf() const {
  return payload.size() == kSelfSize && std::equal(payload.end() - 2, payload.end(), std::begin(kSelfMarker));
}

std::uint16_t LinkTable::reference(std::uint16_t supBook, int first, int last) {
  const auto found = std::find_if(_xtis.begin(), _xtis.end(), [&](const Xti& xti) {
    return xti.iSupBook == supBook && xti.first == first && xti.last == last;
  });
  if (found != _xtis.end()) return static_cast<std::uint16_t>(found - _xtis.begin());
  if (_xtis.size() >= kMostXtis) throw xlerror("error in record ExternSheet");
  _xtis.push_back({supBook, static_cast<std::int16_t>(first), static_cast<std::int16_t>(last)});
  return static_cast<std::uint16_t>(_xtis.size() - 1);
}

std::uint16_t LinkTable::selfReference(int first, int last) {
  const auto self =
      std::find_if(_supBooks.begin(), _supBooks.end(), [](const SupBookBlock& block) { return block.isSelf(); });
  const auto supBook = static_cast<std::uint16_t>(self - _supBooks.begin());
  if (self == _supBooks.end()) {
    _supBooks.push_back({{std::byte{0}, std::byte{0}, kSelfMarker[0], kSelfMarker[1]}, {}, {}});
  }
  return reference(supBook, first, last);
}

std::optional<std::u16string> LinkTable::externalText(std::uint16_t index) const {
  const Xti* entry = xti(index);
  if (entry == nullptr || entry->iSupBook >= _supBooks.size()) return std::nullopt;
  const auto& external = _supBooks[entry->iSupBook].external;
  return external ? external->sheetText(entry->first, entry->last) : std::nullopt;
}

std::optional<std::uint16_t> LinkTable::externalReference(std::u16string_view sheetText) {
  for (std::size_t i = 0; i < _xtis.size(); ++i) {
    const auto index = static_cast<std::uint16_t>(i);
    if (const auto text = externalText(index); text && sameNameIgnoringCase(*text, sheetText)) return index;
  }
  for (std::size_t i = 0; i < _supBooks.size(); ++i) {
    const auto& external = _supBooks[i].external;
    const int count = external ? static_cast<int>(external->sheets.size()) : 0;
    for (int sheet = 0; sheet < count; ++sheet) {
      if (sameNameIgnoringCase(*external->sheetText(sheet, sheet), sheetText)) {
        return reference(static_cast<std::uint16_t>(i), sheet, sheet);
      }
    }
  }
  return std::nullopt;
}

bool LinkTable::isOwn(std::uint16_t index) const {
  const Xti* entry = xti(index);
  return entry != nullptr && entry->iSupBook < _supBooks.size() && _supBooks[entry->iSupBook].isSelf();
}

bool LinkTable::covers(std::uint16_t index, int position) const {
  return isOwn(index) && _xtis[index].first <= position && position <= _xtis[index].last;
}

void LinkTable::renumberSheets(const std::function<int(int)>& mapping) {
  for (Xti& xti : _xtis) {
    if (xti.iSupBook >= _supBooks.size() || !_supBooks[xti.iSupBook].isSelf() || xti.first < 0 || xti.last < 0)
      continue;
    const int first = mapping(xti.first), last = mapping(xti.last);
    if (first == kDeletedSheet && last == kDeletedSheet) {
      xti.first = xti.last = kDeletedSheet;
      continue;
    }
    // A run of sheets that loses an end keeps the rest.
    int left = xti.first, right = xti.last;
    while (left < right && mapping(left) == kDeletedSheet) ++left;
    while (right > left && mapping(right) == kDeletedSheet) --right;
    const auto [low, high] = std::minmax({mapping(left), mapping(right)});
    xti.first = static_cast<std::int16_t>(low);
    xti.last = static_cast<std::int16_t>(high);
  }
}

void LinkTable::readSupBook(Xls& xls, std::uint16_t size) {
  const auto payload = xls.view(size);
  if (payload.size() < kSelfSize || payload.size() < size) throw xlerror("SupBookBlock: file is corrupt");
  SupBookBlock& block = _supBooks.emplace_back();
  block.payload.assign(payload.begin(), payload.end());
  block.external = externalBook(block.payload);
  while (belongsToSupBook(xls.peekRecordId())) {
    std::uint16_t recordId = 0, length = 0;
    xls.readInt16(recordId);
    xls.readInt16(length);
    const auto bytes = xls.view(length);
    if (bytes.size() < length) throw xlerror("SupBookBlock: file is corrupt");
    block.followers.push_back(RawRecord::of(recordId, bytes));
  }
}

// A long table goes on in CONTINUE records, which may begin within an entry.
void LinkTable::readExternSheet(Xls& xls, std::uint16_t size) {
  constexpr std::size_t kCountSize = 2;
  std::vector<std::byte> bytes;
  const auto takePart = [&](std::size_t length) {
    const auto part = xls.view(length);
    bytes.insert(bytes.end(), part.begin(), part.end());
  };
  takePart(size);
  RecordBody head(bytes);
  std::uint16_t count = 0;
  if (!head.take(count) || _xtis.size() + count > kMostXtis) throw xlerror("error in record ExternSheet");
  const std::size_t wanted = kCountSize + kXtiSize * count;
  for (std::uint16_t next = 0; bytes.size() < wanted && xls.goNextIfContinue(next); next = 0) takePart(next);
  if (bytes.size() < wanted) throw xlerror("error in XTI");
  RecordBody body(bytes);
  body.take(count);
  for (; count > 0; --count) {
    Xti xti;
    body.take(xti.iSupBook);
    body.take(xti.first);
    body.take(xti.last);
    _xtis.push_back(xti);
  }
}

void LinkTable::write(Xls& xls, std::size_t sheetCount) const {
  for (const SupBookBlock& block : _supBooks) {
    std::vector<std::byte> payload = block.payload;
    if (block.isSelf()) {
      const auto count = static_cast<std::uint16_t>(sheetCount);
      std::memcpy(payload.data(), &count, sizeof(count));
    }
    xls.writeRecord(id::kSupBook, payload.data(), static_cast<std::uint16_t>(payload.size()));
    for (const RawRecord& follower : block.followers) writeRaw(xls, follower);
  }
  if (_xtis.empty()) return;
  const std::size_t total = 2 + kXtiSize * _xtis.size();
  auto room = static_cast<std::uint16_t>(std::min<std::size_t>(total, kMaxRecordSize));
  std::size_t left = total;
  xls.writeHeader(id::kExternSheet, room);
  const auto put = [&](std::uint16_t word) {
    xls.writeWithContinueRecords(&word, sizeof(word), room, left);
    left -= sizeof(word);
  };
  put(static_cast<std::uint16_t>(_xtis.size()));
  for (const Xti& xti : _xtis) {
    put(xti.iSupBook);
    put(static_cast<std::uint16_t>(xti.first));
    put(static_cast<std::uint16_t>(xti.last));
  }
}

void LinkTable::clear() {
  _supBooks.clear();
  _xtis.clear();
}

}  // namespace rubrica
