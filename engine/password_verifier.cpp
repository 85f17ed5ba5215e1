#include "engine/password_verifier.h"

#include <numeric>

namespace rubrica {
namespace {

constexpr unsigned kVerifierSeed = 0xCE4B;

unsigned rotated(unsigned hash) {
  return ((hash << 1) & 0x7FFF) | ((hash >> 14) & 1);
}

}  // namespace

std::uint16_t passwordVerifier(std::u16string_view password) {
  unsigned hash = std::accumulate(password.rbegin(), password.rend(), 0U,
                                  [](unsigned before, char16_t c) { return rotated(before) ^ c; });
  hash = rotated(hash) ^ static_cast<unsigned>(password.size()) ^ kVerifierSeed;
  return static_cast<std::uint16_t>(hash);
}

}  // namespace rubrica
