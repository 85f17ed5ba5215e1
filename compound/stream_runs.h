// The places of a stream in its file, as runs of bytes that follow each other. A sector chain is resolved once, when a
// stream is entered; a chain that runs in a circle or past the file's end simply ends.
#pragma once

#include <cstdint>
#include <vector>

#include "compound/sector_tables.h"

namespace rubrica {

struct StreamRun {
  std::uint64_t fileOffset;    // bytes from the file's start
  std::uint64_t streamOffset;  // bytes from the stream's start
  std::uint64_t length;        // bytes
};
using StreamRuns = std::vector<StreamRun>;

// The stream of an entry: in the mini stream where it is smaller than 4096 bytes, else in whole sectors. Throws xlerror
// for an entry without a stream or with one outside the FAT.
StreamRuns runsOfStream(const SectorTables& tables, const DirEntry& entry);
// The mini stream itself, which belongs to the root entry and lies in whole sectors however small it is.
StreamRuns runsOfMiniStream(const SectorTables& tables);

}  // namespace rubrica
