#include <algorithm>
#include <cstring>
#include <memory>
#include <span>

#include "biff/records/record_io.h"
#include "biff/shared_strings/sst.h"
#include "engine/xlerror.h"

namespace rubrica {
namespace {

constexpr char kNoInt16[] = "readInt16: CONTINUE record not found";
constexpr char kNoInt32[] = "readInt32: CONTINUE record not found";
constexpr char kNoBytes[] = "readWithContinueRecords: CONTINUE record not found";
constexpr std::uint16_t kCountsSize = 8;

// The bytes of a record and of the CONTINUE records behind it, one record body at a time.
class ContinuedBytes {
 public:
  ContinuedBytes(Xls& xls, std::uint16_t size) : _xls(xls), _rest(xls.view(size)) {}

  bool exhausted() const { return _rest.empty(); }

  // Moves on to the body of the next record, which must be a CONTINUE.
  void enterContinue(const char* failure) {
    std::uint16_t recordId = 0, size = 0;
    if (_xls.readInt16(recordId) != sizeof recordId || recordId != id::kContinue ||
        _xls.readInt16(size) != sizeof size) {
      throw xlerror(failure);
    }
    _rest = _xls.view(size);
  }

  // A value that may be split between records.
  template <class T>
  T number(const char* failure) {
    T value = 0;
    if (_rest.size() >= sizeof(T)) {
      std::memcpy(&value, _rest.data(), sizeof(T));
      _rest = _rest.subspan(sizeof(T));
      return value;
    }
    std::byte bytes[sizeof(T)];
    for (std::byte& byte : bytes) {
      while (exhausted()) enterContinue(failure);
      byte = _rest.front();
      _rest = _rest.subspan(1);
    }
    std::memcpy(&value, bytes, sizeof(T));
    return value;
  }

  // Up to `most` bytes of the current record.
  std::span<const std::byte> take(std::size_t most) {
    const auto taken = _rest.first(std::min(most, _rest.size()));
    _rest = _rest.subspan(taken.size());
    return taken;
  }

 private:
  Xls& _xls;
  std::span<const std::byte> _rest;
};

void widen(std::span<const std::byte> bytes, bool wide, char16_t* target) {
  if (wide) {
    std::memcpy(target, bytes.data(), bytes.size());
  } else {
    std::transform(bytes.begin(), bytes.end(), target,
                   [](std::byte b) { return static_cast<char16_t>(std::to_integer<unsigned char>(b)); });
  }
}

// Every CONTINUE that goes on with characters starts with a flag byte that says how wide they are from there on.
bool enterCharacters(ContinuedBytes& in) {
  in.enterContinue(kNoBytes);
  return (in.number<std::uint8_t>(kNoBytes) & text_flags::kHighByte) != 0;
}

// Returns the text; `wide` becomes true when any part of it was in two-byte form.
const char16_t* readCharacters(ContinuedBytes& in, RecordPool& pool, std::uint16_t cch, bool& wide) {
  if (cch == 0) return u"";
  char16_t* text = pool.allocateText(std::size_t{cch} + 1);
  bool partWide = wide;
  wide = false;
  for (std::size_t done = 0; done < cch;) {
    if (in.exhausted()) {
      partWide = enterCharacters(in);
      continue;
    }
    const std::size_t width = partWide ? 2 : 1;
    const auto part = in.take((cch - done) * width);
    if (part.size() % width != 0) throw xlerror("error in XLUnicodeRichExtendedString record");
    widen(part, partWide, text + done);
    done += part.size() / width;
    wide = wide || partWide;
  }
  text[cch] = u'\0';
  return text;
}

void readRuns(ContinuedBytes& in, std::uint16_t count, std::vector<FormatRun>& runs) {
  for (std::uint16_t i = 0; i < count; ++i) {
    const auto firstChar = in.number<std::uint16_t>(kNoInt16);
    runs.push_back({firstChar, in.number<std::uint16_t>(kNoInt16)});
  }
  runs.shrink_to_fit();
}

std::span<const std::byte> readPhonetic(ContinuedBytes& in, RecordPool& pool, std::uint32_t size) {
  std::vector<std::byte> block;
  while (block.size() < size) {
    while (in.exhausted()) in.enterContinue(kNoBytes);
    const auto part = in.take(size - block.size());
    if (part.size() == size) return pool.copyBytes(part);
    block.insert(block.end(), part.begin(), part.end());
  }
  return pool.copyBytes(block);
}

XLUnicodeRichExtendedString readEntry(ContinuedBytes& in, RecordPool& pool) {
  XLUnicodeRichExtendedString entry;
  entry.cch = in.number<std::uint16_t>(kNoInt16);
  entry.flags = in.number<std::uint8_t>(kNoBytes);
  bool wide = entry.fHighByte();
  // An empty string that ends a record has nothing to go on with: the next record begins with the next string.
  if (in.exhausted() && entry.cch > 0) wide = enterCharacters(in);
  const auto runCount = entry.fRichSt() ? in.number<std::uint16_t>(kNoInt16) : std::uint16_t{0};
  const auto phoneticSize = entry.fExtSt() ? in.number<std::uint32_t>(kNoInt32) : std::uint32_t{0};
  entry.text = readCharacters(in, pool, entry.cch, wide);
  entry.flags = static_cast<std::uint8_t>((entry.flags & ~text_flags::kHighByte) | (wide ? text_flags::kHighByte : 0));
  if (entry.isPlain()) return entry;
  auto* ext = pool.adopt(std::make_unique<ExtStringFormat>());
  entry.ext = ext;
  readRuns(in, runCount, ext->runs);
  ext->phonetic = readPhonetic(in, pool, phoneticSize);
  return entry;
}

}  // namespace

void readSst(Xls& xls, std::uint16_t size, StrMap& strings) {
  if (size < kCountsSize) throwSizeIsIncorrect("SST");
  ContinuedBytes in(xls, size);
  strings.setTotal(in.number<std::uint32_t>(kNoInt32));
  const auto cstUnique = in.number<std::uint32_t>(kNoInt32);
  for (std::uint32_t i = 0; i < cstUnique; ++i) strings.append(readEntry(in, strings.pool()));
}

void ExtSst::read(Xls& xls, std::uint16_t size) {
  if (size < sizeof dsst) throwSizeIsIncorrect("ExtSST");
  auto part = xls.view(size);
  std::vector<std::byte> bytes(part.begin(), part.end());
  for (std::uint16_t more = 0; xls.goNextIfContinue(more); more = 0) {
    part = xls.view(more);
    bytes.insert(bytes.end(), part.begin(), part.end());
  }
  RecordBody body(bytes);
  body.take(dsst);
  items.clear();
  for (Item item; body.take(item);) items.push_back(item);
}

}  // namespace rubrica
