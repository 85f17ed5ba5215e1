// The answers to the host's list messages: objects, methods, properties and constants as host lists, and all string
// resources one by one. docs/formats/resources.md tells the columns.
#pragma once

#include <span>

#include "host/host_call.h"
#include "host/method_table.h"

namespace rubrica::host {

// Each adds its list to the call as return value and answers 1.
int listObjects(HostCall& call);
int listMethodTable(HostCall& call, std::span<const MethodRow> rows);
int listPropertyTable(HostCall& call, std::span<const PropertyRow> rows);
int listConstants(HostCall& call);
// Hands every string resource to the host, which knows by the message's two arguments what to do with it.
void listStrings(Word wParam, Word lParam);

}  // namespace rubrica::host
