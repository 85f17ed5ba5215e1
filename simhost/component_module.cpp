#include "simhost/component_module.h"

#include <dlfcn.h>
#include <stdexcept>

namespace rubrica::simhost {

ComponentModule::ComponentModule(const std::string& path) : _resources(StringResources::fromModule(path)) {
  // A name without a slash would be looked for in the system's library folders.
  const std::string file = path.find('/') == std::string::npos ? "./" + path : path;
  _handle = dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL);
  if (_handle == nullptr) throw std::runtime_error(std::string("the component can't be loaded: ") + dlerror());
  _procedure = reinterpret_cast<host::ComponentProcedure>(dlsym(_handle, "NVObjWndProc"));
  if (_procedure == nullptr) {
    dlclose(_handle);
    throw std::runtime_error(path + " is not a component: it exports no NVObjWndProc");
  }
}

ComponentModule::~ComponentModule() {
  dlclose(_handle);
}

}  // namespace rubrica::simhost
