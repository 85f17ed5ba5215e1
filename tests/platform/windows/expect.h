// The checks of the program that tests platform/ on Windows. A check that fails prints where and what, is counted, and
// lets the program go on.
#pragma once

#include <string>
#include <string_view>

namespace rubrica::platform {

// Counts one check; prints `what` where it doesn't hold.
void expect(bool holds, const char* file, int line, std::string_view what);
int checksDone();
int checksFailed();

// The checks of one subject each.
void checkText();
void checkFiles(const std::u16string& directory);
void checkTextMetrics();

}  // namespace rubrica::platform

#define EXPECT(condition) ::rubrica::platform::expect((condition), __FILE__, __LINE__, #condition)
