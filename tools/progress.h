// Progress of long work on standard error: nothing for the first second, then what is being done and how far it is. One
// object a process; a thread of its own watches the time, so that also a single long call shows that it goes on.
#pragma once

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstdio>
#include <mutex>
#include <string>
#include <thread>

namespace rubrica::tools {

class Progress {
 public:
  static constexpr std::chrono::milliseconds kPatience{1000};

  // Lines go to `sink`, the first after `patience` and one more each time it has gone by again; on a terminal each line
  // overwrites the one before.
  explicit Progress(const char* tool, std::FILE* sink = stderr, std::chrono::milliseconds patience = kPatience);
  ~Progress();
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;

  // Names what begins now; `total` of its steps, 0 where they can't be counted.
  void begin(const std::string& what, long total = 0);
  void advance(long steps = 1) { _done.fetch_add(steps, std::memory_order_relaxed); }
  // Ends the showing, before results are printed.
  void finish();

 private:
  void watch(std::chrono::milliseconds patience);
  void show();

  const char* _tool;
  std::FILE* _sink;
  bool _isTerminal;
  bool _shown = false;
  bool _over = false;
  std::string _what;
  long _total = 0;
  std::atomic<long> _done{0};
  std::chrono::steady_clock::time_point _start = std::chrono::steady_clock::now();
  std::mutex _mutex;
  std::condition_variable _wake;
  std::thread _watcher;
};

}  // namespace rubrica::tools
