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

constexpr unsigned kVerifierSeed = 0xCE4B;

unsigned rotated(unsigned hash) {
  return ((hash << 1) & 0x7FFF) | ((hash >> 14) & 1);
}

}  // namespace

std::uint16_t passwordVerifier(std::u16string_view password) {
  unsigned hash = 0;
  for (auto c = password.rbegin(); c != password.rend(); ++c) hash = rotated(hash) ^ *c;
  hash = rotated(hash) ^ static_cast<unsigned>(password.size()) ^ kVerifierSeed;
  return static_cast<std::uint16_t>(hash);
}

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
