#include <algorithm>
#include <array>
#include <bit>
#include <cerrno>
#include <iconv.h>

#include "platform/system_code_page.h"

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
    PageName{65001, "UTF-8", nullptr},
};

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
      out.push_back(kNoCharacter);
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

  // NOLINTNEXTLINE(performance-no-int-to-ptr): what iconv_open answers on failure
  inline static const iconv_t kClosed = reinterpret_cast<iconv_t>(-1);
  iconv_t _handle = kClosed;
};

}  // namespace

std::optional<std::u16string> utf16BySystem(std::uint16_t page, std::string_view bytes) {
  Converter converter(page);
  if (!converter.isOpen()) return std::nullopt;
  return converter.convert(bytes);
}

}  // namespace rubrica::platform
