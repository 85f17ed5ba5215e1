// Property tables of shapes and of the drawing group: entries of 6 bytes, and behind all of them the data of those that
// don't fit into their 32 bits.
#pragma once

#include <optional>

#include "officeart/record.h"

namespace rubrica::officeart {

// The id of a property: 14 bits, and whether its value is a picture's number, or the length of data behind the table.
struct OfficeArtFOPTEOPID {
  std::uint16_t word = 0;

  std::uint16_t opid() const { return word & 0x3FFF; }
  bool isBlip() const { return (word & kBlip) != 0; }
  bool isComplex() const { return (word & kComplex) != 0; }
  // Throws xlerror "error in OfficeArtFOPTEOPID" where the word isn't whole.
  void read(RecordReader& reader);

  static constexpr std::uint16_t kBlip = 0x4000, kComplex = 0x8000;
};

struct OfficeArtFOPTE {
  OfficeArtFOPTEOPID id;
  std::uint32_t op = 0;
};

namespace property {
inline constexpr std::uint16_t protection = 0x007F, textId = 0x0080, textDirection = 0x008B, text = 0x00BF,
                               pib = 0x0104, connectPoints = 0x0158, nextShape = 0x008A, fillColor = 0x0181,
                               fillBackColor = 0x0183, fill = 0x01BF, lineColor = 0x01C0, shadowColor = 0x0201,
                               shadow = 0x023F, masterShape = 0x0301, group = 0x03BF;
}

class OfficeArtRGFOPTE {
 public:
  std::vector<OfficeArtFOPTE> entries;

  // Reads `count` entries and takes the rest as their data. Throws xlerror "error in record OfficeArtRGFOPTE (1)" for
  // entries and "(2)" for data that exceed the record.
  void read(RecordReader& body, std::size_t count);
  void write(DrawingSink& sink) const;
  std::uint32_t size() const;

  void add(std::uint16_t word, std::uint32_t op) { entries.push_back({{word}, op}); }
  // The value of a property whose value is in the table.
  std::optional<std::uint32_t> value(std::uint16_t opid) const;
  void setValue(std::uint16_t opid, std::uint32_t op);

 private:
  Slice _data;  // of all complex entries, in their order
};

// recInstance is the count of entries.
template <std::uint16_t RecType>
class OfficeArtFOPTBase final : public RecordOf<RecType> {
 public:
  OfficeArtRGFOPTE table;

  void read(const RecordHeader& header, RecordReader& body) override {
    RecordOf<RecType>::read(header, body);
    table.read(body, header.recInstance);
  }
  void write(DrawingSink& sink) const override {
    this->writeHeader(sink);
    table.write(sink);
  }
  std::uint32_t size() const override { return table.size(); }
  void add(std::uint16_t word, std::uint32_t op) {
    table.add(word, op);
    this->setInstance(table.entries.size());
  }
};

using OfficeArtFOPT = OfficeArtFOPTBase<type::fopt>;
using OfficeArtSecondaryFOPT = OfficeArtFOPTBase<type::secondaryFopt>;
using OfficeArtTertiaryFOPT = OfficeArtFOPTBase<type::tertiaryFopt>;

}  // namespace rubrica::officeart
