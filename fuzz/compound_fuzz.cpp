// Loads any bytes as a compound file and saves it again: the tables, the whole main stream by every kind of read, and
// the carried streams. What we wrote must then be readable with the same main stream.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <span>
#include <vector>

#include "compound/xls.h"
#include "engine/xlerror.h"

namespace {

using rubrica::Xls;

// Walks the main stream as records, with the reads that a book uses.
std::vector<std::byte> walkRecords(Xls& xls) {
  std::vector<std::byte> bodies;
  while (!xls.isEnd()) {
    std::uint16_t id = 0;
    std::uint16_t size = 0;
    xls.readInt16(id);
    xls.readInt16(size);
    switch (id % 4) {
      case 0:
        xls.skip(size);
        break;
      case 1: {
        const auto body = xls.view(size);
        bodies.insert(bodies.end(), body.begin(), body.end());
        break;
      }
      case 2: {
        xls.mark(size);
        xls.peekRecordId();
        std::vector<std::byte> body(size);
        xls.read(body.data(), body.size());
        if (size % 2 != 0 && !xls.isEnd()) size = xls.rewind();
        xls.goNextIfContinue(size);
        break;
      }
      default: {
        std::u16string text;
        std::uint32_t value = 0;
        xls.readInt32(value, size);
        xls.readStringWithoutNull(&text, value, size);
        break;
      }
    }
  }
  return bodies;
}

std::vector<std::byte> save(Xls& xls, const std::vector<std::byte>& main) {
  rubrica::platform::MemoryOutput output;
  xls.reset(false);
  xls.attach(output);
  xls.start();
  xls.write(main.data(), main.size());
  xls.close();
  return output.release();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::span<const std::byte> file(reinterpret_cast<const std::byte*>(data), size);
  std::vector<std::byte> main(1);
  Xls xls;
  try {
    xls.read(file);
    xls.captureOtherStreams();
    main.resize(static_cast<std::size_t>(xls.bytesLeft()) + 1);
    xls.mark();
    xls.read(main.data(), main.size());
    xls.rewind();
  } catch (const rubrica::xlerror&) {
    return 0;
  }
  try {
    walkRecords(xls);
  } catch (const rubrica::xlerror&) {
    // A record that should have gone on: the walk is over, the file is still to be saved.
  }
  const std::vector<std::byte> saved = save(xls, main);
  Xls again;
  again.read(saved);
  std::vector<std::byte> back(main.size());
  if (again.read(back.data(), back.size()) != back.size() || back != main) std::abort();
  again.captureOtherStreams();
  if (again.otherStreams() != xls.otherStreams()) std::abort();
  return 0;
}
