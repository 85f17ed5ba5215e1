// Makes a temporary directory the process's working directory for the life of one test, and goes back afterwards: for
// tests that pass arbitrary values where a file's path is expected, so that what gets saved lands there.
#pragma once

#include <filesystem>

#include "tests/support/temporary_directory.h"

namespace rubrica::test {

class TemporaryWorkingDirectory {
 public:
  TemporaryWorkingDirectory() : _before(std::filesystem::current_path()) {
    std::filesystem::current_path(_directory.file(""));
  }
  ~TemporaryWorkingDirectory() {
    std::error_code ignored;
    std::filesystem::current_path(_before, ignored);
  }
  TemporaryWorkingDirectory(const TemporaryWorkingDirectory&) = delete;
  TemporaryWorkingDirectory& operator=(const TemporaryWorkingDirectory&) = delete;

  std::size_t entryCount() const { return _directory.entryCount(); }

 private:
  TemporaryDirectory _directory;
  std::filesystem::path _before;
};

}  // namespace rubrica::test
