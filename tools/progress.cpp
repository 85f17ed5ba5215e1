#include "tools/progress.h"

#include <unistd.h>

namespace rubrica::tools {

Progress::Progress(const char* tool, std::FILE* sink, std::chrono::milliseconds patience)
    : _tool(tool),
      _sink(sink),
      _isTerminal(isatty(fileno(sink)) != 0),
      _watcher([this, patience] { watch(patience); }) {}

Progress::~Progress() {
  finish();
}

void Progress::begin(const std::string& what, long total) {
  const std::lock_guard lock(_mutex);
  _what = what;
  _total = total;
  _done = 0;
}

void Progress::finish() {
  {
    const std::lock_guard lock(_mutex);
    if (_over) return;
    _over = true;
  }
  _wake.notify_all();
  _watcher.join();
  if (_shown && _isTerminal) std::fputs("\r\033[K", _sink);
  std::fflush(_sink);
}

void Progress::watch(std::chrono::milliseconds patience) {
  std::unique_lock lock(_mutex);
  while (!_wake.wait_for(lock, patience, [this] { return _over; })) {
    if (!_what.empty()) show();
  }
}

void Progress::show() {
  const auto seconds =
      std::chrono::duration_cast<std::chrono::seconds>(std::chrono::steady_clock::now() - _start).count();
  std::string line = std::string(_tool) + ": " + _what;
  if (_total > 0) line += ", " + std::to_string(_done.load() * 100 / _total) + " %";
  line += ", " + std::to_string(seconds) + " s";
  std::fputs(_isTerminal ? ("\r\033[K" + line).c_str() : (line + "\n").c_str(), _sink);
  std::fflush(_sink);
  _shown = true;
}

}  // namespace rubrica::tools
