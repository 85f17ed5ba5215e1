// The records of a book's drawing group: who has which shape ids, the blip store, and defaults of the user interface.
#pragma once

#include <array>

#include "officeart/blip.h"
#include "officeart/property_table.h"

namespace rubrica::officeart {

// Shape ids are handed out in clusters of 1024; the n-th entry, from 1 on, is for the ids from n * 1024 on.
struct IdCluster {
  std::uint32_t dgid = 0;      // the drawing that has it
  std::uint32_t cspidCur = 0;  // how many of its ids are taken
  static constexpr std::uint32_t kIds = 1024;
};

// OfficeArtFDGG and the clusters behind it.
class OfficeArtFDGGBlock final : public RecordOf<type::fdggBlock> {
 public:
  std::uint32_t spidMax = 0, cspSaved = 0, cdgSaved = 0;
  std::vector<IdCluster> clusters;

  void read(const RecordHeader& header, RecordReader& body) override;
  void write(DrawingSink& sink) const override;
  std::uint32_t size() const override;

 private:
  Slice _rest;
};

class OfficeArtColorMRUContainer final : public ListRecord<OfficeArtColorMRUContainer, type::colorMruContainer> {};

class OfficeArtSplitMenuColorContainer final
    : public FixedRecord<OfficeArtSplitMenuColorContainer, type::splitMenuColors> {
 public:
  std::array<std::uint32_t, 4> smca = {0x0800000D, 0x0800000C, 0x08000017, 0x100000F7};  // fill, line, shadow, 3-D
  static void visit(auto& self, auto&& field) { field(self.smca); }
};

class OfficeArtDggContainer final : public ContainerRecord<OfficeArtDggContainer, type::dggContainer> {
 public:
  static std::unique_ptr<OfficeArtRecordBase> make(std::uint16_t recType);
};

}  // namespace rubrica::officeart
