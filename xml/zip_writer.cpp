#include "xml/zip_writer.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <exception>
#include <filesystem>
#include <fstream>
#include <zip.h>

#include "xml/deflater.h"

namespace rubrica {
namespace {

constexpr char kCantWrite[] = "can't write zip archive";
// 1980-01-01, the first day that an archive can name: the same book gives the same bytes whenever it is saved.
constexpr zip_uint16_t kEntryDate = (1U << 5U) | 1U;

std::filesystem::path nativePath(const std::string& utf8) {
  return std::u8string(utf8.begin(), utf8.end());
}

constexpr zip_int64_t kReadCommands =
    ZIP_SOURCE_SUPPORTS_READABLE | ZIP_SOURCE_MAKE_COMMAND_BITMASK(ZIP_SOURCE_SUPPORTS);

}  // namespace

struct ZipWriter::State {
  explicit State(platform::OutputStream& stream, std::string file) : output(stream), temporaryFile(std::move(file)) {
    zip_error_init(&error);
  }
  ~State() {
    if (archive != nullptr) zip_discard(archive);
    zip_error_fini(&error);
  }

  platform::OutputStream& output;
  std::string temporaryFile;
  Deflater deflater;
  std::vector<std::unique_ptr<Entry>> entries;
  zip_t* archive = nullptr;
  zip_uint64_t end = 0;  // of what has been written, as far as a seek has to know
  zip_error_t error;
  std::exception_ptr failure;  // of a part, on its way through the container's C code

  // The archive as the container writes it: onto the output stream.
  static zip_int64_t archiveCommand(void* self, void* data, zip_uint64_t size, zip_source_cmd_t command);
};

// One part as the container reads it: compressed already, or, by way of the temporary file, plain.
class ZipWriter::Entry {
 public:
  Entry(State& state, XFile& part) : _state(state), _part(part) { zip_error_init(&_error); }
  ~Entry() { zip_error_fini(&_error); }
  Entry(const Entry&) = delete;
  Entry& operator=(const Entry&) = delete;

  static zip_int64_t command(void* self, void* data, zip_uint64_t size, zip_source_cmd_t command);

 private:
  void prepare();
  zip_int64_t answer(void* data, zip_uint64_t size, zip_source_cmd_t command);
  zip_int64_t describe(zip_stat_t& about) const;
  zip_int64_t read(char* to, std::size_t size);
  void finish();

  State& _state;
  XFile& _part;
  zip_error_t _error;
  bool _isPrepared = false;
  DeflatedText _deflated;  // of a plain part the size alone
  std::ifstream _file;
  std::size_t _piece = 0, _position = 0;  // of what is read next, and where in that piece
};

void ZipWriter::Entry::prepare() {
  if (_isPrepared) return;
  if (_state.temporaryFile.empty()) {
    std::ostream stream(&_state.deflater);
    _part.write(stream);
    _deflated = _state.deflater.finish();
  } else {
    std::string path = _state.temporaryFile;
    _part.save(path);
    _deflated.size = std::filesystem::file_size(nativePath(path));
  }
  _isPrepared = true;
}

zip_int64_t ZipWriter::Entry::describe(zip_stat_t& about) const {
  zip_stat_init(&about);
  about.size = _deflated.size;
  about.valid = ZIP_STAT_SIZE;
  if (_state.temporaryFile.empty()) {
    about.comp_size = _deflated.compressedSize;
    about.crc = _deflated.crc;
    about.comp_method = ZIP_CM_DEFLATE;
    about.valid |= ZIP_STAT_COMP_SIZE | ZIP_STAT_CRC | ZIP_STAT_COMP_METHOD;
  }
  return sizeof(about);
}

zip_int64_t ZipWriter::Entry::read(char* to, std::size_t size) {
  if (!_state.temporaryFile.empty()) {
    _file.read(to, static_cast<std::streamsize>(size));
    return _file.bad() ? -1 : static_cast<zip_int64_t>(_file.gcount());
  }
  const std::vector<ByteBlock>& pieces = _deflated.pieces;
  while (_piece < pieces.size() && _position == pieces[_piece].size) {
    ++_piece;
    _position = 0;
  }
  if (_piece == pieces.size()) return 0;
  const std::string_view rest = pieces[_piece].view().substr(_position, size);
  std::memcpy(to, rest.data(), rest.size());
  _position += rest.size();
  return static_cast<zip_int64_t>(rest.size());
}

// What the container asks for later are the sizes alone.
void ZipWriter::Entry::finish() {
  _deflated.pieces.clear();
  if (_state.temporaryFile.empty()) return;
  _file.close();
  std::error_code ignored;
  std::filesystem::remove(nativePath(_state.temporaryFile), ignored);
}

zip_int64_t ZipWriter::Entry::answer(void* data, zip_uint64_t size, zip_source_cmd_t command) {
  switch (command) {
    case ZIP_SOURCE_SUPPORTS:
      return kReadCommands;
    case ZIP_SOURCE_STAT:
      prepare();
      return size < sizeof(zip_stat_t) ? -1 : describe(*static_cast<zip_stat_t*>(data));
    case ZIP_SOURCE_OPEN:
      prepare();
      _piece = _position = 0;
      if (!_state.temporaryFile.empty()) _file.open(nativePath(_state.temporaryFile), std::ios::binary);
      return !_state.temporaryFile.empty() && !_file.is_open() ? -1 : 0;
    case ZIP_SOURCE_READ:
      return read(static_cast<char*>(data), static_cast<std::size_t>(size));
    case ZIP_SOURCE_CLOSE:
      finish();
      return 0;
    case ZIP_SOURCE_ERROR:
      return zip_error_to_data(&_error, data, size);
    case ZIP_SOURCE_FREE:
      return 0;
    default:
      zip_error_set(&_error, ZIP_ER_OPNOTSUPP, 0);
      return -1;
  }
}

// No exception may pass through the container: it is kept for finish().
zip_int64_t ZipWriter::Entry::command(void* self, void* data, zip_uint64_t size, zip_source_cmd_t command) {
  auto& entry = *static_cast<Entry*>(self);
  try {
    const zip_int64_t result = entry.answer(data, size, command);
    if (result < 0 && zip_error_code_zip(&entry._error) == ZIP_ER_OK) zip_error_set(&entry._error, ZIP_ER_READ, errno);
    return result;
  } catch (...) {
    entry._state.failure = std::current_exception();
    zip_error_set(&entry._error, ZIP_ER_INTERNAL, 0);
    return -1;
  }
}

zip_int64_t ZipWriter::State::archiveCommand(void* self, void* data, zip_uint64_t size, zip_source_cmd_t command) {
  auto& state = *static_cast<State*>(self);
  const auto failed = [&state](int code) -> zip_int64_t {
    zip_error_set(&state.error, code, 0);
    return -1;
  };
  switch (command) {
    case ZIP_SOURCE_SUPPORTS:
      return ZIP_SOURCE_SUPPORTS_WRITABLE;
    case ZIP_SOURCE_STAT:  // there is no archive yet
      zip_error_set(&state.error, ZIP_ER_READ, ENOENT);
      return -1;
    case ZIP_SOURCE_BEGIN_WRITE:
    case ZIP_SOURCE_COMMIT_WRITE:
    case ZIP_SOURCE_ROLLBACK_WRITE:
    case ZIP_SOURCE_REMOVE:
    case ZIP_SOURCE_FREE:
      return 0;
    case ZIP_SOURCE_WRITE:
      return state.output.write(data, static_cast<std::size_t>(size)) ? static_cast<zip_int64_t>(size)
                                                                      : failed(ZIP_ER_WRITE);
    case ZIP_SOURCE_TELL_WRITE: {
      const std::int64_t position = state.output.tell();
      return position < 0 ? failed(ZIP_ER_TELL) : position;
    }
    case ZIP_SOURCE_SEEK_WRITE: {
      const auto at = static_cast<zip_uint64_t>(std::max<std::int64_t>(state.output.tell(), 0));
      state.end = std::max(state.end, at);
      const zip_int64_t target = zip_source_seek_compute_offset(at, state.end, data, size, &state.error);
      if (target < 0) return -1;
      return state.output.seek(static_cast<std::uint64_t>(target)) ? 0 : failed(ZIP_ER_SEEK);
    }
    case ZIP_SOURCE_ERROR:
      return zip_error_to_data(&state.error, data, size);
    default:
      return failed(ZIP_ER_OPNOTSUPP);
  }
}

ZipWriter::ZipWriter(platform::OutputStream& output, std::string temporaryFile)
    : _state(std::make_unique<State>(output, std::move(temporaryFile))) {
  zip_error_t error;
  zip_error_init(&error);
  zip_source_t* target = zip_source_function_create(&State::archiveCommand, _state.get(), &error);
  if (target != nullptr) {
    _state->archive = zip_open_from_source(target, ZIP_CREATE | ZIP_TRUNCATE, &error);
    if (_state->archive == nullptr) zip_source_free(target);
  }
  zip_error_fini(&error);
  if (_state->archive == nullptr) throw xlerror(kCantWrite);
}

ZipWriter::~ZipWriter() = default;

void ZipWriter::add(std::string_view key, XFile& part) {
  const std::string name(key.substr(1));
  Entry& entry = *_state->entries.emplace_back(std::make_unique<Entry>(*_state, part));
  zip_source_t* source = zip_source_function(_state->archive, &Entry::command, &entry);
  if (source == nullptr) throw xlerror(kCantWrite);
  const zip_int64_t index = zip_file_add(_state->archive, name.c_str(), source, ZIP_FL_ENC_UTF_8);
  if (index < 0) {
    zip_source_free(source);
    throw xlerror(kCantWrite);
  }
  zip_file_set_dostime(_state->archive, static_cast<zip_uint64_t>(index), 0, kEntryDate, 0);
}

void ZipWriter::finish() {
  if (zip_close(_state->archive) == 0) {
    _state->archive = nullptr;
    return;
  }
  if (_state->failure) std::rethrow_exception(_state->failure);
  throw xlerror(std::string(kCantWrite) + ": " + zip_strerror(_state->archive));
}

}  // namespace rubrica
