#include "compound/stream_cursor.h"

#include <algorithm>
#include <utility>

namespace rubrica {

void StreamCursor::open(std::span<const std::byte> file, StreamRuns runs) {
  _file = file;
  _runs = std::move(runs);
  _length = _runs.empty() ? 0 : _runs.back().streamOffset + _runs.back().length;
  _end = false;
  enterRun(0, 0);
}

void StreamCursor::enterRun(std::size_t run, std::uint64_t offset) {
  _run = run;
  if (run >= _runs.size()) {
    _at = _runEnd = nullptr;
    return;
  }
  const std::byte* start = _file.data() + _runs[run].fileOffset;
  _at = start + offset;
  _runEnd = start + _runs[run].length;
}

// False, and the end flag, where the stream has no more.
bool StreamCursor::nextRun() {
  if (_run + 1 >= _runs.size()) {
    _end = true;
    return false;
  }
  enterRun(_run + 1, 0);
  return true;
}

std::uint64_t StreamCursor::position() const {
  if (_run >= _runs.size()) return _length;
  return _runs[_run].streamOffset + _runs[_run].length - runLeft();
}

std::size_t StreamCursor::readAcrossRuns(std::byte* buffer, std::size_t size) {
  std::size_t got = 0;
  while (got != size) {
    if (runLeft() == 0 && !nextRun()) break;
    const std::size_t part = std::min(size - got, runLeft());
    std::memcpy(buffer + got, _at, part);
    _at += part;
    got += part;
  }
  return got;
}

std::size_t StreamCursor::skipAcrossRuns(std::size_t size) {
  std::size_t gone = 0;
  while (gone != size) {
    if (runLeft() == 0 && !nextRun()) break;
    const std::size_t part = std::min(size - gone, runLeft());
    _at += part;
    gone += part;
  }
  return gone;
}

std::span<const std::byte> StreamCursor::gather(std::size_t size) {
  _scratch.resize(static_cast<std::size_t>(std::min<std::uint64_t>(size, left())));
  readAcrossRuns(_scratch.data(), _scratch.size());
  if (_scratch.size() < size) _end = true;
  return _scratch;
}

StreamCursor::Place StreamCursor::place() const {
  if (_run >= _runs.size()) return {_run, 0, _end};
  return {_run, _runs[_run].length - runLeft(), _end};
}

void StreamCursor::goTo(const Place& place) {
  enterRun(place.run, place.offset);
  _end = place.end;
}

}  // namespace rubrica
