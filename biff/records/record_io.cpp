#include "biff/records/record_io.h"

namespace rubrica {

void appendBytes(std::vector<std::byte>& body, std::span<const std::byte> bytes) {
  const std::size_t size = body.size();
  body.resize(size + bytes.size());
  if (!bytes.empty()) std::memcpy(body.data() + size, bytes.data(), bytes.size());
}

}  // namespace rubrica
