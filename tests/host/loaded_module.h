// The built module, loaded as a host loads it: by path, and only its entry point is resolved.
#pragma once

#include <cstdlib>
#include <dlfcn.h>
#include <iostream>
#include <string>

#include "host/omnis_abi.h"

namespace rubrica::host::testing {

inline const std::string kTabulixPath = RUBRICA_BINARY_DIR "/host/TabulixU.so";

inline ComponentProcedure loadedModule() {
  static void* const module = dlopen(kTabulixPath.c_str(), RTLD_NOW | RTLD_LOCAL);
  void* const symbol = module != nullptr ? dlsym(module, "NVObjWndProc") : nullptr;
  if (symbol == nullptr) {
    std::cerr << dlerror() << '\n';
    std::abort();
  }
  return reinterpret_cast<ComponentProcedure>(symbol);
}

}  // namespace rubrica::host::testing
