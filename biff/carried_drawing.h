// A sheet's drawing as it is carried: until something in it changes, the records are written back exactly as they came.
// Owned by the sheet.
#pragma once

#include <vector>

#include "biff/records/record_io.h"
#include "engine/line_move.h"
#include "officeart/drawing.h"

namespace rubrica {

class CarriedDrawing {
 public:
  // The records of a load, to which MsoDrawing, Obj, TextObject and their CONTINUE records are appended.
  std::vector<RawRecord>& records() { return _records; }
  // Reads the shapes from them. Throws xlerror with the messages of the records.
  void finishLoading();
  void write(Xls& xls) const;

  const officeart::Drawing& shapes() const { return _shapes; }
  // For a change: from here on the drawing is written from its shapes.
  officeart::Drawing& change();
  void moveAnchors(const LineMove& move);

 private:
  std::vector<RawRecord> _records;
  officeart::Drawing _shapes;
};

}  // namespace rubrica
