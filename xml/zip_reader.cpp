#include "xml/zip_reader.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <fstream>
#include <zip.h>

#include "engine/xlerror.h"
#include "xml/part_map.h"

namespace rubrica {
namespace {

constexpr std::size_t kExtractBuffer = 65536;  // bytes
constexpr std::size_t kSmallestLocalHeader = 30;
// A compound file: an .xls book, or an OOXML book under a password.
constexpr std::array<unsigned char, 8> kCompoundSignature = {0xD0, 0xCF, 0x11, 0xE0, 0xA1, 0xB1, 0x1A, 0xE1};

struct CloseEntry {
  void operator()(zip_file_t* file) const { zip_fclose(file); }
};
using EntryFile = std::unique_ptr<zip_file_t, CloseEntry>;

bool isCompoundFile(std::span<const std::byte> bytes) {
  return bytes.size() >= kCompoundSignature.size() &&
         std::equal(kCompoundSignature.begin(), kCompoundSignature.end(), bytes.begin(),
                    [](unsigned char c, std::byte b) { return std::byte{c} == b; });
}

[[noreturn]] void fail(const ZipEntry& entry, const std::string& what) {
  throw xlerror("zip entry " + entry.name + " " + what);
}

// Whether a name has a segment that would leave, or stand still in, its directory.
bool hasDotSegment(std::string_view name) {
  for (std::size_t start = 0; start <= name.size();) {
    const std::size_t end = std::min(name.find('/', start), name.size());
    const std::string_view segment = name.substr(start, end - start);
    if (segment == "." || segment == "..") return true;
    start = end + 1;
  }
  return false;
}

}  // namespace

void ZipReader::Close::operator()(zip* archive) const {
  zip_discard(archive);
}

ZipReader::ZipReader(std::span<const std::byte> archive, const PackageLimits& limits)
    : _archiveSize(archive.size()), _limits(limits) {
  if (archive.empty()) throw xlerror("data is empty");
  if (isCompoundFile(archive)) throw xlerror("not a zip archive but a compound file: an .xls or an encrypted workbook");
  zip_error_t error;
  zip_error_init(&error);
  zip_source_t* source = zip_source_buffer_create(archive.data(), archive.size(), 0, &error);
  if (source != nullptr) _archive.reset(zip_open_from_source(source, ZIP_RDONLY, &error));
  if (_archive == nullptr) {
    if (source != nullptr) zip_source_free(source);
    const std::string text = zip_error_strerror(&error);
    zip_error_fini(&error);
    throw xlerror("can't read zip archive: " + text);
  }
  zip_error_fini(&error);
  listEntries();
}

ZipReader::~ZipReader() = default;

void ZipReader::listEntries() {
  const auto count = static_cast<std::uint64_t>(std::max<zip_int64_t>(zip_get_num_entries(_archive.get(), 0), 0));
  if (count > _limits.entries) throw xlerror("zip archive has too many entries");
  std::uint64_t compressed = 0;
  for (std::uint64_t i = 0; i < count; ++i) {
    zip_stat_t about;
    constexpr auto kNeeded = ZIP_STAT_NAME | ZIP_STAT_SIZE | ZIP_STAT_COMP_SIZE | ZIP_STAT_CRC | ZIP_STAT_COMP_METHOD;
    if (zip_stat_index(_archive.get(), i, 0, &about) != 0 || (about.valid & kNeeded) != kNeeded) continue;
    ZipEntry entry;
    entry.name = normalisedPartName(about.name);
    entry.size = about.size;
    entry.compressedSize = about.comp_size;
    entry.position = i;
    entry.crc = about.crc;
    entry.method = about.comp_method;
    entry.isEncrypted = (about.valid & ZIP_STAT_ENCRYPTION_METHOD) != 0 && about.encryption_method != ZIP_EM_NONE;
    if (entry.compressedSize > _archiveSize) fail(entry, "is longer than its archive");
    compressed += entry.compressedSize + kSmallestLocalHeader;
    // Entries that share bytes are how a small archive comes to claim any size.
    if (compressed > _archiveSize) throw xlerror("zip archive is damaged: its entries overlap");
    if (entry.name.back() != '/' && !hasDotSegment(entry.name)) _entries.push_back(std::move(entry));
  }
}

// Refuses an entry before any memory is taken for it.
void ZipReader::admit(const ZipEntry& entry) {
  if (entry.isEncrypted) fail(entry, "is encrypted");
  if (entry.method != ZIP_CM_STORE && entry.method != ZIP_CM_DEFLATE) fail(entry, "uses an unknown compression");
  const std::uint64_t largest =
      entry.method == ZIP_CM_STORE ? entry.compressedSize : entry.compressedSize * kMaxDeflateRatio;
  if (entry.size > largest) fail(entry, "is damaged: its size can't be true");
  if (entry.size > _limits.partSize) fail(entry, "is too large");
  _expanded += entry.size;
  if (_expanded > std::max(_limits.freeExpansion, _archiveSize * _limits.expansionRatio)) {
    throw xlerror("zip archive expands to more than its size allows");
  }
}

ByteBlock ZipReader::read(const ZipEntry& entry) {
  admit(entry);
  const EntryFile file(zip_fopen_index(_archive.get(), entry.position, ZIP_FL_COMPRESSED));
  if (file == nullptr) fail(entry, "can't be read");
  const auto stored = static_cast<std::size_t>(entry.compressedSize);
  ByteBlock raw{platform::makeBlock<char>(std::max<std::size_t>(stored, 1)), stored};
  for (std::size_t done = 0; done < stored;) {
    const zip_int64_t got = zip_fread(file.get(), raw.bytes.get() + done, stored - done);
    if (got <= 0) fail(entry, "can't be read");
    done += static_cast<std::size_t>(got);
  }
  if (entry.method == ZIP_CM_DEFLATE) {
    const auto size = static_cast<std::size_t>(entry.size);
    ByteBlock whole{platform::makeBlock<char>(std::max<std::size_t>(size, 1)), size};
    if (!_inflater.expand(raw.view(), {whole.bytes.get(), size})) fail(entry, "is damaged");
    raw = std::move(whole);
  }
  if (raw.size != entry.size || crc32Of(raw.view()) != entry.crc) fail(entry, "is damaged");
  return raw;
}

// The container's own inflater does this one: it needs no room for the whole.
void ZipReader::extract(const ZipEntry& entry, const std::string& path) {
  admit(entry);
  const EntryFile file(zip_fopen_index(_archive.get(), entry.position, 0));
  if (file == nullptr) fail(entry, "can't be read");
  std::ofstream target(std::filesystem::path(std::u8string(path.begin(), path.end())), std::ios::binary);
  std::vector<char> buffer(kExtractBuffer);
  std::uint64_t written = 0;
  while (true) {
    const zip_int64_t got = zip_fread(file.get(), buffer.data(), buffer.size());
    if (got < 0) fail(entry, "is damaged");
    if (got == 0) break;
    written += static_cast<std::uint64_t>(got);
    if (written > entry.size) fail(entry, "is damaged");
    target.write(buffer.data(), got);
  }
  target.close();
  if (target.fail()) throw xlerror("can't open temporary file for writing");
  if (written != entry.size) fail(entry, "is damaged");
}

}  // namespace rubrica
