// A directory of its own for one test, removed with all in it afterwards.
#pragma once

#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdlib.h>
#include <string>
#include <utility>

namespace rubrica::test {

class TemporaryDirectory {
 public:
  TemporaryDirectory() {
    std::string pattern = (std::filesystem::temp_directory_path() / "rubrica-test-XXXXXX").string();
    _path = mkdtemp(pattern.data());
  }
  ~TemporaryDirectory() {
    std::error_code ignored;
    std::filesystem::remove_all(_path, ignored);
  }
  TemporaryDirectory(const TemporaryDirectory&) = delete;
  TemporaryDirectory& operator=(const TemporaryDirectory&) = delete;

  std::filesystem::path file(const std::string& name) const { return _path / name; }
  std::size_t entryCount() const {
    return static_cast<std::size_t>(
        std::distance(std::filesystem::directory_iterator(_path), std::filesystem::directory_iterator()));
  }

 private:
  std::filesystem::path _path;
};

inline void writeText(const std::filesystem::path& path, const std::string& text) {
  std::ofstream(path, std::ios::binary) << text;
}

// The whole file, whatever its bytes are; empty for one that isn't there.
inline std::string readText(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  std::ostringstream text;
  text << file.rdbuf();
  return std::move(text).str();
}

}  // namespace rubrica::test
