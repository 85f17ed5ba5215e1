// Rows and columns count from 1 in the host and from 0 in the engine. Both steps stop at the ends of the number range,
// so that an absurd parameter stays an absurd parameter.
#pragma once

#include <limits>

namespace rubrica::host {

constexpr int toEngine(int hostIndex) {
  return hostIndex == std::numeric_limits<int>::min() ? hostIndex : hostIndex - 1;
}

constexpr int toHost(int engineIndex) {
  return engineIndex == std::numeric_limits<int>::max() ? engineIndex : engineIndex + 1;
}

}  // namespace rubrica::host
