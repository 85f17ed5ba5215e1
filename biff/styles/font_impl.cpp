#include "biff/styles/font_impl.h"

#include <algorithm>

#include "biff/records/record_io.h"
#include "biff/styles/index_colors.h"

namespace rubrica {

template <class C>
void FontImplT<C>::setSize(int points) {
  const auto height = static_cast<std::uint16_t>(static_cast<std::uint32_t>(points) * 20);
  _record.height = std::min(height, kMaxHeight);
}

template <class C>
bool FontImplT<C>::setName(const C* name) {
  return guarded(*_state, false, [&] {
    assignName(name);
    return true;
  });
}

template <class C>
void FontImplT<C>::assignName(const C* name) {
  if (name == nullptr) {
    _name = {};
    return;
  }
  _name.assign(name, _state->pool);
  if (_name.text == nullptr) _name.text = u"";
}

template <class C>
void FontImplT<C>::setRgbMode(bool rgbMode) {
  _state->rgbMode = rgbMode;
  _state->setOk();
}

template <class C>
void FontImplT<C>::copyFrom(IFontT<C>& source) {
  const IndexColors colors(*_state, dynamic_cast<IFontPrivate<C>*>(&source));
  setSize(source.size());
  setItalic(source.italic());
  setStrikeOut(source.strikeOut());
  if (const Color color = source.color(); color != color::notSet) setColor(color);
  setBold(source.bold());
  setScript(source.script());
  setUnderline(source.underline());
  // A font of the other file form may have no name; a Font record without one would be no font to any reader.
  if (const C* name = source.name(); name != nullptr) assignName(name);
}

template <class C>
void FontImplT<C>::read(Xls& xls, std::uint16_t size) {
  if (size < fixedSize(_record)) throwSizeIsIncorrect(FontRecord::kName);
  const auto bytes = xls.view(size);
  RecordBody body(bytes);
  bool whole = bytes.size() == size;
  FontRecord::visit(_record, [&](auto& field) { whole = whole && body.take(field); });
  _name = {};
  if (whole && body.left() > 0) {
    whole = _name.read(body.rest(), _state->pool, _state->textForm()) > 0;
    if (_name.text == nullptr) _name.text = u"";
  }
  if (!whole) throw xlerror("error in Font record");
}

template <class C>
void FontImplT<C>::write(Xls& xls) const {
  const std::size_t nameSize = _name.text == nullptr ? 0 : _name.size();
  RecordBuffer<sizeof(FontRecord)> buffer;
  FontRecord::visit(_record, [&](const auto& field) { buffer.put(field); });
  xls.writeHeader(FontRecord::kId, static_cast<std::uint16_t>(buffer.size() + nameSize));
  xls.write(buffer.data(), buffer.size());
  if (nameSize > 0) _name.write(xls);
}

template class FontImplT<char16_t>;

}  // namespace rubrica
