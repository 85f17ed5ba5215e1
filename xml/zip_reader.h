// The entries of a ZIP archive in memory, as the package store needs them: how many, their names, their bytes. What an
// archive claims about sizes is checked against the archive's own size before it is believed.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "xml/deflate.h"
#include "xml/package_limits.h"

struct zip;

namespace rubrica {

struct ZipEntry {
  std::string name;  // as a key of the part map
  std::uint64_t size = 0;
  std::uint64_t compressedSize = 0;
  std::uint64_t position = 0;  // in the archive's directory
  std::uint32_t crc = 0;
  std::uint16_t method = 0;
  bool isEncrypted = false;
};

class ZipReader {
 public:
  // `archive` must outlive the reader. Throws xlerror for what is no archive or one that lies about itself.
  explicit ZipReader(std::span<const std::byte> archive, const PackageLimits& limits = {});
  ~ZipReader();
  ZipReader(const ZipReader&) = delete;
  ZipReader& operator=(const ZipReader&) = delete;

  // In the order of the archive's directory. Directories, and entries that no part name can reach ("..", "."), are left
  // out.
  const std::vector<ZipEntry>& entries() const { return _entries; }
  // The bytes of an entry. Throws xlerror when they can't be had whole.
  ByteBlock read(const ZipEntry& entry);
  // The same into a file (path in UTF-8), piece by piece.
  void extract(const ZipEntry& entry, const std::string& path);

 private:
  struct Close {
    void operator()(zip* archive) const;
  };

  void listEntries();
  void admit(const ZipEntry& entry);

  std::uint64_t _archiveSize;
  PackageLimits _limits;
  std::uint64_t _expanded = 0;  // bytes of the entries read so far
  std::unique_ptr<zip, Close> _archive;
  std::vector<ZipEntry> _entries;
  Inflater _inflater;
};

}  // namespace rubrica
