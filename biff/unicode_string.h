// Text of BIFF records. In memory every string is UTF-16 in the book's pool, zero-terminated, whatever the file form
// was; the file form has a length of one or two bytes, a flag byte whose bit 0 (fHighByte) says two bytes a character,
// and the characters. BIFF5 text has no flag byte and is 8-bit in the book's code page: it is decoded when read and
// written in the BIFF8 form.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

#include "biff/record_pool.h"
#include "compound/xls.h"

namespace rubrica {

// How the strings of the record being read look.
struct TextForm {
  bool noFlags = false;  // BIFF5: 8-bit characters of `codePage` and no flag byte
  std::uint16_t codePage = 1252;
};

namespace text_flags {
inline constexpr std::uint8_t kHighByte = 1, kExtSt = 4, kRichSt = 8;
}

// 16-bit count (8-bit with byteLength), flags, characters.
struct XLUnicodeString {
  std::uint16_t cch = 0;
  bool fHighByte = false;
  bool byteLength = false;
  const char16_t* text = nullptr;

  // Reads from a record with `remaining` bytes left, on into CONTINUE records, whose parts have no flag byte of their
  // own.
  void read(Xls& xls, RecordPool& pool, std::uint16_t& remaining, const TextForm& form = {});
  // Takes wide text as UTF-16. Throws xlerror "string is too long" above 65535 characters (255 with byteLength).
  void assign(std::u16string_view value, RecordPool& pool);
  std::u16string_view view() const { return text == nullptr ? std::u16string_view() : std::u16string_view(text, cch); }
  // Bytes of the file form.
  std::size_t size() const { return (byteLength ? 1u : 2u) + 1u + (fHighByte ? 2u * cch : cch); }
  void write(Xls& xls) const;
};

// 8-bit count, flags, characters; never continued.
struct ShortXLUnicodeString {
  std::uint8_t cch = 0;
  bool fHighByte = false;
  const char16_t* text = nullptr;

  // Reads from the front of `bytes`; returns the bytes consumed, 0 when `bytes` is too short for the string.
  std::size_t read(std::span<const std::byte> bytes, RecordPool& pool, const TextForm& form = {});
  // Throws xlerror "ShortXLUnicodeString: string is too long" above 255 characters.
  void assign(std::u16string_view value, RecordPool& pool);
  std::u16string_view view() const { return text == nullptr ? std::u16string_view() : std::u16string_view(text, cch); }
  std::size_t size() const { return 2u + (fHighByte ? 2u * cch : cch); }
  void write(Xls& xls) const;
};

// Flags and characters; the owning record holds the count.
struct XLUnicodeStringNoCch {
  std::uint16_t cch = 0;
  bool fHighByte = false;
  const char16_t* text = nullptr;

  // As XLUnicodeString::read, but every CONTINUE part starts with a flag byte of its own; the last part's flag is kept.
  void read(Xls& xls, RecordPool& pool, std::uint16_t length, std::uint16_t& remaining, const TextForm& form = {});
  void assign(std::u16string_view value, RecordPool& pool);
  std::u16string_view view() const { return text == nullptr ? std::u16string_view() : std::u16string_view(text, cch); }
  std::size_t size() const { return 1u + (fHighByte ? 2u * cch : cch); }
  void write(Xls& xls) const;
};

// Writes characters low byte first, one byte each unless `wide`.
void writeCharacters(Xls& xls, std::u16string_view text, bool wide);

}  // namespace rubrica
