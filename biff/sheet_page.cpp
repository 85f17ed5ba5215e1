// Page setup and view of an .xls sheet.
#include "biff/book_impl.h"
#include "biff/sheet_impl.h"

namespace rubrica {
namespace {

constexpr int kFullScale = 100;  // percent

std::uint16_t word(int value) {
  return static_cast<std::uint16_t>(value);
}

void setBit(std::uint16_t& bits, std::uint16_t mask, bool on) {
  bits = word(on ? bits | mask : bits & ~mask);
}

const char16_t* textOrEmpty(const XLUnicodeString& string) {
  return string.text == nullptr ? u"" : string.text;
}

}  // namespace

bool SheetImplT::displayGridlines() {
  return _view.hasFlag(Window2::kGridlines);
}
void SheetImplT::setDisplayGridlines(bool show) {
  _view.setFlag(Window2::kGridlines, show);
}
bool SheetImplT::printGridlines() {
  return (_words.printGrid & 1) != 0;
}
void SheetImplT::setPrintGridlines(bool print) {
  setBit(_words.printGrid, 1, print);
}
int SheetImplT::zoom() {
  return _view.zoom ? _view.zoom->numerator : kFullScale;
}
void SheetImplT::setZoom(int zoom) {
  _view.zoom = Scl{word(zoom), word(kFullScale)};
}
int SheetImplT::printZoom() {
  return _page.setup.iScale;
}

void SheetImplT::setPrintZoom(int zoom) {
  _page.setup.iScale = word(zoom);
  setBit(_words.wsBool, SheetWords::kFitToPage, false);
  setBit(_page.setup.grbit, PageSetup::kNoOrient, false);
}

bool SheetImplT::getPrintFit(int* wPages, int* hPages) {
  const bool fit = (_words.wsBool & SheetWords::kFitToPage) != 0;
  if (wPages != nullptr) *wPages = _page.setup.iFitWidth;
  if (hPages != nullptr) *hPages = _page.setup.iFitHeight;
  return fit;
}

void SheetImplT::setPrintFit(int wPages, int hPages) {
  _page.setup.iFitWidth = word(wPages);
  _page.setup.iFitHeight = word(hPages);
  setBit(_words.wsBool, SheetWords::kFitToPage, true);
}

// Without an orientation of its own the page is upright.
bool SheetImplT::landscape() {
  return (_page.setup.grbit & (PageSetup::kPortrait | PageSetup::kNoOrient)) == 0;
}

void SheetImplT::setLandscape(bool landscape) {
  setBit(_page.setup.grbit, PageSetup::kPortrait, !landscape);
  setBit(_page.setup.grbit, PageSetup::kNoOrient, false);
}

int SheetImplT::paper() {
  return _page.setup.iPaperSize;
}

void SheetImplT::setPaper(int paper) {
  _page.setup.iPaperSize = word(paper);
  setBit(_page.setup.grbit, PageSetup::kNoOrient, false);
}

SheetImplT::Text SheetImplT::header() {
  return guarded(state(), Text{}, [&] { return textOrEmpty(_page.header); });
}

bool SheetImplT::setHeader(Text header, double margin) {
  return guarded(state(), false, [&] {
    _page.header.assign(header == nullptr ? u"" : header, state().pool);
    _page.hasHeader = true;
    _page.setup.numHdr = margin;
    return true;
  });
}

double SheetImplT::headerMargin() {
  return _page.setup.numHdr;
}

SheetImplT::Text SheetImplT::footer() {
  return guarded(state(), Text{}, [&] { return textOrEmpty(_page.footer); });
}

bool SheetImplT::setFooter(Text footer, double margin) {
  return guarded(state(), false, [&] {
    _page.footer.assign(footer == nullptr ? u"" : footer, state().pool);
    _page.hasFooter = true;
    _page.setup.numFtr = margin;
    return true;
  });
}

double SheetImplT::footerMargin() {
  return _page.setup.numFtr;
}
bool SheetImplT::hCenter() {
  return _page.hCenter != 0;
}
void SheetImplT::setHCenter(bool hCenter) {
  _page.hCenter = hCenter ? 1 : 0;
}
bool SheetImplT::vCenter() {
  return _page.vCenter != 0;
}
void SheetImplT::setVCenter(bool vCenter) {
  _page.vCenter = vCenter ? 1 : 0;
}
double SheetImplT::marginLeft() {
  return _page.margin(Margin::left);
}
void SheetImplT::setMarginLeft(double margin) {
  _page.setMargin(Margin::left, margin);
}
double SheetImplT::marginRight() {
  return _page.margin(Margin::right);
}
void SheetImplT::setMarginRight(double margin) {
  _page.setMargin(Margin::right, margin);
}
double SheetImplT::marginTop() {
  return _page.margin(Margin::top);
}
void SheetImplT::setMarginTop(double margin) {
  _page.setMargin(Margin::top, margin);
}
double SheetImplT::marginBottom() {
  return _page.margin(Margin::bottom);
}
void SheetImplT::setMarginBottom(double margin) {
  _page.setMargin(Margin::bottom, margin);
}
bool SheetImplT::printRowCol() {
  return _words.printRowCol > 0;
}
void SheetImplT::setPrintRowCol(bool print) {
  _words.printRowCol = print ? 1 : 0;
}
bool SheetImplT::groupSummaryBelow() {
  return (_words.wsBool & SheetWords::kRowSumsBelow) != 0;
}
void SheetImplT::setGroupSummaryBelow(bool below) {
  setBit(_words.wsBool, SheetWords::kRowSumsBelow, below);
}
bool SheetImplT::groupSummaryRight() {
  return (_words.wsBool & SheetWords::kColSumsRight) != 0;
}
void SheetImplT::setGroupSummaryRight(bool right) {
  setBit(_words.wsBool, SheetWords::kColSumsRight, right);
}

void SheetImplT::getTopLeftView(int* row, int* col) {
  if (row != nullptr) *row = _view.window.rwTop;
  if (col != nullptr) *col = _view.window.colLeft;
}

void SheetImplT::setTopLeftView(int row, int col) {
  guarded(state(), [&] {
    checkCell(row, col);
    _view.window.rwTop = word(row);
    _view.window.colLeft = word(col);
  });
}

bool SheetImplT::rightToLeft() {
  return _view.hasFlag(Window2::kRightToLeft);
}
void SheetImplT::setRightToLeft(bool rightToLeft) {
  _view.setFlag(Window2::kRightToLeft, rightToLeft);
}

}  // namespace rubrica
