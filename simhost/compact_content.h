// Texts and dates in the size in which values keep them: lists hold values by the million, and what they weigh decides
// how fast a list is filled and walked. Used by Value alone.
#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <new>
#include <utility>

#include "simhost/date.h"
#include "simhost/text.h"

namespace rubrica::simhost {

// A text whose characters take a byte each where all are of Latin-1, as nearly always, and four otherwise. Up to 15
// bytes stand in the object itself; what is longer is shared by its copies, length and characters in one block. One
// thread at a time, as all of the host.
class SharedText {
 public:
  SharedText() = default;
  explicit SharedText(TextView text) {
    const bool isNarrow = holdsLatin1Alone(text);
    if (isNarrow && text.size() <= kInPlace) {
      narrow(text, _bytes.data());
      _form = static_cast<std::uint8_t>(text.size());
      return;
    }
    const std::size_t unit = isNarrow ? 1 : sizeof(char32_t);
    void* const room = ::operator new(sizeof(Block) + text.size() * unit);
    auto* const block = new (room) Block{text.size(), 1, isNarrow};
    if (isNarrow) {
      narrow(text, block->bytes());
    } else {
      std::copy(text.begin(), text.end(), block->characters());
    }
    std::memcpy(_bytes.data(), static_cast<const void*>(&block), sizeof(block));
    _form = kShared;
  }
  SharedText(const SharedText& other) : _bytes(other._bytes), _form(other._form) {
    if (_form == kShared) ++block()->uses;
  }
  SharedText(SharedText&& other) noexcept : _bytes(other._bytes), _form(std::exchange(other._form, kEmpty)) {}
  SharedText& operator=(SharedText other) noexcept {
    std::swap(_bytes, other._bytes);
    std::swap(_form, other._form);
    return *this;
  }
  ~SharedText() {
    if (_form == kShared && --block()->uses == 0) ::operator delete(block());
  }

  // In characters.
  std::size_t size() const { return _form == kShared ? block()->length : _form; }
  // The first `count` characters, of which there must be as many.
  void copyTo(char32_t* buffer, std::size_t count) const {
    if (_form != kShared) {
      std::copy_n(_bytes.data(), count, buffer);
    } else if (block()->isNarrow) {
      std::copy_n(block()->bytes(), count, buffer);
    } else {
      std::copy_n(block()->characters(), count, buffer);
    }
  }
  Text text() const {
    Text copied(size(), U'\0');
    copyTo(copied.data(), copied.size());
    return copied;
  }

 private:
  struct Block {
    std::size_t length;
    std::uint32_t uses;
    bool isNarrow;

    std::uint8_t* bytes() { return reinterpret_cast<std::uint8_t*>(this + 1); }
    char32_t* characters() { return reinterpret_cast<char32_t*>(this + 1); }
  };

  static constexpr std::size_t kInPlace = 15;
  // Forms: the length of a text that stands here, or kShared.
  static constexpr std::uint8_t kEmpty = 0, kShared = kInPlace + 1;

  static bool holdsLatin1Alone(TextView text) {
    char32_t bits = 0;
    for (const char32_t c : text) bits |= c;
    return bits <= 0xFF;
  }
  static void narrow(TextView text, std::uint8_t* to) {
    std::transform(text.begin(), text.end(), to, [](char32_t c) { return static_cast<std::uint8_t>(c); });
  }
  Block* block() const {
    Block* block = nullptr;
    std::memcpy(static_cast<void*>(&block), _bytes.data(), sizeof(block));
    return block;
  }

  alignas(void*) std::array<std::uint8_t, kInPlace> _bytes{};  // characters, or the block's address
  std::uint8_t _form = kEmpty;
};

class CompactDate {
 public:
  CompactDate() = default;
  explicit CompactDate(const DateTime& date)
      : _year(date.year),
        _subtype(static_cast<std::uint8_t>(date.subtype)),
        _month(static_cast<std::uint8_t>(date.month)),
        _day(static_cast<std::uint8_t>(date.day)),
        _hour(static_cast<std::uint8_t>(date.hour)),
        _minute(static_cast<std::uint8_t>(date.minute)),
        _second(static_cast<std::uint8_t>(date.second)),
        _hundredth(static_cast<std::uint8_t>(date.hundredth)),
        _hasDate(date.hasDate),
        _hasTime(date.hasTime),
        _hasSeconds(date.hasSeconds),
        _hasHundredths(date.hasHundredths) {}

  DateTime unpacked() const {
    return {_year,      _month,   _day,     _hour,       _minute,        _second,
            _hundredth, _hasDate, _hasTime, _hasSeconds, _hasHundredths, _subtype};
  }

 private:
  std::int32_t _year = 0;
  std::uint8_t _subtype = dateAndTime, _month = 0, _day = 0, _hour = 0, _minute = 0, _second = 0, _hundredth = 0;
  bool _hasDate : 1 = false, _hasTime : 1 = false, _hasSeconds : 1 = false, _hasHundredths : 1 = false;
};

}  // namespace rubrica::simhost
