// What a value holds, in 16 bytes with its kind: lists hold values by the million, and what they weigh decides how
// fast a list is filled and walked. Numbers and dates stand in the content itself, as do texts of up to 12 characters
// of Latin-1; anything else is behind an address, in a block that copies of the value share. Used by Value alone,
// which owns what the address points to.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <new>

#include "simhost/date.h"
#include "simhost/kind.h"
#include "simhost/text.h"

namespace rubrica::simhost {

// One thread at a time, as all of the host.
struct SharedBlock {
  virtual ~SharedBlock() = default;

  std::uint32_t uses = 1;
};

// A longer text. Its characters, which follow in the same memory, take a byte each where all are of Latin-1, as nearly
// always, and four otherwise.
struct TextBlock : SharedBlock {
  static TextBlock* make(TextView text) {
    TextBlock* block = makeRoom(text.size(), 1);
    if (narrow(text, block->bytes())) return block;
    delete block;
    block = makeRoom(text.size(), sizeof(char32_t));
    std::copy(text.begin(), text.end(), block->characters());
    return block;
  }
  static void operator delete(void* room) { ::operator delete(room); }

  void copyTo(char32_t* buffer, std::size_t count) const {
    if (isNarrow) {
      std::copy_n(bytes(), count, buffer);
    } else {
      std::copy_n(characters(), count, buffer);
    }
  }

  std::uint8_t* bytes() { return reinterpret_cast<std::uint8_t*>(this + 1); }
  const std::uint8_t* bytes() const { return reinterpret_cast<const std::uint8_t*>(this + 1); }
  char32_t* characters() { return reinterpret_cast<char32_t*>(this + 1); }
  const char32_t* characters() const { return reinterpret_cast<const char32_t*>(this + 1); }

  const bool isNarrow;
  const std::size_t length;  // in characters

 private:
  // Eight characters at a time, of which the last eight overlap those before: a loop of a fixed count becomes a few
  // wide steps, without a rest that takes as long as the whole. False where not all are of Latin-1.
  static bool narrow(TextView text, std::uint8_t* to) {
    constexpr std::size_t kStep = 8;
    char32_t bits = 0;
    const auto narrowOne = [&](std::size_t at) {
      bits |= text[at];
      to[at] = static_cast<std::uint8_t>(text[at]);
    };
    const auto narrowStep = [&](std::size_t at) {
      for (std::size_t i = 0; i < kStep; ++i) narrowOne(at + i);
    };
    if (text.size() < kStep) {
      for (std::size_t i = 0; i < text.size(); ++i) narrowOne(i);
    } else {
      for (std::size_t at = 0; at < text.size() - kStep; at += kStep) narrowStep(at);
      narrowStep(text.size() - kStep);
    }
    return bits <= 0xFF;
  }

  TextBlock(std::size_t size, bool takesBytes) : isNarrow(takesBytes), length(size) {}
  static TextBlock* makeRoom(std::size_t length, std::size_t unit) {
    return ::new (::operator new(sizeof(TextBlock) + length * unit)) TextBlock(length, unit == 1);
  }
};

struct Content {
  // Forms: the length of a text that stands here, and 0 for all else that does; or kShared.
  static constexpr std::uint16_t kShared = 0xFFFF;
  static constexpr std::size_t kInPlace = 12;

  union {
    std::uint64_t word = 0;  // the first eight characters of a text; most of a date
    std::int64_t integer;
    double number;
    SharedBlock* block;
  };
  std::uint32_t more = 0;  // the rest of either
  std::uint16_t form = 0;
  Kind kind = Kind::None;
  bool isNull = false;

  // False, with nothing changed, where the text does not fit. The characters are put together in registers: bytes that
  // are written one by one and then read as a word hold up the processor.
  bool takeText(TextView text) {
    if (text.size() > kInPlace) return false;
    const std::size_t first = std::min(text.size(), sizeof(word));
    std::uint64_t low = 0;
    std::uint32_t high = 0;
    char32_t bits = 0;
    for (std::size_t i = 0; i < first; ++i) {
      bits |= text[i];
      low |= static_cast<std::uint64_t>(text[i]) << 8 * i;
    }
    for (std::size_t i = first; i < text.size(); ++i) {
      bits |= text[i];
      high |= static_cast<std::uint32_t>(text[i]) << 8 * (i - first);
    }
    if (bits > 0xFF) return false;
    word = low;
    more = high;
    form = static_cast<std::uint16_t>(text.size());
    return true;
  }
  void copyText(char32_t* buffer, std::size_t count) const {
    const std::size_t first = std::min(count, sizeof(word));
    for (std::size_t i = 0; i < first; ++i) buffer[i] = static_cast<std::uint8_t>(word >> 8 * i);
    for (std::size_t i = first; i < count; ++i) buffer[i] = static_cast<std::uint8_t>(more >> 8 * (i - first));
  }

  // Parts of a date are bytes, but for the year.
  void setDate(const DateTime& date) {
    const auto at = [](int part, unsigned byte) {
      return static_cast<std::uint64_t>(static_cast<std::uint8_t>(part)) << 8 * byte;
    };
    word = static_cast<std::uint32_t>(date.year) | at(date.month, 4) | at(date.day, 5) | at(date.hour, 6) |
           at(date.minute, 7);
    const int flags =
        (date.hasDate ? 1 : 0) | (date.hasTime ? 2 : 0) | (date.hasSeconds ? 4 : 0) | (date.hasHundredths ? 8 : 0);
    more = static_cast<std::uint32_t>(at(date.second, 0) | at(date.hundredth, 1) | at(date.subtype, 2) | at(flags, 3));
  }
  int dateSubtype() const { return static_cast<std::uint8_t>(more >> 16); }
  DateTime date() const {
    const auto part = [](std::uint64_t from, unsigned byte) {
      return static_cast<int>(static_cast<std::uint8_t>(from >> 8 * byte));
    };
    const auto flag = [this](unsigned bit) { return (more >> 24 & bit) != 0; };
    return {static_cast<std::int32_t>(word),
            part(word, 4),
            part(word, 5),
            part(word, 6),
            part(word, 7),
            part(more, 0),
            part(more, 1),
            flag(1),
            flag(2),
            flag(4),
            flag(8),
            dateSubtype()};
  }
};
static_assert(sizeof(Content) == 16);

}  // namespace rubrica::simhost
