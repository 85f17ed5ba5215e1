// The view of an .xlsx sheet: gridlines, zoom, panes, the cell on top, and the colour of its tab.
#include <algorithm>
#include <optional>

#include "engine/address.h"
#include "xml/book_impl.h"
#include "xml/sheet_impl.h"
#include "xml/sheet_range.h"
#include "xml/styles.h"

namespace rubrica {
namespace {

constexpr int kFullZoom = 100;  // percent

template <class Root>
auto& sheetViewOf(Root& root) {
  auto& views = root.get_sheetViews();
  if (views.size_sheetView() > 0) return views.get_sheetView(0);
  auto& view = views.append_sheetView();
  view.set_workbookViewId(0);
  return view;
}

template <class Root>
const auto* findView(const Root& root) {
  using View = std::remove_reference_t<decltype(root.find_sheetViews()->get_sheetView(0))>;
  const auto* views = root.find_sheetViews();
  return views == nullptr || views->size_sheetView() == 0 ? static_cast<View*>(nullptr) : &views->get_sheetView(0);
}

// A colour has one form at a time.
template <class Color>
void setRgb(Color& element, int red, int green, int blue) {
  constexpr std::uint8_t kOpaque = 0xFF;
  element = Color();
  auto rgb = element.get_rgb();
  rgb.bytes = {kOpaque, static_cast<std::uint8_t>(red), static_cast<std::uint8_t>(green),
               static_cast<std::uint8_t>(blue)};
  element.set_rgb(rgb);
}

}  // namespace

template <class Tag>
bool XMLSheetImplT<Tag>::displayGridlines() {
  return guarded(_book->lastMessage(), true, [&] {
    const auto* view = findView<Root>(*this);
    return view == nullptr || view->get_showGridLines();
  });
}

template <class Tag>
void XMLSheetImplT<Tag>::setDisplayGridlines(bool show) {
  guarded(_book->lastMessage(), [&] { sheetViewOf<Root>(*this).set_showGridLines(show); });
}

template <class Tag>
bool XMLSheetImplT<Tag>::rightToLeft() {
  return guarded(_book->lastMessage(), false, [&] {
    const auto* view = findView<Root>(*this);
    return view != nullptr && view->get_rightToLeft();
  });
}

template <class Tag>
void XMLSheetImplT<Tag>::setRightToLeft(bool rightToLeft) {
  guarded(_book->lastMessage(), [&] { sheetViewOf<Root>(*this).set_rightToLeft(rightToLeft); });
}

template <class Tag>
int XMLSheetImplT<Tag>::zoom() {
  return guarded(_book->lastMessage(), kFullZoom, [&] {
    const auto* view = findView<Root>(*this);
    return view == nullptr ? kFullZoom : static_cast<int>(view->get_zoomScale());
  });
}

template <class Tag>
void XMLSheetImplT<Tag>::setZoom(int zoom) {
  guarded(_book->lastMessage(), [&] {
    auto& view = sheetViewOf<Root>(*this);
    const auto percent = static_cast<std::uint32_t>(std::max(zoom, 0));
    view.set_zoomScale(percent);
    view.set_zoomScaleNormal(percent);
  });
}

template <class Tag>
void XMLSheetImplT<Tag>::getTopLeftView(int* row, int* col) {
  guarded(_book->lastMessage(), [&] {
    const auto* view = findView<Root>(*this);
    const auto place = view == nullptr ? std::nullopt : addressIn(view->get_topLeftCell());
    if (row != nullptr) *row = place ? place->row : 0;
    if (col != nullptr) *col = place ? place->col : 0;
  });
}

template <class Tag>
void XMLSheetImplT<Tag>::setTopLeftView(int row, int col) {
  guarded(_book->lastMessage(), [&] {
    std::string place = cellText(row, col);
    sheetViewOf<Root>(*this).set_topLeftCell(std::move(place));
  });
}

template <class Tag>
void XMLSheetImplT<Tag>::split(int row, int col) {
  guarded(_book->lastMessage(), [&] {
    std::string place = cellText(row, col);
    auto& pane = sheetViewOf<Root>(*this).get_pane();
    pane.set_xSplit(col);
    pane.set_ySplit(row);
    pane.set_topLeftCell(std::move(place));
    pane.set_activePane("bottomRight");
    pane.set_state("frozenSplit");
  });
}

template <class Tag>
bool XMLSheetImplT<Tag>::splitInfo(int* row, int* col) {
  return guarded(_book->lastMessage(), false, [&] {
    const auto* view = findView<Root>(*this);
    const auto* pane = view == nullptr ? nullptr : view->find_pane();
    if (pane == nullptr) throw xlerror("worksheet is not splitted");
    const auto whole = [](double lines, int most) { return static_cast<int>(std::clamp<double>(lines, 0, most)); };
    if (row != nullptr) *row = whole(pane->get_ySplit(), kMaxRow);
    if (col != nullptr) *col = whole(pane->get_xSplit(), kMaxCol);
    return true;
  });
}

template <class Tag>
void XMLSheetImplT<Tag>::setTabRgbColor(int red, int green, int blue) {
  guarded(_book->lastMessage(), [&] { setRgb(this->get_sheetPr().get_tabColor(), red, green, blue); });
}

// Under RGB mode a colour is 0x00RRGGBB, otherwise an index.
template <class Tag>
void XMLSheetImplT<Tag>::setTabColor(Color color) {
  guarded(_book->lastMessage(), [&] {
    if (_book->rgbMode()) {
      setRgb(this->get_sheetPr().get_tabColor(), color >> 16 & 0xFF, color >> 8 & 0xFF, color & 0xFF);
      return;
    }
    auto& element = this->get_sheetPr().get_tabColor();
    element = {};
    element.set_indexed(static_cast<std::uint32_t>(std::max(color, 0)));
  });
}

template class XMLSheetImplT<excelNormal_tag>;
template class XMLSheetImplT<excelStrict_tag>;

}  // namespace rubrica
