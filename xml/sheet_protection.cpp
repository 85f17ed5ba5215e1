// An .xlsx sheet itself: its name, its state in the book, its protection.
#include <algorithm>
#include <array>

#include "engine/password_verifier.h"
#include "xml/book_impl.h"
#include "xml/sheet_impl.h"
#include "xml/xstring.h"

namespace rubrica {
namespace {

constexpr std::array<std::string_view, 3> kStates = {"visible", "hidden", "veryHidden"};

// What users may do on a protected sheet, by the bits of the enhanced protection mask. The attributes say the opposite:
// true means that it is locked.
template <class Protection>
void setOptions(Protection& protection, unsigned allowed) {
  unsigned bit = 1;
  const auto isLocked = [&] {
    const bool locked = (allowed & bit) == 0;
    bit <<= 1;
    return locked;
  };
  protection.set_objects(isLocked());
  protection.set_scenarios(isLocked());
  protection.set_formatCells(isLocked());
  protection.set_formatColumns(isLocked());
  protection.set_formatRows(isLocked());
  protection.set_insertColumns(isLocked());
  protection.set_insertRows(isLocked());
  protection.set_insertHyperlinks(isLocked());
  protection.set_deleteColumns(isLocked());
  protection.set_deleteRows(isLocked());
  protection.set_selectLockedCells(isLocked());
  protection.set_sort(isLocked());
  protection.set_autoFilter(isLocked());
  protection.set_pivotTables(isLocked());
  protection.set_selectUnlockedCells(isLocked());
}

// The strict flavour knows no verifier of two bytes, and nothing weaker than what was asked for may stand in.
template <class Protection>
void setPassword(Protection& protection, const char16_t* password) {
  if constexpr (requires { protection.unset_password(); }) {
    protection.unset_password();
    if (password == nullptr) return;
    const std::uint16_t verifier = passwordVerifier(password);
    auto value = protection.get_password();
    value.bytes = {static_cast<std::uint8_t>(verifier >> 8), static_cast<std::uint8_t>(verifier & 0xFF)};
    protection.set_password(value);
  } else {
    if (password != nullptr) throw xlerror("not supported");
    protection.unset_algorithmName();
    protection.unset_hashValue();
    protection.unset_saltValue();
    protection.unset_spinCount();
  }
}

}  // namespace

template <class Tag>
bool XMLSheetImplT<Tag>::protect() {
  return guarded(_book->lastMessage(), false, [&] {
    const auto* protection = this->find_sheetProtection();
    return protection != nullptr && protection->get_sheet();
  });
}

template <class Tag>
void XMLSheetImplT<Tag>::setProtect(bool protect, Text password, int enhanced) {
  guarded(_book->lastMessage(), [&] {
    using Protection = std::remove_reference_t<decltype(this->get_sheetProtection())>;
    const auto* present = this->find_sheetProtection();
    Protection changed = present == nullptr ? Protection() : *present;
    setPassword(changed, password);
    changed.set_sheet(protect);
    changed.set_objects(protect);
    changed.set_scenarios(protect);
    if (enhanced >= 0) setOptions(changed, static_cast<unsigned>(enhanced));
    this->set_sheetProtection(changed);
  });
}

template <class Tag>
SheetState XMLSheetImplT<Tag>::hidden() {
  return guarded(_book->lastMessage(), SheetState::visible, [&] {
    const auto* entry = _book->entryOf(*this);
    const auto found =
        entry == nullptr ? kStates.begin() : std::find(kStates.begin(), kStates.end(), entry->get_state());
    return found == kStates.end() ? SheetState::visible : static_cast<SheetState>(found - kStates.begin());
  });
}

template <class Tag>
bool XMLSheetImplT<Tag>::setHidden(SheetState state) {
  return guarded(_book->lastMessage(), false, [&] {
    auto* entry = _book->entryOf(*this);
    const auto number = static_cast<std::size_t>(state);
    if (entry == nullptr || number >= kStates.size()) throw xlerror("hidden is out of range");
    const auto isVisible = [](const auto& sheet) { return sheet.get_state() == kStates[0]; };
    auto& sheets = _book->get_sheets();
    std::size_t visible = 0;
    for (std::size_t i = 0; i < sheets.size_sheet(); ++i) visible += isVisible(sheets.get_sheet(i)) ? 1 : 0;
    if (state != SheetState::visible && isVisible(*entry) && visible == 1) {
      throw xlerror("a workbook must contain at least one visible worksheet");
    }
    entry->set_state(std::string(kStates[number]));
    return true;
  });
}

template <class Tag>
typename XMLSheetImplT<Tag>::Text XMLSheetImplT<Tag>::name() {
  return guarded(_book->lastMessage(), Text{}, [&]() -> Text {
    fromXstring(ownName(), _text);
    return _text.c_str();
  });
}

template <class Tag>
void XMLSheetImplT<Tag>::setName(Text name) {
  guarded(_book->lastMessage(), [&] {
    const std::string before = ownName();
    std::string changed = toXstring(_book->usableSheetName(name, this));
    renameInNames(before, changed);
    _book->entryOf(*this)->set_name(std::move(changed));
  });
}

template class XMLSheetImplT<excelNormal_tag>;
template class XMLSheetImplT<excelStrict_tag>;

}  // namespace rubrica
