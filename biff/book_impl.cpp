#include "biff/book_impl.h"

namespace rubrica {
namespace {
constexpr unsigned kEngineVersion = 0x03080500;
}

BookImplT::BookImplT() : _styles(_state), _sst(_state.pool), _formulaAccess(*this) {
  _xls.reset(true);
  _styles.createDefaults();
  _state.text.adoptEnvironmentLocale();
  rememberDefaultFont();
  _state.setOk();
}

BookImplT::~BookImplT() = default;

void BookImplT::release() {
  delete this;
}

const char* BookImplT::errorMessage() const {
  return _state.message();
}
unsigned BookImplT::version() {
  return kEngineVersion;
}
int BookImplT::biffVersion() {
  return _state.biffVersion;
}
bool BookImplT::rgbMode() {
  return _state.rgbMode;
}

void BookImplT::setRgbMode(bool rgbMode) {
  _state.rgbMode = rgbMode;
  _state.setOk();
}

bool BookImplT::isDate1904() {
  return _globals.date1904 > 0;
}

bool BookImplT::setDate1904(bool date1904) {
  _globals.date1904 = date1904 ? 1 : 0;
  _state.setOk();
  return true;
}

bool BookImplT::isTemplate() {
  return _globals.isTemplate;
}
void BookImplT::setTemplate(bool tmpl) {
  _globals.isTemplate = tmpl;
}

bool BookImplT::setLocale(const char* locale) {
  return guarded(_state, false, [&] {
    _state.text.setLocale(locale);
    return true;
  });
}

Book* createBiffBook() noexcept {
  try {
    return new BookImplT();
  } catch (...) {
    return nullptr;
  }
}

}  // namespace rubrica
