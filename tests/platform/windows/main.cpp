// Tests platform/ on Windows: platform_on_windows DIRECTORY, which is empty and is written to. Exits with 1 where a
// check fails.
#include <cstdio>

#include "expect.h"
#include "platform/text.h"

int main(int argc, char** argv) {
  using namespace rubrica::platform;
  if (argc != 2) {
    std::printf("usage: platform_on_windows DIRECTORY\n");
    return 2;
  }
  checkText();
  checkFiles(utf16FromUtf8(argv[1]));
  checkTextMetrics();
  std::printf("%d checks, %d failed\n", checksDone(), checksFailed());
  return checksFailed() == 0 ? 0 : 1;
}
