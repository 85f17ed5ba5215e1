// The compound file (structured storage) beneath an .xls book. One object serves both directions: it parses a file in
// memory and is then the byte source of all BIFF records of the main stream, and it writes the main stream straight to
// its output and lays out the rest of the file behind it.
//
// Belongs to one book; not thread-safe. Failures throw xlerror with the texts documented in docs/formats/compound.md.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "compound/dir_entry.h"
#include "compound/sector_tables.h"
#include "compound/stream_cursor.h"
#include "compound/write_buffer.h"
#include "platform/output_stream.h"

namespace rubrica {

// The streams that a book carries along without understanding them: by name, then by place in the directory, since
// two storages may each hold a stream of one name.
using CarriedStreams = std::map<std::pair<std::u16string, std::size_t>, std::vector<std::byte>>;

class Xls {
 public:
  Xls();
  Xls(const Xls&) = delete;
  Xls& operator=(const Xls&) = delete;

  // ---- Reading
  // Parses header, DIFAT, FAT, mini FAT and directory and places the cursor at the first byte of the main stream
  // ("Workbook", else "Book", else "EncryptionInfo", ignoring case). `file` is borrowed until reading is over.
  void read(std::span<const std::byte> file);
  // True once a read has met the end of the main stream's sector chain.
  bool isEnd() const { return _cursor.isEnd(); }
  // Bytes of the file last read, or of the one last written by close().
  std::uint64_t fileSize() const { return _fileSize; }
  // True where read() found no workbook but the "EncryptionInfo" of an encrypted package, and entered that.
  bool isEncryptionInfo() const { return _isEncryptionInfo; }

  // The byte layer. Each returns the number of bytes consumed; fewer than asked only at the end of the stream, which
  // sets the end flag. Values are little-endian, and what was not read stays 0.
  std::size_t read(void* buffer, std::size_t size) { return _cursor.read(buffer, size); }
  std::size_t readInt8(std::uint8_t& value) { return _cursor.readNumber(value); }
  std::size_t readInt16(std::uint16_t& value) { return _cursor.readNumber(value); }
  std::size_t readInt32(std::uint32_t& value) { return _cursor.readNumber(value); }
  std::size_t readDouble(double& value) {
    std::uint64_t bits = 0;
    const std::size_t got = _cursor.readNumber(bits);
    value = std::bit_cast<double>(bits);
    return got;
  }
  // The next `size` bytes in one piece, consumed: in place when the stream's sectors follow each other in the file,
  // else gathered in a scratch block that the next call overwrites. Shorter only at the end of the stream.
  std::span<const std::byte> view(std::size_t size) { return _cursor.view(size); }
  // Moves past `size` bytes; returns how many there were.
  std::size_t skip(std::size_t size) { return _cursor.skip(size); }
  // Bytes between the cursor and the end of the stream.
  std::uint64_t bytesLeft() const { return _cursor.left(); }

  // Reads that go on in CONTINUE records (id 60): `remaining` is what is left of the current record's body; where it is
  // 0 the next record header must be a CONTINUE and its size becomes the new remaining. Otherwise they throw
  // "readInt16: CONTINUE record not found" and so on.
  std::size_t readInt16(std::uint16_t& value, std::uint16_t& remaining);
  std::size_t readInt32(std::uint32_t& value, std::uint16_t& remaining);
  std::size_t readWithContinueRecords(void* buffer, std::size_t size, std::uint16_t& remaining);
  // Zero-terminated text: up to maxLength units, stopping after a zero. readStringWithoutNull: exactly `length` units.
  std::size_t readString(std::string* text, std::size_t maxLength, std::uint16_t& remaining);
  std::size_t readString(std::u16string* text, std::size_t maxLength, std::uint16_t& remaining);
  std::size_t readStringWithoutNull(std::string* text, std::size_t length, std::uint16_t& remaining);
  std::size_t readStringWithoutNull(std::u16string* text, std::size_t length, std::uint16_t& remaining);
  // Where remaining is 0 and the next record is a CONTINUE, takes its header: true, and remaining is its size.
  bool goNextIfContinue(std::uint16_t& remaining);
  // The id of the next record, without consuming it; 0 at the end of the stream.
  std::uint16_t peekRecordId();
  // Saves and restores the cursor, with one word that the caller carries along.
  void mark(std::uint16_t word = 0);
  std::uint16_t rewind();

  // After the main stream: reads every other stream worth carrying into the stream map, to be written by close().
  void captureOtherStreams();
  const CarriedStreams& otherStreams() const { return _streams; }
  const std::vector<DirEntry>& directory() const { return _tables.dir; }

  // ---- Writing
  // Back to the empty state. With newDirectory a directory of "Root Entry" and "Workbook" and no carried streams (for
  // a load); without it the directory and the carried streams stay (for a save).
  void reset(bool newDirectory);
  // Takes the output for the following writes; it is borrowed until close().
  void attach(platform::OutputStream& output);
  // Writes the room of the header.
  void start();
  void writeHeader(std::uint16_t id, std::uint16_t size);
  void writeRecord(std::uint16_t id, const void* data, std::uint16_t size);
  void write(const void* data, std::size_t size) { _out.write(data, size); }
  void writeInt8(std::uint8_t value) { writeNumber(value); }
  void writeInt16(std::uint16_t value) { writeNumber(value); }
  void writeInt32(std::uint32_t value) { writeNumber(value); }
  void writeDouble(double value) { writeNumber(std::bit_cast<std::uint64_t>(value)); }
  // Forms that count down the room of the current record and open a CONTINUE of up to 8224 bytes at zero; `left` is
  // the number of payload bytes still to come including this value, which sizes that CONTINUE.
  void writeWithContinueRecords(const void* data, std::size_t size, std::uint16_t& room, std::size_t left);
  // Position in the main stream, and a move to it for patching what was written before.
  std::uint32_t tell();
  void seekTo(std::uint32_t position);
  // Lays out side streams, mini FAT, DIFAT, FAT and directory, writes the header, and flushes. Does not commit.
  void close();

 private:
  // The body of the next CONTINUE record becomes `remaining`; throws xlerror, its text begun with `operation`.
  void enterContinue(std::uint16_t& remaining, const char* operation);
  template <typename T>
  std::size_t readSplit(T& value, std::uint16_t& remaining, const char* operation);
  std::size_t readParts(std::byte* buffer, std::size_t size, std::uint16_t& remaining, const char* operation);
  template <typename Text>
  std::size_t readUnits(Text* text, std::size_t length, std::uint16_t& remaining);

  template <typename T>
  void writeNumber(T value) {
    std::byte bytes[sizeof(T)];
    storeLittle(bytes, value);
    _out.write(bytes, sizeof bytes);
  }
  std::uint32_t padSector(std::uint64_t count);
  std::uint32_t writeMainStream();
  std::uint32_t writeCarriedStreams(std::uint32_t sectors);
  std::uint32_t writeMiniFat();
  void emptyLostEntries();
  void cutStreams(std::vector<std::uint32_t>& fat, const CompoundHeader& header) const;
  void writeTable(const std::vector<std::uint32_t>& entries);
  void writeDifat(const std::vector<std::uint32_t>& entries, std::uint32_t firstSector);
  void writeDirectory();

  SectorTables _tables;
  std::size_t _mainEntry = 0;
  CarriedStreams _streams;
  std::uint64_t _fileSize = 0;
  bool _isEncryptionInfo = false;
  StreamCursor _cursor;
  StreamCursor::Place _marked;
  std::uint16_t _markedWord = 0;
  WriteBuffer _out;
};

}  // namespace rubrica
