// The page layout of a worksheet: header and footer, centring, margins, the Setup record and the page breaks. Margins
// exist only once they are set or come from a file. Owned by the sheet.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <vector>

#include "biff/book_state.h"
#include "biff/records/sheet_records.h"
#include "biff/unicode_string.h"
#include "compound/xls.h"
#include "engine/line_move.h"

namespace rubrica {

// A break before row or column `position`, over the columns or rows from `start` to `end`.
struct PageBreak {
  std::uint16_t position = 0, start = 0, end = 0;
};

// A record holds this many breaks and no more.
inline constexpr std::size_t kMostPageBreaks = 1026;

enum class Margin { left, right, top, bottom };

struct PageLayout {
  XLUnicodeString header, footer;
  bool hasHeader = false, hasFooter = false;
  std::uint16_t hCenter = 0, vCenter = 0;
  std::array<std::optional<double>, 4> margins;  // inches, by Margin
  PageSetup setup;
  std::vector<PageBreak> horzBreaks, vertBreaks;

  // The margin, or what a sheet without its record has.
  double margin(Margin side) const;
  void setMargin(Margin side, double inches) { margins[static_cast<std::size_t>(side)] = inches; }

  // Takes a record of this subject; false when the id is none of its own.
  bool read(Xls& xls, std::uint16_t recordId, std::uint16_t size, BookState& state);
  void writeBreaks(Xls& xls) const;
  // Breaks go with their rows and columns.
  void moveBreaks(const LineMove& move);
  void write(Xls& xls) const;
};

}  // namespace rubrica
