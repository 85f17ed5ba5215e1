// The host's services as the component sees them: six tables of functions over values, lists, objects, resources,
// settings and unhandled messages. The functions are plain C calls; the component host that they belong to comes back
// to them in the call's context.
#pragma once

#include <string>
#include <vector>

#include "host/omnis_abi.h"
#include "simhost/text.h"

namespace rubrica::simhost {

// Points the block's tables at the services.
void setServiceTables(host::CallBlock& block);

// Takes the texts of `listStrings`; its address goes with the message as wParam.
struct CollectedStrings {
  std::vector<std::pair<std::uint32_t, Text>> texts;
};

// Values and lists that components made through the tables and have not given back.
std::size_t liveServiceFields();
std::size_t liveServiceLists();

}  // namespace rubrica::simhost
