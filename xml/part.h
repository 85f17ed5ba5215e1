// The parts of an OOXML package as objects: XFile is any part, BinaryFile one that is kept byte for byte, XmlFile one
// that is a bound tree. The book's part map owns them. A part belongs to one thread at a time.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "engine/xlerror.h"
#include "lmx/elmx_error.h"
#include "xml/markup_compatibility.h"

namespace rubrica {

class XFile {
 public:
  // Writes the part to the file whose path `target` is (UTF-8), or into `target` itself when that is empty. Throws
  // xlerror.
  virtual void save(std::string& target) = 0;
  virtual ~XFile() = default;

 protected:
  XFile() = default;
  XFile(const XFile&) = default;
  XFile& operator=(const XFile&) = default;
};

class BinaryFile : public XFile {
 public:
  BinaryFile(const void* data, std::size_t size);
  // Reads a whole file (path in UTF-8); "can't open temporary file for reading" when that can't be done.
  explicit BinaryFile(const std::string& path);
  BinaryFile(const BinaryFile&) = default;

  void save(std::string& target) override;
  const std::uint8_t* data() const { return _bytes.data(); }
  std::size_t size() const { return _bytes.size(); }
  // What the first bytes say: "png", "jpg", "wmf", "emf", "gif", "bmp", or nothing.
  std::string_view pictureType() const;

 private:
  std::vector<std::uint8_t> _bytes;
};

// A chart sheet: opaque, but the book can tell it from other bytes.
class XMLChartSheet : public BinaryFile {
 public:
  using BinaryFile::BinaryFile;
};

// The message of a failed unmarshal or marshal.
[[noreturn]] void throwBindingError(lmx::elmx_error code);
// Reads a whole part that stands in a temporary file (path in UTF-8).
std::string readTemporaryFile(const std::string& path);

// A part that is a bound tree of the root class Root.
template <class Root>
class XmlFile : public XFile, public Root {
 public:
  XmlFile() = default;
  XmlFile(const char* data, std::size_t size) { read(data, size); }
  explicit XmlFile(const std::string& path) { readFile(path); }

  // Replaces the tree by the one that `size` bytes at `data` hold, with markup compatibility resolved. Throws xlerror
  // "data is empty" or the text of the binding's error.
  void read(const char* data, std::size_t size);
  void readFile(const std::string& path);
  void save(std::string& target) override;
};

template <class Root>
void XmlFile<Root>::read(const char* data, std::size_t size) {
  if (data == nullptr || size == 0) throw xlerror("data is empty");
  const ResolvedMarkup markup(std::string_view(data, size), Root::kRoot);
  Root& root = *this;
  root = Root();
  if (const auto code = root.unmarshal(markup.text().data(), markup.text().size())) throwBindingError(code);
}

template <class Root>
void XmlFile<Root>::readFile(const std::string& path) {
  const std::string text = readTemporaryFile(path);
  read(text.data(), text.size());
}

template <class Root>
void XmlFile<Root>::save(std::string& target) {
  const Root& root = *this;
  const auto code = target.empty() ? root.marshal(target) : root.marshal(target.c_str());
  if (code) throwBindingError(code);
}

}  // namespace rubrica
