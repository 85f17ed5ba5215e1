#include "biff/sheet_protection.h"

#include "biff/records/record_io.h"
#include "biff/records/word_records.h"

namespace rubrica {
namespace {

struct Slot {
  std::uint16_t recordId;
  const char* name;
  std::optional<std::uint16_t> SheetProtection::*word;
};

// In file order.
constexpr Slot kSlots[] = {{id::kProtect, "Protect", &SheetProtection::protect},
                           {id::kScenProtect, "ScenProtect", &SheetProtection::scenProtect},
                           {id::kObjProtect, "ObjProtect", &SheetProtection::objProtect},
                           {id::kPassword, "Password", &SheetProtection::password}};

}  // namespace

bool SheetProtection::read(Xls& xls, std::uint16_t recordId, std::uint16_t size) {
  for (const Slot& slot : kSlots) {
    if (slot.recordId != recordId) continue;
    const auto bytes = xls.view(size);
    if (bytes.size() != sizeof(std::uint16_t)) throwSizeIsIncorrect(slot.name);
    RecordBody(bytes).take((this->*slot.word).emplace());
    return true;
  }
  return false;
}

void SheetProtection::write(Xls& xls) const {
  for (const Slot& slot : kSlots) {
    if (this->*slot.word) writeWord(xls, slot.recordId, *(this->*slot.word));
  }
}

}  // namespace rubrica
