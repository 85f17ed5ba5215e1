// Test support: the style tables of a book that was created, or is about to be loaded.
#pragma once

#include <string>

#include "biff/styles/style_tables.h"
#include "tests/biff/record_stream.h"

namespace rubrica::test {

struct StyleBook {
  BookState state;
  StyleTables tables{state};

  std::string message() const { return state.message(); }

  // Reads one record, given by its body, with a read operation of the tables. Returns the message of its failure.
  using Read = void (StyleTables::*)(Xls&, std::uint16_t);
  std::string read(Read operation, const Bytes& body, const std::vector<Record>& behind = {}) {
    std::vector<Record> all{{1, body}};
    all.insert(all.end(), behind.begin(), behind.end());
    RecordStream stream(all);
    std::uint16_t size = 0;
    Xls& xls = stream.firstRecord(size);
    return errorOf([&] { (tables.*operation)(xls, size); });
  }
  std::vector<Record> written(void (StyleTables::*operation)(Xls&) const) {
    RecordStream stream([&](Xls& xls) { (tables.*operation)(xls); });
    return stream.records();
  }
};

struct NewBook : StyleBook {
  NewBook() { tables.createDefaults(); }
};

inline const std::string kNothingThrown = "nothing thrown";

}  // namespace rubrica::test
