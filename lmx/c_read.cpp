#include "lmx/c_read.h"

#include <filesystem>

#include "lmx/text.h"

namespace rubrica::lmx {

namespace {

std::filesystem::path native_path(std::string_view utf8) {
  return std::filesystem::path(std::u8string(utf8.begin(), utf8.end()));
}

}  // namespace

c_read_file::c_read_file(std::u16string_view path) : c_read_file(std::string_view(utf8_from_wide(path))) {}

c_read_file::c_read_file(std::string_view utf8_path) : c_read(std::string(utf8_path)), _file(&_own) {
  const std::filesystem::path native = native_path(utf8_path);
  std::error_code ignored;
  if (!std::filesystem::is_directory(native, ignored)) _own.open(native, std::ios::in | std::ios::binary);
}

c_read_file::c_read_file(std::filebuf& borrowed, std::string source_id)
    : c_read(std::move(source_id)), _file(&borrowed) {}

int c_read_file::get_byte() {
  if (_position == _fill) {
    _position = 0;
    _fill = 0;
    if (!is_open()) return -1;
    const std::streamsize got = _file->sgetn(_buffer, kBufferSize);
    if (got <= 0) return -1;
    _fill = static_cast<std::size_t>(got);
  }
  return static_cast<unsigned char>(_buffer[_position++]);
}

void c_read_file::rewind() {
  _position = 0;
  _fill = 0;
  if (is_open()) _file->pubseekpos(0, std::ios::in);
}

}  // namespace rubrica::lmx
