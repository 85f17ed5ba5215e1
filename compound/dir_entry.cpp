#include "compound/dir_entry.h"

#include <algorithm>

#include "compound/field_io.h"
#include "compound/sector_values.h"
#include "engine/xlerror.h"

namespace rubrica {

namespace {

// The fields in file order; a loader or a storer visits them.
template <typename Visitor, typename Entry>
void visitEntryFields(Visitor&& visit, Entry& entry) {
  visit(entry.name);
  visit(entry.nameLength);
  visit(entry.objectType);
  visit(entry.color);
  visit(entry.leftSibling);
  visit(entry.rightSibling);
  visit(entry.child);
  visit(entry.classId);
  visit(entry.stateBits);
  visit(entry.creationTime);
  visit(entry.modifiedTime);
  visit(entry.startingSectorLocation);
  visit(entry.streamSize);
}

char16_t lowered(char16_t c) {
  return c >= u'A' && c <= u'Z' ? static_cast<char16_t>(c - u'A' + u'a') : c;
}

}  // namespace

DirEntry::DirEntry(const char16_t* entryName, EntryType type, std::uint32_t childEntry)
    : objectType(static_cast<std::uint8_t>(type)),
      color(1),
      leftSibling(kNoEntry),
      rightSibling(kNoEntry),
      child(childEntry),
      startingSectorLocation(kEndOfChain) {
  const std::u16string_view text = entryName == nullptr ? std::u16string_view() : std::u16string_view(entryName);
  if (text.empty() || text.size() > kMaxNameLength) throw xlerror("DirEntry::DirEntry(): incorrect name");
  std::copy(text.begin(), text.end(), name.begin());
  nameLength = static_cast<std::uint16_t>((text.size() + 1) * sizeof(char16_t));
}

DirEntry DirEntry::load(const std::byte* from) {
  DirEntry entry;
  visitEntryFields(FieldLoader(from), entry);
  entry.streamSize &= 0xFFFFFFFF;
  return entry;
}

void DirEntry::store(std::byte* to) const {
  visitEntryFields(FieldStorer(to), *this);
}

std::u16string DirEntry::nameText() const {
  return {name.begin(), std::find(name.begin(), name.end(), std::uint16_t{0})};
}

bool DirEntry::isNamed(std::u16string_view text) const {
  const std::u16string own = nameText();
  return std::equal(own.begin(), own.end(), text.begin(), text.end(),
                    [](char16_t a, char16_t b) { return lowered(a) == lowered(b); });
}

}  // namespace rubrica
