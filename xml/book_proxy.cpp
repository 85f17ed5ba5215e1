#include "xml/book_proxy.h"

#include <string_view>

#include "xml/book_impl.h"
#include "xml/sheet_impl.h"

namespace rubrica {
namespace {

// Where memory has run out, a second try would only run out of it again.
constexpr std::string_view kOutOfMemory = "bad allocation";

std::unique_ptr<IBookT<char16_t>> makeBook(bool strict) {
  if (strict) return std::make_unique<XMLBookImplT<excelStrict_tag>>();
  return std::make_unique<XMLBookImplT<excelNormal_tag>>();
}

}  // namespace

XMLBookProxy::XMLBookProxy() : _book(makeBook(false)) {}
XMLBookProxy::~XMLBookProxy() = default;

void XMLBookProxy::release() {
  delete this;
}

bool XMLBookProxy::tryBothFlavours(const std::function<bool(IBookT<char16_t>&)>& load) {
  if (load(*_book)) return true;
  if (_book->errorMessage() == kOutOfMemory) return false;
  _book.reset();
  _isStrict = !_isStrict;
  _book = makeBook(_isStrict);
  return load(*_book);
}

bool XMLBookProxy::load(Text filename, Text tempFile) {
  return tryBothFlavours([=](auto& book) { return book.load(filename, tempFile); });
}

bool XMLBookProxy::loadSheet(Text filename, int sheetIndex, Text tempFile) {
  return tryBothFlavours([=](auto& book) { return book.loadSheet(filename, sheetIndex, tempFile); });
}

bool XMLBookProxy::loadPartially(Text filename, int sheetIndex, int firstRow, int lastRow, Text tempFile) {
  return tryBothFlavours(
      [=](auto& book) { return book.loadPartially(filename, sheetIndex, firstRow, lastRow, tempFile); });
}

bool XMLBookProxy::loadInfo(Text filename) {
  return _book->loadInfo(filename);
}

bool XMLBookProxy::loadRaw(const void* data, std::size_t size, int sheetIndex, int firstRow, int lastRow) {
  return tryBothFlavours([=](auto& book) { return book.loadRaw(data, size, sheetIndex, firstRow, lastRow); });
}

Book* createXmlBook() noexcept {
  try {
    return new XMLBookProxy();
  } catch (...) {
    return nullptr;
  }
}

}  // namespace rubrica
