#include "biff/named_row_moves.h"

#include <algorithm>

#include "biff/sheet_index.h"

namespace rubrica {
namespace {

// Tokens of the reference class as names hold them: token, XTI, then rows and columns in words.
constexpr std::uint8_t kRef3d = 0x3A, kArea3d = 0x3B;
constexpr std::size_t kRef3dSize = 7, kArea3dSize = 11, kSmallest3d = 3;
constexpr std::size_t kXtiOffset = 1, kRowOffset = 3, kLastRowOffset = 5;
constexpr int kLastRow = kBiffRows - 1;

using Tokens = std::vector<std::uint8_t>;

int wordAt(const Tokens& bytes, std::size_t offset) {
  return bytes[offset] | bytes[offset + 1] << 8;
}

void putWord(Tokens& bytes, std::size_t offset, int value) {
  bytes[offset] = static_cast<std::uint8_t>(value & 0xFF);
  bytes[offset + 1] = static_cast<std::uint8_t>(value >> 8 & 0xFF);
}

// Both ends go by the whole count when they are at or past the operation's first row, also those within removed rows:
// a name's range is moved by where its ends stand and not by which of its cells are left.
int shifted(int row, const LineMove& move) {
  if (row < move.first()) return row;
  return move.inserts() ? row + move.count() : row - move.count();
}

void moveArea(Tokens& bytes, const LineMove& move) {
  const int first = wordAt(bytes, kRowOffset), last = wordAt(bytes, kLastRowOffset);
  if (first == 0 && last >= kLastRow) return;
  putWord(bytes, kRowOffset, std::clamp(shifted(first, move), 0, kLastRow));
  putWord(bytes, kLastRowOffset, std::clamp(shifted(last, move), 0, kLastRow));
}

// False when the cell left the sheet.
bool moveCell(Tokens& bytes, const LineMove& move) {
  const int row = shifted(wordAt(bytes, kRowOffset), move);
  if (row < 0 || row > kLastRow) return false;
  putWord(bytes, kRowOffset, row);
  return true;
}

}  // namespace

NameMapping moveNamedRows(NameTable& names, const LinkTable& links, int sheet, const LineMove& move) {
  std::vector<bool> goes;
  for (Lbl& name : names.names()) {
    Tokens& bytes = name.formula;
    const bool follows =
        bytes.size() >= kSmallest3d && links.covers(static_cast<std::uint16_t>(wordAt(bytes, kXtiOffset)), sheet);
    if (follows && bytes.size() == kArea3dSize && bytes[0] == kArea3d) moveArea(bytes, move);
    goes.push_back(follows && bytes.size() == kRef3dSize && bytes[0] == kRef3d && !moveCell(bytes, move));
  }
  const Lbl* first = names.names().data();
  return names.remove([&](const Lbl& name) { return goes[static_cast<std::size_t>(&name - first)]; });
}

}  // namespace rubrica
