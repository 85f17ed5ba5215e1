// The methods of NVObjWorkbook, but for the two that move whole lists (list_population.cpp, list_extraction.cpp).
#include <limits>
#include <string>

#include <boost/format.hpp>

#include "host/host_object.h"
#include "host/list_methods.h"
#include "host/nv_obj_font.h"
#include "host/nv_obj_format.h"
#include "host/nv_obj_workbook.h"
#include "host/nv_obj_worksheet.h"
#include "host/parameters.h"
#include "host/text.h"

namespace rubrica::host {
namespace {

std::string formatted(const char* pattern, const std::string& text) {
  return (boost::format(pattern) % text).str();
}
std::string formatted(const char* pattern, int number) {
  return (boost::format(pattern) % number).str();
}

// Turns a path of the host into one for the engine, in place; false when that can't be done. The platforms that this
// component runs on take the host's paths as they are.
bool convertHostPath(HostField&) {
  return true;
}

// The path parameter as engine text; fails the call when it is absent or can't be converted.
std::u16string pathParameter(MethodCall& call, Parameters& in) {
  HostField field = call.host.parameter(1);
  if (!field) {
    in.fail({});
    return {};
  }
  if (!convertHostPath(field)) {
    in.fail(formatted("Unable to convert HFS Path to Posix: \"%s\"", field.utf8()));
    return {};
  }
  return field.text();
}

int failNewBook(MethodCall& call) {
  call.longError = "Unable to create workbook.";
  return code::outOfMemory;
}

int initialize(NVObjWorkbook& self, MethodCall& call, int) {
  const HostField field = call.host.parameter(1);
  const std::int32_t type = field.type();
  const bool isNumber = type == kind::integer || type == kind::number || type == kind::constant;
  self.fileType = isNumber && field.integer() == NVObjWorkbook::kXlsx ? NVObjWorkbook::kXlsx : NVObjWorkbook::kXls;
  return self.createBook() ? code::done : failNewBook(call);
}

int load(NVObjWorkbook& self, MethodCall& call, int) {
  Parameters in(call);
  const std::u16string path = pathParameter(call, in);
  if (in.failed()) return in.failure();
  if (!self.createBook()) return failNewBook(call);
  call.host.returnBoolean(self.book->load(path.c_str()));
  return code::done;
}

int save(NVObjWorkbook& self, MethodCall& call, int) {
  Parameters in(call);
  const std::u16string path = pathParameter(call, in);
  if (in.failed()) return in.failure();
  call.host.returnBoolean(self.book->save(path.c_str()));
  return code::done;
}

int loadRaw(NVObjWorkbook& self, MethodCall& call, int) {
  const HostField data = call.host.parameter(1);
  if (!data) return code::badParameters;
  const std::vector<unsigned char> bytes = data.binary();
  if (bytes.empty()) {
    call.longError = "No data in parameter";
    return code::badParameters;
  }
  if (!self.createBook()) return failNewBook(call);
  call.host.returnBoolean(self.book->loadRaw(bytes.data(), bytes.size(), -1, -1, -1));
  return code::done;
}

int saveRaw(NVObjWorkbook& self, MethodCall& call, int) {
  HostField target = call.host.parameter(1);
  if (!target) return code::badParameters;
  const void* data = nullptr;
  std::size_t size = 0;
  const bool isSaved = self.book->saveRaw(&data, &size);
  if (isSaved && data == nullptr) {
    call.longError = "No data read from file";
    return code::nothing;
  }
  if (isSaved) {
    target.setBinary(data, size);
    call.host.markChanged(1);
  }
  call.host.returnBoolean(isSaved);
  return code::done;
}

// The error of a call that should have given an object of the book.
int failEmpty(NVObjWorkbook& self, MethodCall& call, const char* pattern) {
  call.longError = formatted(pattern, self.book->errorMessage());
  return code::failed;
}

int returnSheet(NVObjWorkbook& self, MethodCall& call, Sheet* sheet) {
  if (sheet == nullptr) return failEmpty(self, call, "Worksheet object returned empty. Error: %s");
  NewObject<NVObjWorksheet> made(call.host);
  if (made.object) {
    made.object->numFormats = self.numFormats;
    made.object->book = self.book;
    made.object->sheet = sheet;
    made.object->ownerHandle = self.selfHandle;
  }
  call.host.returnObject(made.handle);
  return code::done;
}

int addSheet(NVObjWorkbook& self, MethodCall& call, int) {
  Parameters in(call);
  const std::u16string name = in.text(1, "sheetName");
  if (in.failed()) return in.failure();
  const auto init = resolveObject<NVObjWorksheet>(call.host.parameter(2));
  return returnSheet(self, call,
                     host::addSheet(self.book, name.c_str(), init && init->isSetUp() ? init->sheet : nullptr));
}

// Reads an index from 1; the number one above `size` passes, and the engine then refuses it.
int indexParameter(Parameters& in, const char* name, int size, const char* outOfRange) {
  const int index = in.integer(1, name);
  if (!in.failed() && (index < 1 || std::int64_t{index} > std::int64_t{size} + 1)) in.fail(formatted(outOfRange, size));
  return index;
}

constexpr const char* kSheetRange =
    "First parameter, sheetIndex, is out of range.  Must be between 1 and the number of Worksheets(%d)";

int getSheet(NVObjWorkbook& self, MethodCall& call, int) {
  Parameters in(call);
  const int index = indexParameter(in, "sheetIndex", self.book->sheetCount(), kSheetRange);
  if (in.failed()) return in.failure();
  return returnSheet(self, call, self.book->getSheet(index - 1));
}

int delSheet(NVObjWorkbook& self, MethodCall& call, int) {
  Parameters in(call);
  const int index = indexParameter(in, "sheetIndex", self.book->sheetCount(), kSheetRange);
  if (in.failed()) return in.failure();
  call.host.returnBoolean(deleteSheet(self.book, index - 1));
  return code::done;
}

int returnFormat(NVObjWorkbook& self, MethodCall& call, Format* format) {
  if (format == nullptr) return failEmpty(self, call, "Format object returned empty. Error: %s");
  call.host.returnObject(newStyleObject<NVObjFormat>(call.host, self.book, format, self.selfHandle));
  return code::done;
}

int returnFont(NVObjWorkbook& self, MethodCall& call, Font* font) {
  if (font == nullptr) return failEmpty(self, call, "Font object returned empty. Error: %s");
  call.host.returnObject(newStyleObject<NVObjFont>(call.host, self.book, font, self.selfHandle));
  return code::done;
}

int addFormat(NVObjWorkbook& self, MethodCall& call, int) {
  Format* init = nullptr;
  if (const HostField field = call.host.parameter(1)) {
    const auto object = resolveObject<NVObjFormat>(field);
    if (!object) {
      call.longError = "Unrecognized first parameter, initFormat.";
      return code::failed;
    }
    init = object->format;
  }
  return returnFormat(self, call, self.book->addFormat(init));
}

int addFont(NVObjWorkbook& self, MethodCall& call, int) {
  Font* init = nullptr;
  if (const HostField field = call.host.parameter(1)) {
    const auto object = resolveObject<NVObjFont>(field);
    if (!object) {
      call.longError = "Unrecognized first parameter, initFont.";
      return code::failed;
    }
    init = object->font;
  }
  return returnFont(self, call, self.book->addFont(init));
}

int addCustomNumFormat(NVObjWorkbook& self, MethodCall& call, int) {
  Parameters in(call);
  const std::u16string text = in.text(1, "customNumFormat");
  if (in.failed()) return in.failure();
  const int id = self.book->addCustomNumFormat(text.c_str());
  if (id == 0) return failEmpty(self, call, "Unable to create custom number format.  Error: %s");
  call.host.returnInteger(id);
  return code::done;
}

int customNumFormat(NVObjWorkbook& self, MethodCall& call, int) {
  Parameters in(call);
  const int id = in.integer(1, "fmt");
  if (in.failed()) return in.failure();
  call.host.returnText(orEmpty(self.book->customNumFormat(id)));
  return code::done;
}

// Formats and fonts are asked for by the engine's own index, which counts from 0.
int format(NVObjWorkbook& self, MethodCall& call, int) {
  Parameters in(call);
  const int index =
      indexParameter(in, "index", self.book->formatSize(),
                     "First parameter, index, is out of range.  Must be between 1 and size of Formats(%d)");
  if (in.failed()) return in.failure();
  return returnFormat(self, call, self.book->format(index));
}

int font(NVObjWorkbook& self, MethodCall& call, int) {
  Parameters in(call);
  const int index = indexParameter(in, "index", self.book->fontSize(),
                                   "First parameter, index, is out of range.  Must be between 1 and size of Fonts(%d)");
  if (in.failed()) return in.failure();
  return returnFont(self, call, self.book->font(index));
}

int addPicture(NVObjWorkbook& self, MethodCall& call, int) {
  Parameters in(call);
  const std::u16string path = pathParameter(call, in);
  if (in.failed()) return in.failure();
  const int id = self.book->addPicture(path.c_str());
  call.host.returnInteger(id);
  if (id != -1) return code::done;
  call.longError =
      (boost::format("Unable to add picture: \"%s\".  Error: %s") % utf8FromUtf16(path) % self.book->errorMessage())
          .str();
  return code::failed;
}

int addPictureRaw(NVObjWorkbook& self, MethodCall& call, int) {
  const HostField data = call.host.parameter(1);
  if (!data) return code::badParameters;
  const std::vector<unsigned char> bytes = data.binary();
  if (bytes.empty()) {
    call.longError = "No binary data in parameter";
    return code::badParameters;
  }
  const int id = self.book->addPicture2(bytes.data(), bytes.size());
  call.host.returnInteger(id);
  return id != -1 ? code::done : failEmpty(self, call, "Unable to add picture from binary.  Error: %s");
}

constexpr MethodEntry<NVObjWorkbook> kMethods[] = {
    {2000, "$initialize", initialize},
    {2001, "$load", load},
    {2002, "$save", save},
    {2003, "$loadraw", loadRaw},
    {2004, "$saveraw", saveRaw},
    {2005, "$addSheet", addSheet},
    {2006, "$getSheet", getSheet},
    {2007, "$delSheet", delSheet},
    {2008, "$addFormat", addFormat},
    {2009, "$addFont", addFont},
    {2010, "$addCustomNumFormat", addCustomNumFormat},
    {2011, "$customNumFormat", customNumFormat},
    {2012, "$format", format},
    {2013, "$font", font},
    {2014, "$addPicture", addPicture},
    {2015, "$addPictureRaw", addPictureRaw},
    {2016, "$populateFromList", populateWithList},
    {2017, "$extractList", extractList},
    {2018, "$error", nullptr},  // the point that user code overrides
};

}  // namespace

std::span<const MethodEntry<NVObjWorkbook>> NVObjWorkbook::methods() {
  return kMethods;
}

bool NVObjWorkbook::createBook() {
  book = shareBook(fileType == kXlsx ? createXmlBook() : createBiffBook());
  numFormats = book ? boost::make_shared<NumFormatMgr>(book) : NumFormatMgrPtr();
  return book != nullptr;
}

void NVObjWorkbook::copyStateFrom(const NVObjWorkbook& other) {
  numFormats = other.numFormats;
  book = other.book;
  fileType = other.fileType;
}

}  // namespace rubrica::host
