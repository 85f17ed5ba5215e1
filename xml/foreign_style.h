// Formats and fonts that come from another book. Those of the other flavour go through the text of a stylesheet that
// holds nothing else, since the classes of the two flavours are unrelated; colours of an .xls book are copied as
// palette indexes.
#pragma once

#include "xml/flavour.h"
#include "xml/styles.h"

namespace rubrica {

// The same stylesheet in the words of flavour Tag.
template <class Tag, class OtherTag = typename Flavour<Tag>::Other>
typename Flavour<Tag>::StyleSheetRoot translateStyles(const typename Flavour<OtherTag>::StyleSheetRoot& source);

// Both books leave RGB mode while it lives. `Private` is IFormatPrivate or IFontPrivate of the source, null for a
// source that has no book to switch.
template <class Tag, class Private>
class IndexColorMode {
 public:
  IndexColorMode(Styles<Tag>& target, Private* source)
      : _target(target), _source(source), _targetMode(target.rgbMode()), _sourceMode(source && source->rgbMode()) {
    _target.setRgbMode(false);
    if (_source != nullptr) _source->setRgbMode(false);
  }
  ~IndexColorMode() {
    if (_source != nullptr) _source->setRgbMode(_sourceMode);
    _target.setRgbMode(_targetMode);
  }
  IndexColorMode(const IndexColorMode&) = delete;
  IndexColorMode& operator=(const IndexColorMode&) = delete;

 private:
  Styles<Tag>& _target;
  Private* _source;
  bool _targetMode;
  bool _sourceMode;
};

}  // namespace rubrica
