#include "biff/carried_drawing.h"

#include "biff/drawing_anchors.h"
#include "biff/drawing_sink.h"

namespace rubrica {

void CarriedDrawing::finishLoading() {
  if (_records.empty()) return;
  std::vector<officeart::SheetRecord> views;
  views.reserve(_records.size());
  for (const RawRecord& record : _records) views.push_back({record.recordId, record.bytes});
  _shapes.read(views);
}

void CarriedDrawing::write(Xls& xls) const {
  for (const RawRecord& record : _records) writeRaw(xls, record);
  if (!_records.empty()) return;
  DrawingRecordSink sink(xls);
  _shapes.write(sink);
}

officeart::Drawing& CarriedDrawing::change() {
  _records = {};
  return _shapes;
}

void CarriedDrawing::moveAnchors(const LineMove& move) {
  const bool changed = _shapes.moveAnchors(
      [&](officeart::CellAnchor& anchor, bool isComment) { return moveAnchor(anchor, isComment, move); });
  if (changed) _records = {};
}

}  // namespace rubrica
