// The sheets of an OOXML book: adding, moving, removing and naming them, with all that the package says about them.
#include <algorithm>
#include <iterator>
#include <limits>
#include <set>

#include "engine/make_room.h"
#include "engine/sheet_name.h"
#include "platform/text.h"
#include "xml/book_impl.h"
#include "xml/package_links.h"
#include "xml/package_names.h"
#include "xml/shared_strings.h"
#include "xml/sheet_impl.h"
#include "xml/styles.h"

namespace rubrica {
namespace {

constexpr std::string_view kSheetPrefix = "worksheets/sheet";
constexpr std::string_view kPartExtension = ".xml";

bool isAscii(std::string_view text) {
  unsigned bits = 0;  // of all, since short texts are done faster without an early end
  for (const char c : text) bits |= static_cast<unsigned char>(c);
  return bits < 0x80;
}

}  // namespace

template <class Tag>
std::size_t XMLBookImplT<Tag>::entryCount() const {
  const auto* list = this->find_sheets();
  return list == nullptr ? 0 : list->size_sheet();
}

template <class Tag>
int XMLBookImplT<Tag>::sheetCount() {
  return static_cast<int>(entryCount());
}

template <class Tag>
const typename XMLBookImplT<Tag>::SheetEntry& XMLBookImplT<Tag>::entryAt(int index) const {
  return this->find_sheets()->get_sheet(static_cast<std::size_t>(index));
}

template <class Tag>
std::optional<int> XMLBookImplT<Tag>::findSheet(std::u16string_view name) {
  const std::string narrow = platform::utf8FromUtf16Lossy(name);
  const bool isPlain = isAscii(narrow);
  const int count = sheetCount();
  for (int i = 0; i < count; ++i) {
    const std::string& present = entryAt(i).get_name();
    const bool isSame = isPlain && isAscii(present) ? samePartName(present, narrow)
                                                    : sameNameIgnoringCase(platform::utf16FromUtf8Lossy(present), name);
    if (isSame) return i;
  }
  return std::nullopt;
}

template <class Tag>
int XMLBookImplT<Tag>::positionOf(const Sheet& sheet) const {
  const auto found = std::find(_sheets.begin(), _sheets.end(), &sheet);
  return found == _sheets.end() ? -1 : static_cast<int>(found - _sheets.begin());
}

template <class Tag>
typename XMLBookImplT<Tag>::SheetEntry* XMLBookImplT<Tag>::entryOf(const Sheet& sheet) {
  const int position = positionOf(sheet);
  return position < 0 ? nullptr : &this->get_sheets().get_sheet(static_cast<std::size_t>(position));
}

template <class Tag>
std::string XMLBookImplT<Tag>::partNameOf(const Sheet& sheet) const {
  const int position = positionOf(sheet);
  if (position < 0 || _workbookRelationships == nullptr) return {};
  return resolve(_workbookRelationships->findById(entryAt(position).get_r_id()));
}

template <class Tag>
std::u16string XMLBookImplT<Tag>::usableSheetName(Text name, const Sheet* except) {
  if (name == nullptr) throw xlerror("sheet name can't be 0");
  const std::u16string_view given = name;
  std::u16string usable(cutSheetName(given));
  if (usable.size() < given.size()) _last.setMessage(kSheetNameIsCut);
  const auto taken = findSheet(usable);
  if (taken && (except == nullptr || *taken != positionOf(*except))) {
    throw xlerror("book already contains such sheet name");
  }
  checkSheetName(usable);
  return usable;
}

template <class Tag>
ISheetT<char16_t>* XMLBookImplT<Tag>::addSheet(Text name, ISheetT<char16_t>* initSheet) {
  return guarded(_last, static_cast<ISheetT<char16_t>*>(nullptr),
                 [&] { return insertSheetAt(sheetCount(), name, initSheet); });
}

template <class Tag>
ISheetT<char16_t>* XMLBookImplT<Tag>::insertSheet(int index, Text name, ISheetT<char16_t>* initSheet) {
  return guarded(_last, static_cast<ISheetT<char16_t>*>(nullptr),
                 [&] { return insertSheetAt(index, name, initSheet); });
}

template <class Tag>
ISheetT<char16_t>* XMLBookImplT<Tag>::insertSheetAt(int index, Text name, ISheetT<char16_t>* initSheet) {
  if (name == nullptr) throw xlerror("sheet name can't be 0");
  if (index < 0 || index > sheetCount()) throw xlerror("index is out of range");
  // A book of which only the information was loaded lists sheets that it doesn't have.
  if (_sheets.size() != entryCount()) throw xlerror("integrity error: the sheets of the book are not loaded");
  const std::u16string usable = usableSheetName(name, nullptr);
  auto* source = dynamic_cast<Sheet*>(initSheet);
  if (initSheet != nullptr && source == nullptr) throw xlerror("not supported");
  const std::string path = makeSheetPath();
  auto made = source == nullptr ? std::make_unique<Sheet>(*this) : std::make_unique<Sheet>(*this, *source);
  makeRoom(_sheets);
  try {
    Sheet& sheet = _parts.add(path, std::move(made));
    if (source != nullptr) copySheetParts(*source, path);
    needContentTypes().addOverride(path, content_type::kWorksheet);
    listSheet(index, usable, path);
    _sheets.insert(_sheets.begin() + index, &sheet);
    return &sheet;
  } catch (...) {
    dropParts({path});
    needWorkbookRelationships().removeByTarget(path.substr(_baseDir.size() + 1));
    throw;
  }
}

// The workbook's entry of a sheet whose part is there, with all that counts sheets.
template <class Tag>
void XMLBookImplT<Tag>::listSheet(int index, std::u16string_view name, const std::string& path) {
  SheetEntry entry;
  entry.set_name(platform::utf8FromUtf16Lossy(name));
  entry.set_sheetId(freeSheetId());
  entry.set_r_id(needWorkbookRelationships().add(path.substr(_baseDir.size() + 1), relationship_type::kWorksheet));
  this->get_sheets().insert_sheet(static_cast<std::size_t>(index)) = std::move(entry);
  const auto shifted = [index](int position) { return position >= index ? position + 1 : position; };
  renumberNames(shifted);
  renumberViews(shifted);
}

// One past the highest id, or, where a damaged file has taken the last one there is, the lowest that is free.
template <class Tag>
std::uint32_t XMLBookImplT<Tag>::freeSheetId() const {
  constexpr std::uint32_t kLast = std::numeric_limits<std::uint32_t>::max();
  std::uint32_t highest = 0;
  for (std::size_t i = 0; i < entryCount(); ++i)
    highest = std::max(highest, entryAt(static_cast<int>(i)).get_sheetId());
  if (highest < kLast) return highest + 1;
  std::set<std::uint32_t> taken;
  for (std::size_t i = 0; i < entryCount(); ++i) taken.insert(entryAt(static_cast<int>(i)).get_sheetId());
  std::uint32_t id = 1;
  while (taken.count(id) != 0) ++id;
  return id;
}

// The first number past the sheets of the book that neither a relationship nor a part has taken.
template <class Tag>
std::string XMLBookImplT<Tag>::makeSheetPath() {
  if (_workbookRelationships == nullptr) {
    throw xlerror("makeSheetPath error: workbook relationships are not found");
  }
  for (std::size_t number = entryCount() + 1;; ++number) {
    const std::string target = std::string(kSheetPrefix) + std::to_string(number) + std::string(kPartExtension);
    std::string path = resolve(target);
    const bool isTaken = _parts.contains(path) || !_workbookRelationships->findByTarget(target).empty() ||
                         !_workbookRelationships->findByTarget(path).empty();
    if (!isTaken) return path;
  }
}

template <class Tag>
ISheetT<char16_t>* XMLBookImplT<Tag>::getSheet(int index) {
  return guarded(_last, static_cast<ISheetT<char16_t>*>(nullptr), [&]() -> ISheetT<char16_t>* {
    if (index < 0 || static_cast<std::size_t>(index) >= _sheets.size()) throw xlerror("sheet index is out of range");
    Sheet* sheet = _sheets[static_cast<std::size_t>(index)];
    if (sheet == nullptr) throw xlerror("sheet not found");
    return sheet;
  });
}

template <class Tag>
const char16_t* XMLBookImplT<Tag>::getSheetName(int index) {
  return guarded(_last, Text{}, [&]() -> Text {
    if (index < 0 || index >= sheetCount()) throw xlerror("index is out of range");
    _sheetName = platform::utf16FromUtf8Lossy(entryAt(index).get_name());
    return _sheetName.c_str();
  });
}

template <class Tag>
SheetType XMLBookImplT<Tag>::sheetType(int index) {
  return guarded(_last, SheetType::unknown, [&] {
    if (index < 0 || index >= sheetCount()) throw xlerror("index is out of range");
    const XFile* part = _parts.find(resolve(needWorkbookRelationships().findById(entryAt(index).get_r_id())));
    if (part == nullptr) throw xlerror("sheet not found");
    if (dynamic_cast<const Sheet*>(part) != nullptr) return SheetType::sheet;
    return dynamic_cast<const XMLChartSheet*>(part) != nullptr ? SheetType::chart : SheetType::unknown;
  });
}

template <class Tag>
bool XMLBookImplT<Tag>::moveSheet(int srcIndex, int dstIndex) {
  return guarded(_last, false, [&] {
    const auto count = static_cast<int>(_sheets.size());
    if (srcIndex < 0 || srcIndex >= count) throw xlerror("srcIndex is out of range");
    if (dstIndex < 0 || dstIndex > count) throw xlerror("dstIndex is out of range");
    if (srcIndex == dstIndex) throw xlerror("there is no sense: srcIndex is equal to dstIndex");
    if (dstIndex == srcIndex + 1) throw xlerror("there is no sense: srcIndex is equal to dstIndex - 1");
    const int target = srcIndex < dstIndex ? dstIndex - 1 : dstIndex;
    auto& list = this->get_sheets();
    SheetEntry& place = list.insert_sheet(static_cast<std::size_t>(dstIndex));
    const auto left = static_cast<std::size_t>(srcIndex < dstIndex ? srcIndex : srcIndex + 1);
    place = std::move(list.get_sheet(left));
    list.erase_sheet(left);
    const auto from = _sheets.begin() + srcIndex;
    if (srcIndex < target) {
      std::rotate(from, from + 1, _sheets.begin() + target + 1);
    } else {
      std::rotate(_sheets.begin() + target, from, from + 1);
    }
    const auto moved = [=](int position) {
      if (position == srcIndex) return target;
      if (srcIndex < position && position <= target) return position - 1;
      if (target <= position && position < srcIndex) return position + 1;
      return position;
    };
    renumberNames(moved);
    renumberViews(moved);
    return true;
  });
}

template <class Tag>
bool XMLBookImplT<Tag>::delSheet(int index) {
  return guarded(_last, false, [&] {
    if (index < 0 || index >= sheetCount()) throw xlerror("index is out of range");
    if (sheetCount() == 1) throw xlerror("can't remove the last sheet in workbook");
    needContentTypes();
    Relationships& links = needWorkbookRelationships();
    const std::string id = entryAt(index).get_r_id();
    const std::string target = links.findById(id);
    this->get_sheets().erase_sheet(static_cast<std::size_t>(index));
    if (static_cast<std::size_t>(index) < _sheets.size()) _sheets.erase(_sheets.begin() + index);
    // A damaged file may list one part as two sheets: it stays for the other.
    const auto isUsed = [&] {
      for (int i = 0; i < sheetCount(); ++i) {
        const std::string other = entryAt(i).get_r_id();
        if (other == id || samePartName(resolve(links.findById(other)), resolve(target))) return true;
      }
      return false;
    };
    if (!target.empty() && !isUsed()) {
      dropParts({resolve(target)});
      if (!_parts.contains(resolve(target))) links.removeById(id);
    }
    const auto without = [index](int position) {
      if (position == index) return kGone;
      return position > index ? position - 1 : position;
    };
    renumberNames(without);
    renumberViews(without);
    return true;
  });
}

// Takes parts out of the package, and with them what only they use. Pictures stay: their ids are positions in the
// book's list. So does what the book itself holds, whatever a damaged file says that it is.
template <class Tag>
void XMLBookImplT<Tag>::dropParts(const std::vector<std::string>& partNames) {
  std::set<std::string, PartNameLess> pictures;
  for (const BookPicture& picture : _pictures) pictures.insert(picture.partName);
  std::set<const XFile*> held(_sheets.begin(), _sheets.end());
  held.insert({this, _contentTypes, _workbookRelationships, _sharedStrings, _styles});
  held.erase(nullptr);
  const auto mayGo = [&](const std::string& name) {
    return held.count(_parts.find(name)) == 0 && pictures.count(name) == 0;
  };
  std::vector<std::string> unwanted;
  std::copy_if(partNames.begin(), partNames.end(), std::back_inserter(unwanted), mayGo);
  std::set<std::string, PartNameLess> gone(unwanted.begin(), unwanted.end());
  for (std::string& name : partsOnlyUsedBy(_parts, unwanted)) {
    if (mayGo(name)) gone.insert(std::move(name));
  }
  for (const std::string& name : gone) _parts.remove(name);
  needContentTypes().removeOverrides(gone);
}

// After the load of one sheet: what the workbook has of the others.
template <class Tag>
void XMLBookImplT<Tag>::dropUnwantedSheets(std::string_view wanted) {
  std::set<std::string> unwanted;  // targets as they are written
  std::vector<std::string> names;
  for (std::size_t i = 0; i < _workbookRelationships->size_Relationship(); ++i) {
    const std::string& target = _workbookRelationships->get_Relationship(i).get_Target();
    std::string name = resolve(target);
    const std::string type = _contentTypes->contentType(name);
    const bool isSheet = type == content_type::kWorksheet || type == content_type::kChartsheet ||
                         _parts.template findAs<Sheet>(name) != nullptr;
    if (!isSheet || samePartName(name, wanted)) continue;
    unwanted.insert(target);
    names.push_back(std::move(name));
  }
  if (names.empty()) return;
  dropParts(names);
  _workbookRelationships->removeIf([&](const auto& item) { return unwanted.count(item.get_Target()) != 0; });
}

template class XMLBookImplT<excelNormal_tag>;
template class XMLBookImplT<excelStrict_tag>;

}  // namespace rubrica
