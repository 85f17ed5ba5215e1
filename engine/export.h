// Marks what the shared library offers beside the interfaces, whose operations are reached through the objects. All
// else stays hidden.
#pragma once

#ifdef _WIN32
#define RUBRICA_API
#else
#define RUBRICA_API __attribute__((visibility("default")))
#endif
