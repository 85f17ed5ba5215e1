#include "biff/drawing_anchors.h"

#include <algorithm>

namespace rubrica {
namespace {

// OfficeArtRecordHeader: version and instance in a word, type, length of the body. Version 15 is a container, whose
// body is further records.
constexpr std::size_t kHeaderSize = 8, kAnchorSize = 18;
constexpr std::uint16_t kVersionMask = 0x000F, kContainer = 0x000F, kClientAnchor = 0xF010;

struct ClientAnchor {
  std::uint16_t flags, colLeft, dxLeft, rowTop, dyTop, colRight, dxRight, rowBottom, dyBottom;
  static constexpr std::uint16_t kNoMove = 1, kNoSize = 2;
};
static_assert(sizeof(ClientAnchor) == kAnchorSize);

// The line of a corner afterwards. The offset within a line that is gone means nothing any more.
std::uint16_t movedCorner(std::uint16_t line, std::uint16_t& offset, const LineMove& move) {
  const int last = move.limit() - 1;
  if (line < move.first()) return line;
  if (move.inserts()) return static_cast<std::uint16_t>(std::min(line + move.count(), last));
  if (line > move.last()) return static_cast<std::uint16_t>(line - move.count());
  offset = 0;
  return static_cast<std::uint16_t>(move.first());
}

void moveEnds(std::uint16_t& first, std::uint16_t& firstOffset, std::uint16_t& last, std::uint16_t& lastOffset,
              bool keepsExtent, const LineMove& move) {
  const int extent = last - first;
  first = movedCorner(first, firstOffset, move);
  last = keepsExtent ? static_cast<std::uint16_t>(std::clamp(first + extent, 0, move.limit() - 1))
                     : movedCorner(last, lastOffset, move);
}

void moveAnchor(std::byte* bytes, const LineMove& move) {
  ClientAnchor anchor{};
  std::memcpy(&anchor, bytes, sizeof(anchor));
  if ((anchor.flags & ClientAnchor::kNoMove) != 0) return;
  const bool keepsExtent = (anchor.flags & ClientAnchor::kNoSize) != 0;
  if (move.ofRows()) {
    moveEnds(anchor.rowTop, anchor.dyTop, anchor.rowBottom, anchor.dyBottom, keepsExtent, move);
  } else {
    moveEnds(anchor.colLeft, anchor.dxLeft, anchor.colRight, anchor.dxRight, keepsExtent, move);
  }
  std::memcpy(bytes, &anchor, sizeof(anchor));
}

// Records follow each other in a drawing whatever containers they are in, so one walk meets all of them.
void moveAnchorsIn(std::vector<std::byte>& bytes, const LineMove& move) {
  for (std::size_t at = 0; bytes.size() - at >= kHeaderSize;) {
    std::uint16_t version = 0, type = 0;
    std::uint32_t length = 0;
    std::memcpy(&version, bytes.data() + at, sizeof(version));
    std::memcpy(&type, bytes.data() + at + 2, sizeof(type));
    std::memcpy(&length, bytes.data() + at + 4, sizeof(length));
    at += kHeaderSize;
    if ((version & kVersionMask) == kContainer) continue;
    if (length > bytes.size() - at) return;
    if (type == kClientAnchor && length == kAnchorSize) moveAnchor(bytes.data() + at, move);
    at += length;
  }
}

}  // namespace

void moveAnchors(std::vector<RawRecord>& drawing, const LineMove& move) {
  for (RawRecord& record : drawing) {
    if (record.recordId == id::kMsoDrawing) moveAnchorsIn(record.bytes, move);
  }
}

void moveNotes(std::vector<RawRecord>& notes, const LineMove& move) {
  std::erase_if(notes, [&](RawRecord& note) {
    std::uint16_t place[2] = {};
    if (note.recordId != id::kNote || note.bytes.size() < sizeof(place)) return false;
    std::memcpy(place, note.bytes.data(), sizeof(place));
    const auto row = move.mapRow(place[0]), col = move.mapCol(place[1]);
    if (!row || !col) return true;
    place[0] = static_cast<std::uint16_t>(*row);
    place[1] = static_cast<std::uint16_t>(*col);
    std::memcpy(note.bytes.data(), place, sizeof(place));
    return false;
  });
}

}  // namespace rubrica
