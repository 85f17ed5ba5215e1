#include "source/ooxml/string_hooks.h"

#include "lmx/text.h"
#include "lmx/value.h"

namespace rubrica::ooxml {

namespace {

constexpr std::string_view kBefore = "<si><t>";
constexpr std::string_view kBehind = "</t></si>";

bool isPlainAscii(char c) {
  const bool isPrintable = static_cast<unsigned char>(c - ' ') <= '~' - ' ';
  return isPrintable && c != '&';
}

// Without a way out of the loop, so that it is done many bytes at a time.
bool isPlainAscii(std::string_view text) {
  unsigned others = 0;
  for (const char c : text) others |= static_cast<unsigned>(!isPlainAscii(c));
  return others == 0;
}

// With characters beyond ASCII too, as long as they are read as they stand.
bool isPlain(std::string_view text) {
  if (isPlainAscii(text)) return true;
  const char* const end = text.data() + text.size();
  for (const char* p = text.data(); p != end;) {
    p = isPlainAscii(*p) ? p + 1 : lmx::pass_beyond_ascii(p, end);
    if (p == nullptr) return false;
  }
  return true;
}

}  // namespace

std::size_t readPlainString(std::string_view text, std::string_view& content) {
  if (!text.starts_with(kBefore)) return 0;
  const std::size_t end = text.find('<', kBefore.size());
  if (end == text.npos || !text.substr(end).starts_with(kBehind)) return 0;
  content = text.substr(kBefore.size(), end - kBefore.size());
  return isPlain(content) ? end + kBehind.size() : 0;
}

void writePlainString(std::string_view content, std::string& out) {
  out.append(kBefore);
  lmx::append_escaped(out, content);
  out.append(kBehind);
}

}  // namespace rubrica::ooxml
