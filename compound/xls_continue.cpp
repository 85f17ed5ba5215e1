// Reads of Xls that go on from one record into the CONTINUE record behind it.
#include <algorithm>

#include "compound/record_ids.h"
#include "compound/xls.h"
#include "engine/xlerror.h"

namespace rubrica {

namespace {

// Text is taken in pieces of this many units, so that a length that the stream doesn't hold costs nothing.
constexpr std::size_t kTextPiece = 4096;
constexpr const char* kReadWithContinueRecords = "readWithContinueRecords";

}  // namespace

void Xls::enterContinue(std::uint16_t& remaining, const char* operation) {
  std::uint16_t id = 0;
  readInt16(id);
  if (id != kContinueId) throw xlerror(operation + std::string(": CONTINUE record not found"));
  readInt16(remaining);
}

std::size_t Xls::readParts(std::byte* buffer, std::size_t size, std::uint16_t& remaining, const char* operation) {
  std::size_t got = 0;
  while (got != size) {
    if (remaining == 0) {
      enterContinue(remaining, operation);
      continue;
    }
    const std::size_t asked = std::min<std::size_t>(size - got, remaining);
    const std::size_t part = read(buffer + got, asked);
    got += part;
    remaining = static_cast<std::uint16_t>(remaining - part);
    if (part != asked) break;
  }
  return got;
}

template <typename T>
std::size_t Xls::readSplit(T& value, std::uint16_t& remaining, const char* operation) {
  if (remaining >= sizeof(T)) {
    const std::size_t got = _cursor.readNumber(value);
    remaining = static_cast<std::uint16_t>(remaining - got);
    return got;
  }
  std::byte bytes[sizeof(T)] = {};
  const std::size_t got = readParts(bytes, sizeof bytes, remaining, operation);
  value = loadLittle<T>(bytes);
  return got;
}

std::size_t Xls::readInt16(std::uint16_t& value, std::uint16_t& remaining) {
  return readSplit(value, remaining, "readInt16");
}

std::size_t Xls::readInt32(std::uint32_t& value, std::uint16_t& remaining) {
  return readSplit(value, remaining, "readInt32");
}

std::size_t Xls::readWithContinueRecords(void* buffer, std::size_t size, std::uint16_t& remaining) {
  return readParts(static_cast<std::byte*>(buffer), size, remaining, kReadWithContinueRecords);
}

std::size_t Xls::readString(std::string* text, std::size_t maxLength, std::uint16_t& remaining) {
  if (text == nullptr) throw xlerror("Xls::readString(): s == 0");
  text->clear();
  std::size_t got = 0;
  for (std::size_t i = 0; i < maxLength; ++i) {
    char unit = 0;
    got += readWithContinueRecords(&unit, sizeof unit, remaining);
    if (unit == 0) break;
    text->push_back(unit);
  }
  return got;
}

std::size_t Xls::readString(std::u16string* text, std::size_t maxLength, std::uint16_t& remaining) {
  if (text == nullptr) throw xlerror("Xls::readString(): s == 0");
  text->clear();
  std::size_t got = 0;
  for (std::size_t i = 0; i < maxLength; ++i) {
    std::uint16_t unit = 0;
    const std::size_t part = readInt16(unit, remaining);
    got += part;
    if (unit == 0 || part != sizeof unit) break;
    text->push_back(static_cast<char16_t>(unit));
  }
  return got;
}

template <typename Text>
std::size_t Xls::readUnits(Text* text, std::size_t length, std::uint16_t& remaining) {
  if (text == nullptr) throw xlerror("Xls::readStringWithoutNull(): s == 0");
  using Unit = typename Text::value_type;
  text->clear();
  std::size_t got = 0;
  std::byte bytes[kTextPiece * sizeof(Unit)];
  while (length != 0) {
    const std::size_t units = std::min(length, kTextPiece);
    const std::size_t part = readWithContinueRecords(bytes, units * sizeof(Unit), remaining);
    got += part;
    for (std::size_t i = 0; i + sizeof(Unit) <= part; i += sizeof(Unit)) text->push_back(loadLittle<Unit>(bytes + i));
    if (part != units * sizeof(Unit)) break;
    length -= units;
  }
  return got;
}

std::size_t Xls::readStringWithoutNull(std::string* text, std::size_t length, std::uint16_t& remaining) {
  return readUnits(text, length, remaining);
}

std::size_t Xls::readStringWithoutNull(std::u16string* text, std::size_t length, std::uint16_t& remaining) {
  return readUnits(text, length, remaining);
}

bool Xls::goNextIfContinue(std::uint16_t& remaining) {
  if (remaining != 0 || peekRecordId() != kContinueId) return false;
  std::uint16_t id = 0;
  readInt16(id);
  readInt16(remaining);
  return true;
}

std::uint16_t Xls::peekRecordId() {
  const StreamCursor::Place here = _cursor.place();
  std::uint16_t id = 0;
  const std::size_t got = readInt16(id);
  _cursor.goTo(here);
  return got == sizeof id ? id : std::uint16_t{0};
}

}  // namespace rubrica
