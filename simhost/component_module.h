// A component loaded by path: the one function that it exports, and its string resources. Owns the loaded module, and
// ends it when it goes. Used by the component host.
#pragma once

#include <string>

#include "host/omnis_abi.h"
#include "simhost/resource_file.h"

namespace rubrica::simhost {

class ComponentModule {
 public:
  // Throws std::runtime_error when the file can't be loaded or exports no NVObjWndProc.
  explicit ComponentModule(const std::string& path);
  ~ComponentModule();
  ComponentModule(const ComponentModule&) = delete;
  ComponentModule& operator=(const ComponentModule&) = delete;

  const StringResources& resources() const { return _resources; }
  std::int32_t send(std::uint32_t message, host::Word wParam, host::Word lParam, host::CallBlock& call) const {
    return _procedure(0, message, wParam, lParam, &call);
  }

 private:
  StringResources _resources;
  void* _handle = nullptr;
  host::ComponentProcedure _procedure = nullptr;
};

}  // namespace rubrica::simhost
