// Defined names, print areas and print titles of an .xlsx sheet: all of them texts of the workbook's list of names.
#include <algorithm>

#include "engine/address.h"
#include "xml/book_impl.h"
#include "xml/name_reference.h"
#include "xml/sheet_impl.h"
#include "xml/xstring.h"

namespace rubrica {
namespace {

constexpr char kPrintArea[] = "_xlnm.Print_Area", kPrintTitles[] = "_xlnm.Print_Titles";
constexpr std::size_t kMostNameCharacters = 255;
constexpr SheetRange kNoRange{-1, -1, -1, -1};

void set(int* target, int value) {
  if (target != nullptr) *target = value;
}

SheetRange ordered(int rowFirst, int rowLast, int colFirst, int colLast) {
  return {std::min(rowFirst, rowLast), std::max(rowFirst, rowLast), std::min(colFirst, colLast),
          std::max(colFirst, colLast)};
}

std::string checkedName(const char16_t* name) {
  const std::u16string_view text = viewOf(name);
  if (text.empty()) throw xlerror("name can't be empty");
  if (text.find(u' ') != text.npos) throw xlerror("space symbol isn't allowed");
  if (text.size() > kMostNameCharacters) throw xlerror("string is too long");
  return toXstring(text);
}

// The scope of an entry as callers number it.
template <class Name>
int scopeOf(const Name& name) {
  constexpr int kWorkbook = ISheetT<char16_t>::kScopeWorkbook;
  return name.isset_localSheetId() ? static_cast<int>(name.get_localSheetId()) : kWorkbook;
}

struct FirstRange {
  std::optional<SheetRange> range;
  bool skipped = false;  // some parts are no ranges
};

FirstRange firstRange(std::string_view text) {
  FirstRange found;
  for (const NamePart& part : nameParts(text)) {
    if (!part.range) found.skipped = true;
    if (part.range && !found.range) found.range = part.range;
  }
  return found;
}

// The parts of print titles: whole rows and whole columns. A range of everything is both.
struct PrintTitles {
  std::optional<SheetRange> rows, cols;
};

PrintTitles titlesOf(std::string_view text) {
  PrintTitles titles;
  for (const NamePart& part : nameParts(text)) {
    if (part.isWholeRows()) titles.rows = part.range;
    if (part.isWholeColumns()) titles.cols = part.range;
  }
  return titles;
}

}  // namespace

template <class Tag>
int XMLSheetImplT<Tag>::checkedScope(int scopeId) const {
  if (scopeId < 0) return kScopeWorkbook;
  if (scopeId >= _book->sheetCount()) throw xlerror("index is out of range");
  return scopeId;
}

template <class Tag>
typename XMLSheetImplT<Tag>::DefinedName* XMLSheetImplT<Tag>::findName(std::string_view name, int scope) {
  auto* names = _book->find_definedNames();
  if (names == nullptr) return nullptr;
  NameIndex& index = _book->nameIndex();
  if (index.size() > names->size_definedName()) index.forget();
  for (std::size_t i = index.size(); i < names->size_definedName(); ++i) {
    const DefinedName& entry = names->get_definedName(i);
    index.add(entry.get_name(), scopeOf(entry));
  }
  const auto position = index.find(name, scope);
  return position ? &names->get_definedName(*position) : nullptr;
}

template <class Tag>
typename XMLSheetImplT<Tag>::DefinedName& XMLSheetImplT<Tag>::needName(std::string_view name, int scope) {
  if (DefinedName* present = findName(name, scope)) return *present;
  DefinedName made;
  made.set_name(std::string(name));
  if (scope >= 0) made.set_localSheetId(static_cast<std::uint32_t>(scope));
  return _book->get_definedNames().append_definedName() = std::move(made);
}

template <class Tag>
bool XMLSheetImplT<Tag>::removeName(std::string_view name, int scope) {
  auto* names = _book->find_definedNames();
  for (std::size_t i = 0; names != nullptr && i < names->size_definedName(); ++i) {
    const DefinedName& entry = names->get_definedName(i);
    if (scopeOf(entry) != scope || !sameName(entry.get_name(), name)) continue;
    _book->nameIndex().forget();
    names->erase_definedName(i);
    if (names->size_definedName() == 0) _book->unset_definedNames();
    return true;
  }
  return false;
}

template <class Tag>
std::string XMLSheetImplT<Tag>::ownName() const {
  const auto* entry = _book->entryOf(*this);
  if (entry == nullptr) throw xlerror("sheet doen't have relationship with book");
  return entry->get_name();
}

template <class Tag>
bool XMLSheetImplT<Tag>::printRepeatRows(int* rowFirst, int* rowLast) {
  return guarded(_book->lastMessage(), false, [&] {
    const DefinedName* name = findName(kPrintTitles, _book->positionOf(*this));
    const auto rows = name == nullptr ? std::nullopt : titlesOf(name->get_value()).rows;
    if (!rows) throw xlerror("not found");
    set(rowFirst, rows->rowFirst);
    set(rowLast, rows->rowLast);
    return true;
  });
}

template <class Tag>
bool XMLSheetImplT<Tag>::printRepeatCols(int* colFirst, int* colLast) {
  return guarded(_book->lastMessage(), false, [&] {
    const DefinedName* name = findName(kPrintTitles, _book->positionOf(*this));
    const auto cols = name == nullptr ? std::nullopt : titlesOf(name->get_value()).cols;
    if (!cols) throw xlerror("print repeat columns are not found");
    set(colFirst, cols->colFirst);
    set(colLast, cols->colLast);
    return true;
  });
}

// Columns stand before rows, as in the files of other programs.
template <class Tag>
void XMLSheetImplT<Tag>::setPrintTitles(std::optional<SheetRange> rows, std::optional<SheetRange> cols) {
  const std::string sheet = ownName();
  DefinedName& name = needName(kPrintTitles, _book->positionOf(*this));
  const PrintTitles present = titlesOf(name.get_value());
  if (!rows) rows = present.rows;
  if (!cols) cols = present.cols;
  std::vector<NamePart> parts;
  if (cols) parts.push_back(namePart(sheet, *cols));
  if (rows) parts.push_back(namePart(sheet, *rows));
  name.set_value(joinedParts(parts));
}

template <class Tag>
void XMLSheetImplT<Tag>::setPrintRepeatRows(int rowFirst, int rowLast) {
  guarded(_book->lastMessage(), [&] {
    checkCell(rowFirst, 0);
    checkCell(rowLast, 0);
    setPrintTitles(ordered(rowFirst, rowLast, 0, kMaxCol), std::nullopt);
  });
}

template <class Tag>
void XMLSheetImplT<Tag>::setPrintRepeatCols(int colFirst, int colLast) {
  guarded(_book->lastMessage(), [&] {
    checkCell(0, colFirst);
    checkCell(0, colLast);
    setPrintTitles(std::nullopt, ordered(0, kMaxRow, colFirst, colLast));
  });
}

template <class Tag>
void XMLSheetImplT<Tag>::clearPrintRepeats() {
  guarded(_book->lastMessage(), [&] { removeName(kPrintTitles, _book->positionOf(*this)); });
}

template <class Tag>
bool XMLSheetImplT<Tag>::printArea(int* rowFirst, int* rowLast, int* colFirst, int* colLast) {
  return guarded(_book->lastMessage(), false, [&] {
    const DefinedName* name = findName(kPrintArea, _book->positionOf(*this));
    const auto range = name == nullptr ? std::nullopt : firstRange(name->get_value()).range;
    if (!range) throw xlerror("not found");
    giveRange(*range, rowFirst, rowLast, colFirst, colLast);
    return true;
  });
}

template <class Tag>
void XMLSheetImplT<Tag>::setPrintArea(int rowFirst, int rowLast, int colFirst, int colLast) {
  guarded(_book->lastMessage(), [&] {
    checkCell(rowFirst, colFirst);
    checkCell(rowLast, colLast);
    std::string text = referenceText(ownName(), ordered(rowFirst, rowLast, colFirst, colLast));
    needName(kPrintArea, _book->positionOf(*this)).set_value(std::move(text));
  });
}

template <class Tag>
void XMLSheetImplT<Tag>::clearPrintArea() {
  guarded(_book->lastMessage(), [&] { removeName(kPrintArea, _book->positionOf(*this)); });
}

template <class Tag>
bool XMLSheetImplT<Tag>::getNamedRange(Text name, int* rowFirst, int* rowLast, int* colFirst, int* colLast, int scopeId,
                                       bool* hidden) {
  return guarded(_book->lastMessage(), false, [&] {
    const DefinedName* found = findName(toXstring(viewOf(name)), checkedScope(scopeId));
    const FirstRange first = found == nullptr ? FirstRange() : firstRange(found->get_value());
    if (!first.range) throw xlerror("named range is not found");
    giveRange(*first.range, rowFirst, rowLast, colFirst, colLast);
    if (hidden != nullptr) *hidden = found->get_hidden();
    if (first.skipped) _book->lastMessage().setMessage("warning: some parts were skipped");
    return true;
  });
}

template <class Tag>
bool XMLSheetImplT<Tag>::setNamedRange(Text name, int rowFirst, int rowLast, int colFirst, int colLast, int scopeId,
                                       bool hidden) {
  return guarded(_book->lastMessage(), false, [&] {
    checkCell(rowFirst, colFirst);
    checkCell(rowLast, colLast);
    const std::string checked = checkedName(name);
    const int scope = checkedScope(scopeId);
    std::string text = referenceText(ownName(), ordered(rowFirst, rowLast, colFirst, colLast));
    DefinedName& entry = needName(checked, scope);
    entry.set_value(std::move(text));
    if (hidden) entry.set_hidden(true);
    return true;
  });
}

template <class Tag>
bool XMLSheetImplT<Tag>::delNamedRange(Text name, int scopeId) {
  return guarded(_book->lastMessage(), false, [&] {
    if (!removeName(toXstring(viewOf(name)), checkedScope(scopeId))) throw xlerror("named range not found");
    return true;
  });
}

template <class Tag>
int XMLSheetImplT<Tag>::namedRangeSize() {
  return guarded(_book->lastMessage(), 0, [&] {
    const int own = _book->positionOf(*this);
    const auto* names = _book->find_definedNames();
    int count = 0;
    for (std::size_t i = 0; names != nullptr && i < names->size_definedName(); ++i) {
      const int scope = scopeOf(names->get_definedName(i));
      count += scope == kScopeWorkbook || scope == own ? 1 : 0;
    }
    return count;
  });
}

template <class Tag>
typename XMLSheetImplT<Tag>::Text XMLSheetImplT<Tag>::namedRange(int index, int* rowFirst, int* rowLast, int* colFirst,
                                                                 int* colLast, int* scopeId, bool* hidden) {
  return guarded(_book->lastMessage(), Text{}, [&]() -> Text {
    const int own = _book->positionOf(*this);
    const auto* names = _book->find_definedNames();
    int left = index;
    for (std::size_t i = 0; names != nullptr && i < names->size_definedName(); ++i) {
      const DefinedName& entry = names->get_definedName(i);
      const int scope = scopeOf(entry);
      if ((scope != kScopeWorkbook && scope != own) || left-- != 0) continue;
      giveRange(firstRange(entry.get_value()).range.value_or(kNoRange), rowFirst, rowLast, colFirst, colLast);
      set(scopeId, scope);
      if (hidden != nullptr) *hidden = entry.get_hidden();
      fromXstring(entry.get_name(), _text);
      return _text.c_str();
    }
    throw xlerror("index is out of range");
  });
}

// Names follow where the caller asks for it; the name of the filter follows the filter in any case.
template <class Tag>
void XMLSheetImplT<Tag>::moveNames(const LineMove& move, bool updateNamedRanges) {
  auto* names = _book->find_definedNames();
  if (names == nullptr) return;
  const std::string sheet = ownName();
  const int own = _book->positionOf(*this);
  for (std::size_t i = names->size_definedName(); i-- > 0;) {
    DefinedName& entry = names->get_definedName(i);
    const bool isFilter = scopeOf(entry) == own && sameName(entry.get_name(), kFilterDatabase);
    if (!updateNamedRanges && !isFilter) continue;
    const auto moved = movedReference(entry.get_value(), sheet, move);
    const bool isBuiltIn = entry.get_name().rfind(kBuiltInPrefix, 0) == 0;
    if (moved) {
      if (*moved != entry.get_value()) entry.set_value(*moved);
    } else if (isBuiltIn) {
      _book->nameIndex().forget();
      names->erase_definedName(i);
    } else {
      entry.set_value("#REF!");
    }
  }
  if (names->size_definedName() == 0) _book->unset_definedNames();
}

template <class Tag>
void XMLSheetImplT<Tag>::renameInNames(const std::string& from, const std::string& to) {
  auto* names = _book->find_definedNames();
  for (std::size_t i = 0; names != nullptr && i < names->size_definedName(); ++i) {
    DefinedName& entry = names->get_definedName(i);
    std::string renamed = renamedReference(entry.get_value(), from, to);
    if (renamed != entry.get_value()) entry.set_value(std::move(renamed));
  }
}

template class XMLSheetImplT<excelNormal_tag>;
template class XMLSheetImplT<excelStrict_tag>;

}  // namespace rubrica
