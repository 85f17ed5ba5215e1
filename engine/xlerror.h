// The engine's one exception: a narrow text that becomes the book's last message. It never leaves an operation of the
// public interfaces.
#pragma once

#include <stdexcept>
#include <string>

#include "engine/export.h"

namespace rubrica {

class RUBRICA_API xlerror : public std::runtime_error {
 public:
  explicit xlerror(const std::string& text) : std::runtime_error(text) {}
};

}  // namespace rubrica
