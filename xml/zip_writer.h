// Writes parts into a new ZIP archive on an output stream. Each part is asked for its bytes only when its turn comes
// and is forgotten once it is written, so that of all the text only a piece exists at a time.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/output_stream.h"
#include "xml/part.h"

struct zip;

namespace rubrica {

class ZipWriter {
 public:
  // With `temporaryFile` (path in UTF-8) every part is written there on its way, and removed, instead of through
  // memory.
  explicit ZipWriter(platform::OutputStream& output, std::string temporaryFile = {});
  ~ZipWriter();
  ZipWriter(const ZipWriter&) = delete;
  ZipWriter& operator=(const ZipWriter&) = delete;

  // Enters a part under its key, which begins with "/". The part must live until finish.
  void add(std::string_view key, XFile& part);
  // Writes everything. Throws what a part's save throws, or xlerror.
  void finish();

 private:
  struct State;
  class Entry;

  std::unique_ptr<State> _state;
};

}  // namespace rubrica
