// An .xls sheet itself: construction, name, state and protection.
#include "biff/sheet_impl.h"

#include <algorithm>

#include "biff/book_impl.h"

namespace rubrica {
namespace {

constexpr int kMostSheetState = 2;

}  // namespace

SheetImplT::SheetImplT(BookImplT& book, std::u16string name) : _book(&book), _name(std::move(name)) {
  _bof.dt = Bof::kWorksheet;
}

SheetImplT::Text SheetImplT::name() {
  return _name.c_str();
}

void SheetImplT::setName(Text name) {
  guarded(state(), [&] {
    _name = _book->usableSheetName(name, this);
    _book->forgetSheetNames();
  });
}

bool SheetImplT::protect() {
  return _protection.protect.value_or(0) != 0;
}

void SheetImplT::setProtect(bool protect, Text password, int enhanced) {
  guarded(state(), [&] {
    _protection.protect = protect ? 1 : 0;
    _protection.password.reset();
    if (password != nullptr) _protection.password = passwordVerifier(password);
    _protection.objProtect = _protection.scenProtect = 1;
    if (enhanced < 0) return;
    _protection.objProtect = (enhanced & 1) == 0 ? 1 : 0;
    _protection.scenProtect = (enhanced & 2) == 0 ? 1 : 0;
    _features.addProtection(static_cast<std::uint32_t>(enhanced));
  });
}

SheetState SheetImplT::hidden() {
  const BoundSheet8* bound = _book->boundSheetOf(*this);
  return bound == nullptr ? SheetState::visible : static_cast<SheetState>(bound->hsState & 3);
}

bool SheetImplT::setHidden(SheetState sheetState) {
  return guarded(state(), false, [&] {
    BoundSheet8* bound = _book->boundSheetOf(*this);
    const int value = static_cast<int>(sheetState);
    if (bound == nullptr || value < 0 || value > kMostSheetState) throw xlerror("hidden is out of range");
    bound->hsState = static_cast<std::uint8_t>(value);
    return true;
  });
}

}  // namespace rubrica
