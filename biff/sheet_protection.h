// The protection records of a worksheet, each present once it was set or came from a file. Owned by the sheet.
#pragma once

#include <cstdint>
#include <optional>

#include "compound/xls.h"

namespace rubrica {

struct SheetProtection {
  std::optional<std::uint16_t> protect, scenProtect, objProtect, password;

  // Takes a record of this subject; false when the id is none of its own.
  bool read(Xls& xls, std::uint16_t recordId, std::uint16_t size);
  void write(Xls& xls) const;
};

}  // namespace rubrica
