// $populateWithList: a host list becomes the cells of a new sheet.
#include <map>
#include <vector>

#include <boost/format.hpp>

#include "host/cell_value.h"
#include "host/host_object.h"
#include "host/index_base.h"
#include "host/list_methods.h"
#include "host/list_style.h"
#include "host/nv_obj_format.h"
#include "host/parameters.h"

namespace rubrica::host {
namespace {

enum Style { noHeader = 0, definitionHeader = 1, customHeader = 2, customHeaderAndFormat = 3 };

constexpr int kHeaderFontPoints = 11;
constexpr const char16_t* kSheetName = u"Sheet1";
constexpr const char16_t* kNameOfSheetThatGoes = u"Sheet1 replaced";

// Writes values of a list to cells, by the kind of each; what a cell can't hold leaves the cell as it was.
class CellWriter {
 public:
  CellWriter(NVObjWorkbook& self, Sheet& sheet) : _book(*self.book), _sheet(sheet), _numFormats(*self.numFormats) {}

  // Row and column count from 1.
  void write(int row, int column, const HostField& field, Format* format) {
    switch (field.type()) {
      case kind::character:
        _sheet.writeStr(toEngine(row), toEngine(column), field.text(_textRoom), format, kSharedString);
        break;
      case kind::boolean:
        _sheet.writeBool(toEngine(row), toEngine(column), field.boolean(), format, ErrorType::noError);
        break;
      case kind::date:
        writeDateCell({_book, _sheet, _numFormats, toEngine(row), toEngine(column)}, field, format);
        break;
      case kind::number:
        _sheet.writeNum(toEngine(row), toEngine(column), field.number(), format);
        break;
      case kind::integer:
        _sheet.writeNum(toEngine(row), toEngine(column), field.integer(), format);
        break;
      default:
        break;
    }
  }

 private:
  Book& _book;
  Sheet& _sheet;
  NumFormatMgr& _numFormats;
  std::vector<char16_t> _textRoom;
};

// Removes sheets while the index runs up and the count falls: every other sheet stays, which code in use relies on. A
// book does not give up its last sheet, so a book of one sheet loses it when the new one is there.
Sheet* makeTargetSheet(const BookPtr& book) {
  const bool hadOneSheet = book->sheetCount() == 1;
  for (int index = 0; index < book->sheetCount(); ++index) deleteSheet(book, index);
  if (!hadOneSheet || book->sheetCount() == 0) return addSheet(book, kSheetName, nullptr);
  if (Sheet* old = book->getSheet(0)) old->setName(kNameOfSheetThatGoes);
  Sheet* sheet = addSheet(book, kSheetName, nullptr);
  if (sheet != nullptr) deleteSheet(book, 0);
  return sheet;
}

Format* makeHeaderFormat(Book& book) {
  Font* font = book.addFont(nullptr);
  if (font != nullptr) {
    font->setBold(true);
    font->setSize(kHeaderFontPoints);
  }
  Format* format = book.addFormat(nullptr);
  if (format != nullptr) {
    format->setWrap(true);
    format->setFont(font);
    format->setBorderBottom(BorderStyle::medium);
  }
  return format;
}

void writeHeader(CellWriter& cells, Format* format, MethodCall& call, int style, const HostList& list) {
  const HostList headers = HostList::borrow(call.host.parameter(3));
  HostField name = call.host.newField();
  const int columns = list.columnCount();
  for (int column = 1; column <= columns; ++column) {
    if (style == definitionHeader) {
      name.setUtf32(list.columnName(column));
      cells.write(1, column, name, format);
    } else {
      cells.write(1, column, headers.cell(1, column), format);
    }
  }
}

// The formats of the columns that have one. Fails the call at a value that is no Format object.
std::map<int, Format*> columnFormats(MethodCall& call, Parameters& in, int columns) {
  std::map<int, Format*> formats;
  const HostList row = HostList::borrow(call.host.parameter(4));
  for (int column = 1; column <= columns; ++column) {
    const HostField field = row.cell(1, column);
    if (field.type() != kind::object && field.type() != kind::objectReference) {
      in.fail("Invalid definition in contents of 4th parameter, formatRow.  Expected kObject.");
      return formats;
    }
    const ObjectPtr object = resolveObject<NVObjBase>(field);
    if (!object) continue;
    const auto* format = dynamic_cast<const NVObjFormat*>(object.get());
    if (format == nullptr || format->format == nullptr) {
      in.fail((boost::format("Found object in 4th parameter, formatRow, but couldn't resolve object contents in column "
                             "%d.") %
               column)
                  .str());
      return formats;
    }
    formats[column] = format->format;
  }
  return formats;
}

void checkParameters(MethodCall& call, Parameters& in, int style) {
  if (call.host.parameter(1).type() != kind::list) {
    in.fail("List in 1st parameter not recognized.");
    return;
  }
  if ((style == customHeader || style == customHeaderAndFormat) && !call.host.parameter(3).isListOrRow()) {
    in.fail("Missing header row in 3rd parameter.");
  }
  if (style == customHeaderAndFormat && !call.host.parameter(4).isListOrRow()) {
    in.fail("Missing format row in 4th parameter.");
  }
  if (style > customHeaderAndFormat) {
    in.fail((boost::format("Style %d is not valid.") % style).str(), code::notSupported);
  }
}

}  // namespace

int populateWithList(NVObjWorkbook& self, MethodCall& call, int) {
  Parameters in(call);
  const int style = listStyle(call.host.parameter(2));
  checkParameters(call, in, style);
  if (in.failed()) return in.failure();

  Sheet* sheet = makeTargetSheet(self.book);
  if (sheet == nullptr) {
    call.longError = "Unable to get worksheet for workbook.";
    return code::nothing;
  }
  const HostList list = HostList::borrow(call.host.parameter(1));
  const int rows = list.rowCount(), columns = list.columnCount();
  const int rowOffset = style == noHeader ? 0 : 1;
  CellWriter cells(self, *sheet);
  if (style != noHeader) writeHeader(cells, makeHeaderFormat(*self.book), call, style, list);

  std::map<int, Format*> formats;
  if (style == customHeaderAndFormat) formats = columnFormats(call, in, columns);
  if (in.failed()) return in.failure();

  for (int column = 1; column <= columns; ++column) {
    const auto found = formats.find(column);
    Format* format = found != formats.end() ? found->second : nullptr;
    for (int row = 1; row <= rows; ++row) {
      cells.write(rowOffset + row, column, list.cell(row, column), format);
    }
  }
  return code::done;
}

}  // namespace rubrica::host
