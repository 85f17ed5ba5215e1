// How a worksheet is shown: the Window2 flags, the zoom, the panes and the selections. Owned by the sheet.
#pragma once

#include <optional>
#include <vector>

#include "biff/records/record_io.h"
#include "biff/records/sheet_records.h"

namespace rubrica {

struct SheetView {
  Window2 window;
  std::optional<Scl> zoom;  // absent: 100 %
  std::optional<Pane> pane;
  std::vector<RawRecord> selections;

  bool selected() const { return (window.grbit & Window2::kSelected) != 0; }
  void setSelected(bool selected);
  bool hasFlag(std::uint16_t flag) const { return (window.grbit & flag) != 0; }
  void setFlag(std::uint16_t flag, bool on);

  // Takes a record of this subject; false when the id is none of its own.
  bool read(Xls& xls, std::uint16_t recordId, std::uint16_t size);
  void writeWindow(Xls& xls) const { writeFixed(xls, window); }
  void writeZoomAndPanes(Xls& xls) const;
};

}  // namespace rubrica
