// Loading an OOXML book: the content types, the main part and its relationships first, so that it is known which of the
// other parts are wanted; then these in the archive's order.
#include <algorithm>

#include "platform/input_file.h"
#include "platform/numeric_locale.h"
#include "platform/text.h"
#include "xml/book_impl.h"
#include "xml/package_links.h"
#include "xml/package_names.h"
#include "xml/part_factory.h"
#include "xml/shared_strings.h"
#include "xml/sheet_impl.h"
#include "xml/styles.h"
#include "xml/zip_reader.h"

namespace rubrica {
namespace {

constexpr char kNoFileName[] = "file name name can't be 0";

const ZipEntry* findEntry(const ZipReader& package, std::string_view name) {
  const ZipEntry* found = nullptr;
  for (const ZipEntry& entry : package.entries()) {
    if (samePartName(entry.name, name)) found = &entry;  // of equal names the later one stands
  }
  return found;
}

std::string firstTarget(Relationships& links, std::string_view type, std::string_view otherType) {
  std::string target = links.findByType(type);
  return target.empty() ? links.findByType(otherType) : target;
}

// Some programs give all XML the main part's type by its extension and then except what they know. Where that leaves
// more than one part, the package's own relationships say which is meant; the others are carried.
const ZipEntry* findMainEntry(ZipReader& package, const ContentTypes& types) {
  std::vector<const ZipEntry*> candidates;
  for (const ZipEntry& entry : package.entries()) {
    const bool isContentTypes = samePartName(entry.name, part_name::kContentTypes);
    if (!isContentTypes && isMainType(types.contentType(entry.name))) candidates.push_back(&entry);
  }
  if (candidates.empty()) return nullptr;
  const ZipEntry* links = findEntry(package, part_name::kPackageRelationships);
  if (candidates.size() == 1 || links == nullptr) return candidates.back();
  const ByteBlock text = package.read(*links);
  Relationships relationships(text.bytes.get(), text.size);
  const std::string named =
      firstTarget(relationships, relationship_type::kOfficeDocument, relationship_type::kStrictOfficeDocument);
  const auto found = std::find_if(candidates.rbegin(), candidates.rend(), [&](const ZipEntry* entry) {
    return samePartName(entry->name, targetKey({}, named));
  });
  return found == candidates.rend() ? candidates.back() : *found;
}

// Out of memory or through the temporary file, as the caller asked.
PartBytes bytesOf(ZipReader& package, const ZipEntry& entry, const std::string& tempFile) {
  if (tempFile.empty()) return {package.read(entry), {}};
  package.extract(entry, tempFile);
  return {{}, tempFile};
}

}  // namespace

template <class Tag>
bool XMLBookImplT<Tag>::load(Text filename, Text tempFile) {
  return loadFile(filename, tempFile, {});
}

template <class Tag>
bool XMLBookImplT<Tag>::loadSheet(Text filename, int sheetIndex, Text tempFile) {
  LoadOptions options;
  options.sheetIndex = sheetIndex;
  return loadFile(filename, tempFile, std::move(options));
}

template <class Tag>
bool XMLBookImplT<Tag>::loadPartially(Text filename, int sheetIndex, int firstRow, int lastRow, Text tempFile) {
  LoadOptions options;
  options.sheetIndex = sheetIndex;
  options.firstRow = firstRow;
  options.lastRow = lastRow;
  return loadFile(filename, tempFile, std::move(options));
}

template <class Tag>
bool XMLBookImplT<Tag>::loadWithoutEmptyCells(Text /*filename*/) {
  _last.setMessage("Book::loadWithoutEmptyCells() is not supported for xlsx files");
  return false;
}

template <class Tag>
bool XMLBookImplT<Tag>::loadInfo(Text filename) {
  LoadOptions options;
  options.infoOnly = true;
  return loadFile(filename, nullptr, std::move(options));
}

template <class Tag>
bool XMLBookImplT<Tag>::loadRaw(const void* data, std::size_t size, int sheetIndex, int firstRow, int lastRow) {
  return guarded(_last, false, [&] {
    LoadOptions options;
    options.sheetIndex = sheetIndex;
    options.firstRow = firstRow;
    options.lastRow = lastRow;
    loadArchive({static_cast<const std::byte*>(data), data == nullptr ? 0 : size}, options);
    return true;
  });
}

template <class Tag>
bool XMLBookImplT<Tag>::loadFile(Text filename, Text tempFile, LoadOptions options) {
  return guarded(_last, false, [&] {
    if (filename == nullptr) throw xlerror(kNoFileName);
    if (tempFile != nullptr) options.tempFile = platform::utf8FromUtf16(tempFile);
    const auto bytes = platform::readWholeFile(filename);
    if (!bytes) throw xlerror("can't open file for reading");
    loadArchive(*bytes, options);
    return true;
  });
}

// A load that failed leaves a book of nothing, so that no save can put a torn one in the place of a whole file.
template <class Tag>
void XMLBookImplT<Tag>::loadArchive(std::span<const std::byte> archive, const LoadOptions& options) {
  const platform::NumericLocaleGuard locale;
  clearForLoad();
  try {
    ZipReader package(archive);
    loadPackage(package, options);
  } catch (...) {
    clearForLoad();
    throw;
  }
  rememberDefaultFont();
}

template <class Tag>
void XMLBookImplT<Tag>::clearForLoad() {
  _parts.clear();
  _pictures.clear();
  _sheets.clear();
  _workbookRelationships = nullptr;
  _contentTypes = nullptr;
  _sharedStrings = nullptr;
  _styles = nullptr;
  _baseDir = part_name::kBaseDirectory;
  static_cast<Root&>(*this) = Root();
  _nameIndex.forget();
}

template <class Tag>
void XMLBookImplT<Tag>::loadPackage(ZipReader& package, const LoadOptions& options) {
  const ZipEntry* types = findEntry(package, part_name::kContentTypes);
  if (types == nullptr) throw xlerror("load error: workbook content types are not found");
  _contentTypes = &_parts.add(types->name, bytesOf(package, *types, options.tempFile).template make<ContentTypes>());

  const ZipEntry* main = findMainEntry(package, *_contentTypes);
  if (main == nullptr) throw xlerror("workbook main xml file is not found");
  loadMainPart(bytesOf(package, *main, options.tempFile), main->name);

  const ZipEntry* links = findEntry(package, makeRelsPath(main->name));
  if (links == nullptr) {
    throw xlerror(options.infoOnly ? "workbook relationships not found"
                                   : "load error: workbook relationships are not found");
  }
  _workbookRelationships =
      &_parts.add(links->name, bytesOf(package, *links, options.tempFile).template make<Relationships>());
  const std::string wanted = keepWantedSheet(options);

  for (const ZipEntry& entry : package.entries()) {
    // Of equal names the later entry stands, and that one has been read.
    const bool isRead = samePartName(entry.name, main->name) || samePartName(entry.name, links->name) ||
                        samePartName(entry.name, part_name::kContentTypes);
    if (isRead) continue;
    const std::string type = _contentTypes->contentType(entry.name);
    if (type.empty()) continue;
    if (options.infoOnly && type != content_type::kRelationships) continue;
    if (options.sheetIndex >= 0 && type == content_type::kWorksheet && !samePartName(entry.name, wanted)) continue;
    loadPart(bytesOf(package, entry, options.tempFile), entry.name, type, options);
  }
  connectParts();
  if (options.infoOnly) return;
  connectSheets();
  if (options.sheetIndex >= 0) dropUnwantedSheets(wanted);
}

template <class Tag>
void XMLBookImplT<Tag>::loadMainPart(const PartBytes& bytes, const std::string& name) {
  if (bytes.path.empty()) {
    this->read(bytes.block.bytes.get(), bytes.block.size);
  } else {
    this->readFile(bytes.path);
  }
  _nameIndex.forget();
  _parts.addBorrowed(name, *this);
  _baseDir = partDirectory(name);
}

template <class Tag>
void XMLBookImplT<Tag>::loadPart(PartBytes bytes, const std::string& name, std::string_view type,
                                 const LoadOptions& options) {
  const bool isSheet = type == content_type::kWorksheet || (type == content_type::kXml && looksLikeWorksheet(bytes));
  if (_parts.contains(name)) forgetPicture(name);
  if (isSheet) {
    auto part = bytes.template make<Sheet>(std::tie(*this), std::make_tuple(options.firstRow, options.lastRow));
    bytes.block = {};
    _parts.add(name, std::move(part));
  } else if (type == content_type::kStyles) {
    _parts.add(name, bytes.template make<Styles<Tag>>(std::tie(_last)));
  } else if (type == content_type::kSharedStrings) {
    _parts.add(name, bytes.template make<SharedStrings<Tag>>());
  } else {
    XFile& part = _parts.add(name, makePart<Tag>(type, bytes));
    notePicture(part, name, type);
  }
}

// An entry that takes the place of one of the same name takes its picture's place too.
template <class Tag>
void XMLBookImplT<Tag>::forgetPicture(std::string_view partName) {
  std::erase_if(_pictures, [&](const BookPicture& picture) { return samePartName(picture.partName, partName); });
}

// Answers the part name of the one sheet that is wanted, and lists only that.
template <class Tag>
std::string XMLBookImplT<Tag>::keepWantedSheet(const LoadOptions& options) {
  if (options.sheetIndex == -1) return {};
  if (options.sheetIndex < 0 || options.sheetIndex >= sheetCount()) throw xlerror("sheetIndex is out of range");
  auto& list = this->get_sheets();
  const auto index = static_cast<std::size_t>(options.sheetIndex);
  while (list.size_sheet() > index + 1) list.erase_sheet(list.size_sheet() - 1);
  for (std::size_t i = 0; i < index; ++i) list.erase_sheet(0);
  renumberNames([&](int position) { return position == options.sheetIndex ? 0 : kGone; });
  setActiveTab(0);
  return resolve(_workbookRelationships->findById(entryAt(0).get_r_id()));
}

// Finds what the workbook's relationships point at.
template <class Tag>
void XMLBookImplT<Tag>::connectParts() {
  Relationships& links = *_workbookRelationships;
  const std::string strings =
      firstTarget(links, relationship_type::kSharedStrings, relationship_type::kStrictSharedStrings);
  const std::string styles = firstTarget(links, relationship_type::kStyles, relationship_type::kStrictStyles);
  _sharedStrings = _parts.findAs<SharedStrings<Tag>>(resolve(strings));
  _styles = _parts.findAs<Styles<Tag>>(resolve(styles));
}

template <class Tag>
void XMLBookImplT<Tag>::connectSheets() {
  for (std::size_t i = 0; i < entryCount(); ++i) {
    const std::string target = _workbookRelationships->findById(entryAt(static_cast<int>(i)).get_r_id());
    _sheets.push_back(target.empty() ? nullptr : _parts.findAs<Sheet>(resolve(target)));
  }
}

template class XMLBookImplT<excelNormal_tag>;
template class XMLBookImplT<excelStrict_tag>;

}  // namespace rubrica
