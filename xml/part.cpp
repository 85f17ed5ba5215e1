#include "xml/part.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <fstream>

#include "platform/input_file.h"
#include "platform/text.h"
#include "xml/part_encoding.h"

namespace rubrica {
namespace {

constexpr char kCantRead[] = "can't open temporary file for reading";
constexpr std::size_t kPictureSignature = 5;  // bytes that a picture has at least

platform::FileBytes readFileBytes(const std::string& path) {
  auto bytes = platform::readWholeFile(platform::utf16FromUtf8Lossy(path));
  if (!bytes) throw xlerror(kCantRead);
  return std::move(*bytes);
}

struct Signature {
  std::array<std::uint8_t, 4> bytes;
  std::size_t size;
  std::string_view type;
};

constexpr Signature kSignatures[] = {{{0x89, 0x50, 0x4E, 0x47}, 4, "png"},
                                     {{0xFF, 0xD8, 0xFF}, 3, "jpg"},
                                     {{0xD7, 0xCD, 0xC6, 0x9A}, 4, "wmf"},
                                     {{0x01, 0x00}, 2, "emf"},
                                     {{0x47, 0x49, 0x46}, 3, "gif"},
                                     {{0x42, 0x4D}, 2, "bmp"},
                                     {{12}, 1, "bmp"},
                                     {{40}, 1, "bmp"},
                                     {{64}, 1, "bmp"},
                                     {{108}, 1, "bmp"},
                                     {{124}, 1, "bmp"}};

}  // namespace

void throwBindingError(lmx::elmx_error code) {
  throw xlerror(lmx::get_error_text(code));
}

std::string readTemporaryFile(const std::string& path) {
  const platform::FileBytes bytes = readFileBytes(path);
  return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

bool hasMarkupToResolve(const std::string& path) {
  constexpr std::size_t kPiece = 65536;  // bytes
  std::ifstream file(std::filesystem::path(std::u8string(path.begin(), path.end())), std::ios::binary);
  if (!file.is_open()) throw xlerror(kCantRead);
  std::string window;
  for (bool isFirst = true;; isFirst = false) {
    // The end of the last piece stays, for a name that lies across the border.
    window.erase(0, window.size() - std::min(window.size(), kMarkupSign.size()));
    const std::size_t kept = window.size();
    window.resize(kept + kPiece);
    file.read(window.data() + kept, kPiece);
    window.resize(kept + static_cast<std::size_t>(file.gcount()));
    if (isFirst && window.empty()) throw xlerror("data is empty");
    if (window.size() == kept) return false;
    if (isFirst && looksLikeUtf16(window)) return true;
    if (window.find(kMarkupSign) != window.npos) return true;
  }
}

BinaryFile::BinaryFile(const void* data, std::size_t size) {
  const auto* bytes = static_cast<const std::uint8_t*>(data);
  if (size > 0) _bytes.assign(bytes, bytes + size);
}

BinaryFile::BinaryFile(const std::string& path) {
  const platform::FileBytes bytes = readFileBytes(path);
  const auto* data = reinterpret_cast<const std::uint8_t*>(bytes.data());
  if (!bytes.empty()) _bytes.assign(data, data + bytes.size());
}

void BinaryFile::save(std::string& target) {
  if (target.empty()) {
    target.assign(_bytes.begin(), _bytes.end());
    return;
  }
  std::ofstream file(std::filesystem::path(std::u8string(target.begin(), target.end())), std::ios::binary);
  write(file);
  file.close();
  if (file.fail()) throw xlerror(lmx::get_error_text(lmx::ELMX_UNABLE_TO_OPEN_FILE));
}

void BinaryFile::write(std::ostream& target) {
  target.write(reinterpret_cast<const char*>(_bytes.data()), static_cast<std::streamsize>(_bytes.size()));
}

std::string_view BinaryFile::pictureType() const {
  if (_bytes.size() < kPictureSignature) return {};
  for (const Signature& signature : kSignatures) {
    const auto end = signature.bytes.begin() + static_cast<std::ptrdiff_t>(signature.size);
    if (std::equal(signature.bytes.begin(), end, _bytes.begin())) return signature.type;
  }
  return {};
}

}  // namespace rubrica
