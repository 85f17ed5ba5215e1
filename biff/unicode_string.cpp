#include "biff/unicode_string.h"

#include <algorithm>
#include <array>
#include <vector>

#include "biff/records/record_ids.h"
#include "engine/xlerror.h"
#include "platform/text.h"

namespace rubrica {
namespace {

// Messages of the two strings that may be continued.
struct PartMessages {
  const char* noContinue;
  const char* empty;
  const char* odd;
  const char* overflowWide;
  const char* overflowNarrow;
};
constexpr PartMessages kStringMessages = {
    "error in XLUnicodeString record #1", "XLUnicodeString::read(): data is empty",
    "error in XLUnicodeString record #2", "error in XLUnicodeString record #3", "error in XLUnicodeString record #4"};
constexpr PartMessages kNoCchMessages = {
    "error in XLUnicodeString record #1", "XLUnicodeStringNoCch::read(): data is empty",
    "error in XLUnicodeString record #2", "error in XLUnicodeString record #3", "error in XLUnicodeString record #4"};

void nextContinue(Xls& xls, std::uint16_t& remaining, const char* message) {
  std::uint16_t recordId = 0;
  if (xls.readInt16(recordId) != 2 || recordId != id::kContinue) throw xlerror(message);
  xls.readInt16(remaining);
}

// Widens the bytes of one part into `target`; returns the characters made.
std::size_t widen(std::span<const std::byte> bytes, bool wide, char16_t* target) {
  if (wide) {
    std::memcpy(target, bytes.data(), bytes.size());
    return bytes.size() / 2;
  }
  std::transform(bytes.begin(), bytes.end(), target,
                 [](std::byte b) { return static_cast<char16_t>(std::to_integer<unsigned char>(b)); });
  return bytes.size();
}

// Reads `cch` characters over as many CONTINUE records as it takes.
const char16_t* readParts(Xls& xls, RecordPool& pool, std::uint16_t cch, bool& wide, bool flagEveryPart,
                          std::uint16_t& remaining, const PartMessages& messages) {
  char16_t* text = pool.allocateText(std::size_t{cch} + 1);
  std::size_t done = 0;
  for (bool first = true; done < cch; first = false) {
    if (remaining == 0) {
      nextContinue(xls, remaining, messages.noContinue);
      if (remaining == 0) throw xlerror(messages.empty);
    }
    if (flagEveryPart && !first) {
      std::uint8_t flags = 0;
      xls.readInt8(flags);
      --remaining;
      wide = (flags & text_flags::kHighByte) != 0;
    }
    const std::size_t wanted = (cch - done) * (wide ? 2 : 1);
    const auto part = xls.view(std::min<std::size_t>(remaining, wanted));
    if (part.empty()) throw xlerror(messages.empty);
    if (wide && part.size() % 2 != 0) throw xlerror(messages.odd);
    if (done + part.size() / (wide ? 2 : 1) > cch)
      throw xlerror(wide ? messages.overflowWide : messages.overflowNarrow);
    remaining = static_cast<std::uint16_t>(remaining - part.size());
    done += widen(part, wide, text + done);
  }
  text[cch] = u'\0';
  return text;
}

// BIFF5 text: `length` bytes in the book's code page.
template <class String>
void readCodePageText(String& string, Xls& xls, RecordPool& pool, std::uint16_t length, std::uint16_t& remaining,
                      const TextForm& form) {
  std::string bytes(length, '\0');
  if (xls.readWithContinueRecords(bytes.data(), length, remaining) != length) {
    throw xlerror(kStringMessages.empty);
  }
  string.assign(platform::utf16FromCodePage(form.codePage, bytes), pool);
}

}  // namespace

void XLUnicodeString::read(Xls& xls, RecordPool& pool, std::uint16_t& remaining, const TextForm& form) {
  if (byteLength) {
    std::uint8_t length = 0;
    xls.readWithContinueRecords(&length, 1, remaining);
    cch = length;
  } else {
    xls.readInt16(cch, remaining);
  }
  fHighByte = false;
  text = nullptr;
  if (cch == 0 && remaining == 0) return;
  if (form.noFlags) {
    readCodePageText(*this, xls, pool, cch, remaining, form);
    return;
  }
  std::uint8_t flags = 0;
  xls.readWithContinueRecords(&flags, 1, remaining);
  fHighByte = (flags & text_flags::kHighByte) != 0;
  text = readParts(xls, pool, cch, fHighByte, false, remaining, kStringMessages);
}

void XLUnicodeString::assign(std::u16string_view value, RecordPool& pool) {
  if (value.size() > (byteLength ? 255u : 65535u)) throw xlerror("string is too long");
  cch = static_cast<std::uint16_t>(value.size());
  fHighByte = true;
  text = pool.copyText(value);
}

void XLUnicodeString::write(Xls& xls) const {
  if (byteLength) {
    if (cch > 255) throw xlerror("string is too long");
    xls.writeInt8(static_cast<std::uint8_t>(cch));
  } else {
    xls.writeInt16(cch);
  }
  xls.writeInt8(fHighByte ? text_flags::kHighByte : 0);
  writeCharacters(xls, view(), fHighByte);
}

std::size_t ShortXLUnicodeString::read(std::span<const std::byte> bytes, RecordPool& pool, const TextForm& form) {
  const std::size_t head = form.noFlags ? 1 : 2;
  if (bytes.size() < head) return 0;
  const auto length = std::to_integer<std::uint8_t>(bytes[0]);
  const bool wide = !form.noFlags && (std::to_integer<std::uint8_t>(bytes[1]) & text_flags::kHighByte) != 0;
  const std::size_t size = wide ? 2u * length : length;
  if (bytes.size() < head + size) return 0;
  const auto characters = bytes.subspan(head, size);
  if (form.noFlags) {
    const std::string_view narrow(reinterpret_cast<const char*>(characters.data()), characters.size());
    assign(platform::utf16FromCodePage(form.codePage, narrow), pool);
    return head + size;
  }
  cch = length;
  fHighByte = wide;
  char16_t* copy = pool.allocateText(std::size_t{length} + 1);
  copy[widen(characters, wide, copy)] = u'\0';
  text = copy;
  return head + size;
}

void ShortXLUnicodeString::assign(std::u16string_view value, RecordPool& pool) {
  if (value.size() > 255) throw xlerror("ShortXLUnicodeString: string is too long");
  cch = static_cast<std::uint8_t>(value.size());
  fHighByte = true;
  text = pool.copyText(value);
}

void ShortXLUnicodeString::write(Xls& xls) const {
  xls.writeInt8(cch);
  xls.writeInt8(fHighByte ? text_flags::kHighByte : 0);
  writeCharacters(xls, view(), fHighByte);
}

void XLUnicodeStringNoCch::read(Xls& xls, RecordPool& pool, std::uint16_t length, std::uint16_t& remaining,
                                const TextForm& form) {
  cch = length;
  if (form.noFlags) {
    readCodePageText(*this, xls, pool, length, remaining, form);
    return;
  }
  std::uint8_t flags = 0;
  xls.readWithContinueRecords(&flags, 1, remaining);
  fHighByte = (flags & text_flags::kHighByte) != 0;
  text = readParts(xls, pool, length, fHighByte, true, remaining, kNoCchMessages);
}

void XLUnicodeStringNoCch::assign(std::u16string_view value, RecordPool& pool) {
  if (value.size() > 65535) throw xlerror("string is too long");
  cch = static_cast<std::uint16_t>(value.size());
  fHighByte = true;
  text = pool.copyText(value);
}

void XLUnicodeStringNoCch::write(Xls& xls) const {
  xls.writeInt8(fHighByte ? text_flags::kHighByte : 0);
  writeCharacters(xls, view(), fHighByte);
}

void writeCharacters(Xls& xls, std::u16string_view text, bool wide) {
  if (wide) {
    xls.write(text.data(), text.size() * 2);
    return;
  }
  std::array<char, 512> buffer;
  while (!text.empty()) {
    const auto part = text.substr(0, buffer.size());
    std::transform(part.begin(), part.end(), buffer.begin(), [](char16_t c) { return static_cast<char>(c & 0xFF); });
    xls.write(buffer.data(), part.size());
    text.remove_prefix(part.size());
  }
}

}  // namespace rubrica
