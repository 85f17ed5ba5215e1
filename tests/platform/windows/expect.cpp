#include "expect.h"

#include <cstdio>

namespace rubrica::platform {

namespace {

int done = 0;
int failed = 0;

}  // namespace

void expect(bool holds, const char* file, int line, std::string_view what) {
  ++done;
  if (holds) return;
  ++failed;
  std::printf("%s:%d: failed: %.*s\n", file, line, static_cast<int>(what.size()), what.data());
}

int checksDone() {
  return done;
}

int checksFailed() {
  return failed;
}

}  // namespace rubrica::platform
