// The parts of an OOXML package as objects: XFile is any part, BinaryFile one that is kept byte for byte, XmlFile one
// that is a bound tree. The book's part map owns them. A part belongs to one thread at a time.
#pragma once

#include <cstddef>
#include <cstdint>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

#include "engine/xlerror.h"
#include "lmx/c_xml_writer.h"
#include "lmx/elmx_error.h"
#include "xml/markup_compatibility.h"
#include "xml/part_repair.h"

namespace rubrica {

class XFile {
 public:
  // Writes the part to the file whose path `target` is (UTF-8), or into `target` itself when that is empty. Throws
  // xlerror.
  virtual void save(std::string& target) = 0;
  virtual ~XFile() = default;
  // Writes the part to a stream, whose state says whether it could take all of it. Throws xlerror.
  virtual void write(std::ostream& target) = 0;
  // Elements and attributes that markup compatibility took out of the part when it was read.
  std::size_t droppedMarkup() const { return _droppedMarkup; }

 protected:
  XFile() = default;
  XFile(const XFile&) = default;
  XFile& operator=(const XFile&) = default;
  void setDroppedMarkup(std::size_t count) { _droppedMarkup = count; }

 private:
  std::size_t _droppedMarkup = 0;
};

class BinaryFile : public XFile {
 public:
  BinaryFile(const void* data, std::size_t size);
  // Reads a whole file (path in UTF-8); "can't open temporary file for reading" when that can't be done.
  explicit BinaryFile(const std::string& path);
  BinaryFile(const BinaryFile&) = default;

  void save(std::string& target) override;
  void write(std::ostream& target) override;
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
// Whether the part in that file has to be read whole because of markup compatibility. Throws as reading it does, and
// "data is empty".
bool hasMarkupToResolve(const std::string& path);

// A part that is a bound tree of the root class Root.
template <class Root>
class XmlFile : public XFile, public Root {
 public:
  XmlFile() = default;
  XmlFile(const char* data, std::size_t size) { read(data, size); }
  explicit XmlFile(const std::string& path) { readFile(path); }

  // Replaces the tree by the one that `size` bytes at `data` hold, with markup compatibility resolved and, where it
  // can't be bound, known deviations repaired. Throws xlerror "data is empty" or the text of the binding's error.
  void read(const char* data, std::size_t size);
  void readFile(const std::string& path);
  void save(std::string& target) override;
  void write(std::ostream& target) override;

 protected:
  // Brings the tree up to date before it is written.
  virtual void bringUpToDate() {}
  // Replaces the tree by what `unmarshal(root, text)` makes of a text, or of the text as repaired.
  template <class Unmarshal>
  void bind(std::string_view text, const Unmarshal& unmarshal);
};

template <class Root>
void XmlFile<Root>::read(const char* data, std::size_t size) {
  if (data == nullptr || size == 0) throw xlerror("data is empty");
  const ResolvedMarkup markup(std::string_view(data, size), Root::kRoot);
  setDroppedMarkup(markup.dropped());
  bind(markup.text(), [](Root& root, std::string_view text) { return root.unmarshal(text.data(), text.size()); });
}

template <class Root>
template <class Unmarshal>
void XmlFile<Root>::bind(std::string_view text, const Unmarshal& unmarshal) {
  Root& root = *this;
  root = Root();
  const lmx::elmx_error code = unmarshal(root, text);
  if (code == lmx::ELMX_OK) return;
  const auto repaired = repairedPart(text, Root::kRoot, code);
  if (!repaired) throwBindingError(code);
  root = Root();
  if (const auto again = unmarshal(root, *repaired)) throwBindingError(again);
}

template <class Root>
void XmlFile<Root>::readFile(const std::string& path) {
  if (hasMarkupToResolve(path)) {
    const std::string text = readTemporaryFile(path);
    read(text.data(), text.size());
    return;
  }
  Root& root = *this;
  root = Root();
  setDroppedMarkup(0);
  if (root.unmarshal(path.c_str()) == lmx::ELMX_OK) return;
  const std::string text = readTemporaryFile(path);
  read(text.data(), text.size());
}

template <class Root>
void XmlFile<Root>::save(std::string& target) {
  bringUpToDate();
  const Root& root = *this;
  const auto code = target.empty() ? root.marshal(target) : root.marshal(target.c_str());
  if (code) throwBindingError(code);
}

template <class Root>
void XmlFile<Root>::write(std::ostream& target) {
  bringUpToDate();
  const Root& root = *this;
  lmx::c_xml_writer writer(target);
  if (const auto code = root.marshal(writer)) throwBindingError(code);
}

}  // namespace rubrica
