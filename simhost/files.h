// Files as scripts read and write them: whole binaries, and CSV tables into and out of lists. Nothing here throws for
// a file that can't be read or written; the answer is the system's error number, 0 when all went well.
#pragma once

#include <string>

#include "simhost/list.h"

namespace rubrica::simhost {

int readFile(const std::string& path, Bytes& bytes);
int writeFile(const std::string& path, const Bytes& bytes);

// A table of text with one separator; fields that hold it, a quote or a line end stand in double quotes, and quotes in
// them are doubled. Columns that `list` has keep their types and names; a list without columns gets one character
// column for each field of the first line, named after it where `header` is true. The lines are added to the list.
void readCsv(std::string_view text, bool header, char separator, List& list);
std::string writeCsv(const List& list, bool header, char separator);

}  // namespace rubrica::simhost
