// The file of the file output stream as the system sees it: it lies beside its target under a temporary name until it
// takes the target's place. Used by file_output.cpp only, which puts a buffer in front of it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

namespace rubrica::platform {

class ReplacingFile {
 public:
  // Removes the temporary file, unless it has taken its target's place.
  virtual ~ReplacingFile() = default;
  // Writes all bytes at `position`; what a position past the end leaves out reads as zeros. False on failure.
  virtual bool writeAt(std::uint64_t position, const void* data, std::size_t size) = 0;
  // Flushes to the disk, closes, and takes the target's place; nothing else may follow. On failure the target stays as
  // it was.
  virtual bool replaceTarget() = 0;
};

// Null where `path` can't be written, or names what a rename would destroy: a directory, a device, a write-protected
// file.
std::unique_ptr<ReplacingFile> createReplacingFile(std::u16string_view path);

// How often a temporary name that is taken already gives way to another.
inline constexpr int kTemporaryNameAttempts = 100;

// A file name that no other writer of any process uses at this moment.
std::string temporaryFileName(unsigned long processId);

}  // namespace rubrica::platform
