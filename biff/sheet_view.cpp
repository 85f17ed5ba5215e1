#include "biff/sheet_view.h"

namespace rubrica {
namespace {
constexpr std::size_t kSmallestWindow2 = 10;  // BIFF5, and the window of a chart
constexpr std::size_t kSmallestPane = 9;
constexpr std::uint16_t kFullZoom = 100;
}  // namespace

void SheetView::setFlag(std::uint16_t flag, bool on) {
  window.grbit = static_cast<std::uint16_t>(on ? window.grbit | flag : window.grbit & ~flag);
}

// The one active sheet is both selected and shown.
void SheetView::setSelected(bool selected) {
  setFlag(Window2::kSelected, selected);
  setFlag(Window2::kPaged, selected);
}

bool SheetView::read(Xls& xls, std::uint16_t recordId, std::uint16_t size) {
  switch (recordId) {
    case id::kWindow2: {
      const auto bytes = xls.view(size);
      if (bytes.size() < kSmallestWindow2) throwSizeIsIncorrect(Window2::kName);
      readPrefix(window, bytes.first(std::min(bytes.size(), fixedSize(window))));
      return true;
    }
    case id::kScl:
      readFixed(zoom.emplace(), xls.view(size));
      return true;
    case id::kPane: {
      const auto bytes = xls.view(size);
      if (bytes.size() < kSmallestPane) throwSizeIsIncorrect(Pane::kName);
      readPrefix(pane.emplace(), bytes.first(std::min(bytes.size(), fixedSize(Pane()))));
      return true;
    }
    case id::kSelection:
      selections.push_back(RawRecord::of(recordId, xls.view(size)));
      return true;
    default:
      return false;
  }
}

void SheetView::writeZoomAndPanes(Xls& xls) const {
  if (zoom && (zoom->numerator != kFullZoom || zoom->denominator != kFullZoom)) writeFixed(xls, *zoom);
  if (pane) writeFixed(xls, *pane);
  for (const RawRecord& selection : selections) writeRaw(xls, selection);
}

}  // namespace rubrica
