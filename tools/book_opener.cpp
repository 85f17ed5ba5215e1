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

OpenedBook openBook(const std::string& path) {
  OpenedBook opened;
  opened.path = path;
  opened.form = formOf(path);
  opened.book = createBook(opened.form);
  if (opened.book == nullptr) {
    opened.error = path + ": this version reads no ." + opened.form + " files";
    return opened;
  }
  if (!opened.book->load(wideText(path).c_str())) {
    opened.error = path + ": " + opened.book->errorMessage();
    opened.book.reset();
    return opened;
  }
  if (opened.form == "xlsx") opened.book->setRgbMode(true);
  return opened;
}

std::u16string wideText(const std::string& utf8) {
  return platform::utf16FromUtf8Lossy(utf8);
}

std::string narrowText(std::u16string_view text) {
  return platform::utf8FromUtf16Lossy(text);
}

}  // namespace rubrica::tools
