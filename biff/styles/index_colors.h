// While a format or a font is copied between books, both leave RGB mode, so that colours pass as palette indexes.
#pragma once

#include "biff/book_state.h"

namespace rubrica {

// `Private` is IFormatPrivate or IFontPrivate of the source; null for a source that has no book to switch.
template <class Private>
class IndexColors {
 public:
  IndexColors(BookState& target, Private* source)
      : _target(target), _source(source), _targetMode(target.rgbMode), _sourceMode(source && source->rgbMode()) {
    _target.rgbMode = false;
    if (_source != nullptr) _source->setRgbMode(false);
  }
  ~IndexColors() {
    if (_source != nullptr) _source->setRgbMode(_sourceMode);
    _target.rgbMode = _targetMode;
  }
  IndexColors(const IndexColors&) = delete;
  IndexColors& operator=(const IndexColors&) = delete;

 private:
  BookState& _target;
  Private* _source;
  bool _targetMode;
  bool _sourceMode;
};

}  // namespace rubrica
