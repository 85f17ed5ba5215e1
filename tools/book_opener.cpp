#include "tools/book_opener.h"

#include <array>
#include <fstream>

#include "platform/text.h"

namespace rubrica::tools {

BookPtr createBook(const std::string& form) {
  if (form == "xls") return BookPtr(createBiffBook());
  if (form == "xlsx") return BookPtr(createXmlBook());
  return nullptr;
}

std::string formOf(const std::string& path) {
  std::array<char, 2> signature{};
  std::ifstream file(path, std::ios::binary);
  file.read(signature.data(), signature.size());
  return signature == std::array{'P', 'K'} ? "xlsx" : "xls";
}

std::u16string wideText(const std::string& utf8) {
  return platform::utf16FromUtf8Lossy(utf8);
}

}  // namespace rubrica::tools
