// The parts of an .xlsx package, read without the book above them. What is wrong with the archive is told in words and
// not thrown, so that a damaged file can be looked at as far as it goes. Used by rubrica-check and rubrica-dump.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "xml/deflate.h"

namespace rubrica::tools {

// What a book does with a part.
enum class Handling { bound, carried, dropped };
const char* nameOf(Handling handling);

struct PackagePart {
  std::string name;  // "/xl/workbook.xml"
  std::string type;  // the content type; empty where nothing is said about it
  Handling handling = Handling::carried;
  std::uint64_t size = 0;  // of its bytes, which may be missing where they could not be read
  ByteBlock bytes;

  std::string_view text() const { return bytes.view(); }
  bool isXml() const;
  bool isRelationships() const;
};

struct PackageFile {
  std::vector<PackagePart> parts;  // in the archive's order
  std::vector<std::string> damage;
  bool opened = false;    // false: no archive; the reason is the only damage
  bool isStrict = false;  // of the strict dialect

  // Null where there is none; of equal names the last, which is the one that counts.
  const PackagePart* find(std::string_view name) const;
};

PackageFile readPackage(std::span<const std::byte> file);

// "worksheet", "png": the last word of a content type.
std::string kindOf(const PackagePart& part);

}  // namespace rubrica::tools
