// Pictures of an .xls book.
#include "biff/book_impl.h"

namespace rubrica {

int BookImplT::pictureSize() {
  return guarded(_state, 0, [&]() -> int { throw xlerror(kNotSupported); });
}

PictureType BookImplT::getPicture(int, const void**, std::size_t*) {
  return guarded(_state, PictureType::notFound, [&]() -> PictureType { throw xlerror(kNotSupported); });
}

int BookImplT::addPicture(Text) {
  return guarded(_state, -1, [&]() -> int { throw xlerror(kNotSupported); });
}

int BookImplT::addPicture2(const void*, std::size_t) {
  return guarded(_state, -1, [&]() -> int { throw xlerror(kNotSupported); });
}

int BookImplT::addPictureAsLink(Text, bool) {
  return guarded(_state, -1, [&]() -> int { throw xlerror(kNotForXls); });
}

}  // namespace rubrica
