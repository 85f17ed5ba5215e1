// Texts and dates in the size in which values keep them: lists hold values by the million, and what they weigh decides
// how fast a list is filled and walked. Used by Value alone.
#pragma once

#include <algorithm>
#include <cstdint>
#include <new>
#include <utility>

#include "simhost/date.h"
#include "simhost/text.h"

namespace rubrica::simhost {

// A text that its copies share, length and characters in one block. One thread at a time, as all of the host.
class SharedText {
 public:
  SharedText() = default;
  explicit SharedText(TextView text) {
    if (text.empty()) return;
    void* const room = ::operator new(sizeof(Block) + text.size() * sizeof(char32_t));
    _block = new (room) Block{1, text.size()};
    std::copy(text.begin(), text.end(), _block->characters());
  }
  SharedText(const SharedText& other) : _block(other._block) {
    if (_block != nullptr) ++_block->uses;
  }
  SharedText(SharedText&& other) noexcept : _block(std::exchange(other._block, nullptr)) {}
  SharedText& operator=(SharedText other) noexcept {
    std::swap(_block, other._block);
    return *this;
  }
  ~SharedText() {
    if (_block != nullptr && --_block->uses == 0) ::operator delete(_block);
  }

  TextView view() const { return _block == nullptr ? TextView() : TextView(_block->characters(), _block->length); }

 private:
  struct Block {
    std::size_t uses;
    std::size_t length;

    char32_t* characters() { return reinterpret_cast<char32_t*>(this + 1); }
  };

  Block* _block = nullptr;
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
