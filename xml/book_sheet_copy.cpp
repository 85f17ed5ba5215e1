// What a copied sheet brings along beside its tree: drawings, comments and the other parts that its relationships name.
#include <algorithm>
#include <map>

#include "xml/book_impl.h"
#include "xml/package_links.h"
#include "xml/package_names.h"
#include "xml/part_factory.h"
#include "xml/shared_strings.h"
#include "xml/sheet_impl.h"
#include "xml/styles.h"

namespace rubrica {
namespace {

using RelationshipItem = relationships::c_CT_Relationship;

// Relationship types end alike in both flavours.
bool isOfKind(const RelationshipItem& item, std::string_view kind) {
  const std::string& type = item.get_Type();
  return type.size() > kind.size() && std::string_view(type).ends_with(kind) &&
         type[type.size() - kind.size() - 1] == '/';
}

// Tables and pivot tables have names that a book may hold once.
bool isUnique(const RelationshipItem& item) {
  return isOfKind(item, "table") || isOfKind(item, "pivotTable") || isOfKind(item, "queryTable") ||
         isOfKind(item, "slicer") || isOfKind(item, "timeline");
}

// "/xl/drawings/drawing" and ".xml" of "/xl/drawings/drawing12.xml".
std::pair<std::string, std::string> stemOf(std::string_view name) {
  const std::size_t dot = std::min(name.rfind('.'), name.size());
  std::size_t digits = dot;
  while (digits > 0 && name[digits - 1] >= '0' && name[digits - 1] <= '9') --digits;
  return {std::string(name.substr(0, digits)), std::string(name.substr(dot))};
}

// A target from one directory to a part: "../drawings/drawing2.xml".
std::string relativeTarget(std::string_view directory, std::string_view partName) {
  const std::string parent = partDirectory(directory);
  const bool isNear =
      partName.size() > parent.size() && partName.substr(0, parent.size()) == parent && partName[parent.size()] == '/';
  return isNear ? "../" + std::string(partName.substr(parent.size() + 1)) : std::string(partName);
}

// Copies the parts below one part of a book into another book, or the same, under free names. What points back at a
// sheet or at the workbook is left out: of those a book has its own.
template <class Tag>
class PartCopier {
 public:
  PartCopier(XMLBookImplT<Tag>& from, XMLBookImplT<Tag>& to) : _from(from), _to(to) {}

  // Gives `copy` relationships with the ids of those of `source`, to copies of what they point at, and so on down. Part
  // after part, not each inside the other: a hostile package may chain as many as it has.
  void copyBelow(const std::string& source, const std::string& copy) {
    _copies.emplace(source, copy);
    _toVisit.emplace_back(source, copy);
    while (!_toVisit.empty()) {
      const auto [from, to] = std::move(_toVisit.back());
      _toVisit.pop_back();
      copyRelationships(from, to);
    }
  }

 private:
  void copyRelationships(const std::string& source, const std::string& copy) {
    const Relationships* links = _from.relationshipsOf(source);
    if (links == nullptr) return;
    auto copied = std::make_unique<Relationships>();
    for (std::size_t i = 0; i < links->size_Relationship(); ++i) {
      const RelationshipItem& item = links->get_Relationship(i);
      if (isUnique(item)) continue;
      RelationshipItem added = item;
      if (!item.isset_TargetMode() || item.get_TargetMode() != "External") {
        const std::string name = copyPart(targetKey(partDirectory(source), item.get_Target()), item);
        if (name.empty()) continue;
        added.set_Target(relativeTarget(partDirectory(copy), name));
      }
      copied->append_Relationship() = added;
    }
    // Once more through its text, which gives it the ids to go on from.
    std::string text;
    copied->save(text);
    _to.needContentTypes().addDefault("rels", content_type::kRelationships);
    _to.parts().add(makeRelsPath(copy), std::make_unique<Relationships>(text.data(), text.size()));
  }

  // Answers the copy's name, empty where there is nothing to copy.
  std::string copyPart(const std::string& name, const RelationshipItem& item) {
    XFile* part = _from.parts().find(name);
    const bool isOfBook =
        part == static_cast<XFile*>(&_from) || dynamic_cast<const XMLSheetImplT<Tag>*>(part) != nullptr ||
        dynamic_cast<const Styles<Tag>*>(part) != nullptr || dynamic_cast<const SharedStrings<Tag>*>(part) != nullptr;
    if (part == nullptr || isOfBook) return {};
    const bool isSameBook = &_from == &_to;
    if (isSameBook && isOfKind(item, "image")) return name;
    if (const auto known = _copies.find(name); known != _copies.end()) return known->second;
    std::string copy = freeNameLike(name);
    _copies.emplace(name, copy);
    const std::string type = _from.needContentTypes().contentType(name);
    std::string text;
    part->save(text);
    PartBytes bytes{{platform::makeBlock<char>(text.size() + 1), text.size()}, {}};
    std::copy(text.begin(), text.end(), bytes.block.bytes.get());
    XFile& added = _to.parts().add(copy, makePart<Tag>(type, bytes));
    if (_to.needContentTypes().contentType(copy) != type) _to.needContentTypes().addOverride(copy, type);
    _to.notePicture(added, copy, type);
    _toVisit.emplace_back(name, copy);
    return copy;
  }

  // Numbers go on from the last one taken: a package may have many parts of one stem.
  std::string freeNameLike(const std::string& name) {
    const auto [stem, extension] = stemOf(name);
    unsigned& next = _nextNumbers.try_emplace(stem + extension, 1).first->second;
    std::string copy = _to.parts().freeName(stem, next, extension);
    next = static_cast<unsigned>(std::stoul(copy.substr(stem.size()))) + 1;
    return copy;
  }

  XMLBookImplT<Tag>& _from;
  XMLBookImplT<Tag>& _to;
  std::map<std::string, std::string, PartNameLess> _copies;
  std::map<std::string, unsigned, PartNameLess> _nextNumbers;
  std::vector<std::pair<std::string, std::string>> _toVisit;  // parts of `from` and their copies
};

}  // namespace

template <class Tag>
void XMLBookImplT<Tag>::copySheetParts(Sheet& source, const std::string& path) {
  XMLBookImplT& from = source.book();
  PartCopier<Tag>(from, *this).copyBelow(from.partNameOf(source), path);
  Sheet& copy = *_parts.template findAs<Sheet>(path);
  // Two sheets can't share a table.
  copy.unset_tableParts();
  // Of two selected sheets a change of one is a change of both.
  if (!copy.isset_sheetViews()) return;
  auto& views = copy.get_sheetViews();
  for (std::size_t i = 0; i < views.size_sheetView(); ++i) views.get_sheetView(i).unset_tabSelected();
}

template class XMLBookImplT<excelNormal_tag>;
template class XMLBookImplT<excelStrict_tag>;

}  // namespace rubrica
