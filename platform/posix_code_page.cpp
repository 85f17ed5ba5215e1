#include <algorithm>
#include <array>
#include <bit>
#include <cerrno>
#include <iconv.h>

#include "platform/text.h"

namespace rubrica::platform {

namespace {

// Pages whose converter isn't called "CP" and the number. Where two names stand, the second is for C libraries that
// don't know the first.
struct PageName {
  std::uint16_t page;
  const char* name;
  const char* otherName;
};

constexpr std::array kPageNames{
    PageName{367, "ASCII", nullptr},
    PageName{1361, "JOHAB", nullptr},
    PageName{10000, "MACINTOSH", nullptr},
    PageName{10001, "CP932", nullptr},
    PageName{10002, "BIG5", nullptr},
    PageName{10003, "CP949", nullptr},
    PageName{10004, "MACARABIC", "ISO-8859-6"},
    PageName{10005, "MACHEBREW", "ISO-8859-8"},
    PageName{10006, "MACGREEK", "ISO-8859-7"},
    PageName{10007, "MAC-CYRILLIC", "MACCYRILLIC"},
    PageName{10008, "GB2312", nullptr},
    PageName{10010, "MACROMANIA", nullptr},
    PageName{10017, "MAC-UK", "MACUKRAINE"},
    PageName{10021, "MACTHAI", "CP874"},
    PageName{10029, "MAC-CENTRALEUROPE", "MACCENTRALEUROPE"},
    PageName{10079, "MAC-IS", "MACICELAND"},
    PageName{10081, "MACTURKISH", nullptr},
    PageName{10082, "MACCROATIAN", nullptr},
    PageName{32768, "MACINTOSH", nullptr},
    PageName{32769, "CP1252", nullptr},
    PageName{65001, "UTF-8", nullptr},
};

// Text of this page has two bytes a character in the file; its one-byte form holds the low bytes alone.
constexpr std::uint16_t kUtf16Page = 1200;
constexpr char16_t kReplacement = 0xFFFD;
constexpr const char* kUtf16Units = std::endian::native == std::endian::little ? "UTF-16LE" : "UTF-16BE";

class Converter {
 public:
  explicit Converter(std::uint16_t page) {
    const auto* named =
        std::find_if(kPageNames.begin(), kPageNames.end(), [page](const PageName& p) { return p.page == page; });
    if (named == kPageNames.end()) {
      open(("CP" + std::to_string(page)).c_str());
      return;
    }
    open(named->name);
    if (!isOpen() && named->otherName != nullptr) open(named->otherName);
  }
  ~Converter() {
    if (isOpen()) iconv_close(_handle);
  }
  Converter(const Converter&) = delete;
  Converter& operator=(const Converter&) = delete;

  bool isOpen() const { return _handle != kClosed; }

  std::u16string convert(std::string_view bytes) {
    std::u16string out;
    out.reserve(bytes.size());
    char* in = const_cast<char*>(bytes.data());  // iconv's signature; it doesn't write there
    std::size_t inLeft = bytes.size();
    while (inLeft != 0) {
      const int error = step(&in, &inLeft, out);
      if (error == 0 || error == E2BIG) continue;
      out.push_back(kReplacement);
      if (error == EINVAL) break;  // the text ends within a character
      ++in;
      --inLeft;
    }
    // Pages with combining accents hold the last letter back until they know that no accent follows.
    step(nullptr, nullptr, out);
    return out;
  }

 private:
  // Appends what one call of iconv gives; 0, or why it stopped.
  int step(char** in, std::size_t* inLeft, std::u16string& out) {
    std::array<char16_t, 256> units{};
    char* to = reinterpret_cast<char*>(units.data());
    std::size_t toLeft = sizeof units;
    const std::size_t result = iconv(_handle, in, inLeft, &to, &toLeft);
    const int error = result == static_cast<std::size_t>(-1) ? errno : 0;
    out.append(units.data(), (sizeof units - toLeft) / sizeof(char16_t));
    return error;
  }

  void open(const char* name) { _handle = iconv_open(kUtf16Units, name); }

  inline static const iconv_t kClosed = reinterpret_cast<iconv_t>(-1);
  iconv_t _handle = kClosed;
};

std::u16string utf16FromLatin1(std::string_view bytes) {
  std::u16string out(bytes.size(), u'\0');
  std::transform(bytes.begin(), bytes.end(), out.begin(),
                 [](char c) { return static_cast<char16_t>(static_cast<unsigned char>(c)); });
  return out;
}

}  // namespace

std::u16string utf16FromCodePage(std::uint16_t codePage, std::string_view bytes) {
  if (codePage == kUtf16Page) return utf16FromLatin1(bytes);
  Converter converter(codePage);
  return converter.isOpen() ? converter.convert(bytes) : utf16FromLatin1(bytes);
}

}  // namespace rubrica::platform
