#include "biff/external_book.h"

#include "biff/records/record_io.h"
#include "biff/unicode_string.h"

namespace rubrica {
namespace {

// Codes within an encoded virtual path.
enum PathCode : char16_t {
  kVolume = 1,      // a drive letter follows, or "@" before a server
  kSameVolume = 2,  // the root of this file's drive
  kDownDirectory = 3,
  kUpDirectory = 4,
  kLongVolume = 5,  // a length and a protocol with a server follow
  kLastCode = 8     // 6 to 8: the program's start and library directories
};
constexpr char16_t kEncoded = 1;
constexpr char16_t kServer = u'@';
constexpr std::size_t kMarkerSize = 4;  // of payloads that name no file

// A 16-bit count, flags and characters; nothing when they are cut off.
std::optional<std::u16string> takeText(RecordBody& body) {
  std::uint16_t length = 0;
  std::uint8_t flags = 0;
  if (!body.take(length) || !body.take(flags)) return std::nullopt;
  const std::size_t width = (flags & text_flags::kHighByte) != 0 ? 2 : 1;
  if (body.left() < length * width) return std::nullopt;
  const auto bytes = body.takeBytes(length * width);
  std::u16string text(length, u'\0');
  for (std::size_t i = 0; i < length; ++i) {
    auto unit = std::to_integer<unsigned>(bytes[i * width]);
    if (width == 2) unit |= std::to_integer<unsigned>(bytes[i * width + 1]) << 8;
    text[i] = static_cast<char16_t>(unit);
  }
  return text;
}

}  // namespace

std::u16string readablePath(std::u16string_view virtualPath) {
  if (virtualPath.empty() || virtualPath[0] != kEncoded) return std::u16string(virtualPath);
  std::u16string path;
  const std::u16string_view coded = virtualPath.substr(1);
  for (std::size_t i = 0; i < coded.size(); ++i) {
    switch (coded[i]) {
      case kVolume:
        if (++i == coded.size()) break;
        path += coded[i] == kServer ? u"\\\\" : std::u16string{coded[i], u':', u'\\'};
        break;
      case kSameVolume:
      case kDownDirectory:
        path += u'\\';
        break;
      case kUpDirectory:
        path += u"..\\";
        break;
      case kLongVolume:
        ++i;
        break;
      default:
        if (coded[i] > kLastCode) path += coded[i];
    }
  }
  return path;
}

std::optional<std::u16string> ExternalBook::sheetText(int first, int last) const {
  const auto count = static_cast<int>(sheets.size());
  if (first < 0 || last < first || last >= count) return std::nullopt;
  std::u16string text = directory + u'[' + file + u']' + sheets[static_cast<std::size_t>(first)];
  if (last != first) text.append(1, u':').append(sheets[static_cast<std::size_t>(last)]);
  return text;
}

std::optional<ExternalBook> externalBook(std::span<const std::byte> payload) {
  if (payload.size() <= kMarkerSize) return std::nullopt;
  RecordBody body(payload);
  std::uint16_t count = 0;
  body.take(count);
  const auto path = takeText(body);
  if (!path || count == 0) return std::nullopt;
  const std::u16string readable = readablePath(*path);
  const std::size_t separator = readable.find_last_of(u"\\/");
  const std::size_t fileBegin = separator == readable.npos ? 0 : separator + 1;
  ExternalBook book{readable.substr(0, fileBegin), readable.substr(fileBegin), {}};
  for (; count > 0; --count) {
    auto sheet = takeText(body);
    if (!sheet) break;
    book.sheets.push_back(std::move(*sheet));
  }
  return book;
}

}  // namespace rubrica
