// Any bytes as a script: the parser answers a tree or a ScriptError with a line, and nothing of it runs.
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "simhost/parser.h"
#include "simhost/script_error.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace rubrica::simhost;
  try {
    const Program program = parseScript({reinterpret_cast<const char*>(data), size}, nullptr);
    if (program.methods.empty()) std::abort();
  } catch (const ScriptError& error) {
    if (error.line() < 1) std::abort();
  }
  return 0;
}
