// Reads any bytes as a drawing group and as the records of a sheet's drawing. What is read is written again as the same
// bytes, takes further pictures, comments and ids, and can be read again after that.
#include <cstdint>
#include <cstdlib>
#include <vector>

#include "engine/xlerror.h"
#include "officeart/drawing.h"
#include "officeart/drawing_group.h"

namespace {

using namespace rubrica;
using namespace rubrica::officeart;

struct KeptRecord {
  std::uint16_t recordId = 0;
  std::vector<std::byte> body;
  bool operator==(const KeptRecord&) const = default;
};

class Keeper final : public RecordSink {
 public:
  void record(std::uint16_t recordId, ByteView body) override {
    if (body.size() > kMostRecordBytes) std::abort();
    kept.push_back({recordId, {body.begin(), body.end()}});
  }
  std::vector<std::byte> bytes() const {
    std::vector<std::byte> all;
    for (const KeptRecord& record : kept) all.insert(all.end(), record.body.begin(), record.body.end());
    return all;
  }
  std::vector<KeptRecord> kept;
};

template <class Source>
Keeper written(const Source& source) {
  Keeper keeper;
  source.write(keeper);
  return keeper;
}

DrawingGroup groupOf(ByteView bytes) {
  DrawingGroup group;
  group.append(kMsoDrawingGroup, bytes);
  group.finishReading();
  return group;
}

void asGroup(ByteView bytes) {
  if (bytes.size() > kMostRecordBytes) return;
  DrawingGroup group = groupOf(bytes);
  group.countDrawing(0, 0);  // from here on it is written from its records
  if (group.pictureCount() > bytes.size()) std::abort();
  const auto same = groupOf(written(group).bytes());
  if (same.pictureCount() != group.pictureCount()) std::abort();
  for (std::size_t i = 0; i < group.pictureCount(); ++i) {
    try {
      (void)group.pictureAt(i)->pixelSize();
      (void)group.pictureAt(i)->file();
    } catch (const xlerror&) {  // a metafile that can't be uncompressed
    }
  }
  const std::byte png[] = {std::byte{0x89}, std::byte{'P'}, std::byte{'N'}, std::byte{'G'}, std::byte{13}};
  const int id = group.addPicture(png);
  group.addUses(id, 1);
  group.claim(3, 70000);
  const std::uint16_t drawing = group.newDrawing();
  if (group.newShape(drawing) == group.newShape(drawing)) std::abort();
  const DrawingGroup again = groupOf(written(group).bytes());
  if (again.pictureOf(id) == nullptr || again.pictureOf(id)->file().size() != sizeof(png)) std::abort();
}

Drawing drawingOf(const std::vector<KeptRecord>& records) {
  std::vector<SheetRecord> views;
  views.reserve(records.size());
  for (const KeptRecord& record : records) views.push_back({record.recordId, record.body});
  Drawing drawing;
  drawing.read(views);
  return drawing;
}

// Records as: which of four ids, length in two bytes, body.
void asSheet(ByteView bytes) {
  constexpr std::uint16_t kIds[] = {kMsoDrawing, kObj, kTextObject, kContinue};
  std::vector<KeptRecord> records;
  while (bytes.size() >= 3) {
    const auto size = std::to_integer<std::size_t>(bytes[1]) | std::to_integer<std::size_t>(bytes[2]) << 8;
    const std::uint16_t recordId = kIds[std::to_integer<unsigned>(bytes[0]) % 4];
    bytes = bytes.subspan(3);
    const ByteView body = bytes.first(std::min({size, bytes.size(), kMostRecordBytes}));
    records.push_back({recordId, {body.begin(), body.end()}});
    bytes = bytes.subspan(body.size());
  }
  Drawing drawing = drawingOf(records);
  const Keeper first = written(drawing);
  if (written(drawingOf(first.kept)).kept != first.kept) std::abort();
  const std::size_t pictures = drawing.pictureCount();
  if (!drawing.hasShapes()) drawing.begin(1, 1024);
  drawing.addPicture(4000000, {}, 7);
  const std::uint16_t comment = drawing.addComment(4000001, {}, u"fuzzed", 5);
  drawing.moveAnchors([](CellAnchor& anchor, bool) { return ++anchor.rwT != 0; });
  Drawing again = drawingOf(written(drawing).kept);
  if (again.pictureCount() != pictures + 1 || again.picture(pictures).id != 7) std::abort();
  if (again.commentText(comment) == nullptr) std::abort();
  again.removePicture(0);
  Drawing::ShapeIds ids;
  again.forEachShapeId([&](std::uint32_t id) { ids.try_emplace(id, static_cast<std::uint32_t>(ids.size()) + 1024); });
  again.renumber(2, ids);
  if (drawingOf(written(again).kept).pictureCount() != pictures) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const ByteView bytes = std::as_bytes(std::span(data, size));
  for (const auto read : {asGroup, asSheet}) {
    try {
      read(bytes);
    } catch (const xlerror&) {
    }
  }
  return 0;
}
