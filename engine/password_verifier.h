// The short verifier under which both file forms keep the password of a sheet. A free function without state.
#pragma once

#include <cstdint>
#include <string_view>

namespace rubrica {

std::uint16_t passwordVerifier(std::u16string_view password);

}  // namespace rubrica
