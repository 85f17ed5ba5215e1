// Records whose whole body is one 16-bit word. An owner lists its own in a table of slots, from which they are read and
// written.
#pragma once

#include <cstdint>
#include <span>

#include "biff/records/record_io.h"

namespace rubrica {

template <class Owner>
struct WordSlot {
  std::uint16_t recordId;
  const char* name;
  std::uint16_t Owner::*word;
};

// Reads the record into its slot; false when the table has none of this id.
template <class Owner>
bool readWord(Owner& owner, std::type_identity_t<std::span<const WordSlot<Owner>>> slots, std::uint16_t recordId,
              std::span<const std::byte> bytes) {
  for (const auto& slot : slots) {
    if (slot.recordId != recordId) continue;
    if (bytes.size() != sizeof(std::uint16_t)) throwSizeIsIncorrect(slot.name);
    RecordBody(bytes).take(owner.*slot.word);
    return true;
  }
  return false;
}

inline void writeWord(Xls& xls, std::uint16_t recordId, std::uint16_t word) {
  xls.writeRecord(recordId, &word, sizeof(word));
}

}  // namespace rubrica
