#include "officeart/shape_records.h"

namespace rubrica::officeart {

std::unique_ptr<OfficeArtRecordBase> OfficeArtSolverContainer::make(std::uint16_t recType) {
  switch (recType) {
    case type::connectorRule:
      return std::make_unique<OfficeArtFConnectorRule>();
    case type::arcRule:
      return std::make_unique<OfficeArtFArcRule>();
    case type::calloutRule:
      return std::make_unique<OfficeArtFCalloutRule>();
    default:
      return nullptr;
  }
}

std::unique_ptr<OfficeArtRecordBase> OfficeArtSpContainer::make(std::uint16_t recType) {
  switch (recType) {
    case type::fspgr:
      return std::make_unique<OfficeArtFSPGR>();
    case type::fsp:
      return std::make_unique<OfficeArtFSP>();
    case type::fpspl:
      return std::make_unique<OfficeArtFPSPL>();
    case type::fopt:
      return std::make_unique<OfficeArtFOPT>();
    case type::secondaryFopt:
      return std::make_unique<OfficeArtSecondaryFOPT>();
    case type::tertiaryFopt:
      return std::make_unique<OfficeArtTertiaryFOPT>();
    case type::childAnchor:
      return std::make_unique<OfficeArtChildAnchor>();
    case type::clientAnchorSheet:
      return std::make_unique<OfficeArtClientAnchorSheet>();
    case type::clientData:
      return std::make_unique<OfficeArtClientData>();
    case type::clientTextbox:
      return std::make_unique<OfficeArtClientTextbox>();
    default:
      return nullptr;
  }
}

std::unique_ptr<OfficeArtRecordBase> OfficeArtSpgrContainer::make(std::uint16_t recType) {
  switch (recType) {
    case type::spgrContainer:
      return std::make_unique<OfficeArtSpgrContainer>();
    case type::spContainer:
      return std::make_unique<OfficeArtSpContainer>();
    default:
      return nullptr;
  }
}

std::unique_ptr<OfficeArtRecordBase> OfficeArtDgContainer::make(std::uint16_t recType) {
  switch (recType) {
    case type::fdg:
      return std::make_unique<OfficeArtFDG>();
    case type::fritContainer:
      return std::make_unique<OfficeArtFRITContainer>();
    case type::spgrContainer:
      return std::make_unique<OfficeArtSpgrContainer>();
    case type::spContainer:
      return std::make_unique<OfficeArtSpContainer>();
    case type::solverContainer:
      return std::make_unique<OfficeArtSolverContainer>();
    case type::fdgsl:
      return std::make_unique<OfficeArtFDGSL>();
    default:
      return nullptr;
  }
}

void OfficeArtFDGSL::read(const RecordHeader& header, RecordReader& body) {
  OfficeArtRecord::read(header, body);
  if (!body.take(cpsp) || !body.take(dgslk) || !body.take(spidFocus) || body.left() % sizeof(std::uint32_t) != 0) {
    fail();
  }
  spids.resize(body.left() / sizeof(std::uint32_t));
  for (std::uint32_t& spid : spids) body.take(spid);
}

void OfficeArtFDGSL::write(DrawingSink& sink) const {
  writeHeader(sink);
  sink.field(cpsp);
  sink.field(dgslk);
  sink.field(spidFocus);
  for (const std::uint32_t spid : spids) sink.field(spid);
}

}  // namespace rubrica::officeart
