// Saving an OOXML book: every part of the map, in its order, into a new archive.
#include <algorithm>

#include "platform/numeric_locale.h"
#include "platform/temporary_directory.h"
#include "xml/book_impl.h"
#include "xml/package_names.h"
#include "xml/shared_strings.h"
#include "xml/sheet_impl.h"
#include "xml/zip_writer.h"

namespace rubrica {
namespace {

// The calculation engine that a new book names: readers with a newer one calculate anew.
constexpr std::uint32_t kCalcId = 125725;
constexpr std::string_view kTemporaryName = "rubrica-temp.xml";

struct FileKind {
  std::u16string_view extension;
  std::string_view type;
};
constexpr FileKind kFileKinds[] = {{u".xlsx", content_type::kWorkbook},
                                   {u".xltx", content_type::kTemplate},
                                   {u".xlsm", content_type::kMacroWorkbook},
                                   {u".xltm", content_type::kMacroTemplate}};
constexpr std::size_t kExtensionSize = 5;

bool sameExtension(std::u16string_view a, std::u16string_view b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](char16_t x, char16_t y) {
    const auto lower = [](char16_t c) { return c >= u'A' && c <= u'Z' ? static_cast<char16_t>(c - u'A' + u'a') : c; };
    return lower(x) == lower(y);
  });
}

}  // namespace

template <class Tag>
bool XMLBookImplT<Tag>::save(Text filename, bool useTempFile) {
  return guarded(_last, false, [&] {
    if (filename == nullptr) throw xlerror("file name can't be 0");
    const platform::NumericLocaleGuard locale;
    if (!prepareSave()) return false;
    setMainType(filename);
    const auto output = platform::openFileOutput(filename);
    if (output == nullptr) throw xlerror("can't open file for writing");
    if (useTempFile) {
      const platform::TemporaryDirectory directory;
      if (directory.path().empty()) throw xlerror("can't open temporary file for writing");
      writePackage(*output, directory.file(kTemporaryName));
    } else {
      writePackage(*output, {});
    }
    if (!output->commit()) throw xlerror("can't write file");
    return true;
  });
}

template <class Tag>
bool XMLBookImplT<Tag>::saveRaw(const void** data, std::size_t* size) {
  return guarded(_last, false, [&] {
    const platform::NumericLocaleGuard locale;
    _raw = {};
    if (!prepareSave()) return false;
    writePackage(_raw, {});
    if (data != nullptr) *data = _raw.bytes().data();
    if (size != nullptr) *size = _raw.bytes().size();
    return true;
  });
}

// False for a book without parts, which a failed load leaves: there is nothing to write.
template <class Tag>
bool XMLBookImplT<Tag>::prepareSave() {
  if (_parts.empty()) {
    _last.setMessage("there is nothing to save");
    return false;
  }
  if (_contentTypes != nullptr) _contentTypes->removeOverride(part_name::kCalcChain);
  if (_workbookRelationships != nullptr) _workbookRelationships->removeByTarget("calcChain.xml");
  _parts.remove(part_name::kCalcChain);
  needCalcPr().set_fullCalcOnLoad(true);
  countStringCells();
  return true;
}

// The strings go out before the sheets that use them.
template <class Tag>
void XMLBookImplT<Tag>::countStringCells() {
  if (_sharedStrings == nullptr) return;
  std::uint32_t cells = 0;
  for (const Sheet* sheet : _sheets) {
    if (sheet != nullptr) cells += sheet->sharedStringCells();
  }
  _sharedStrings->setReferenceCount(cells);
}

template <class Tag>
decltype(std::declval<typename XMLBookImplT<Tag>::Root&>().get_calcPr()) XMLBookImplT<Tag>::needCalcPr() {
  const bool isNew = !this->isset_calcPr();
  auto& calcPr = this->get_calcPr();
  if (isNew) calcPr.set_calcId(kCalcId);
  return calcPr;
}

template <class Tag>
void XMLBookImplT<Tag>::setMainType(std::u16string_view filename) {
  if (filename.size() <= kExtensionSize) return;
  const std::u16string_view extension = filename.substr(filename.size() - kExtensionSize);
  for (const FileKind& kind : kFileKinds) {
    if (sameExtension(kind.extension, extension)) needContentTypes().addOverride(part_name::kWorkbook, kind.type);
  }
}

template <class Tag>
void XMLBookImplT<Tag>::writePackage(platform::OutputStream& output, std::string temporaryFile) {
  ZipWriter writer(output, std::move(temporaryFile));
  for (const auto& [name, entry] : _parts) writer.add(name, *entry.part);
  writer.finish();
}

template <class Tag>
bool XMLBookImplT<Tag>::isTemplate() {
  return _contentTypes != nullptr && _contentTypes->contentType(part_name::kWorkbook) == content_type::kTemplate;
}

template <class Tag>
void XMLBookImplT<Tag>::setTemplate(bool tmpl) {
  guarded(_last, [&] {
    needContentTypes().addOverride(part_name::kWorkbook, tmpl ? content_type::kTemplate : content_type::kWorkbook);
  });
}

template class XMLBookImplT<excelNormal_tag>;
template class XMLBookImplT<excelStrict_tag>;

}  // namespace rubrica
