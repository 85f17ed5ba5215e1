#include "officeart/group_records.h"

#include "officeart/shape_records.h"

namespace rubrica::officeart {

void OfficeArtFDGGBlock::read(const RecordHeader& header, RecordReader& body) {
  OfficeArtRecord::read(header, body);
  std::uint32_t count = 0;  // one more than there are entries
  if (!body.take(spidMax) || !body.take(count) || !body.take(cspSaved) || !body.take(cdgSaved)) fail();
  const std::size_t entries = count == 0 ? 0 : count - 1;
  if (entries > body.left() / sizeof(IdCluster)) fail();
  clusters.resize(entries);
  for (IdCluster& cluster : clusters) body.take(cluster);
  _rest = body.takeRest();
}

void OfficeArtFDGGBlock::write(DrawingSink& sink) const {
  writeHeader(sink);
  sink.field(spidMax);
  sink.field(static_cast<std::uint32_t>(clusters.size() + 1));
  sink.field(cspSaved);
  sink.field(cdgSaved);
  for (const IdCluster& cluster : clusters) sink.field(cluster);
  sink.put(_rest.view());
}

std::uint32_t OfficeArtFDGGBlock::size() const {
  constexpr std::size_t kHead = 16;
  return static_cast<std::uint32_t>(kHead + clusters.size() * sizeof(IdCluster) + _rest.size());
}

std::unique_ptr<OfficeArtRecordBase> OfficeArtDggContainer::make(std::uint16_t recType) {
  switch (recType) {
    case type::fdggBlock:
      return std::make_unique<OfficeArtFDGGBlock>();
    case type::bStoreContainer:
      return std::make_unique<OfficeArtBStoreContainer>();
    case type::fopt:
      return std::make_unique<OfficeArtFOPT>();
    case type::tertiaryFopt:
      return std::make_unique<OfficeArtTertiaryFOPT>();
    case type::colorMruContainer:
      return std::make_unique<OfficeArtColorMRUContainer>();
    case type::splitMenuColors:
      return std::make_unique<OfficeArtSplitMenuColorContainer>();
    case type::fritContainer:
      return std::make_unique<OfficeArtFRITContainer>();
    default:
      return nullptr;
  }
}

}  // namespace rubrica::officeart
