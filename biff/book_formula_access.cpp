#include "biff/book_formula_access.h"

#include <algorithm>

#include "biff/book_impl.h"
#include "formula/ptg.h"
#include "formula/sheet_text.h"
#include "platform/text.h"

namespace rubrica {

namespace {
constexpr std::uint16_t kWholeBook = 0;  // the scope of a name that is no sheet's
}

std::optional<std::uint16_t> BookFormulaAccess::externSheetIndex(std::u16string_view sheetName) {
  if (const auto position = _book->findSheet(sheetName)) return _book->links().selfReference(*position, *position);
  if (const auto external = _book->links().externalReference(sheetName)) return external;
  const std::size_t colon = sheetName.find(u':');
  if (colon == std::u16string_view::npos) return std::nullopt;
  const auto first = _book->findSheet(sheetName.substr(0, colon));
  const auto last = _book->findSheet(sheetName.substr(colon + 1));
  if (!first || !last) return std::nullopt;
  return _book->links().selfReference(std::min(*first, *last), std::max(*first, *last));
}

// The name of the formula's own sheet goes before that of the book, and that before those of other sheets.
std::optional<std::uint32_t> BookFormulaAccess::findName(std::u16string_view name, int sheetIndex, int /*scope*/) {
  const NameTable& table = _book->names();
  for (const std::uint16_t itab : {Lbl::scopeOf(sheetIndex), kWholeBook}) {
    if (const auto found = table.find(name, itab)) return static_cast<std::uint32_t>(*found);
  }
  const auto& names = table.names();
  const auto found = std::find_if(names.begin(), names.end(),
                                  [&](const Lbl& entry) { return sameNameIgnoringCase(entry.displayName(), name); });
  if (found == names.end()) return std::nullopt;
  return static_cast<std::uint32_t>(found - names.begin());
}

std::optional<std::u16string> BookFormulaAccess::nameText(std::uint32_t index) const {
  const auto& names = _book->names().names();
  if (index >= names.size()) return std::nullopt;
  return std::u16string(names[index].displayName());
}

std::u16string BookFormulaAccess::sheetPart(std::uint16_t externSheetIndex) const {
  if (const auto external = _book->links().externalText(externSheetIndex)) return formula::quotedSheetName(*external);
  const Xti* xti = _book->links().xti(externSheetIndex);
  const auto count = static_cast<int>(_book->boundSheetCount());
  const bool known =
      _book->links().isOwn(externSheetIndex) && xti->first >= 0 && xti->last >= xti->first && xti->last < count;
  if (!known) return std::u16string(formula::kRefErrorText);
  return formula::sheetPartText(_book->boundSheetName(xti->first), _book->boundSheetName(xti->last));
}

std::optional<std::uint16_t> BookFormulaAccess::externSheetIndex(std::int16_t externIndex, std::uint16_t firstSheet,
                                                                 std::uint16_t lastSheet) {
  constexpr std::uint16_t kDeleted = 0xFFFF;
  if (externIndex < 0 && (firstSheet == kDeleted || lastSheet == kDeleted)) {
    return _book->links().selfReference(LinkTable::kDeletedSheet, LinkTable::kDeletedSheet);
  }
  const auto count = _book->boundSheetCount();
  if (externIndex >= 0 || firstSheet >= count || lastSheet >= count) return std::nullopt;
  return _book->links().selfReference(firstSheet, lastSheet);
}

std::optional<formula::Biff5Access::ExternName> BookFormulaAccess::externName(std::int16_t, std::uint16_t) {
  return std::nullopt;
}

std::u16string BookFormulaAccess::text(std::string_view bytes) {
  return platform::utf16FromCodePage(_book->state().codePage, bytes);
}

}  // namespace rubrica
