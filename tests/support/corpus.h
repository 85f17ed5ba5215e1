// Workbooks of other programs and malformed ones, for tests: they are no part of the repository, so a test skips where
// they are missing.
#pragma once

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <vector>

namespace rubrica::test {

constexpr const char* kNoCorpus = "no corpus: set RUBRICA_CORPUS to a folder with the folders xls, xlsx and malformed";

// The files of a part ("xls", "xlsx", "malformed") by name, of the folder that RUBRICA_CORPUS names or else of the one
// beside the source tree. None where it is missing.
inline std::vector<std::filesystem::path> corpusFiles(const char* part) {
  const char* stated = std::getenv("RUBRICA_CORPUS");
  const std::filesystem::path corpus(stated != nullptr ? stated : RUBRICA_SOURCE_DIR "/../shared/corpus");
  std::vector<std::filesystem::path> files;
  std::error_code missing;
  for (const auto& entry : std::filesystem::directory_iterator(corpus / part, missing)) files.push_back(entry.path());
  std::sort(files.begin(), files.end());
  return files;
}

}  // namespace rubrica::test
