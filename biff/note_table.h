// The comments of a sheet as its Note records hold them: which cell has one, who wrote it, and the id of the object in
// the drawing that has the text. The notes of a BIFF5 book hold their text themselves. Owned by the sheet.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include <boost/unordered/unordered_flat_map.hpp>

#include "biff/unicode_string.h"
#include "compound/xls.h"
#include "engine/line_move.h"

namespace rubrica {

// 28.
struct Note {
  std::uint16_t row = 0, col = 0, grbit = 0, idObj = 0;
  std::u16string author;
  std::uint8_t authorFlags = text_flags::kHighByte;
  std::vector<std::byte> behind{1};  // what stands behind the author, one byte as a rule
  bool hasOwnText = false;
  std::u16string ownText;

  // The most characters of an author.
  static constexpr std::size_t kMostAuthor = 65535;
};

class NoteTable {
 public:
  // Reads a record with the CONTINUE records behind it joined. Throws xlerror "Note size is incorrect".
  void read(std::span<const std::byte> bytes);
  // Reads the BIFF5 form; a record that only continues the text of the one before it goes there.
  void readBiff5(std::span<const std::byte> bytes, std::uint16_t codePage);
  void write(Xls& xls) const;

  // The first note of the cell; null where it has none.
  Note* find(int row, int col);
  // The same, made where there is none.
  Note& at(int row, int col);
  void erase(int row, int col);
  // Moves the notes with their cells; one whose cell is gone goes too.
  void move(const LineMove& move);
  template <class Visit>
  void forEach(Visit&& visit) {
    for (Note& note : _notes) {
      if (!isErased(note)) visit(note);
    }
  }

 private:
  // An erased note keeps its place until notes move, so that erasing costs nothing.
  static constexpr std::uint16_t kErased = 0xFFFF;  // no column
  static bool isErased(const Note& note) { return note.col == kErased; }
  void append(Note note);

  std::vector<Note> _notes;                                                      // in file order
  boost::unordered_flat_map<std::uint32_t, std::vector<std::uint32_t>> _places;  // by cell
};

}  // namespace rubrica
