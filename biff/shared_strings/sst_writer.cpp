#include <algorithm>
#include <array>
#include <cstring>

#include "biff/records/record_io.h"
#include "biff/shared_strings/sst.h"

namespace rubrica {
namespace {

// What the part of a string in front of its characters may take, with one unit to spare: it is never split.
constexpr std::size_t kEntryRoom = 10;
// Characters in a CONTINUE, behind its flag byte: an even number.
constexpr std::size_t kTextContinueRoom = kMaxRecordSize - 2;

// Fills record bodies one after another. `room` is what may still go into the current one, which may be less than its
// size allows.
class SstWriter {
 public:
  explicit SstWriter(Xls& xls) : _xls(xls) {}

  void putCounts(std::uint32_t cstTotal, std::uint32_t cstUnique) {
    putNumber(cstTotal);
    putNumber(cstUnique);
  }

  void putEntry(const XLUnicodeRichExtendedString& entry) {
    if (_room < kEntryRoom) startContinue();
    putNumber(entry.cch);
    putNumber(entry.flags);
    if (entry.fRichSt()) putNumber(static_cast<std::uint16_t>(entry.ext->runs.size()));
    if (entry.fExtSt()) putNumber(static_cast<std::uint32_t>(entry.ext->phonetic.size()));
    putCharacters(entry);
    if (entry.ext == nullptr) return;
    for (const FormatRun& run : entry.ext->runs) {
      if (_room < sizeof run) startContinue();
      putNumber(run);
    }
    putPhonetic(entry.ext->phonetic);
  }

  void flush() {
    _xls.writeRecord(_recordId, _body.data(), static_cast<std::uint16_t>(_size));
    _recordId = id::kContinue;
    _size = 0;
  }

 private:
  void startContinue() {
    flush();
    _room = kMaxRecordSize;
  }

  template <class T>
  void putNumber(const T& value) {
    std::memcpy(_body.data() + _size, &value, sizeof value);
    _size += sizeof value;
    _room -= sizeof value;
  }

  void putCharacters(const XLUnicodeRichExtendedString& entry) {
    const std::size_t width = entry.fHighByte() ? 2 : 1;
    auto rest = entry.view();
    // An odd byte at the end stays free, so that no two-byte character is split.
    if (rest.size() * width > _room) _room -= _room % 2;
    while (!rest.empty()) {
      if (_room == 0) {
        flush();
        _body[_size++] = std::byte{static_cast<std::uint8_t>(entry.flags & text_flags::kHighByte)};
        _room = kTextContinueRoom;
      }
      const auto part = rest.substr(0, _room / width);
      putPart(part, width);
      rest.remove_prefix(part.size());
    }
  }

  void putPart(std::u16string_view part, std::size_t width) {
    std::byte* target = _body.data() + _size;
    if (width == 2) {
      std::memcpy(target, part.data(), part.size() * width);
    } else {
      std::transform(part.begin(), part.end(), target, [](char16_t unit) { return static_cast<std::byte>(unit); });
    }
    _size += part.size() * width;
    _room -= part.size() * width;
  }

  void putPhonetic(std::span<const std::byte> rest) {
    while (!rest.empty()) {
      if (_room == 0) startContinue();
      const auto part = rest.first(std::min(rest.size(), _room));
      std::copy(part.begin(), part.end(), _body.data() + _size);
      _size += part.size();
      _room -= part.size();
      rest = rest.subspan(part.size());
    }
  }

  Xls& _xls;
  std::array<std::byte, kMaxRecordSize> _body;
  std::size_t _size = 0;
  std::size_t _room = kMaxRecordSize;
  std::uint16_t _recordId = id::kSst;
};

}  // namespace

void writeSst(Xls& xls, const StrMap& strings) {
  SstWriter writer(xls);
  writer.putCounts(strings.cstTotal(), strings.cstUnique());
  for (const auto& entry : strings.entries()) writer.putEntry(entry);
  writer.flush();
}

void ExtSst::write(Xls& xls) const {
  const std::size_t size = sizeof dsst + items.size() * sizeof(Item);
  auto room = static_cast<std::uint16_t>(std::min<std::size_t>(size, kMaxRecordSize));
  xls.writeHeader(id::kExtSst, room);
  xls.writeWithContinueRecords(&dsst, sizeof dsst, room, size);
  xls.writeWithContinueRecords(items.data(), items.size() * sizeof(Item), room, size - sizeof dsst);
}

}  // namespace rubrica
