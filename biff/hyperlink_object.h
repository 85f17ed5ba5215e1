// The hyperlink object of the published format: where a link leads, in the parts that its flags announce. Part of an
// HLink record; made from a text or read from a file, and written back byte for byte while nothing changes it.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "biff/records/record_io.h"

namespace rubrica {

// 16 bytes as the file has them: a 32-bit and two 16-bit words, then eight bytes.
using ClassId = std::array<std::uint8_t, 16>;

// Text with its terminator, as many characters as its count says.
struct HyperlinkString {
  std::u16string units;

  static HyperlinkString of(std::u16string_view text);
  // Without the terminator.
  std::u16string_view text() const;
  std::size_t size() const { return sizeof(std::uint32_t) + units.size() * sizeof(char16_t); }
};

// What leads to a document: a class and the body that this class defines. The body is kept as bytes, also of a class
// that means nothing here.
struct HyperlinkMoniker {
  ClassId classId{};
  std::vector<std::byte> body;

  // A target with "#" takes the file class, with what is behind the "#" as its path; any other the URL class.
  static HyperlinkMoniker of(std::u16string_view target);
  // Takes the moniker in front of what is left; a body of a class unknown here, or a broken one, takes all of it.
  // Throws "error in reading HyperlinkMoniker" when there is no room for the class.
  static HyperlinkMoniker read(RecordBody& body);
  // The URL or the path; empty for other classes.
  std::u16string target() const;
  std::size_t size() const { return sizeof(ClassId) + body.size(); }
};

class HyperlinkObject {
 public:
  static constexpr std::uint32_t kHasMoniker = 0x001, kHasLocation = 0x008, kHasDisplayName = 0x010, kHasGuid = 0x020,
                                 kHasCreationTime = 0x040, kHasFrameName = 0x080, kMonikerAsText = 0x100;

  // "target", "target#location" or, with an exclamation mark in it, a location of this book: "Sheet2!A1".
  static HyperlinkObject of(std::u16string_view text);
  // Throws "error in reading HyperlinkObj" and "error in reading HyperlinkMoniker" past the end.
  static HyperlinkObject read(RecordBody& body);
  void append(std::vector<std::byte>& bytes) const;
  std::size_t size() const;

  // The target, then "#" and the location when there is one; the location alone when there is no target.
  std::u16string text() const;
  std::uint32_t flags() const { return _flags; }
  std::u16string_view location() const { return _location ? _location->text() : std::u16string_view(); }
  std::u16string target() const;
  bool hasMoniker() const { return _moniker || _monikerText; }

 private:
  std::uint32_t _streamVersion = 2;
  std::uint32_t _flags = 23;  // a moniker, absolute, with a display name that its maker gave
  std::optional<HyperlinkString> _displayName, _frameName, _monikerText, _location;
  std::optional<HyperlinkMoniker> _moniker;
  std::optional<ClassId> _guid;
  std::optional<std::array<std::uint32_t, 2>> _creationTime;
  std::vector<std::byte> _rest;  // behind the last member, as the file had it
};

}  // namespace rubrica
