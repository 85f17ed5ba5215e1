#include "host/book_share.h"

#include <unordered_set>

namespace rubrica::host {
namespace {

struct ReleaseBook {
  std::unordered_set<const Sheet*> deletedSheets;

  void operator()(Book* book) const { book->release(); }
};

}  // namespace

BookPtr shareBook(Book* book) {
  return book != nullptr ? BookPtr(book, ReleaseBook{}) : BookPtr();
}

bool deleteSheet(const BookPtr& book, int index) {
  const Sheet* sheet = book->getSheet(index);
  if (!book->delSheet(index)) return false;
  if (sheet != nullptr) boost::get_deleter<ReleaseBook>(book)->deletedSheets.insert(sheet);
  return true;
}

Sheet* addSheet(const BookPtr& book, const char16_t* name, Sheet* initSheet) {
  Sheet* sheet = book->addSheet(name, initSheet);
  // A new sheet may stand where a deleted one stood.
  if (sheet != nullptr) boost::get_deleter<ReleaseBook>(book)->deletedSheets.erase(sheet);
  return sheet;
}

bool isDeleted(const BookPtr& book, const Sheet* sheet) {
  return boost::get_deleter<ReleaseBook>(book)->deletedSheets.contains(sheet);
}

}  // namespace rubrica::host
