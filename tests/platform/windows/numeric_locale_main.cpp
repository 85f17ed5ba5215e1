// Tests the numeric locale of a thread: a program of its own, since the C library that mingw-w64 links by default
// (msvcrt.dll, as Wine has it) knows no locale of a thread. Run without arguments; exits with 1 where a check fails.
#include <clocale>
#include <cstdio>
#include <string>
#include <windows.h>

#include "expect.h"
#include "platform/numeric_locale.h"

namespace rubrica::platform {

namespace {

std::string printedHalf() {
  char text[8] = {};
  std::snprintf(text, sizeof text, "%.1f", 0.5);
  return text;
}

DWORD WINAPI printInThread(void* result) {
  *static_cast<std::string*>(result) = printedHalf();
  return 0;
}

// What a thread that starts now prints.
std::string printedHalfElsewhere() {
  std::string result;
  HANDLE thread = ::CreateThread(nullptr, 0, printInThread, &result, 0, nullptr);
  if (thread == nullptr) return {};
  ::WaitForSingleObject(thread, INFINITE);
  ::CloseHandle(thread);
  return result;
}

void checkGuard() {
  EXPECT(std::setlocale(LC_NUMERIC, "German_Germany.1252") != nullptr);
  EXPECT(printedHalf() == "0,5");
  {
    const NumericLocaleGuard guard;
    EXPECT(printedHalf() == "0.5");
    EXPECT(printedHalfElsewhere() == "0,5");
    const NumericLocaleGuard inner;
    EXPECT(printedHalf() == "0.5");
  }
  EXPECT(printedHalf() == "0,5");
}

}  // namespace

}  // namespace rubrica::platform

int main() {
  using namespace rubrica::platform;
  checkGuard();
  std::printf("%d checks of the numeric locale, %d failed\n", checksDone(), checksFailed());
  return checksFailed() == 0 ? 0 : 1;
}
