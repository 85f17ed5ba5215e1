// Where the bytes of a document come from: a file or a block in memory. The character layers pull one byte at a time.
#pragma once

#include <cstddef>
#include <fstream>
#include <string>
#include <string_view>

namespace rubrica::lmx {

class c_read {
 public:
  virtual bool is_open() const = 0;
  virtual int get_byte() = 0;  // 0 to 255, or -1 at the end
  virtual std::string_view get_source_id() const { return _source_id; }
  virtual void rewind() = 0;
  virtual ~c_read() = default;
  c_read(const c_read&) = delete;
  c_read& operator=(const c_read&) = delete;

 protected:
  explicit c_read(std::string source_id) : _source_id(std::move(source_id)) {}

 private:
  std::string _source_id;
};

// A file, read in blocks. The source id is its path in UTF-8.
class c_read_file final : public c_read {
 public:
  explicit c_read_file(std::u16string_view path);
  explicit c_read_file(std::string_view utf8_path);
  // Reads from a buffer that is open already and stays so afterwards.
  c_read_file(std::filebuf& borrowed, std::string source_id);

  bool is_open() const override { return _file->is_open(); }
  int get_byte() override;
  void rewind() override;

 private:
  static constexpr std::size_t kBufferSize = 512;

  std::filebuf _own;
  std::filebuf* _file;
  char _buffer[kBufferSize];
  std::size_t _fill = 0;
  std::size_t _position = 0;
};

// A block that the caller keeps alive and unchanged.
class c_read_memory final : public c_read {
 public:
  c_read_memory(const char* data, std::size_t size)
      : c_read("memory"), _begin(data), _current(data), _end(data + size) {}

  bool is_open() const override { return true; }
  int get_byte() override { return _current == _end ? -1 : static_cast<unsigned char>(*_current++); }
  void rewind() override { _current = _begin; }

  const char* begin() const { return _begin; }
  const char* current() const { return _current; }
  const char* end() const { return _end; }
  void set_current(const char* position) { _current = position; }

 private:
  const char* _begin;
  const char* _current;
  const char* _end;
};

}  // namespace rubrica::lmx
