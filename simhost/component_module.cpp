#include "simhost/component_module.h"

#include <dlfcn.h>
#include <stdexcept>

namespace rubrica::simhost {

ComponentModule::ComponentModule(const std::string& path) : _resources(StringResources::fromModule(path)) {
  // A name without a slash would be looked for in the system's library folders.
  const std::string file = path.find('/') == std::string::npos ? "./" + path : path;
  // The code stays until the process ends, as a host's externals do: what a component keeps for the whole process, such
  // as its table of objects, must stay reachable.
  _handle = dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL | RTLD_NODELETE);
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
