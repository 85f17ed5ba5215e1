// The records of a sheet's drawing: the drawing itself, groups, shapes with their properties and anchors, and the rules
// between shapes.
#pragma once

#include <array>

#include "officeart/object_records.h"
#include "officeart/property_table.h"
#include "officeart/record.h"

namespace rubrica::officeart {

// How many shapes a drawing has, and the last id given to one. recInstance is the drawing's id.
class OfficeArtFDG final : public FixedRecord<OfficeArtFDG, type::fdg> {
 public:
  std::uint32_t csp = 0, spidCur = 0;
  static void visit(auto& self, auto&& field) {
    field(self.csp);
    field(self.spidCur);
  }
};

// The coordinates that the anchors of a group's children are in.
class OfficeArtFSPGR final : public FixedRecord<OfficeArtFSPGR, type::fspgr> {
 public:
  std::int32_t xLeft = 0, yTop = 0, xRight = 0, yBottom = 0;
  static void visit(auto& self, auto&& field) {
    field(self.xLeft);
    field(self.yTop);
    field(self.xRight);
    field(self.yBottom);
  }
};

// A shape's id and flags. recInstance is its type.
class OfficeArtFSP final : public FixedRecord<OfficeArtFSP, type::fsp> {
 public:
  std::uint32_t spid = 0, flags = 0;
  static void visit(auto& self, auto&& field) {
    field(self.spid);
    field(self.flags);
  }
  static constexpr std::uint32_t kGroup = 1, kPatriarch = 4, kHaveAnchor = 0x200, kHaveShapeType = 0x800;
  static constexpr std::uint16_t kPictureFrame = 75, kTextBox = 202;  // types
};

class OfficeArtChildAnchor final : public FixedRecord<OfficeArtChildAnchor, type::childAnchor> {
 public:
  std::int32_t xLeft = 0, yTop = 0, xRight = 0, yBottom = 0;
  static void visit(auto& self, auto&& field) {
    field(self.xLeft);
    field(self.yTop);
    field(self.xRight);
    field(self.yBottom);
  }
};

// The cells that a shape's corners are in, with the parts of them: 1/1024 of a column's width, 1/256 of a row's height.
struct CellAnchor {
  std::uint16_t flags = 0;
  std::uint16_t colL = 0, dxL = 0, rwT = 0, dyT = 0, colR = 0, dxR = 0, rwB = 0, dyB = 0;
  bool operator==(const CellAnchor&) const = default;
  static constexpr std::uint16_t kNoMove = 1, kNoSize = 2;
};

class OfficeArtClientAnchorSheet final : public FixedRecord<OfficeArtClientAnchorSheet, type::clientAnchorSheet> {
 public:
  CellAnchor anchor;
  static void visit(auto& self, auto&& field) {
    for (auto* word : {&self.anchor.flags, &self.anchor.colL, &self.anchor.dxL, &self.anchor.rwT, &self.anchor.dyT,
                       &self.anchor.colR, &self.anchor.dxR, &self.anchor.rwB, &self.anchor.dyB}) {
      field(*word);
    }
  }
};

// A shape is followed by a record of the sheet: the client data by its Obj, the client text box by its TextObject.
template <class Self, std::uint16_t RecType>
class ClientRecord : public RecordOf<RecType> {
 public:
  ObjectList objects;

  void read(const RecordHeader& header, RecordReader& body) override {
    RecordOf<RecType>::read(header, body);
    _body = body.takeRest();
  }
  void write(DrawingSink& sink) const override {
    this->writeHeader(sink);
    sink.put(_body.view());
    for (const auto& object : objects) sink.follow(*object);
  }
  std::uint32_t size() const override { return static_cast<std::uint32_t>(_body.size()); }

 private:
  Slice _body;
};

class OfficeArtClientData final : public ClientRecord<OfficeArtClientData, type::clientData> {};
class OfficeArtClientTextbox final : public ClientRecord<OfficeArtClientTextbox, type::clientTextbox> {};

// Rules of the solver: which shapes a connector, an arc or a callout belongs to.
class OfficeArtFConnectorRule final : public FixedRecord<OfficeArtFConnectorRule, type::connectorRule> {
 public:
  std::uint32_t ruid = 0, spidA = 0, spidB = 0, spidC = 0, cptiA = 0, cptiB = 0;
  static void visit(auto& self, auto&& field) {
    field(self.ruid);
    field(self.spidA);
    field(self.spidB);
    field(self.spidC);
    field(self.cptiA);
    field(self.cptiB);
  }
};

class OfficeArtFArcRule final : public FixedRecord<OfficeArtFArcRule, type::arcRule> {
 public:
  std::uint32_t ruid = 0, spid = 0;
  static void visit(auto& self, auto&& field) {
    field(self.ruid);
    field(self.spid);
  }
};

class OfficeArtFCalloutRule final : public FixedRecord<OfficeArtFCalloutRule, type::calloutRule> {
 public:
  std::uint32_t ruid = 0, spid = 0;
  static void visit(auto& self, auto&& field) {
    field(self.ruid);
    field(self.spid);
  }
};

class OfficeArtSolverContainer final : public ContainerRecord<OfficeArtSolverContainer, type::solverContainer> {
 public:
  static std::unique_ptr<OfficeArtRecordBase> make(std::uint16_t recType);
};

// Which shape of a deleted one's kind this was.
class OfficeArtFPSPL final : public FixedRecord<OfficeArtFPSPL, type::fpspl> {
 public:
  std::uint32_t spid = 0;
  static void visit(auto& self, auto&& field) { field(self.spid); }
};

// Regroup items: pairs of old and new group ids.
struct RegroupItem {
  std::uint16_t fridNew = 0, fridOld = 0;
};
class OfficeArtFRITContainer final : public ListRecord<OfficeArtFRITContainer, type::fritContainer, RegroupItem> {};

// The shapes that are selected.
class OfficeArtFDGSL final : public RecordOf<type::fdgsl> {
 public:
  std::uint32_t cpsp = 0, dgslk = 0, spidFocus = 0;
  std::vector<std::uint32_t> spids;

  void read(const RecordHeader& header, RecordReader& body) override;
  void write(DrawingSink& sink) const override;
  std::uint32_t size() const override { return static_cast<std::uint32_t>(12 + 4 * spids.size()); }
};

// One shape.
class OfficeArtSpContainer final : public ContainerRecord<OfficeArtSpContainer, type::spContainer> {
 public:
  static std::unique_ptr<OfficeArtRecordBase> make(std::uint16_t recType);
};

// A group: the shape that stands for it, then shapes and groups.
class OfficeArtSpgrContainer final : public ContainerRecord<OfficeArtSpgrContainer, type::spgrContainer> {
 public:
  static std::unique_ptr<OfficeArtRecordBase> make(std::uint16_t recType);
};

// The drawing of a sheet. Its first group holds all shapes; that group's own shape is the patriarch.
class OfficeArtDgContainer final : public ContainerRecord<OfficeArtDgContainer, type::dgContainer> {
 public:
  static std::unique_ptr<OfficeArtRecordBase> make(std::uint16_t recType);
};

}  // namespace rubrica::officeart
