#include "host/host_services.h"

#include <algorithm>

#include "host/host_field.h"

namespace rubrica::host {
namespace {

HostFacts facts;
bool factsAreRead = false;

template <class Table>
bool fits(const Table* table) {
  return table != nullptr && table->header.size == sizeof(Table) && table->header.version == kTableVersion;
}

// The codes of the options, in the order in which they are asked for.
constexpr std::uint16_t kOptionCodes[] = {3, 4, 6, 5};

void readFacts(Word context) {
  for (std::size_t i = 0; i < std::size(kOptionCodes); ++i) {
    const char32_t name[] = {U'-', static_cast<char32_t>(kOptionCodes[i] >> 8),
                             static_cast<char32_t>(kOptionCodes[i] & 0xFF)};
    facts.options[i] = currentServices.system->option(context, name, std::size(name));
  }
  const std::u32string_view expression = U"sys(1)";
  const HostField result = HostField::make(context);
  if (currentServices.system->evaluate(context, expression.data(), expression.size(), result.handle()) == 0) return;
  std::u32string text = result.utf32();
  std::erase_if(text, [](char32_t c) { return c < U'0' || c > U'9'; });
  facts.version = std::move(text);
}

}  // namespace

const HostFacts& hostFacts() {
  return facts;
}

bool adoptServices(Word window, const CallBlock& call) {
  if (!fits(call.valueTable) || !fits(call.listTable) || !fits(call.objectTable) || !fits(call.resourceTable) ||
      !fits(call.systemTable) || !fits(call.handlerTable)) {
    return false;
  }
  currentServices.values = call.valueTable;
  currentServices.lists = call.listTable;
  currentServices.objects = call.objectTable;
  currentServices.resources = call.resourceTable;
  currentServices.system = call.systemTable;
  currentServices.handlers = call.handlerTable;
  currentServices.module = call.module;
  currentServices.hostInstance = call.hostInstance;
  currentServices.library = call.library;
  std::copy(std::begin(call.hostWords), std::end(call.hostWords), std::begin(currentServices.words));
  currentServices.window = window;
  if (!factsAreRead) {
    // First the mark: evaluating an expression may send another message.
    factsAreRead = true;
    readFacts(call.context);
  }
  return true;
}

std::u32string resourceText(std::uint32_t id) {
  char32_t buffer[kMaxResourceText];
  const std::uint32_t length =
      currentServices.resources->readString(currentServices.module, id, buffer, kMaxResourceText);
  return {buffer, std::min(length, kMaxResourceText)};
}

}  // namespace rubrica::host
