// Any bytes read by the fast lane and by the character layers: the same events, values, lines and errors, or abort.
// The first byte chooses how the events are asked for.
#include <cstdint>
#include <cstdio>
#include <cstdlib>

#include "tests/lmx/event_trace.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size == 0) return 0;
  const std::string_view document(reinterpret_cast<const char*>(data) + 1, size - 1);
  const std::string fast = rubrica::lmx::trace_memory(document, data[0], true);
  const std::string layers = rubrica::lmx::trace_memory(document, data[0], false);
  if (fast != layers) {
    std::fprintf(stderr, "fast lane:\n%s\nlayers:\n%s\n", fast.c_str(), layers.c_str());
    std::abort();
  }
  return 0;
}
