// The sheets of an .xls book: adding, moving, removing, naming and activating them.
#include <algorithm>

#include "biff/book_impl.h"
#include "engine/make_room.h"

namespace rubrica {
std::u16string_view BookImplT::boundSheetName(int position) const {
  return _boundSheets[static_cast<std::size_t>(position)].name.view();
}

std::optional<int> BookImplT::findSheet(std::u16string_view name) const {
  while (_sheetsByName.size() < _boundSheets.size()) {
    const std::size_t next = _sheetsByName.size();
    _sheetsByName.add(next < _sheets.size() ? std::u16string_view(_sheets[next]->currentName())
                                            : _boundSheets[next].name.view());
  }
  const auto found = _sheetsByName.find(name);
  return found ? std::optional<int>(static_cast<int>(*found)) : std::nullopt;
}

int BookImplT::positionOf(const SheetImplT& sheet) const {
  const auto found = std::find_if(_sheets.begin(), _sheets.end(), [&](const auto& s) { return s.get() == &sheet; });
  return found == _sheets.end() ? -1 : static_cast<int>(found - _sheets.begin());
}

BoundSheet8* BookImplT::boundSheetOf(const SheetImplT& sheet) {
  const int position = positionOf(sheet);
  return position < 0 ? nullptr : &_boundSheets[static_cast<std::size_t>(position)];
}

std::u16string BookImplT::usableSheetName(Text name, const SheetImplT* except) {
  if (name == nullptr) throw xlerror("sheet name can't be 0");
  if (_state.text.utf8Mode()) _state.text.setWide(name);
  std::u16string usable = name;
  if (usable.size() > kMaxSheetName) {
    usable.resize(kMaxSheetName);
    _state.setMessage(kSheetNameIsCut);
  }
  const auto taken = findSheet(usable);
  if (taken && (except == nullptr || *taken != positionOf(*except)))
    throw xlerror("book already contains such sheet name");
  checkSheetName(usable);
  return usable;
}

ISheetT<char16_t>* BookImplT::addSheet(Text name, ISheetT<char16_t>* initSheet) {
  return guarded(_state, static_cast<ISheetT<char16_t>*>(nullptr), [&] {
    if (_boundSheets.size() != _sheets.size()) throw xlerror("integrity error: _boundSheets.size() != _sheets.size()");
    return insertSheetAt(static_cast<int>(_sheets.size()), name, initSheet);
  });
}

ISheetT<char16_t>* BookImplT::insertSheet(int index, Text name, ISheetT<char16_t>* initSheet) {
  return guarded(_state, static_cast<ISheetT<char16_t>*>(nullptr),
                 [&] { return insertSheetAt(index, name, initSheet); });
}

ISheetT<char16_t>* BookImplT::insertSheetAt(int index, Text name, ISheetT<char16_t>* initSheet) {
  if (index < 0 || index > static_cast<int>(_sheets.size())) throw xlerror("index is out of range");
  std::u16string usable = usableSheetName(name, nullptr);
  auto* source = dynamic_cast<SheetImplT*>(initSheet);
  if (initSheet != nullptr && source == nullptr) throw xlerror("not supported");
  BoundSheet8 bound;
  bound.name.assign(usable, _state.pool);
  auto sheet = source == nullptr ? std::make_unique<SheetImplT>(*this, std::move(usable))
                                 : std::make_unique<SheetImplT>(*this, std::move(usable), *source);
  sheet->setA1Mode(!_refR1C1);
  const int sourcePosition = source == nullptr ? -1 : positionOf(*source);
  SheetImplT* made = sheet.get();
  makeRoom(_boundSheets);
  makeRoom(_sheets);
  makeRoom(_tabIds);
  _boundSheets.insert(_boundSheets.begin() + index, bound);
  _sheets.insert(_sheets.begin() + index, std::move(sheet));
  if (made != _sheets.back().get()) forgetSheetNames();
  const auto shifted = [index](int position) { return position >= index ? position + 1 : position; };
  renumberSheets(shifted);
  if (sourcePosition >= 0) cloneNames(shifted(sourcePosition), index);
  if (_sheets.size() == 1) {
    activate(0);
  } else if (_globals.window1.itabCur >= index) {
    ++_globals.window1.itabCur;
  }
  rebuildTabIds();
  return made;
}

void BookImplT::rebuildTabIds() {
  _tabIds.resize(_boundSheets.size());
  for (std::size_t i = 0; i < _tabIds.size(); ++i) _tabIds[i] = static_cast<std::uint16_t>(i + 1);
}

ISheetT<char16_t>* BookImplT::getSheet(int index) {
  return guarded(_state, static_cast<ISheetT<char16_t>*>(nullptr), [&]() -> ISheetT<char16_t>* {
    if (index < 0 || index >= static_cast<int>(_sheets.size())) throw xlerror("index is out of range");
    return _sheets[static_cast<std::size_t>(index)].get();
  });
}

BookImplT::Text BookImplT::getSheetName(int index) {
  return guarded(_state, Text{}, [&]() -> Text {
    if (index < 0 || index >= static_cast<int>(_boundSheets.size())) throw xlerror("index is out of range");
    const ShortXLUnicodeString& name = _boundSheets[static_cast<std::size_t>(index)].name;
    return name.text == nullptr ? u"" : name.text;
  });
}

SheetType BookImplT::sheetType(int index) {
  return guarded(_state, SheetType::unknown, [&] {
    if (index < 0 || index >= static_cast<int>(_sheets.size())) throw xlerror("index is out of range");
    switch (_sheets[static_cast<std::size_t>(index)]->substreamType()) {
      case Bof::kWorksheet:
        return SheetType::sheet;
      case Bof::kChart:
        return SheetType::chart;
      default:
        return SheetType::unknown;
    }
  });
}

bool BookImplT::moveSheet(int srcIndex, int dstIndex) {
  return guarded(_state, false, [&] {
    const auto count = static_cast<int>(_sheets.size());
    if (srcIndex < 0 || srcIndex >= count) throw xlerror("srcIndex is out of range");
    if (dstIndex < 0 || dstIndex > count) throw xlerror("dstIndex is out of range");
    if (srcIndex == dstIndex) throw xlerror("there is no sense: srcIndex is equal to dstIndex");
    if (dstIndex == srcIndex + 1) throw xlerror("there is no sense: srcIndex is equal to dstIndex - 1");
    const auto moveIn = [&](auto& list) {
      const auto begin = list.begin();
      if (srcIndex < dstIndex) {
        std::rotate(begin + srcIndex, begin + srcIndex + 1, begin + dstIndex);
      } else {
        std::rotate(begin + dstIndex, begin + srcIndex, begin + srcIndex + 1);
      }
    };
    moveIn(_boundSheets);
    moveIn(_sheets);
    forgetSheetNames();
    const int target = srcIndex < dstIndex ? dstIndex - 1 : dstIndex;
    const auto moved = [=](int position) {
      if (position == srcIndex) return target;
      if (srcIndex < position && position <= target) return position - 1;
      if (target <= position && position < srcIndex) return position + 1;
      return position;
    };
    renumberSheets(moved);
    _globals.window1.itabCur = static_cast<std::uint16_t>(moved(_globals.window1.itabCur));
    return true;
  });
}

bool BookImplT::delSheet(int index) {
  return guarded(_state, false, [&] {
    const auto count = static_cast<int>(_sheets.size());
    if (index < 0 || index >= count) throw xlerror("index is out of range");
    if (count == 1) throw xlerror("can't remove the last sheet in workbook");
    const auto without = [index](int position) {
      if (position == index) return int{LinkTable::kDeletedSheet};
      return position > index ? position - 1 : position;
    };
    forgetDrawing(*_sheets[static_cast<std::size_t>(index)]);
    renumberSheets(without);
    _boundSheets.erase(_boundSheets.begin() + index);
    _sheets.erase(_sheets.begin() + index);
    forgetSheetNames();
    forgetStringUse();
    activate(std::min<int>(_globals.window1.itabCur, count - 2));
    rebuildTabIds();
    return true;
  });
}

int BookImplT::sheetCount() {
  return static_cast<int>(_sheets.size());
}

int BookImplT::activeSheet() {
  return _globals.window1.itabCur;
}

void BookImplT::setActiveSheet(int index) {
  guarded(_state, [&] {
    if (index < 0 || index >= static_cast<int>(_sheets.size())) throw xlerror("index is out of range");
    activate(index);
  });
}

void BookImplT::activate(int index) {
  _globals.window1.itabCur = static_cast<std::uint16_t>(index);
  for (std::size_t i = 0; i < _sheets.size(); ++i) _sheets[i]->setSelected(static_cast<int>(i) == index);
}

bool BookImplT::refR1C1() {
  return _sheets.empty() ? _refR1C1 : !_sheets.back()->a1Mode();
}

void BookImplT::setRefR1C1(bool refR1C1) {
  _refR1C1 = refR1C1;
  for (const auto& sheet : _sheets) sheet->setA1Mode(!refR1C1);
}

}  // namespace rubrica
