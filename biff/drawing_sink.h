// Hands the records of drawings and notes to the workbook stream.
#pragma once

#include "compound/xls.h"
#include "officeart/bytes.h"

namespace rubrica {

class DrawingRecordSink final : public officeart::RecordSink {
 public:
  explicit DrawingRecordSink(Xls& xls) : _xls(xls) {}
  void record(std::uint16_t recordId, officeart::ByteView body) override {
    _xls.writeRecord(recordId, body.data(), static_cast<std::uint16_t>(body.size()));
  }

 private:
  Xls& _xls;
};

}  // namespace rubrica
