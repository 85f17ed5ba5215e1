// The defined names of an .xls book as a whole: what has to follow when names or sheets are added, copied or removed.
#include "biff/book_impl.h"

namespace rubrica {

void BookImplT::renumberNames(const NameMapping& mapping) {
  bool moved = false;
  for (std::size_t i = 0; i < mapping.size() && !moved; ++i) moved = mapping[i] != i;
  if (!moved) return;
  for (Lbl& name : _names.names()) rubrica::renumberNames(name.formula, mapping, _links);
  for (const auto& sheet : _sheets) sheet->renumberNames(mapping);
}

void BookImplT::removeName(std::size_t index) {
  const Lbl* gone = &_names.names()[index];
  renumberNames(_names.remove([gone](const Lbl& name) { return &name == gone; }));
}

void BookImplT::renumberSheets(const std::function<int(int)>& mapping) {
  renumberNames(_names.renumberSheets(mapping));
  _links.renumberSheets(mapping);
}

// The copies refer to the new sheet where the originals referred to their own, and to each other; so do the formulas of
// the new sheet.
void BookImplT::cloneNames(int fromSheet, int toSheet) {
  const std::size_t before = _names.names().size();
  const NameMapping mapping = _names.cloneScope(fromSheet, toSheet);
  if (_names.names().size() == before) return;
  const auto redirected = [&](std::uint16_t index) {
    const Xti* xti = _links.xti(index);
    const bool isSource = _links.isOwn(index) && xti->first == fromSheet && xti->last == fromSheet;
    return isSource ? _links.selfReference(toSheet, toSheet) : index;
  };
  for (std::size_t i = before; i < _names.names().size(); ++i) {
    std::vector<std::uint8_t>& tokens = _names.names()[i].formula;
    rubrica::renumberNames(tokens, mapping, _links);
    redirectSheets(tokens, redirected);
  }
  _sheets[static_cast<std::size_t>(toSheet)]->renumberNames(mapping);
}

}  // namespace rubrica
