// What the formulas of a book refer to beyond their own sheet: the SupBook blocks (this book, other books, add-ins) and
// the ExternSheet entries that name a range of sheets of one of them. Owned by the book.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "biff/external_book.h"
#include "biff/records/record_io.h"

namespace rubrica {

// A SupBook record with the ExternName, Xct and Crn records behind it.
struct SupBookBlock {
  std::vector<std::byte> payload;
  std::vector<RawRecord> followers;
  std::optional<ExternalBook> external;  // what the payload says, when it names another book

  // The reference of a book to itself: a count of sheets and the marker 0x0401.
  bool isSelf() const;
};

// Sheets `first` to `last` of a SupBook, by 0-based position; -1 for a sheet that is gone, -2 for the whole book.
struct Xti {
  std::uint16_t iSupBook = 0;
  std::int16_t first = 0, last = 0;
};

class LinkTable {
 public:
  static constexpr std::int16_t kDeletedSheet = -1;

  const std::vector<SupBookBlock>& supBooks() const { return _supBooks; }
  const std::vector<Xti>& xtis() const { return _xtis; }
  // The ExternSheet index for one sheet of this book, or a run of them, added when there is none.
  std::uint16_t selfReference(int first, int last);
  // The ExternSheet index for sheets of another book by the text of externalText(), added when a SupBook has them.
  std::optional<std::uint16_t> externalReference(std::u16string_view sheetText);
  // The entry at an index, null outside the table.
  const Xti* xti(std::uint16_t index) const { return index < _xtis.size() ? &_xtis[index] : nullptr; }
  // Whether an entry belongs to this book itself.
  bool isOwn(std::uint16_t index) const;
  // Whether an entry covers the sheet at `position` of this book.
  bool covers(std::uint16_t index, int position) const;
  // What stands before the "!" for an entry over another book, without quotes; nothing for any other entry.
  std::optional<std::u16string> externalText(std::uint16_t index) const;
  // Renumbers the sheets of this book; `mapping` gives the new position, kDeletedSheet for a removed one.
  void renumberSheets(const std::function<int(int)>& mapping);

  // Takes back, at its end, what was added to the table since, unless it is kept: a formula that doesn't compile leaves
  // no entries behind.
  class Addition {
   public:
    explicit Addition(LinkTable& table)
        : _table(&table), _supBooks(table._supBooks.size()), _xtis(table._xtis.size()) {}
    Addition(const Addition&) = delete;
    Addition& operator=(const Addition&) = delete;
    ~Addition() {
      if (_table == nullptr) return;
      _table->_supBooks.resize(_supBooks);
      _table->_xtis.resize(_xtis);
    }
    void keep() { _table = nullptr; }

   private:
    LinkTable* _table;
    std::size_t _supBooks, _xtis;
  };

  // Reads a SupBook record and all that belongs to it.
  void readSupBook(Xls& xls, std::uint16_t size);
  void readExternSheet(Xls& xls, std::uint16_t size);
  // The self-reference is written with the present number of sheets.
  void write(Xls& xls, std::size_t sheetCount) const;
  void clear();

 private:
  std::uint16_t reference(std::uint16_t supBook, int first, int last);

  std::vector<SupBookBlock> _supBooks;
  std::vector<Xti> _xtis;
};

}  // namespace rubrica
