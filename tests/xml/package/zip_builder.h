// Archives made byte by byte for tests, true ones and ones that lie, and the smallest workbooks to put into them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "engine/book_ptr.h"
#include "xml/book_impl.h"
#include "xml/sheet_impl.h"

namespace rubrica::package_test {

// One entry. What isn't stated is worked out from the content.
struct TestEntry {
  std::string name;
  std::string content = {};
  bool isDeflated = true;
  std::optional<std::uint32_t> size = {}, crc = {};
  std::optional<std::uint16_t> flags = {}, method = {};
  // Instead of bytes of its own the entry points at those of the entry at this position.
  std::optional<std::size_t> sharesBytesOf = {};
};

std::string zipOf(const std::vector<TestEntry>& entries);
// Names and contents of the archive's entries, in its order; throws what ZipReader throws.
std::vector<std::pair<std::string, std::string>> entriesOf(std::string_view archive);
// One entry's content, empty when there is none.
std::string entryOf(std::string_view archive, std::string_view name);

inline std::span<const std::byte> bytesOf(std::string_view text) {
  return std::as_bytes(std::span(text.data(), text.size()));
}

// The namespaces and the like of a flavour.
struct FlavourText {
  std::string main, relationships;
};
template <class Tag>
FlavourText flavourText();

// A workbook of sheets "One", "Two" ..., each with its number in A1, as entries that a test may change: content types,
// package relationships, workbook, its relationships, sheets.
template <class Tag>
std::vector<TestEntry> workbookEntries(int sheets = 1);

// "value" and "name" of nothing but a first occurrence.
std::string replaced(std::string text, std::string_view what, std::string_view with);
TestEntry& entry(std::vector<TestEntry>& entries, std::string_view name);
// Adds a part of a content type; without one the part's extension has to do.
void addPart(std::vector<TestEntry>& entries, const std::string& name, std::string content, std::string_view type = {});
// Adds a relationship to the part of this name, which gets its relationships if it has none.
void addLink(std::vector<TestEntry>& entries, const std::string& partName, std::string_view id, std::string_view type,
             std::string_view target, bool isExternal = false);
// The names of an archive's entries, in its order.
std::vector<std::string> namesOf(std::string_view archive);

inline BookPtr newBook() {
  return BookPtr(createXmlBook());
}
inline bool loadRaw(Book& book, std::string_view archive, int sheetIndex = -1, int firstRow = -1, int lastRow = -1) {
  return book.loadRaw(archive.data(), archive.size(), sheetIndex, firstRow, lastRow);
}
std::string saveRaw(Book& book);

}  // namespace rubrica::package_test
