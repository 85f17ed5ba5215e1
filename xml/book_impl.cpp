#include "xml/book_impl.h"

#include "xml/package_names.h"
#include "xml/shared_strings.h"
#include "xml/sheet_impl.h"
#include "xml/styles.h"

namespace rubrica {
namespace {

constexpr unsigned kEngineVersion = 0x03080500;
constexpr char kNoContentTypes[] = "workbook content types are not found";
constexpr char kNoRelationships[] = "workbook relationships are not found";

// "stem.xml" below the book's directory, numbered where a file has something else, or the like unlinked, of that name.
std::string freeTarget(const PartMap& parts, std::string_view baseDirectory, std::string_view stem) {
  constexpr std::string_view kExtension = ".xml";
  std::string target = std::string(stem).append(kExtension);
  if (!parts.contains(resolveTarget(baseDirectory, target))) return target;
  const std::string path = parts.freeName(resolveTarget(baseDirectory, stem), 1, kExtension);
  return path.substr(baseDirectory.size() + 1);
}

}  // namespace

template <class Tag>
XMLBookImplT<Tag>::XMLBookImplT() : _baseDir(part_name::kBaseDirectory) {
  _text.adoptEnvironmentLocale();
  _workbookRelationships = &_parts.add(makeRelsPath(part_name::kWorkbook), std::make_unique<Relationships>());
  Relationships& package = _parts.add(part_name::kPackageRelationships, std::make_unique<Relationships>());
  package.add(part_name::kWorkbook.substr(1), relationship_type::kOfficeDocument);
  _parts.addBorrowed(part_name::kWorkbook, *this);
  _contentTypes = &_parts.add(part_name::kContentTypes, std::make_unique<ContentTypes>());
  _contentTypes->addDefault("rels", content_type::kRelationships);
  _contentTypes->addDefault("xml", content_type::kXml);
  _contentTypes->addOverride(part_name::kWorkbook, content_type::kWorkbook);
  needStyles();
  this->get_workbookPr();
  this->get_sheets();
  rememberDefaultFont();
  _last.setOk();
}

template <class Tag>
XMLBookImplT<Tag>::~XMLBookImplT() = default;

template <class Tag>
void XMLBookImplT<Tag>::release() {
  delete this;
}

template <class Tag>
const char* XMLBookImplT<Tag>::errorMessage() const {
  return _last.message();
}

template <class Tag>
unsigned XMLBookImplT<Tag>::version() {
  return kEngineVersion;
}

// An OOXML book has no BOF record whose version could be told.
template <class Tag>
int XMLBookImplT<Tag>::biffVersion() {
  return 0;
}

template <class Tag>
std::size_t XMLBookImplT<Tag>::droppedMarkupOfParts() const {
  std::size_t dropped = 0;
  for (const auto& [name, entry] : _parts) dropped += entry.part->droppedMarkup();
  return dropped;
}

template <class Tag>
ContentTypes& XMLBookImplT<Tag>::needContentTypes() {
  if (_contentTypes == nullptr) throw xlerror(kNoContentTypes);
  return *_contentTypes;
}

template <class Tag>
Relationships& XMLBookImplT<Tag>::needWorkbookRelationships() {
  if (_workbookRelationships == nullptr) throw xlerror(kNoRelationships);
  return *_workbookRelationships;
}

template <class Tag>
Relationships* XMLBookImplT<Tag>::relationshipsOf(std::string_view partName) {
  return _parts.findAs<Relationships>(makeRelsPath(partName));
}

template <class Tag>
Relationships& XMLBookImplT<Tag>::needRelationshipsOf(std::string_view partName) {
  if (Relationships* present = relationshipsOf(partName)) return *present;
  needContentTypes().addDefault("rels", content_type::kRelationships);
  return _parts.add(makeRelsPath(partName), std::make_unique<Relationships>());
}

template <class Tag>
SharedStrings<Tag>& XMLBookImplT<Tag>::needSharedStrings() {
  if (_sharedStrings == nullptr) {
    ContentTypes& types = needContentTypes();
    Relationships& links = needWorkbookRelationships();
    const std::string target = freeTarget(_parts, _baseDir, "sharedStrings");
    _sharedStrings = &_parts.add(resolve(target), std::make_unique<SharedStrings<Tag>>());
    types.addOverride(resolve(target), content_type::kSharedStrings);
    links.add(target, relationship_type::kSharedStrings);
  }
  return *_sharedStrings;
}

template <class Tag>
Styles<Tag>& XMLBookImplT<Tag>::needStyles() {
  if (_styles == nullptr) {
    ContentTypes& types = needContentTypes();
    Relationships& links = needWorkbookRelationships();
    const std::string target = freeTarget(_parts, _baseDir, "styles");
    _styles = &_parts.add(resolve(target), std::make_unique<Styles<Tag>>(_last));
    types.addOverride(resolve(target), content_type::kStyles);
    links.add(target, relationship_type::kStyles);
  }
  return *_styles;
}

template class XMLBookImplT<excelNormal_tag>;
template class XMLBookImplT<excelStrict_tag>;

}  // namespace rubrica
