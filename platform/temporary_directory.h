// A directory of one's own below the system's directory for temporary files, for as long as one operation lasts: what
// two programs, or two books of one, put there under the same name never meets.
#pragma once

#include <string>
#include <string_view>

namespace rubrica::platform {

class TemporaryDirectory {
 public:
  // Makes the directory; path() is empty where that can't be done. Only the user of this process may enter it.
  TemporaryDirectory();
  // Removes it with all that is in it.
  ~TemporaryDirectory();
  TemporaryDirectory(const TemporaryDirectory&) = delete;
  TemporaryDirectory& operator=(const TemporaryDirectory&) = delete;

  // UTF-8, without a separator at the end.
  const std::string& path() const { return _path; }
  // The path of a file in it.
  std::string file(std::string_view name) const;

 private:
  static std::string make();

  std::string _path;
};

}  // namespace rubrica::platform
