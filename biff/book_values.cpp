// Styles, shared strings, dates and colours of an .xls book.
#include "biff/book_impl.h"
#include "engine/date_serial.h"

namespace rubrica {

IFormatT<char16_t>* BookImplT::addFormat(IFormatT<char16_t>* initFormat) {
  return guarded(_state, static_cast<IFormatT<char16_t>*>(nullptr), [&] { return _styles.addFormat(initFormat); });
}

IFontT<char16_t>* BookImplT::addFont(IFontT<char16_t>* initFont) {
  return guarded(_state, static_cast<IFontT<char16_t>*>(nullptr), [&] { return _styles.addFont(initFont); });
}

// A text that has an id already leaves the message of the operation before.
int BookImplT::addCustomNumFormat(Text customNumFormat) {
  try {
    return _styles.addCustomNumFormat(customNumFormat == nullptr ? u"" : customNumFormat);
  } catch (const std::exception& error) {
    _state.setMessage(error.what());
    return 0;
  }
}

BookImplT::Text BookImplT::customNumFormat(int fmt) {
  return guarded(_state, Text{}, [&] { return _styles.customNumFormat(fmt); });
}

IFormatT<char16_t>* BookImplT::format(int index) {
  return guarded(_state, static_cast<IFormatT<char16_t>*>(nullptr), [&] { return _styles.format(index); });
}

int BookImplT::formatSize() {
  _state.setOk();
  return _styles.formatCount();
}

IFontT<char16_t>* BookImplT::font(int index) {
  return guarded(_state, static_cast<IFontT<char16_t>*>(nullptr), [&] { return _styles.font(index); });
}

int BookImplT::fontSize() {
  _state.setOk();
  return _styles.fontCount();
}

double BookImplT::datePack(int year, int month, int day, int hour, int min, int sec, int msec) {
  return guarded(_state, 0.0, [&] { return rubrica::datePack(isDate1904(), year, month, day, hour, min, sec, msec); });
}

bool BookImplT::dateUnpack(double value, int* year, int* month, int* day, int* hour, int* min, int* sec, int* msec) {
  if (!rubrica::dateUnpack(isDate1904(), value, year, month, day, hour, min, sec, msec)) return false;
  _state.setOk();
  return true;
}

Color BookImplT::colorPack(int red, int green, int blue) {
  return guarded(_state, Color{0}, [&] { return _styles.colorPack(red, green, blue); });
}

void BookImplT::colorUnpack(Color color, int* red, int* green, int* blue) {
  guarded(_state, [&] { _styles.colorUnpack(color, red, green, blue); });
}

BookImplT::Text BookImplT::defaultFont(int* size) {
  return guarded(_state, Text{}, [&] { return _styles.defaultFont(size); });
}

void BookImplT::setDefaultFont(Text name, int size) {
  guarded(_state, [&] {
    _styles.setDefaultFont(name, size);
    rememberDefaultFont();
  });
}

// The font is noted now and measured when a width is asked for: most books are read without one.
void BookImplT::rememberDefaultFont() {
  _measuredFont.clear();
  _digitWidth = 0;
  if (_styles.fontCount() == 0) {
    _digitWidth = platform::kFallbackDigitWidth;
    return;
  }
  const Text name = _styles.defaultFont(&_measuredPoints);
  if (name != nullptr) _measuredFont = name;
}

platform::TextMetrics& BookImplT::textMetrics() {
  if (_metrics == nullptr) _metrics = platform::createTextMetrics();
  return *_metrics;
}

void BookImplT::setTextMetrics(std::unique_ptr<platform::TextMetrics> metrics) {
  _metrics = std::move(metrics);
  rememberDefaultFont();
}

int BookImplT::digitWidth() {
  if (_digitWidth == 0) _digitWidth = textMetrics().digitWidth({_measuredFont, _measuredPoints, false});
  return _digitWidth;
}

std::uint32_t BookImplT::addSharedString(std::u16string_view text) {
  const std::uint32_t isst = _sst.add(text);
  if (!_stringUse.empty()) {
    if (_stringUse.size() <= isst) _stringUse.resize(isst + 1);
    ++_stringUse[isst];
  }
  return isst;
}

void BookImplT::countStringUse() {
  _stringUse.assign(_sst.cstUnique() + std::size_t{1}, 0);
  for (const auto& sheet : _sheets) {
    sheet->labelSstTable().forEach([&](const LabelSstCell& cell) {
      if (cell.isst < _stringUse.size()) ++_stringUse[cell.isst];
    });
  }
}

void BookImplT::replaceSharedString(std::uint32_t& isst, std::u16string_view text) {
  if (_stringUse.empty()) countStringUse();
  const bool known = isst < _stringUse.size();
  if (!known || _stringUse[isst] <= 1) {
    _sst.set(isst, text);
    return;
  }
  --_stringUse[isst];
  isst = addSharedString(text);
}

}  // namespace rubrica
