// The style parameter of the two list methods.
#pragma once

#include "host/host_field.h"

namespace rubrica::host {

// 0 for a style that is absent, no number, or outside 0 to 255.
inline int listStyle(const HostField& field) {
  constexpr int kGreatest = 255;
  const std::int32_t type = field.type();
  if (type != kind::integer && type != kind::number && type != kind::constant) return 0;
  const int style = field.integer();
  return style >= 0 && style <= kGreatest ? style : 0;
}

}  // namespace rubrica::host
