#include "host/host_object.h"
#include "host/index_base.h"
#include "host/nv_obj_cell.h"
#include "host/nv_obj_format.h"
#include "host/nv_obj_worksheet.h"
#include "host/parameters.h"

namespace rubrica::host {
namespace {

// What $clear takes without parameters: the whole of an xls sheet, in the engine's numbers.
constexpr int kClearLastRow = 65535, kClearLastColumn = 255;

struct Range {
  int rowFirst, rowLast, colFirst, colLast;
};

struct Span {
  int first, last;
};

Span rowsIn(Parameters& in) {
  const int first = in.row(1, "rowFirst");
  return {first, in.row(2, "rowLast")};
}

Span columnsIn(Parameters& in) {
  const int first = in.column(1, "colFirst");
  return {first, in.column(2, "colLast")};
}

// The four corners of a range, from parameter `at` on.
Range rangeIn(Parameters& in, int at = 1) {
  Range range{};
  range.rowFirst = in.row(at, "rowFirst");
  range.rowLast = in.row(at + 1, "rowLast");
  range.colFirst = in.column(at + 2, "colFirst");
  range.colLast = in.column(at + 3, "colLast");
  return range;
}

int answer(MethodCall& call, bool result) {
  call.host.returnBoolean(result);
  return code::done;
}

// An optional Format parameter; fails the call when it is passed and is none.
Format* formatIn(MethodCall& call, Parameters& in, int n, const char* unrecognized) {
  if (in.failed()) return nullptr;
  const HostField field = call.host.parameter(n);
  if (!field) return nullptr;
  const auto object = resolveObject<NVObjFormat>(field);
  if (!object) in.fail(unrecognized);
  return object ? object->format : nullptr;
}

int cell(NVObjWorksheet& self, MethodCall& call, int) {
  Parameters in(call);
  const int row = in.row(1, "row"), column = in.column(2, "col", "second parameter");
  if (in.failed()) return in.failure();
  NewObject<NVObjCell> made(call.host);
  if (made.object) {
    made.object->numFormats = self.numFormats;
    made.object->book = self.book;
    made.object->sheet = self.sheet;
    made.object->row = row;
    made.object->column = column;
    made.object->ownerHandle = self.ownerHandle;
  }
  call.host.returnObject(made.handle);
  return code::done;
}

int colWidth(NVObjWorksheet& self, MethodCall& call, int) {
  Parameters in(call);
  const int column = in.column(1, "col", "first parameter");
  if (in.failed()) return in.failure();
  call.host.returnNumber(self.sheet->colWidth(column));
  return code::done;
}

int rowHeight(NVObjWorksheet& self, MethodCall& call, int) {
  Parameters in(call);
  const int row = in.row(1, "row");
  if (in.failed()) return in.failure();
  call.host.returnNumber(self.sheet->rowHeight(row));
  return code::done;
}

int setCol(NVObjWorksheet& self, MethodCall& call, int) {
  Parameters in(call);
  const int first = in.column(1, "colFirst", "first parameter");
  const int last = in.column(2, "colLast", "second parameter");
  const double width = in.number(3, "width");
  Format* format = formatIn(call, in, 4, "Fourth parameter, format, is unrecognized.");
  if (in.failed()) return in.failure();
  return answer(call, self.sheet->setCol(first, last, width, format, in.optionalBoolean(5, false)));
}

int setRow(NVObjWorksheet& self, MethodCall& call, int) {
  Parameters in(call);
  const int row = in.row(1, "row");
  const double height = in.number(2, "height");
  Format* format = formatIn(call, in, 3, "Third parameter, format, is unrecognized.");
  if (in.failed()) return in.failure();
  return answer(call, self.sheet->setRow(row, height, format, in.optionalBoolean(4, false)));
}

int getMerge(NVObjWorksheet& self, MethodCall& call, int) {
  Parameters in(call);
  const int row = in.row(1, "row"), column = in.column(2, "col", "second parameter");
  if (!in.failed() && !(in.isPassed(3) && in.isPassed(4) && in.isPassed(5) && in.isPassed(6))) {
    in.fail("Insufficient parameters.  rowFirst, rowLast, colFirst and colLast must all be passed.");
  }
  if (in.failed()) return in.failure();
  Range merged{};
  const bool isMerged =
      self.sheet->getMerge(row, column, &merged.rowFirst, &merged.rowLast, &merged.colFirst, &merged.colLast);
  if (isMerged) {
    int n = 3;
    for (int index : {merged.rowFirst, merged.rowLast, merged.colFirst, merged.colLast}) {
      call.host.parameter(n).setInteger(toHost(index));
      call.host.markChanged(n++);
    }
  }
  return answer(call, isMerged);
}

int setMerge(NVObjWorksheet& self, MethodCall& call, int) {
  Parameters in(call);
  const Range at = rangeIn(in);
  if (in.failed()) return in.failure();
  return answer(call, self.sheet->setMerge(at.rowFirst, at.rowLast, at.colFirst, at.colLast));
}

int delMerge(NVObjWorksheet& self, MethodCall& call, int) {
  Parameters in(call);
  const int row = in.row(1, "row"), column = in.column(2, "col");
  if (in.failed()) return in.failure();
  return answer(call, self.sheet->delMerge(row, column));
}

int setHorzPageBreak(NVObjWorksheet& self, MethodCall& call, int) {
  Parameters in(call);
  const int row = in.row(1, "row");
  if (in.failed()) return in.failure();
  return answer(call, self.sheet->setHorzPageBreak(row, in.optionalBoolean(2, true)));
}

int setVertPageBreak(NVObjWorksheet& self, MethodCall& call, int) {
  Parameters in(call);
  const int column = in.column(1, "col");
  if (in.failed()) return in.failure();
  return answer(call, self.sheet->setVertPageBreak(column, in.optionalBoolean(2, true)));
}

int split(NVObjWorksheet& self, MethodCall& call, int) {
  Parameters in(call);
  const int row = in.row(1, "row"), column = in.column(2, "col");
  if (in.failed()) return in.failure();
  self.sheet->split(row, column);
  return code::done;
}

int groupRows(NVObjWorksheet& self, MethodCall& call, int) {
  Parameters in(call);
  const Span rows = rowsIn(in);
  if (in.failed()) return in.failure();
  // `collapsed` has always been taken from the second parameter, rowLast; code in use relies on groups coming out
  // collapsed whatever the third one says.
  return answer(call, self.sheet->groupRows(rows.first, rows.last, in.optionalBoolean(2, true)));
}

int groupCols(NVObjWorksheet& self, MethodCall& call, int) {
  Parameters in(call);
  const int first = in.column(1, "firstCol", "second parameter, firstCol");
  const int last = in.column(2, "lastCol");
  if (in.failed()) return in.failure();
  return answer(call, self.sheet->groupCols(first, last, in.optionalBoolean(3, true)));
}

int clear(NVObjWorksheet& self, MethodCall& call, int) {
  Parameters in(call);
  const int rowFirst = in.isPassed(1) ? in.row(1, "rowFirst") : 0;
  const int rowLast = in.isPassed(2) ? in.row(2, "rowLast") : kClearLastRow;
  const int colFirst = in.optionalColumn(3, "colFirst", 0);
  const int colLast = in.optionalColumn(4, "colLast", kClearLastColumn);
  if (in.failed()) return in.failure();
  self.sheet->clear(rowFirst, rowLast, colFirst, colLast);
  return code::done;
}

// The four methods that insert or remove whole rows or columns, and move the named ranges along.
template <auto Operation>
int onRows(NVObjWorksheet& self, MethodCall& call, int) {
  Parameters in(call);
  const Span rows = rowsIn(in);
  if (in.failed()) return in.failure();
  return answer(call, (self.sheet->*Operation)(rows.first, rows.last, true));
}

template <auto Operation>
int onColumns(NVObjWorksheet& self, MethodCall& call, int) {
  Parameters in(call);
  const Span columns = columnsIn(in);
  if (in.failed()) return in.failure();
  return answer(call, (self.sheet->*Operation)(columns.first, columns.last, true));
}

int setPrintRepeatRows(NVObjWorksheet& self, MethodCall& call, int) {
  Parameters in(call);
  const Span rows = rowsIn(in);
  if (in.failed()) return in.failure();
  self.sheet->setPrintRepeatRows(rows.first, rows.last);
  return code::done;
}

int setPrintRepeatCols(NVObjWorksheet& self, MethodCall& call, int) {
  Parameters in(call);
  const Span columns = columnsIn(in);
  if (in.failed()) return in.failure();
  self.sheet->setPrintRepeatCols(columns.first, columns.last);
  return code::done;
}

int setPrintArea(NVObjWorksheet& self, MethodCall& call, int) {
  Parameters in(call);
  const Range at = rangeIn(in);
  if (in.failed()) return in.failure();
  self.sheet->setPrintArea(at.rowFirst, at.rowLast, at.colFirst, at.colLast);
  return code::done;
}

int clearPrintRepeats(NVObjWorksheet& self, MethodCall&, int) {
  self.sheet->clearPrintRepeats();
  return code::done;
}

int clearPrintArea(NVObjWorksheet& self, MethodCall&, int) {
  self.sheet->clearPrintArea();
  return code::done;
}

std::u16string rangeNameIn(Parameters& in) {
  std::u16string name = in.text(1, "name");
  if (!in.failed() && name.empty()) in.fail("Invalid First parameter. Name cannot be blank.");
  return name;
}

int setNamedRange(NVObjWorksheet& self, MethodCall& call, int) {
  Parameters in(call);
  const std::u16string name = rangeNameIn(in);
  const Range at = rangeIn(in, 2);
  if (in.failed()) return in.failure();
  return answer(call, self.sheet->setNamedRange(name.c_str(), at.rowFirst, at.rowLast, at.colFirst, at.colLast,
                                                Sheet::kScopeUndefined, false));
}

int delNamedRange(NVObjWorksheet& self, MethodCall& call, int) {
  Parameters in(call);
  const std::u16string name = rangeNameIn(in);
  if (in.failed()) return in.failure();
  return answer(call, self.sheet->delNamedRange(name.c_str(), Sheet::kScopeUndefined));
}

constexpr MethodEntry<NVObjWorksheet> kMethods[] = {
    {3000, "$cell", cell},
    {3001, "$colWidth", colWidth},
    {3002, "$rowHeight", rowHeight},
    {3003, "$setCol", setCol},
    {3004, "$setRow", setRow},
    {3005, "$getMerge", getMerge},
    {3006, "$setMerge", setMerge},
    {3007, "$delMerge", delMerge},
    {3008, "$setHorzPageBreak", setHorzPageBreak},
    {3009, "$setVertPageBreak", setVertPageBreak},
    {3010, "$split", split},
    {3011, "$groupRows", groupRows},
    {3012, "$groupCols", groupCols},
    {3013, "$clear", clear},
    {3014, "$insertRow", onRows<&Sheet::insertRow>},
    {3015, "$insertCol", onColumns<&Sheet::insertCol>},
    {3016, "$removeRow", onRows<&Sheet::removeRow>},
    {3017, "$removeCol", onColumns<&Sheet::removeCol>},
    {3018, "$setPrintRepeatRows", setPrintRepeatRows},
    {3019, "$setPrintRepeatCols", setPrintRepeatCols},
    {3020, "$setPrintArea", setPrintArea},
    {3021, "$clearPrintRepeats", clearPrintRepeats},
    {3022, "$clearPrintArea", clearPrintArea},
    {3023, "$setNamedRange", setNamedRange},
    {3024, "$delNamedRange", delNamedRange},
};

}  // namespace

std::span<const MethodEntry<NVObjWorksheet>> NVObjWorksheet::methods() {
  return kMethods;
}

void NVObjWorksheet::copyStateFrom(const NVObjWorksheet& other) {
  numFormats = other.numFormats;
  book = other.book;
  sheet = other.sheet;
}

}  // namespace rubrica::host
