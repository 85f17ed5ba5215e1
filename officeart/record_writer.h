// Writes OfficeArt records into BIFF records of at most 8224 bytes: one of the given id, then CONTINUE records. Objects
// that follow a record end it, and what comes behind them begins a new one. Used by the drawing and the drawing group.
#pragma once

#include "officeart/bytes.h"

namespace rubrica::officeart {

class RecordWriter final : public DrawingSink {
 public:
  RecordWriter(RecordSink& sink, std::uint16_t recordId) : _sink(sink), _recordId(recordId), _next(recordId) {}

  void put(ByteView bytes) override;
  void follow(const ObjBase& object) override;
  // Ends the record that was begun.
  void finish();

 private:
  void flush();

  RecordSink& _sink;
  std::uint16_t _recordId;
  std::uint16_t _next;  // of the record that the bytes at hand go to
  std::vector<std::byte> _bytes;
};

}  // namespace rubrica::officeart
