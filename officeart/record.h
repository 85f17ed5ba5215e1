// The bases of the OfficeArt record classes: a record of any type, whose body is kept as it came, and the template of a
// header with compile-time rules. A class lists its fields once, as in
//
//   class OfficeArtFDG final : public FixedRecord<OfficeArtFDG, type::fdg> {
//    public:
//     std::uint32_t csp = 0, spidCur = 0;
//     static void visit(auto& self, auto&& field) { field(self.csp); field(self.spidCur); }
//   };
//
// and reading, writing and size follow. Containers own their children in file order.
#pragma once

#include <memory>
#include <vector>

#include "engine/xlerror.h"
#include "officeart/bytes.h"
#include "officeart/header_rules.h"

namespace rubrica::officeart {

class OfficeArtRecordBase {
 public:
  OfficeArtRecordBase() = default;
  OfficeArtRecordBase(const OfficeArtRecordBase&) = delete;
  OfficeArtRecordBase& operator=(const OfficeArtRecordBase&) = delete;
  virtual ~OfficeArtRecordBase() = default;
  // Takes a header and all of the body behind it. Throws xlerror with the message of the record.
  virtual void read(const RecordHeader& header, RecordReader& body);
  // Header and body.
  virtual void write(DrawingSink& sink) const;
  // recLen: the bytes behind the header.
  virtual std::uint32_t size() const;

  std::uint16_t recType() const { return _header.recType; }
  std::uint16_t recInstance() const { return _header.recInstance; }
  void setInstance(std::size_t instance) { _header.recInstance = static_cast<std::uint16_t>(instance & 0xFFF); }

 protected:
  void writeHeader(DrawingSink& sink) const;
  RecordHeader _header;

 private:
  Slice _body;
};

template <unsigned Mask, unsigned RecVer, unsigned RecInstance, unsigned RecType, std::uint32_t RecLen>
class OfficeArtRecord : public OfficeArtRecordBase {
 public:
  OfficeArtRecord() { _header = {RecVer, RecInstance, RecType, RecLen}; }

  void read(const RecordHeader& header, RecordReader&) override {
    const bool fits = ((Mask & check::recVer) == 0 || header.recVer == RecVer) &&
                      ((Mask & check::recType) == 0 || header.recType == RecType) &&
                      ((Mask & check::recInstance) == 0 || header.recInstance == RecInstance) &&
                      ((Mask & check::recLen) == 0 || RecLen == 0 || header.recLen == RecLen);
    if (!fits) fail();
    _header = header;
  }

 protected:
  [[noreturn]] static void fail() { throw xlerror(ruleOf(RecType).message); }
};

template <std::uint16_t RecType>
using RecordOf = OfficeArtRecord<ruleOf(RecType).mask, ruleOf(RecType).recVer, ruleOf(RecType).recInstance, RecType,
                                 ruleOf(RecType).recLen>;

// A record of the fields that its class lists and nothing else.
template <class Self, std::uint16_t RecType>
class FixedRecord : public RecordOf<RecType> {
 public:
  void read(const RecordHeader& header, RecordReader& body) override {
    RecordOf<RecType>::read(header, body);
    bool whole = true;
    Self::visit(static_cast<Self&>(*this), [&](auto& field) { whole = whole && body.take(field); });
    if (!whole || body.left() != 0) this->fail();
  }
  void write(DrawingSink& sink) const override {
    this->writeHeader(sink);
    Self::visit(static_cast<const Self&>(*this), [&](const auto& field) { sink.field(field); });
  }
  std::uint32_t size() const override {
    std::uint32_t bytes = 0;
    Self::visit(static_cast<const Self&>(*this),
                [&](const auto& field) { bytes += static_cast<std::uint32_t>(sizeof(field)); });
    return bytes;
  }
};

// A record of 32-bit items, as many as recInstance says.
template <class Self, std::uint16_t RecType, class Item = std::uint32_t>
class ListRecord : public RecordOf<RecType> {
 public:
  std::vector<Item> items;

  void read(const RecordHeader& header, RecordReader& body) override {
    RecordOf<RecType>::read(header, body);
    if (body.left() != std::size_t{header.recInstance} * sizeof(Item)) this->fail();
    items.resize(header.recInstance);
    for (Item& item : items) body.take(item);
  }
  void write(DrawingSink& sink) const override {
    this->writeHeader(sink);
    for (const Item& item : items) sink.field(item);
  }
  std::uint32_t size() const override { return static_cast<std::uint32_t>(items.size() * sizeof(Item)); }
};

// What a container is beside a record: the owner of further ones.
class OfficeArtContainer {
 public:
  virtual ~OfficeArtContainer() = default;
  std::vector<std::unique_ptr<OfficeArtRecordBase>> children;

  template <class Record>
  Record& add(std::unique_ptr<Record> record) {
    Record& added = *record;
    children.push_back(std::move(record));
    return added;
  }
  // The first child of the class; null where there is none.
  template <class Record>
  Record* find() const {
    for (const auto& child : children) {
      if (auto* found = dynamic_cast<Record*>(child.get())) return found;
    }
    return nullptr;
  }

 protected:
  // Reads records to the end of the body. `make` gives the object for a type that the container knows, null for another
  // one, which is then kept as it came. Throws `message` where a record isn't whole.
  using Make = std::unique_ptr<OfficeArtRecordBase> (*)(std::uint16_t recType);
  void readChildren(RecordReader& body, Make make, const char* message);
  void writeChildren(DrawingSink& sink) const;
  std::uint32_t childrenSize() const;
};

// Self::make(recType) says which records the container knows.
template <class Self, std::uint16_t RecType>
class ContainerRecord : public RecordOf<RecType>, public OfficeArtContainer {
 public:
  void read(const RecordHeader& header, RecordReader& body) override {
    RecordOf<RecType>::read(header, body);
    readChildren(body, &Self::make, ruleOf(RecType).message);
  }
  void write(DrawingSink& sink) const override {
    this->writeHeader(sink);
    writeChildren(sink);
  }
  std::uint32_t size() const override { return childrenSize(); }
};

// Takes a header from the front; false where it isn't whole.
bool takeHeader(RecordReader& reader, RecordHeader& header);

}  // namespace rubrica::officeart
