// The host's service tables and words as the component last saw them: copied out of the call block on every message,
// process-wide, since a value or object that outlives a message still needs them. All other sources reach the host
// through HostField, HostList and HostCall, which read from here.
#pragma once

#include <string>

#include "host/omnis_abi.h"

namespace rubrica::host {

struct HostServices {
  const ValueTable* values = nullptr;
  const ListTable* lists = nullptr;
  const ObjectTable* objects = nullptr;
  const ResourceTable* resources = nullptr;
  const SystemTable* system = nullptr;
  const HandlerTable* handlers = nullptr;
  Word module = 0;
  Word hostInstance = 0;
  Word library = 0;
  Word words[3] = {};
  Word window = 0;
};

// What the first message asks of the host. Nothing depends on it; it is there for a debugger to see.
struct HostFacts {
  std::int32_t options[4] = {};
  std::u32string version;  // digits alone
};

// Whole lists go through the services one value at a time, so that reaching them costs no call. adoptServices alone
// changes what they are.
inline HostServices currentServices;
inline const HostServices& services() {
  return currentServices;
}
const HostFacts& hostFacts();

// Copies the tables of a message. False, with nothing copied, when a table is missing or of another size or version.
bool adoptServices(Word window, const CallBlock& call);

// The text of a string resource, cut at kMaxResourceText characters; empty for an id without text.
std::u32string resourceText(std::uint32_t id);

}  // namespace rubrica::host
