#include "tools/rich_strings.h"

#include <algorithm>

#include "biff/records/record_ids.h"

namespace rubrica::tools {
namespace {

constexpr std::size_t kTableHead = 8;  // number of uses, number of strings
constexpr std::uint8_t kWide = 1, kExtended = 4, kRich = 8;
constexpr std::size_t kRunSize = 4;

// The bytes of the SST and its CONTINUE records. A text that goes on in the next of them repeats its flags there, for
// its characters may change their width; nothing else is repeated.
class TableWalk {
 public:
  explicit TableWalk(std::vector<std::span<const std::byte>> parts) : _parts(std::move(parts)) { skip(kTableHead); }

  bool atEnd() const { return _part >= _parts.size(); }

  // Passes one string; true when it has runs.
  bool passString() {
    const std::size_t characters = byte() | std::size_t{byte()} << 8;
    std::uint8_t flags = byte();
    const bool rich = (flags & kRich) != 0;
    std::size_t runs = 0, extra = 0;
    if (rich) runs = byte() | std::size_t{byte()} << 8;
    if ((flags & kExtended) != 0) {
      for (unsigned shift = 0; shift < 32; shift += 8) extra |= std::size_t{byte()} << shift;
    }
    passCharacters(characters, flags);
    skip(runs * kRunSize);
    skip(extra);
    return rich;
  }

 private:
  std::size_t left() const { return atEnd() ? 0 : _parts[_part].size() - _at; }
  void settle() {
    while (!atEnd() && _at >= _parts[_part].size()) {
      ++_part;
      _at = 0;
    }
  }
  std::uint8_t byte() {
    if (atEnd()) return 0;
    const auto value = std::to_integer<std::uint8_t>(_parts[_part][_at++]);
    settle();
    return value;
  }
  void skip(std::size_t count) {
    while (count > 0 && !atEnd()) {
      const std::size_t step = std::min(count, left());
      _at += step;
      count -= step;
      settle();
    }
  }
  void passCharacters(std::size_t characters, std::uint8_t flags) {
    while (characters > 0 && !atEnd()) {
      const std::size_t width = (flags & kWide) != 0 ? 2 : 1;
      const std::size_t here = std::min(characters, left() / width);
      const std::size_t part = _part;
      skip(here * width);
      characters -= here;
      if (characters == 0) return;
      if (part == _part) skip(left());
      flags = byte();
    }
  }

  std::vector<std::span<const std::byte>> _parts;
  std::size_t _part = 0, _at = 0;
};

}  // namespace

long countRichStrings(const RecordStream& stream) {
  std::vector<std::span<const std::byte>> parts;
  std::uint32_t strings = 0;
  for (const RawStreamRecord& record : stream.records) {
    if (record.recordId == id::kSst) {
      strings = record.doubleWord(4);
      parts.push_back(record.body);
    } else if (!parts.empty()) {
      if (record.recordId != id::kContinue) break;
      parts.push_back(record.body);
    }
  }
  if (parts.empty()) return 0;
  TableWalk walk(std::move(parts));
  long rich = 0;
  for (std::uint32_t i = 0; i < strings && !walk.atEnd(); ++i) rich += walk.passString() ? 1 : 0;
  return rich;
}

}  // namespace rubrica::tools
