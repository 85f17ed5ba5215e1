#include "biff/note_table.h"

#include "biff/drawing_sink.h"
#include "biff/records/record_ids.h"
#include "biff/records/record_io.h"
#include "officeart/record_writer.h"
#include "platform/text.h"

namespace rubrica {
namespace {

constexpr char kNoteName[] = "Note";
constexpr std::uint16_t kContinuesText = 0xFFFF;  // in the row of a BIFF5 record

std::uint32_t placeOf(int row, int col) {
  return static_cast<std::uint32_t>(row) << 16 | static_cast<std::uint32_t>(col);
}

std::u16string characters(std::span<const std::byte> bytes, bool wide) {
  std::u16string text;
  text.reserve(bytes.size());
  for (std::size_t i = 0; i < bytes.size(); i += wide ? 2 : 1) {
    char16_t character = 0;
    std::memcpy(&character, bytes.data() + i, wide ? 2 : 1);
    text.push_back(character);
  }
  return text;
}

void appendNote(std::vector<std::byte>& body, const Note& note) {
  for (const std::uint16_t word : {note.row, note.col, note.grbit, note.idObj}) appendField(body, word);
  appendField(body, static_cast<std::uint16_t>(note.author.size()));
  appendField(body, note.authorFlags);
  if ((note.authorFlags & text_flags::kHighByte) != 0) {
    appendBytes(body, std::as_bytes(std::span(note.author)));
  } else {
    for (const char16_t c : note.author) appendField(body, static_cast<std::uint8_t>(c));
  }
  appendBytes(body, note.behind);
}

}  // namespace

void NoteTable::read(std::span<const std::byte> bytes) {
  RecordBody body(bytes);
  Note note;
  std::uint16_t cch = 0;
  const bool whole = body.take(note.row) && body.take(note.col) && body.take(note.grbit) && body.take(note.idObj) &&
                     body.take(cch) && body.take(note.authorFlags);
  if (!whole) throwSizeIsIncorrect(kNoteName);
  const bool wide = (note.authorFlags & text_flags::kHighByte) != 0;
  const std::size_t size = std::size_t{cch} * (wide ? 2 : 1);
  if (size > body.left()) throwSizeIsIncorrect(kNoteName);
  note.author = characters(body.takeBytes(size), wide);
  note.behind.assign(body.rest().begin(), body.rest().end());
  append(std::move(note));
}

void NoteTable::readBiff5(std::span<const std::byte> bytes, std::uint16_t codePage) {
  RecordBody body(bytes);
  Note note;
  std::uint16_t length = 0;
  if (!body.take(note.row) || !body.take(note.col) || !body.take(length)) throwSizeIsIncorrect(kNoteName);
  // The first record of a long text states the length of all of it.
  const auto part = body.takeBytes(length);
  const std::u16string text =
      platform::utf16FromCodePage(codePage, {reinterpret_cast<const char*>(part.data()), part.size()});
  if (note.row == kContinuesText) {
    if (!_notes.empty()) _notes.back().ownText += text;
    return;
  }
  note.hasOwnText = true;
  note.ownText = text;
  append(std::move(note));
}

void NoteTable::write(Xls& xls) const {
  DrawingRecordSink sink(xls);
  for (const Note& note : _notes) {
    if (isErased(note)) continue;
    std::vector<std::byte> body;
    appendNote(body, note);
    officeart::RecordWriter writer(sink, id::kNote);
    writer.put(body);
    writer.finish();
  }
}

void NoteTable::append(Note note) {
  _places[placeOf(note.row, note.col)].push_back(static_cast<std::uint32_t>(_notes.size()));
  _notes.push_back(std::move(note));
}

Note* NoteTable::find(int row, int col) {
  const auto found = _places.find(placeOf(row, col));
  return found == _places.end() ? nullptr : &_notes[found->second.front()];
}

Note& NoteTable::at(int row, int col) {
  if (Note* present = find(row, col)) return *present;
  Note note;
  note.row = static_cast<std::uint16_t>(row);
  note.col = static_cast<std::uint16_t>(col);
  append(std::move(note));
  return _notes.back();
}

void NoteTable::erase(int row, int col) {
  const auto found = _places.find(placeOf(row, col));
  if (found == _places.end()) return;
  for (const std::uint32_t position : found->second) {
    _notes[position] = Note();
    _notes[position].col = kErased;
  }
  _places.erase(found);
}

void NoteTable::move(const LineMove& move) {
  std::vector<Note> before = std::move(_notes);
  _notes.clear();
  _places.clear();
  for (Note& note : before) {
    if (isErased(note)) continue;
    const auto row = move.mapRow(note.row), col = move.mapCol(note.col);
    if (!row || !col) continue;
    note.row = static_cast<std::uint16_t>(*row);
    note.col = static_cast<std::uint16_t>(*col);
    append(std::move(note));
  }
}

}  // namespace rubrica
