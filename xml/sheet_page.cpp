// Page setup of an .xlsx sheet: each operation is one attribute of the tree.
#include <algorithm>
#include <limits>

#include "xml/book_impl.h"
#include "xml/sheet_impl.h"
#include "xml/xstring.h"

namespace rubrica {
namespace {

// What other programs write for a page whose margins nobody set; inches.
constexpr double kSideMargin = 0.7, kEndMargin = 0.75, kHeaderMargin = 0.3;
constexpr char kLandscape[] = "landscape", kPortrait[] = "portrait";

// The element has no optional attributes: whoever sets one sets all.
template <class Root>
auto& marginsOf(Root& root) {
  const bool isNew = !root.isset_pageMargins();
  auto& margins = root.get_pageMargins();
  if (isNew) {
    margins.set_left(kSideMargin);
    margins.set_right(kSideMargin);
    margins.set_top(kEndMargin);
    margins.set_bottom(kEndMargin);
    margins.set_header(kHeaderMargin);
    margins.set_footer(kHeaderMargin);
  }
  return margins;
}

std::uint32_t unsignedOf(int value) {
  return static_cast<std::uint32_t>(std::max(value, 0));
}

int signedOf(std::uint32_t value) {
  return static_cast<int>(std::min<std::uint32_t>(value, std::numeric_limits<int>::max()));
}

}  // namespace

template <class Tag>
bool XMLSheetImplT<Tag>::printGridlines() {
  return guarded(_book->lastMessage(), false, [&] {
    const auto* options = this->find_printOptions();
    return options != nullptr && options->get_gridLines();
  });
}

template <class Tag>
void XMLSheetImplT<Tag>::setPrintGridlines(bool print) {
  guarded(_book->lastMessage(), [&] { this->get_printOptions().set_gridLines(print); });
}

template <class Tag>
bool XMLSheetImplT<Tag>::printRowCol() {
  return guarded(_book->lastMessage(), false, [&] {
    const auto* options = this->find_printOptions();
    return options != nullptr && options->get_headings();
  });
}

template <class Tag>
void XMLSheetImplT<Tag>::setPrintRowCol(bool print) {
  guarded(_book->lastMessage(), [&] { this->get_printOptions().set_headings(print); });
}

template <class Tag>
bool XMLSheetImplT<Tag>::hCenter() {
  return guarded(_book->lastMessage(), false, [&] {
    const auto* options = this->find_printOptions();
    return options != nullptr && options->get_horizontalCentered();
  });
}

template <class Tag>
void XMLSheetImplT<Tag>::setHCenter(bool hCenter) {
  guarded(_book->lastMessage(), [&] { this->get_printOptions().set_horizontalCentered(hCenter); });
}

template <class Tag>
bool XMLSheetImplT<Tag>::vCenter() {
  return guarded(_book->lastMessage(), false, [&] {
    const auto* options = this->find_printOptions();
    return options != nullptr && options->get_verticalCentered();
  });
}

template <class Tag>
void XMLSheetImplT<Tag>::setVCenter(bool vCenter) {
  guarded(_book->lastMessage(), [&] { this->get_printOptions().set_verticalCentered(vCenter); });
}

template <class Tag>
int XMLSheetImplT<Tag>::printZoom() {
  constexpr int kFullScale = 100;  // percent
  return guarded(_book->lastMessage(), kFullScale, [&] {
    const auto* setup = this->find_pageSetup();
    return setup == nullptr ? kFullScale : signedOf(setup->get_scale());
  });
}

// Readers look at the scale only where the page isn't fitted.
template <class Tag>
void XMLSheetImplT<Tag>::setPrintZoom(int zoom) {
  guarded(_book->lastMessage(), [&] {
    this->get_pageSetup().set_scale(unsignedOf(zoom));
    auto* properties = this->find_sheetPr();
    auto* fitting = properties == nullptr ? nullptr : properties->find_pageSetUpPr();
    if (fitting != nullptr && fitting->get_fitToPage()) fitting->set_fitToPage(false);
  });
}

template <class Tag>
bool XMLSheetImplT<Tag>::getPrintFit(int* wPages, int* hPages) {
  return guarded(_book->lastMessage(), false, [&] {
    const auto* setup = this->find_pageSetup();
    if (wPages != nullptr) *wPages = setup == nullptr ? 1 : signedOf(setup->get_fitToWidth());
    if (hPages != nullptr) *hPages = setup == nullptr ? 1 : signedOf(setup->get_fitToHeight());
    const auto* properties = this->find_sheetPr();
    const auto* fitting = properties == nullptr ? nullptr : properties->find_pageSetUpPr();
    return fitting != nullptr && fitting->get_fitToPage();
  });
}

template <class Tag>
void XMLSheetImplT<Tag>::setPrintFit(int wPages, int hPages) {
  guarded(_book->lastMessage(), [&] {
    this->get_sheetPr().get_pageSetUpPr().set_fitToPage(true);
    this->get_pageSetup().set_fitToWidth(unsignedOf(wPages));
    this->get_pageSetup().set_fitToHeight(unsignedOf(hPages));
  });
}

template <class Tag>
bool XMLSheetImplT<Tag>::landscape() {
  return guarded(_book->lastMessage(), false, [&] {
    const auto* setup = this->find_pageSetup();
    return setup != nullptr && setup->get_orientation() == kLandscape;
  });
}

template <class Tag>
void XMLSheetImplT<Tag>::setLandscape(bool landscape) {
  guarded(_book->lastMessage(), [&] { this->get_pageSetup().set_orientation(landscape ? kLandscape : kPortrait); });
}

template <class Tag>
int XMLSheetImplT<Tag>::paper() {
  return guarded(_book->lastMessage(), kPaperLetter, [&] {
    const auto* setup = this->find_pageSetup();
    return setup == nullptr ? kPaperLetter : signedOf(setup->get_paperSize());
  });
}

template <class Tag>
void XMLSheetImplT<Tag>::setPaper(int paper) {
  guarded(_book->lastMessage(), [&] { this->get_pageSetup().set_paperSize(unsignedOf(paper)); });
}

template <class Tag>
typename XMLSheetImplT<Tag>::Text XMLSheetImplT<Tag>::header() {
  return guarded(_book->lastMessage(), Text{}, [&]() -> Text {
    const auto* texts = this->find_headerFooter();
    fromXstring(texts == nullptr ? std::string() : texts->get_oddHeader(), _text);
    return _text.c_str();
  });
}

template <class Tag>
bool XMLSheetImplT<Tag>::setHeader(Text header, double margin) {
  return guarded(_book->lastMessage(), false, [&] {
    this->get_headerFooter().set_oddHeader(toXstring(viewOf(header)));
    marginsOf(static_cast<Root&>(*this)).set_header(margin);
    return true;
  });
}

template <class Tag>
double XMLSheetImplT<Tag>::headerMargin() {
  return guarded(_book->lastMessage(), kHeaderMargin, [&] {
    const auto* margins = this->find_pageMargins();
    return margins == nullptr ? kHeaderMargin : margins->get_header();
  });
}

template <class Tag>
typename XMLSheetImplT<Tag>::Text XMLSheetImplT<Tag>::footer() {
  return guarded(_book->lastMessage(), Text{}, [&]() -> Text {
    const auto* texts = this->find_headerFooter();
    fromXstring(texts == nullptr ? std::string() : texts->get_oddFooter(), _text);
    return _text.c_str();
  });
}

template <class Tag>
bool XMLSheetImplT<Tag>::setFooter(Text footer, double margin) {
  return guarded(_book->lastMessage(), false, [&] {
    this->get_headerFooter().set_oddFooter(toXstring(viewOf(footer)));
    marginsOf(static_cast<Root&>(*this)).set_footer(margin);
    return true;
  });
}

template <class Tag>
double XMLSheetImplT<Tag>::footerMargin() {
  return guarded(_book->lastMessage(), kHeaderMargin, [&] {
    const auto* margins = this->find_pageMargins();
    return margins == nullptr ? kHeaderMargin : margins->get_footer();
  });
}

template <class Tag>
double XMLSheetImplT<Tag>::marginLeft() {
  return guarded(_book->lastMessage(), kSideMargin, [&] {
    const auto* margins = this->find_pageMargins();
    return margins == nullptr ? kSideMargin : margins->get_left();
  });
}

template <class Tag>
void XMLSheetImplT<Tag>::setMarginLeft(double margin) {
  guarded(_book->lastMessage(), [&] { marginsOf(static_cast<Root&>(*this)).set_left(margin); });
}

template <class Tag>
double XMLSheetImplT<Tag>::marginRight() {
  return guarded(_book->lastMessage(), kSideMargin, [&] {
    const auto* margins = this->find_pageMargins();
    return margins == nullptr ? kSideMargin : margins->get_right();
  });
}

template <class Tag>
void XMLSheetImplT<Tag>::setMarginRight(double margin) {
  guarded(_book->lastMessage(), [&] { marginsOf(static_cast<Root&>(*this)).set_right(margin); });
}

template <class Tag>
double XMLSheetImplT<Tag>::marginTop() {
  return guarded(_book->lastMessage(), kEndMargin, [&] {
    const auto* margins = this->find_pageMargins();
    return margins == nullptr ? kEndMargin : margins->get_top();
  });
}

template <class Tag>
void XMLSheetImplT<Tag>::setMarginTop(double margin) {
  guarded(_book->lastMessage(), [&] { marginsOf(static_cast<Root&>(*this)).set_top(margin); });
}

template <class Tag>
double XMLSheetImplT<Tag>::marginBottom() {
  return guarded(_book->lastMessage(), kEndMargin, [&] {
    const auto* margins = this->find_pageMargins();
    return margins == nullptr ? kEndMargin : margins->get_bottom();
  });
}

template <class Tag>
void XMLSheetImplT<Tag>::setMarginBottom(double margin) {
  guarded(_book->lastMessage(), [&] { marginsOf(static_cast<Root&>(*this)).set_bottom(margin); });
}

template class XMLSheetImplT<excelNormal_tag>;
template class XMLSheetImplT<excelStrict_tag>;

}  // namespace rubrica
